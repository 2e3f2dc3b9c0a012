// What programs with windows ask of the operating system before they make their application.
#pragma once

namespace basalt::host {

// False when windows could not be shown.
[[nodiscard]] bool hasDisplay();
// Makes the application draw without a display, unless the environment names a platform itself.
void useOffscreenDisplay();

}  // namespace basalt::host
