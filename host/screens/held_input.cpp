#include "host/screens/held_input.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <utility>

// A key is looked up among the short cuts before it reaches a control. Qt does so where a key comes from the window
// system; for others its own libraries call this.
extern Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject* receiver, ulong timestamp, int key,
                                                      Qt::KeyboardModifiers modifiers, const QString& text, bool repeat,
                                                      ushort count);

namespace basalt::host {
namespace {

bool isKey(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

// Of a key that writes or corrects text in an input.
bool writesText(const QEvent& event) {
    if (!isKey(event)) return event.type() == QEvent::InputMethod;
    const auto& key = static_cast<const QKeyEvent&>(event);
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
    switch (key.key()) {
        case Qt::Key_Backspace:
        case Qt::Key_Delete:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Shift:
            return true;
        default:
            return !key.text().isEmpty() && key.text().front().isPrint();
    }
}

void give(QWidget& receiver, QEvent& event) {
    event.setAccepted(true);
    if (event.type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(event);
        if (qt_sendShortcutOverrideEvent(&receiver, key.timestamp(), key.key(), key.modifiers(), key.text(),
                                         key.isAutoRepeat(), static_cast<ushort>(key.count())))
            return;
    }
    QCoreApplication::sendEvent(&receiver, &event);
}

}  // namespace

HeldInput::Turn::Turn(HeldInput& held, QWidget* notice) : held_(held) {
    held_.notice_ = notice;
    held_.inTurn_ = true;
    qApp->installEventFilter(&held_);
}

HeldInput::Turn::~Turn() {
    qApp->removeEventFilter(&held_);
    held_.inTurn_ = false;
    if (std::exchange(held_.dropAfterTurn_, false)) held_.dropWhenAnotherLoopRuns();
}

void HeldInput::waitFor(QWidget* window) {
    if (window == window_) return;
    events_.clear();
    window_ = window;
}

void HeldInput::keepTypedText() {
    const QWidget* input = window_ ? window_->focusWidget() : nullptr;
    const auto end =
        input && input->testAttribute(Qt::WA_InputMethodEnabled)
            ? std::find_if(events_.begin(), events_.end(), [](const auto& event) { return !writesText(*event); })
            : events_.begin();
    events_.erase(end, events_.end());
}

QWidget* HeldInput::receiver() const {
    if (!window_ || !window_->isVisible()) return nullptr;
    if (QWidget* popup = QApplication::activePopupWidget()) {
        if (!popup->parentWidget() || popup->parentWidget()->window() != window_) return nullptr;
        return popup->focusWidget() ? popup->focusWidget() : popup;
    }
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != window_ && !modal->isAncestorOf(window_)) return nullptr;
    return window_->focusWidget() ? window_->focusWidget() : window_.data();
}

void HeldInput::giveBack() {
    if (inTurn_) return;
    if (giving_) {
        // Another window has opened over the one that waited, or a menu: the rest was pressed before it was there.
        events_.clear();
        return;
    }
    if (events_.empty()) return;
    giving_ = true;
    dropWhenAnotherLoopRuns();
    while (!events_.empty()) {
        QWidget* to = receiver();
        if (!to) {
            events_.clear();
            break;
        }
        const std::unique_ptr<QEvent> event = std::move(events_.front());
        events_.pop_front();
        give(*to, *event);
    }
    giving_ = false;
}

// What a key opens runs its own loop inside of that key.
void HeldInput::dropWhenAnotherLoopRuns() {
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (inTurn_) {
                dropAfterTurn_ = true;
            } else if (giving_) {
                events_.clear();
            }
        },
        Qt::QueuedConnection);
}

bool HeldInput::isOnNotice(QObject* watched, const QEvent& event) const {
    if (!notice_) return false;
    if (const auto* widget = qobject_cast<QWidget*>(watched)) return widget == notice_ || notice_->isAncestorOf(widget);
    const auto* point = dynamic_cast<const QSinglePointEvent*>(&event);
    if (!point) return false;
    const QWidget* under = QApplication::widgetAt(point->globalPosition().toPoint());
    return under && (under == notice_ || notice_->isAncestorOf(under));
}

bool HeldInput::eventFilter(QObject* watched, QEvent* event) {
    if (!inTurn_) return false;
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            // No short cut acts now: the key itself comes next.
            event->accept();
            return true;
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
                if (event->type() == QEvent::KeyPress && onEscape) onEscape();
            } else if (!static_cast<QKeyEvent*>(event)->isAutoRepeat() || writesText(*event)) {
                // A key that is kept down by somebody who waits acts once.
                events_.emplace_back(event->clone());
            }
            event->accept();
            return true;
        case QEvent::InputMethod:
            events_.emplace_back(event->clone());
            event->accept();
            return true;
        case QEvent::MouseMove:
            return static_cast<QMouseEvent*>(event)->buttons() != Qt::NoButton && !isOnNotice(watched, *event);
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
            return !isOnNotice(watched, *event);
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return true;
        case QEvent::Close:
            if (!event->spontaneous()) return false;
            event->ignore();
            return true;
        default:
            return false;
    }
}

}  // namespace basalt::host
