#include <cstdlib>
#include <stdexcept>

#include "host/services/platform/user_folders.h"

namespace basalt::host {

std::filesystem::path userDataFolderIfAny() {
    // A relative path in XDG_DATA_HOME is to be ignored, says the base directory rule.
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && data[0] == '/') {
        return std::filesystem::path(data) / "basalt";
    }
    if (const char* home = std::getenv("HOME"); home && home[0] != '\0') {
        return std::filesystem::path(home) / ".local/share/basalt";
    }
    return {};
}

std::filesystem::path userDataFolder() {
    if (std::filesystem::path folder = userDataFolderIfAny(); !folder.empty()) return folder;
    throw std::runtime_error("Neither XDG_DATA_HOME nor HOME is set, so there is no folder for the user's data");
}

}  // namespace basalt::host
