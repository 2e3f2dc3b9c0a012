#include "host/screens/quiet_display.h"

#include <QString>

namespace basalt::host {
namespace {

QtMessageHandler everythingElse = nullptr;

void tell(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (message.startsWith(QLatin1String("This plugin does not support "))) return;
    everythingElse(type, context, message);
}

}  // namespace

QuietDisplay::QuietDisplay() {
    everythingElse = qInstallMessageHandler(tell);
}

QuietDisplay::~QuietDisplay() {
    qInstallMessageHandler(everythingElse);
}

}  // namespace basalt::host
