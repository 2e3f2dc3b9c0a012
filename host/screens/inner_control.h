// A standard control inside one of ours, which also reacts when an event is handed to the outer widget.
//
// Assistive tools and drivers address a control by its outer object. The outer widget passes such an event on with
// take(); events that the inner control did not want climb to the outer widget as well and are not passed on twice.
#pragma once

#include <QEvent>

namespace basalt::host {

template <class Control>
class InnerControl : public Control {
public:
    using Control::Control;

    // Handles an event that reached the outer widget. False when the event came from here or is not wanted here.
    bool take(QEvent* event) {
        if (event == declined_) {
            declined_ = nullptr;
            event->ignore();
            return false;
        }
        event->accept();
        Control::event(event);
        const bool taken = event->isAccepted();
        declined_ = nullptr;
        return taken;
    }

protected:
    bool event(QEvent* event) override {
        const bool handled = Control::event(event);
        if (isInput(event->type())) declined_ = event->isAccepted() ? nullptr : event;
        return handled;
    }

private:
    [[nodiscard]] static bool isInput(QEvent::Type type) {
        return type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::MouseButtonPress ||
               type == QEvent::MouseButtonRelease || type == QEvent::MouseButtonDblClick;
    }

    QEvent* declined_ = nullptr;
};

}  // namespace basalt::host
