// A picture of the screen on top as a user sees it, the menus and lists that are open over it included.
//
//   const QImage picture = screenPicture(requireTopScreen());
#pragma once

#include <QImage>
#include <QWidget>
#include <string>

namespace basalt::host {

// Lays out first what waits to be laid out. What is open over the screen may stand out of it; the picture is then as
// much larger, grey where there is nothing.
[[nodiscard]] QImage screenPicture(QWidget& screen);

// As a PNG file, whole or not at all; missing folders are made. StepFailure with the reason when it cannot be.
void writePicture(const QImage& picture, const std::string& file);

}  // namespace basalt::host
