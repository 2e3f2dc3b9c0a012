// The style rules that pages have in common, in the desktop and in a window of their own: titles, field labels,
// problems, tables. In the colours of the theme, and goes with the theme's own sheet.
#pragma once

#include <QString>

namespace basalt::host {

[[nodiscard]] QString pageStyleSheet();

}  // namespace basalt::host
