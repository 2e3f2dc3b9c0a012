#include <QByteArray>
#include <QtGlobal>

#include "host/desktop/platform/display.h"

namespace basalt::host {
namespace {

constexpr const char* kPlatform = "QT_QPA_PLATFORM";

}  // namespace

bool hasDisplay() {
    for (const char* name : {kPlatform, "DISPLAY", "WAYLAND_DISPLAY"})
        if (!qEnvironmentVariableIsEmpty(name)) return true;
    return false;
}

void useOffscreenDisplay() {
    if (qEnvironmentVariableIsEmpty(kPlatform)) qputenv(kPlatform, QByteArrayLiteral("offscreen"));
}

}  // namespace basalt::host
