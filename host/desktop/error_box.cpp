#include "host/desktop/error_box.h"

#include <iostream>

#include "host/screens/message_box.h"

namespace basalt::host {

void showUncaughtError(const std::exception& error, QWidget* parent) {
    std::cerr << "basalt-desktop: " << error.what() << std::endl;
    const MessageCatalogue catalogue;
    MessageBoxContent content;
    content.title = QStringLiteral("خطا");
    content.text = QString::fromStdString(catalogue.errorText(error));
    content.detail = QString::fromUtf8(error.what());
    content.mood = MessageBoxContent::Mood::Error;
    static_cast<void>(MessageBox(content, catalogue, parent).ask());
}

}  // namespace basalt::host
