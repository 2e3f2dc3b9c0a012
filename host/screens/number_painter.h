// Paints numbers, dates and times of a list glyph by glyph. A page has hundreds of them, and what makes it slow to lay
// a text out they do not need: their digits and marks stand from left to right, each as wide as it is alone.
//
//   if (!numbers.paint(painter, room, text, font)) painter.drawText(...);
#pragma once

#include <QFont>
#include <QList>
#include <QPointF>
#include <QRawFont>
#include <QStringView>
#include <array>
#include <cstddef>

class QPainter;
class QRect;

namespace basalt::host {

class NumberPainter {
public:
    // Paints the text at the right edge of the room and in the middle of its height, to the pixel as QPainter::drawText
    // would, in the painter's pen. Paints nothing and returns false where the text has to be laid out: when it is more
    // than digits with single marks between them, behind a sign or not; when the font lacks one of its characters; when
    // it is wider than the room; and on what is not made of pixels, such as paper, which wants texts.
    bool paint(QPainter& painter, const QRect& room, QStringView text, const QFont& font);

private:
    static constexpr std::size_t kCharacters = 27;

    struct Glyph {
        quint32 index = 0;  // in the font; 0 where it has none
        qreal width = 0;
    };

    void read(const QFont& font);
    // Fills the members below; false for a text that has to be laid out.
    bool place(QStringView text);

    QFont font_;
    QRawFont glyphsOf_;
    qreal ascent_ = 0;
    qreal height_ = 0;
    std::array<Glyph, kCharacters> glyphs_;

    QList<quint32> indexes_;
    QList<QPointF> places_;
    qreal width_ = 0;
};

}  // namespace basalt::host
