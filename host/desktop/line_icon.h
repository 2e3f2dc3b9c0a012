// The line icons of the desktop, drawn rather than loaded, so that they are sharp at every scale and take any colour.
//
//   button->setIcon(lineIcon(LineIcon::Home, themeColors().muted));
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>

namespace basalt::host {

enum class LineIcon {
    Home,
    PriceTag,
    Percent,
    Pencil,
    Report,
    Tree,
    Selection,
    Window,
    Console,
    Log,
    Settings,
    SignOut,
    Lock,
    User,
    Database,
    Workstation,
    Warning
};

[[nodiscard]] QIcon lineIcon(LineIcon icon, const QColor& color);
// A picture of `size` by `size` device-independent pixels.
[[nodiscard]] QPixmap linePixmap(LineIcon icon, const QColor& color, int size);

}  // namespace basalt::host
