// Numbers that are painted glyph by glyph look like laid out ones to the pixel, and other texts are left alone.
#include "host/screens/number_painter.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <array>
#include <cmath>
#include <functional>

#include "host/screens/theme.h"
#include "tests/host_screens/painted_text.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

// Heights with a middle on a pixel and between two.
constexpr std::array kRooms{QRect(7, 3, 290, 35), QRect(0, 0, 300, 34)};

QImage painted(qreal scale, const std::function<void(QPainter&)>& paint) {
    QImage image(QSize(300, 40) * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setLayoutDirection(Qt::RightToLeft);
    paint(painter);
    return image;
}

QImage laidOut(const QString& text, const QFont& font, const QRect& room, qreal scale) {
    return painted(scale, [&](QPainter& painter) {
        painter.setFont(font);
        const bool sign = text.startsWith(QLatin1Char('-'));
        painter.drawText(room, Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine,
                         sign ? QChar(0x2066) + text + QChar(0x2069) : text);
    });
}

class PaintedNumbers : public ScreenTest {
protected:
    NumberPainter numbers;
};

TEST_F(PaintedNumbers, lookAsIfTheyWereLaidOut) {
    const QStringList texts = {QStringLiteral("۰"),
                               QStringLiteral("۱٬۲۳۴٬۵۶۷٬۸۹۰"),
                               QStringLiteral("-۱۲٬۵۰۰٫۲۵"),
                               QStringLiteral("-۰٫۰۰۰۰۰۰۰۰۱"),
                               QStringLiteral("۱۴۰۵/۰۱/۳۰"),
                               QStringLiteral("۲۳:۵۹:۰۷"),
                               QStringLiteral("۱۲-۳۴"),
                               QStringLiteral("۱۱۱۷۷۷۴۴۴"),
                               QStringLiteral("-1,234,567.890"),
                               QStringLiteral("2026-11-22"),
                               QStringLiteral("6260000000017")};
    for (const QFont& font : {themeFont(), themeFont(8), themeFont(10.5, QFont::Bold), themeFont(17, QFont::Medium)}) {
        for (const qreal scale : {1.0, 1.25, 2.0}) {
            for (const QString& text : texts) {
                for (const QRect& room : kRooms) {
                    const QImage own = painted(scale, [&](QPainter& painter) {
                        EXPECT_TRUE(numbers.paint(painter, room, text, font)) << text.toStdString();
                    });
                    EXPECT_EQ(own, laidOut(text, font, room, scale))
                        << text.toStdString() << ' ' << font.pointSizeF() << ' ' << scale;
                    EXPECT_NE(own, painted(scale, [](QPainter&) {})) << text.toStdString();
                }
            }
        }
    }
}

TEST_F(PaintedNumbers, areNumbersDatesAndTimesAlone) {
    for (const QString& text :
         {QString(), QStringLiteral("-"), QStringLiteral("."), QStringLiteral("--۱"), QStringLiteral("۱-"),
          QStringLiteral("۱."), QStringLiteral(".۵"), QStringLiteral("۱٬٬۲"), QStringLiteral("۱ ۲"),
          QStringLiteral("۱%"), QStringLiteral("(۱)"), QStringLiteral("1e+30"), QStringLiteral("A4"),
          QStringLiteral("####"), QStringLiteral("\u2026"), QStringLiteral("کالا"), QStringLiteral("٣"),
          QStringLiteral("\u2066-۱\u2069")}) {
        const QImage own = painted(1, [&](QPainter& painter) {
            EXPECT_FALSE(numbers.paint(painter, kRooms[0], text, themeFont())) << text.toStdString();
        });
        EXPECT_EQ(own, painted(1, [](QPainter&) {})) << text.toStdString();
    }
}

TEST_F(PaintedNumbers, fitIntoTheirRoomAndAreTextsOnPaper) {
    const QString text = QStringLiteral("۱۲۳۴۵");
    const int width = static_cast<int>(std::ceil(QFontMetricsF(themeFont()).horizontalAdvance(text)));
    painted(1, [&](QPainter& painter) {
        EXPECT_TRUE(numbers.paint(painter, QRect(0, 0, width, 30), text, themeFont()));
        EXPECT_FALSE(numbers.paint(painter, QRect(0, 0, width - 1, 30), text, themeFont()));
    });
    PaintedText paper;
    QPainter painter(&paper);
    EXPECT_FALSE(numbers.paint(painter, kRooms[0], text, themeFont()));
}

}  // namespace
}  // namespace basalt::host
