// The main window: header, navigation, pages and status line.
//
//   MainShell shell(context);
//   shell.OnClosed = [&](MainShell::End end) { ... };
//   shell.show();
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "host/desktop/desktop_context.h"
#include "host/desktop/home_page.h"
#include "host/desktop/navigation_panel.h"
#include "host/desktop/shell_page.h"
#include "host/desktop/status_line.h"

namespace basalt::host {

class MainShell final : public QWidget {
public:
    enum class End { Quit, SignOut };

    // A user must be signed in.
    explicit MainShell(DesktopContext context, QWidget* parent = nullptr);

    // Called once, after the window has closed.
    std::function<void(End)> OnClosed;

protected:
    void closeEvent(QCloseEvent* event) override;
    // Escape leads home, once whatever has the focus has no use for it.
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct PageItem {
        QString objectName;  // of its buttons, without their endings
        QString title;
        std::optional<TSoftwarePart> part;  // whose permission opens it; none: everybody's
        QString hint;
        LineIcon icon;
        QKeySequence shortCut;
    };

    struct KnownPage {
        ShellPage* page;
        QAbstractButton* button;
        std::optional<TSoftwarePart> part;
    };

    [[nodiscard]] QWidget* makeHeader();
    // The program's name stands for a company without one.
    void showCompany();
    void addPriceEditor();
    void addTools();
    [[nodiscard]] QString partTitle(TSoftwarePart part);
    void addEntries();
    void addPage(const PageItem& item, ShellPage* page);
    void goTo(const ShellPage* page);
    [[nodiscard]] static bool mayLeave(ShellPage& page);
    // The work goes on where it was, not on the button that would have led away.
    static void resume(ShellPage& page);
    void open(const EntryPoint& entry);
    void screenClosed();
    void bind(const QKeySequence& key, const std::function<void()>& action);
    void signOut();

    DesktopContext context_;
    QLabel* company_ = nullptr;
    QPushButton* signOut_ = nullptr;
    NavigationPanel* navigation_;
    QStackedWidget* pages_;
    HomePage* home_;
    StatusLine* status_;
    std::vector<KnownPage> known_;
    End end_ = End::Quit;
    bool closed_ = false;
};

}  // namespace basalt::host
