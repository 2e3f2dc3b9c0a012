#include "host/screens/quiet_display.h"

#include <QLibraryInfo>
#include <QString>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace basalt::host {
namespace {

QtMessageHandler everythingElse = nullptr;
std::string programName;

void tell(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (message.startsWith(QLatin1String("This plugin does not support "))) return;
    if (type == QtFatalMsg && message.contains(QLatin1String("no Qt platform plugin could be initialized"))) {
        // What went wrong has been told by now, and there is nothing to be cleared away.
        std::cerr
            << programName
            << ": there is no display that windows can be shown on. Set DISPLAY or QT_QPA_PLATFORM to one that there "
               "is, or QT_QPA_PLATFORM=offscreen to draw without any"
            << std::endl;
        std::_Exit(1);
    }
    everythingElse(type, context, message);
}

}  // namespace

std::filesystem::path platformPlugins() {
    return std::filesystem::path(QLibraryInfo::path(QLibraryInfo::PluginsPath).toStdU16String()) / "platforms";
}

QuietDisplay::QuietDisplay(std::string program) {
    programName = std::move(program);
    everythingElse = qInstallMessageHandler(tell);
}

QuietDisplay::~QuietDisplay() {
    qInstallMessageHandler(everythingElse);
}

}  // namespace basalt::host
