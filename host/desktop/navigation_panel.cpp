#include "host/desktop/navigation_panel.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kPanelWidth = 236;

QColor iconColor(const NavigationItem& item) {
    return item.locked ? themeColors().muted : themeColors().accent;
}

}  // namespace

QString lockedHint() {
    return QStringLiteral("مجوز باز کردن این بخش را ندارید");
}

NavigationPanel::NavigationPanel(QWidget* parent) : QScrollArea(parent) {
    setObjectName(QStringLiteral("Navigation_PNL"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedWidth(themePixels(kPanelWidth));
    setFocusPolicy(Qt::NoFocus);
    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("NavigationContent_PNL"));
    layout_ = new QVBoxLayout(content);
    layout_->setContentsMargins(12, 16, 12, 16);
    layout_->setSpacing(2);
    setWidget(content);
}

void NavigationPanel::addHeading(const QString& title) {
    if (layout_->count() > 0) layout_->addSpacing(14);
    auto* label = new QLabel(title);
    label->setProperty("kind", QStringLiteral("navigationHeading"));
    layout_->addWidget(label);
}

QAbstractButton* NavigationPanel::addItem(const NavigationItem& item, const std::function<void()>& onClick) {
    auto* button = new QPushButton(lineIcon(item.locked ? LineIcon::Lock : item.icon, iconColor(item)), item.title);
    button->setObjectName(item.objectName);
    button->setProperty("kind", QStringLiteral("navigation"));
    button->setProperty("locked", item.locked);
    button->setIconSize({20, 20});
    button->setAccessibleName(item.title);
    QString toolTip = item.locked ? lockedHint() : item.title;
    if (!item.shortCut.isEmpty())
        toolTip += QStringLiteral(" \u2066(%1)\u2069").arg(item.shortCut.toString(QKeySequence::NativeText));
    button->setToolTip(toolTip);
    button->installEventFilter(this);
    layout_->addWidget(button);
    buttons_.append(button);
    QObject::connect(button, &QAbstractButton::clicked, this, onClick);
    return button;
}

void NavigationPanel::setCurrent(QAbstractButton* current) {
    current_ = current;
    showCurrent();
    for (QAbstractButton* button : buttons_) {
        button->setProperty("current", button == current);
        button->style()->unpolish(button);
        button->style()->polish(button);
    }
}

void NavigationPanel::followInTabOrder(QWidget* before) {
    for (QAbstractButton* button : buttons_) {
        setTabOrder(before, button);
        before = button;
    }
}

void NavigationPanel::addStretch() {
    layout_->addStretch();
}

// A font of another size comes with a style sheet of its own.
void NavigationPanel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
        setFixedWidth(themePixels(kPanelWidth));
    QScrollArea::changeEvent(event);
}

void NavigationPanel::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    showCurrent();
}

// Behind what is going on: a button that has just come or grown has its place only then.
void NavigationPanel::showCurrent() {
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (current_) ensureWidgetVisible(current_);
        },
        Qt::QueuedConnection);
}

bool NavigationPanel::eventFilter(QObject* watched, QEvent* event) {
    // The area watches what it scrolls too: a key that a button left alone comes by once more from there.
    const qsizetype at = buttons_.indexOf(qobject_cast<QAbstractButton*>(watched));
    if (at < 0) return QScrollArea::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn) ensureWidgetVisible(buttons_.at(at));
    if (event->type() != QEvent::KeyPress) return QScrollArea::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
        case Qt::Key_Down:
            buttons_.at(qMin(at + 1, buttons_.size() - 1))->setFocus(Qt::TabFocusReason);
            return true;
        case Qt::Key_Up:
            buttons_.at(qMax(at - 1, qsizetype{0}))->setFocus(Qt::BacktabFocusReason);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            buttons_.at(at)->click();
            return true;
        default:
            return QScrollArea::eventFilter(watched, event);
    }
}

}  // namespace basalt::host
