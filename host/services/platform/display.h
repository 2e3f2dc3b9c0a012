// What programs with windows ask of the operating system before they make their application.
#pragma once

#include <filesystem>
#include <string>

namespace basalt::host {

// Looks whether windows can be shown, by opening the display and closing it again: an application that finds none
// aborts the program. Where the environment leaves the choice between displays, one that cannot be opened is not
// chosen. `platformPlugins` is the folder of Qt's plugins for displays.
//
// Empty when they can; else what is wrong, such as "there is no display", and what can be done about it.
[[nodiscard]] std::string displayProblem(const std::filesystem::path& platformPlugins);
// Makes the application draw without a display. Of platforms that the environment names, xcb and wayland give way: they
// are for the user's windows; another one stays.
void useOffscreenDisplay();

}  // namespace basalt::host
