#include <cstdlib>
#include <stdexcept>

#include "host/services/platform/user_folders.h"

namespace basalt::host {

std::filesystem::path userDataFolderIfAny() {
    if (const wchar_t* data = _wgetenv(L"LOCALAPPDATA"); data && data[0] != L'\0') {
        return std::filesystem::path(data) / L"Basalt";
    }
    return {};
}

std::filesystem::path userDataFolder() {
    if (std::filesystem::path folder = userDataFolderIfAny(); !folder.empty()) return folder;
    throw std::runtime_error("LOCALAPPDATA is not set, so there is no folder for the user's data");
}

}  // namespace basalt::host
