// Titles on several lines.
//
//   const qreal width = widthForLines(title, metrics, 2);            // of a column whose title has two lines
//   for (const QString& line : wrappedLines(title, font, width, 2)) draw(line);
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QStringList>

namespace basalt::host {

// The text broken at blanks, and within a word that is longer than a line. What has no room in so many lines, at least
// one, is left out and the last line ends in three dots.
[[nodiscard]] QStringList wrappedLines(const QString& text, const QFont& font, qreal width, int most);

// A width at which that leaves the text on one line, not much above the least. Letters whose tails reach under their
// neighbours want more at the end of a line than metrics tell.
[[nodiscard]] qreal widthForOneLine(const QString& text, const QFont& font);

// The least width at which the text takes no more than so many lines, broken at blanks only; rounded up.
[[nodiscard]] qreal widthForLines(const QString& text, const QFontMetricsF& metrics, int lines);

}  // namespace basalt::host
