// The style sheet of the parts that only the desktop has, in the colours of the theme. It goes with the theme's own.
#pragma once

#include <QString>

namespace basalt::host {

[[nodiscard]] QString shellStyleSheet();

}  // namespace basalt::host
