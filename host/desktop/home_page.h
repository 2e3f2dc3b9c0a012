// The first page: a greeting, a tile for each thing to open, and what was done last.
//
// The arrow keys go to the tile that lies in their direction, Enter and Space press one.
#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTableWidget>
#include <functional>
#include <vector>

#include "host/desktop/desktop_context.h"
#include "host/desktop/line_icon.h"
#include "host/desktop/shell_page.h"

namespace basalt::host {

struct HomeTile {
    QString objectName;
    QString title;
    QString hint;
    LineIcon icon = LineIcon::Window;
    bool locked = false;  // the user may not open it; the tile works all the same, the host explains
};

class HomePage final : public ShellPage {
public:
    explicit HomePage(DesktopContext context, QWidget* parent = nullptr);

    // Tiles of one group stand together; another group begins a new row.
    enum class Group { Screens, Tools };
    void addTile(Group group, const HomeTile& tile, const std::function<void()>& onClick);
    // Shows the date and the latest entries of the user log, and leads to the first tile.
    void enter() override;
    // The same, but the focus stays: a screen that was opened from here has closed.
    void refresh();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct PlacedTile {
        QPushButton* button;
        Group group;
    };

    [[nodiscard]] QWidget* makeRecent();
    // As many side by side as there is room for.
    void placeTiles();
    // Null at the edge.
    [[nodiscard]] QPushButton* tileBeside(const QPushButton* from, int key) const;

    DesktopContext context_;
    QScrollArea* scroll_;
    QLabel* greeting_;
    QLabel* date_;
    QVBoxLayout* tiles_;  // of a layout a row
    std::vector<PlacedTile> placed_;
    int columns_ = 0;
    QTableWidget* recent_ = nullptr;
};

}  // namespace basalt::host
