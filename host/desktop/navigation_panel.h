// The side panel of the main window: headings and the buttons below them.
//
//   panel.addHeading("سطوح قیمت و تخفیف");
//   panel.addItem({.objectName = "Open_CostLevel_List_BTN", .title = "سطوح قیمت", .icon = LineIcon::PriceTag,
//                  .shortCut = QKeySequence("Ctrl+1")}, [this] { ... });
//
// The arrow keys move from button to button, Enter and Space press one.
#pragma once

#include <QAbstractButton>
#include <QKeySequence>
#include <QScrollArea>
#include <QString>
#include <QVBoxLayout>
#include <functional>

#include "host/desktop/line_icon.h"

namespace basalt::host {

// Why an item bears a lock.
[[nodiscard]] QString lockedHint();

struct NavigationItem {
    QString objectName;
    QString title;
    LineIcon icon = LineIcon::Window;
    QKeySequence shortCut;
    bool locked = false;  // the user may not open it; the button works all the same, the host explains
};

class NavigationPanel final : public QScrollArea {
public:
    explicit NavigationPanel(QWidget* parent = nullptr);

    void addHeading(const QString& title);
    QAbstractButton* addItem(const NavigationItem& item, const std::function<void()>& onClick);
    // Marks the button of the page in front, and scrolls to it; null marks none.
    void setCurrent(QAbstractButton* button);
    // Tab goes from that control through all the buttons, and then to what stood behind it.
    void followInTabOrder(QWidget* before);
    // Fills the rest of the height; items added afterwards stand at the bottom.
    void addStretch();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showCurrent();

    QVBoxLayout* layout_;
    QList<QAbstractButton*> buttons_;
    QAbstractButton* current_ = nullptr;
};

}  // namespace basalt::host
