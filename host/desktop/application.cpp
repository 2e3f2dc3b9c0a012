#include "host/desktop/application.h"

#include <iostream>

#include "host/screens/message_box.h"

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
        std::cerr << "basalt-desktop: " << error.what() << std::endl;
        // An error while an error is shown must not open box upon box.
        if (showing_) return false;
        showing_ = true;
        const MessageCatalogue catalogue;
        MessageBoxContent content;
        content.title = QStringLiteral("خطا");
        content.text = QString::fromStdString(catalogue.errorText(error));
        content.detail = QString::fromUtf8(error.what());
        content.mood = MessageBoxContent::Mood::Error;
        static_cast<void>(MessageBox(content, catalogue, activeWindow()).ask());
        showing_ = false;
        return false;
    }
}

}  // namespace basalt::host
