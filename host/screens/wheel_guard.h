// The wheel of the mouse scrolls; it does not choose. It turns over whatever the mouse happens to rest on, and an input
// that took it for its own would hold another value unseen.
//
// Neither closed combo boxes nor spin boxes take it, with the focus or without, and it does not give them the focus. It
// goes on to what they stand in, a scroll area for one. Open lists scroll as ever.
#pragma once

#include <QApplication>

namespace basalt::host {

// For all inputs of the application. Calling it again does nothing.
void guardInputsFromWheel(QApplication& application);

}  // namespace basalt::host
