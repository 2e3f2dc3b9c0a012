#include "host/screens/wrapped_text.h"

#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace basalt::host {
namespace {

constexpr qreal kEndless = 1'000'000;

QTextOption breaking() {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

// How many lines the words take at that width; a word wider than it takes a line of its own.
int linesAt(const QStringList& words, const QFontMetricsF& metrics, qreal width) {
    int lines = 1;
    QString line;
    for (const QString& word : words) {
        const QString longer = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
        if (line.isEmpty() || metrics.horizontalAdvance(longer) <= width) {
            line = longer;
        } else {
            line = word;
            ++lines;
        }
    }
    return lines;
}

}  // namespace

QStringList wrappedLines(const QString& text, const QFont& font, qreal width, int most) {
    QTextLayout layout(text, font);
    layout.setTextOption(breaking());
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const QString words = text.mid(line.textStart(), line.textLength()).trimmed();
        const bool last = lines.size() + 1 >= most;
        const QString rest = last ? text.mid(line.textStart()).trimmed() : words;
        lines += rest == words ? words : QFontMetricsF(font).elidedText(rest, Qt::ElideRight, width);
        if (last) break;
    }
    layout.endLayout();
    return lines;
}

qreal widthForOneLine(const QString& text, const QFont& font) {
    if (text.isEmpty()) return 0;
    QTextLayout layout(text, font);
    layout.setTextOption(breaking());
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(kEndless);
    layout.endLayout();
    // More than rounded up: what a sum or a difference of widths loses must not cost a letter.
    return std::floor(line.naturalTextWidth()) + 1;
}

qreal widthForLines(const QString& text, const QFontMetricsF& metrics, int lines) {
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    qreal low = 0;
    for (const QString& word : words)
        low = std::max(low, metrics.horizontalAdvance(word));
    qreal high = std::max(low, metrics.horizontalAdvance(text));
    if (linesAt(words, metrics, low) <= lines) return std::ceil(low);
    while (high - low > 0.5) {
        const qreal middle = (low + high) / 2;
        (linesAt(words, metrics, middle) <= lines ? high : low) = middle;
    }
    return std::ceil(high);
}

}  // namespace basalt::host
