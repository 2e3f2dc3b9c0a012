#include <cstdlib>

#include "host/services/platform/display.h"

namespace basalt::host {
namespace {

constexpr const char* kPlatform = "QT_QPA_PLATFORM";

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

}  // namespace

bool hasDisplay() {
    return isSet(kPlatform) || isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

void useOffscreenDisplay() {
    if (!isSet(kPlatform)) setenv(kPlatform, "offscreen", 1);
}

}  // namespace basalt::host
