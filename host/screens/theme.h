// The look of the application: colours, font and style sheet in one place.
//
//   QApplication application(argc, argv);
//   applyTheme(application);
//
// Widgets that paint themselves take their colours from here; all others are dressed by the style sheet in style/.
#pragma once

#include <QApplication>
#include <QColor>
#include <QFont>
#include <QString>
#include <QWidget>

namespace basalt::host {

// Calm greys, one accent. The style sheet names them @window@, @accent@ and so on.
struct ThemeColors {
    QColor window{0xF4, 0xF6, 0xF9};
    QColor surface{0xFF, 0xFF, 0xFF};
    QColor raised{0xF9, 0xFA, 0xFC};
    QColor border{0xDD, 0xE2, 0xEA};
    QColor borderStrong{0xBF, 0xC8, 0xD4};
    QColor text{0x1E, 0x29, 0x3B};
    QColor muted{0x64, 0x70, 0x85};
    QColor disabled{0xA3, 0xAC, 0xBA};
    QColor accent{0x1F, 0x6F, 0x8B};
    QColor accentDark{0x18, 0x59, 0x70};
    QColor accentSoft{0xE3, 0xF0, 0xF4};
    QColor selection{0xD3, 0xE8, 0xEF};
    QColor alternate{0xF8, 0xFA, 0xFC};
    QColor danger{0xB4, 0x2B, 0x2B};
    QColor dangerSoft{0xFB, 0xEA, 0xEA};
    QColor warning{0x9A, 0x62, 0x00};
    QColor warningSoft{0xFE, 0xF4, 0xDC};
    QColor success{0x1B, 0x7A, 0x4B};
};

[[nodiscard]] const ThemeColors& themeColors();

// Font, palette, style sheet, and right-to-left layout. Calling it again does nothing.
void applyTheme(QApplication& application);

// The size of the application's font. Sizes of titles and hints, and what is measured by themePixels, follow it.
void setThemeFontSize(qreal points);
// A size of points or pixels that is right at the usual font size, at the size that the user has chosen.
[[nodiscard]] qreal themeSize(qreal size);
[[nodiscard]] inline int themePixels(int pixels) {
    return static_cast<int>(themeSize(pixels));
}

// The size of a window that is right at the usual font size, at the user's size, as far as the screen has room for it.
[[nodiscard]] QSize themeWindowSize(const QSize& size, const QWidget& window);
[[nodiscard]] QSize themeWindowSize(const QSize& size, const QSize& room);
// What a screen with that room has for the inside of a window.
[[nodiscard]] QSize themeRoomInside(const QSize& room);
// What windows may take of the window's screen. The screen of pictures and tests is one that nobody sees, and as large
// as a usual one.
[[nodiscard]] QSize themeScreenRoom(const QWidget& window);

// A style sheet with the names of colours ("@accent@") filled in, its font sizes and least heights at the user's scale.
[[nodiscard]] QString withThemeColors(QString sheet);

// The bundled Persian font; falls back to the system's own when it cannot be read.
[[nodiscard]] QFont themeFont(qreal pointSize = 10.5, QFont::Weight weight = QFont::Normal);

}  // namespace basalt::host
