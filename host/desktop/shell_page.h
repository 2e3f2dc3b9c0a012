// A page of the main window.
#pragma once

#include <QWidget>

namespace basalt::host {

class ShellPage : public QWidget {
public:
    using QWidget::QWidget;

    // The page comes to the front: it shows what is so now and takes the focus. Errors pass to the caller.
    virtual void enter() {}
    // The user wants to go elsewhere. False keeps the page in front, for instance because of unsaved changes.
    [[nodiscard]] virtual bool mayLeave() { return true; }
};

}  // namespace basalt::host
