// A picture of the screen on top as a user sees it, the menus and lists that are open over it included.
//
//   const QImage picture = screenPicture(requireTopScreen());
#pragma once

#include <QImage>
#include <QWidget>

namespace basalt::host {

// Lays out first what waits to be laid out. What is open over the screen may stand out of it; the picture is then as
// much larger, grey where there is nothing.
[[nodiscard]] QImage screenPicture(QWidget& screen);

}  // namespace basalt::host
