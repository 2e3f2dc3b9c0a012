#include "host/screens/screen_frame.h"

#include <QKeyEvent>
#include <QShortcut>

#include "host/screens/elided_label.h"

namespace basalt::host {
namespace {

bool isEnter(const QKeySequence& key) {
    return key == QKeySequence(Qt::Key_Enter) || key == QKeySequence(Qt::Key_Return);
}

}  // namespace

ScreenFrame::ScreenFrame(ScreenContext& context, QDialog& screen)
    : QObject(&screen),
      context_(context),
      screen_(screen),
      layout_(new QVBoxLayout(&screen)),
      header_(new QHBoxLayout),
      footer_(new QHBoxLayout),
      title_(new ElidedLabel(&screen)) {
    screen.setLayoutDirection(Qt::RightToLeft);
    screen.setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    screen.setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    layout_->setContentsMargins(16, 12, 16, 12);
    layout_->setSpacing(10);
    title_->setObjectName(QStringLiteral("Title_LBL"));
    title_->setProperty("kind", QStringLiteral("title"));
    title_->setTextFormat(Qt::PlainText);
    header_->setSpacing(4);
    header_->addWidget(title_, 1);
    footer_->setSpacing(8);
    layout_->addLayout(header_);
    layout_->addLayout(footer_);
    screen.installEventFilter(this);
}

QWidget* ScreenFrame::addPanel(const char* objectName, int stretch) {
    auto* panel = new QWidget(&screen_);
    panel->setObjectName(QString::fromLatin1(objectName));
    layout_->insertWidget(1 + panels_++, panel, stretch);
    bare_.push_back(panel);
    return panel;
}

SmartButton* ScreenFrame::addButton(const std::string& objectName, const std::string& caption) {
    auto* button = new SmartButton(context_, QString::fromStdString(objectName), &screen_);
    button->SetCaption(caption);
    footer_->addWidget(button);
    buttons_.push_back(button);
    if (keysActive_) activateShortCuts();
    return button;
}

void ScreenFrame::addButtonGap() {
    footer_->addStretch(1);
}

void ScreenFrame::addTool(QWidget* tool) {
    header_->addWidget(tool);
}

void ScreenFrame::setTitle(const QString& title) {
    title_->setText(title);
    screen_.setWindowTitle(title);
}

void ScreenFrame::finishLayout() {
    for (QWidget* panel : bare_) {
        const auto children = panel->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        if (!panel->layout() && !children.isEmpty()) {
            auto* layout = new QVBoxLayout(panel);
            layout->setContentsMargins(0, 0, 0, 0);
            for (QWidget* child : children)
                layout->addWidget(child);
        }
        panel->setVisible(!children.isEmpty());
    }
}

void ScreenFrame::activateShortCuts() {
    keysActive_ = true;
    for (SmartButton* button : buttons_) {
        const QKeySequence key = button->shortCut();
        // Enter belongs to whatever has the focus first, and Escape to an open list or editor.
        if (key.isEmpty() || isEnter(key) || key == QKeySequence(Qt::Key_Escape)) continue;
        if (button->findChild<QShortcut*>()) continue;
        auto* shortCut = new QShortcut(key, button, nullptr, nullptr, Qt::WindowShortcut);
        QObject::connect(shortCut, &QShortcut::activated, button, [this, button] { clickKey(button->shortCut()); });
    }
}

bool ScreenFrame::clickKey(const QKeySequence& key) {
    for (SmartButton* button : buttons_) {
        const bool bears = button->shortCut() == key || (isEnter(key) && isEnter(button->shortCut()));
        if (!bears || !isUsable(button)) continue;
        button->Click();
        return true;
    }
    return false;
}

bool ScreenFrame::pressed(QKeyEvent& event) {
    const QKeySequence key(event.keyCombination());
    if (isEnter(QKeySequence(event.key()))) {
        for (SmartButton* button : buttons_) {
            QWidget* focused = screen_.focusWidget();
            if (focused && (focused == button || button->isAncestorOf(focused))) {
                button->Click();
                return true;
            }
        }
        if (clickKey(QKeySequence(Qt::Key_Enter))) return true;
        // A dialog would press its first button on its own account.
        if (onEnter) onEnter();
        return true;
    }
    return clickKey(key);
}

bool ScreenFrame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &screen_ && event->type() == QEvent::KeyPress && keysActive_ &&
        pressed(*static_cast<QKeyEvent*>(event)))
        return true;
    return QObject::eventFilter(watched, event);
}

}  // namespace basalt::host
