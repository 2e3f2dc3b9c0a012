// The room that numbers take. A number is shown as a whole or not at all: half of one reads as another number.
//
//   NumberShapes shapes(format);
//   for (...) shapes.add(decimal);                         // cheap: no text is made
//   const qreal width = roomFor(shapes.texts(), metrics);
//   painter.drawText(room, fittingText(text, true, metrics, room.width()));
#pragma once

#include <QFontMetricsF>
#include <QString>
#include <QStringList>
#include <array>

#include "ado/decimal.h"
#include "host/screens/display_format.h"

namespace basalt::host {

class TableContent;

// What numbers look like in a display format, as far as their length goes: how many digits stand before the point and
// how many after it.
class NumberShapes {
public:
    // The format is lent.
    explicit NumberShapes(const DisplayFormat& format);

    void add(const Decimal& number) { add(number.coefficient(), number.scale()); }
    void add(Int128 coefficient, int scale);
    // For each length before the point, the longest text as it is shown.
    [[nodiscard]] QStringList texts() const;

private:
    static constexpr int kUnseen = -1;

    template <class Integer>
    void addMagnitude(Integer magnitude, bool negative, int scale, int most);

    int lastBefore_ = 0;
    const DisplayFormat& format_;
    // The most digits after the point by the number of digits before it, of positive and of negative numbers.
    std::array<std::array<int, kMaxDecimalDigits + 2>, 2> fractions_{};
};

// The width of the widest of the texts when each of their digits is the font's widest, rounded up.
[[nodiscard]] qreal roomFor(const QStringList& texts, const QFontMetricsF& metrics);

// Texts of which one is as long as the longest number in a column of a table, read from all its rows.
[[nodiscard]] QStringList shownShapes(const TableContent& table, int column);

// The text as it stands in that width: a longer one ends in an ellipsis, but in place of a number there are "####".
[[nodiscard]] QString fittingText(const QString& text, bool number, const QFontMetricsF& metrics, qreal width);

}  // namespace basalt::host
