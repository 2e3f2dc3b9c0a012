// The size that a user gave a window, kept in the window's layout.
//
//   QJsonObject layout = option.load();
//   if (!hasWindowSize(layout)) widenWindow(window, 1500);
//   restoreWindowSize(window, layout);
//   ...
//   keepWindowSize(layout, window);
#pragma once

#include <QJsonObject>
#include <QWidget>

namespace basalt::host {

[[nodiscard]] bool hasWindowSize(const QJsonObject& layout);
// As it would be at the usual font size, so that the window grows with the font. A window that nobody has resized since
// restoreWindowSize keeps what was kept before, if anything: its size may be what a small screen has left of it.
void keepWindowSize(QJsonObject& layout, const QWidget& window);
// No larger than the screen has room for: it may be another one than that on which the window had its size. A layout
// without a size changes nothing.
void restoreWindowSize(QWidget& window, const QJsonObject& layout);

// For a window that nobody has given a size: as wide as its contents want, up to nine tenths of the screen, and higher
// by as much. Never narrower than it is, but for a screen that has not the room.
void widenWindow(QWidget& window, int wantedWidth);

}  // namespace basalt::host
