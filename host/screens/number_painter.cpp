#include "host/screens/number_painter.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPaintEngine>
#include <QPainter>
#include <QRect>
#include <string_view>

namespace basalt::host {
namespace {

constexpr std::u16string_view kDigits = u"0123456789۰۱۲۳۴۵۶۷۸۹";
// The sign, and the marks within amounts, dates and times; between two digits each of them is read with the digits,
// elsewhere some stand on the other side of them.
constexpr std::u16string_view kMarks = u"-.,٫٬/:";

}  // namespace

void NumberPainter::read(const QFont& font) {
    font_ = font;
    glyphsOf_ = QRawFont::fromFont(font);
    const QFontMetricsF metrics(font);
    ascent_ = metrics.ascent();
    height_ = metrics.height();
    std::u16string all(kDigits);
    all += kMarks;
    static_assert(kDigits.size() + kMarks.size() == kCharacters);
    const QList<quint32> indexes = glyphsOf_.glyphIndexesForString(QString::fromStdU16String(all));
    const QList<QPointF> widths = glyphsOf_.advancesForGlyphIndexes(indexes);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto at = static_cast<qsizetype>(i);
        glyphs_[i] = at < widths.size() ? Glyph{indexes[at], widths[at].x()} : Glyph{};
    }
}

bool NumberPainter::place(QStringView text) {
    indexes_.clear();
    places_.clear();
    width_ = 0;
    bool afterDigit = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t character = text[i].unicode();
        std::size_t at = kDigits.find(character);
        const bool digit = at != std::u16string_view::npos;
        if (!digit) {
            const std::size_t mark = kMarks.find(character);
            const bool sign = i == 0 && character == u'-';
            if (mark == std::u16string_view::npos || !(sign || afterDigit)) return false;
            at = kDigits.size() + mark;
        }
        if (glyphs_[at].index == 0) return false;
        indexes_.append(glyphs_[at].index);
        places_.append(QPointF(width_, 0));
        width_ += glyphs_[at].width;
        afterDigit = digit;
    }
    return afterDigit;
}

bool NumberPainter::paint(QPainter& painter, const QRect& room, QStringView text, const QFont& font) {
    if (painter.paintEngine()->type() != QPaintEngine::Raster) return false;
    if (!glyphsOf_.isValid() || font != font_) read(font);
    if (!place(text) || width_ > room.width()) return false;
    QGlyphRun run;
    run.setRawFont(glyphsOf_);
    run.setGlyphIndexes(indexes_);
    run.setPositions(places_);
    const qreal left = room.x() + room.width() - width_;
    const qreal top = room.y() + (room.height() - height_) / 2;
    painter.drawGlyphRun(QPointF(left, top + ascent_), run);
    return true;
}

}  // namespace basalt::host
