#include <QByteArray>
#include <QtGlobal>

#include "host/desktop/platform/display.h"

namespace basalt::host {

bool hasDisplay() {
    return true;
}

void useOffscreenDisplay() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
}

}  // namespace basalt::host
