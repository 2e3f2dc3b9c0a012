// What the desktop asks of the operating system about displays.
#pragma once

namespace basalt::host {

// False when windows could not be shown. To be asked before the application is made.
[[nodiscard]] bool hasDisplay();
// Makes the application draw without a display, unless the environment names a platform itself. To be called before the
// application is made.
void useOffscreenDisplay();

}  // namespace basalt::host
