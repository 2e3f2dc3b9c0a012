#include "host/screens/number_room.h"

#include <QSet>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "host/screens/persian_digits.h"
#include "host/screens/table_content.h"

namespace basalt::host {
namespace {

constexpr int kMostMarks = 4;

// Of ten, as far as 64 bits go.
constexpr std::array<std::int64_t, 19> kPowers = [] {
    std::array<std::int64_t, 19> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i)
        powers[i] = powers[i - 1] * 10;
    return powers;
}();

// The exponent of the highest power.
constexpr int mostDigits(std::int64_t) {
    return static_cast<int>(kPowers.size()) - 1;
}
constexpr int mostDigits(Int128) {
    return kMaxDecimalDigits;
}
std::int64_t powerFor(std::int64_t, int exponent) {
    return kPowers[static_cast<std::size_t>(exponent)];
}
Int128 powerFor(Int128, int exponent) {
    return powerOfTen(exponent);
}

// Digits become one and the same, so that shapes of different numbers are equal.
QString shapeOf(QString text, QChar digit) {
    for (QChar& character : text)
        if (character.isDigit()) character = digit;
    return text;
}

}  // namespace

NumberShapes::NumberShapes(const DisplayFormat& format) : format_(format) {
    for (auto& lengths : fractions_)
        lengths.fill(kUnseen);
}

template <class Integer>
void NumberShapes::addMagnitude(Integer magnitude, bool negative, int scale, int most) {
    // Rounding may add a digit before the point.
    const Integer unit = powerFor(Integer{}, scale - most);
    if (unit > 1) magnitude += unit / 2;
    // Prices of one column are of much the same length.
    int before = lastBefore_;
    while (scale + before <= mostDigits(Integer{}) && magnitude >= powerFor(Integer{}, scale + before))
        ++before;
    while (before > 0 &&
           (scale + before - 1 > mostDigits(Integer{}) || magnitude < powerFor(Integer{}, scale + before - 1)))
        --before;
    lastBefore_ = before;
    int& after = fractions_[negative ? 1 : 0][static_cast<std::size_t>(before)];
    if (after == kUnseen) after = 0;
    while (after < most && magnitude % powerFor(Integer{}, scale - after) >= unit)
        ++after;
}

void NumberShapes::add(Int128 coefficient, int scale) {
    const bool negative = coefficient < 0;
    const Int128 magnitude = negative ? -coefficient : coefficient;
    const int most = format_.isEmpty() ? scale : std::min(scale, format_.decimals());
    // Most amounts fit into 64 bits, whose divisions cost a tenth; half of the bound leaves room for rounding.
    const auto narrow = static_cast<std::int64_t>(magnitude);
    if (narrow == magnitude && narrow < std::numeric_limits<std::int64_t>::max() / 2 &&
        scale < static_cast<int>(kPowers.size())) {
        addMagnitude(narrow, negative, scale, most);
    } else {
        addMagnitude(magnitude, negative, scale, most);
    }
}

QStringList NumberShapes::texts() const {
    QStringList all;
    for (const bool negative : {false, true}) {
        const auto& lengths = fractions_[negative ? 1 : 0];
        for (std::size_t before = 0; before < lengths.size(); ++before) {
            if (lengths[before] == kUnseen) continue;
            const int after = std::min(lengths[before], kMaxDecimalDigits - static_cast<int>(before));
            const int digits = std::clamp(static_cast<int>(before) + after, 1, kMaxDecimalDigits);
            const Int128 nines = powerOfTen(digits - 1) - 1 + powerOfTen(digits - 1) * 8;
            all.push_back(screenNumber(format_.text(Decimal(negative ? -nines : nines, std::max(0, after)))));
        }
    }
    return all;
}

qreal roomFor(const QStringList& texts, const QFontMetricsF& metrics) {
    if (texts.isEmpty()) return 0;
    const auto widest = [&](char16_t zero) {
        QChar digit(zero);
        for (char16_t other = zero; other < zero + 10; ++other)
            if (metrics.horizontalAdvance(QChar(other)) > metrics.horizontalAdvance(digit)) digit = QChar(other);
        return digit;
    };
    const QChar digit = widest(showsPersianDigits() ? u'\u06F0' : u'0');
    qreal room = 0;
    for (const QString& text : texts)
        room = std::max(room, metrics.horizontalAdvance(shapeOf(text, digit)));
    return std::ceil(room);
}

QStringList shownShapes(const TableContent& table, int column) {
    QSet<QString> shapes;
    for (int row = 0; row < table.rowCount(); ++row)
        shapes.insert(shapeOf(table.shown(row, column), QChar(u'0')));
    return shapes.values();
}

QString fittingText(const QString& text, bool number, const QFontMetricsF& metrics, qreal width) {
    if (metrics.horizontalAdvance(text) <= width) return text;
    if (!number) return metrics.elidedText(text, Qt::ElideRight, width);
    const qreal mark = metrics.horizontalAdvance(QLatin1Char('#'));
    const int marks = mark > 0 ? static_cast<int>(width / mark) : 1;
    return QString(std::clamp(marks, 1, kMostMarks), QLatin1Char('#'));
}

}  // namespace basalt::host
