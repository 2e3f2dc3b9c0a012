#include <cstdlib>

#include "host/services/platform/display.h"

namespace basalt::host {

std::string displayProblem(const std::filesystem::path& platformPlugins) {
    static_cast<void>(platformPlugins);
    return {};
}

void useOffscreenDisplay() {
    constexpr const char* platform = "QT_QPA_PLATFORM";
    const char* value = std::getenv(platform);
    if (!value || !*value) _putenv_s(platform, "offscreen");
}

}  // namespace basalt::host
