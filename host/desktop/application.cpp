#include "host/desktop/application.h"

#include <iostream>

#include "host/desktop/error_box.h"

namespace basalt::host {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName(QStringLiteral("basalt-desktop"));
    setApplicationDisplayName(QStringLiteral("بازالت"));
    // Windows follow one another; the desktop itself knows when the last one has gone.
    setQuitOnLastWindowClosed(false);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& error) {
        // An error while an error is shown must not open box upon box.
        if (showing_) {
            std::cerr << "basalt-desktop: " << error.what() << std::endl;
            return false;
        }
        showing_ = true;
        showUncaughtError(error, activeWindow());
        showing_ = false;
        return false;
    }
}

}  // namespace basalt::host
