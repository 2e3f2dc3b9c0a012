// Where this user's files go on this operating system.
#pragma once

#include <filesystem>

namespace basalt::host {

// The program's own folder for data: $XDG_DATA_HOME/basalt, else ~/.local/share/basalt; %LOCALAPPDATA%\Basalt on
// Windows. Not made yet. std::runtime_error when the system names no home folder.
[[nodiscard]] std::filesystem::path userDataFolder();
// The same for who can do without: empty when the system names no home folder.
[[nodiscard]] std::filesystem::path userDataFolderIfAny();

}  // namespace basalt::host
