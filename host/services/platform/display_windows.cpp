#include <cstdlib>

#include "host/services/platform/display.h"

namespace basalt::host {

bool hasDisplay() {
    return true;
}

void useOffscreenDisplay() {
    constexpr const char* platform = "QT_QPA_PLATFORM";
    const char* value = std::getenv(platform);
    if (!value || !*value) _putenv_s(platform, "offscreen");
}

}  // namespace basalt::host
