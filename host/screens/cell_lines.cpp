#include "host/screens/cell_lines.h"

#include <QTextBoundaryFinder>
#include <algorithm>
#include <cmath>

namespace basalt::host {
namespace {

// What metrics round away must not cost a word its line.
constexpr qreal kTolerance = 1;
constexpr std::size_t kMostWords = 50'000;  // that are remembered

bool isBlank(QChar character) {
    return character.isSpace() && character != QChar::Nbsp;
}

// Characters that neither join nor make room for each other, so that their widths add up; barcodes are made of them and
// are too many to remember.
bool standsAlone(QChar character) {
    return character.isDigit() || character == QLatin1Char('(') || character == QLatin1Char(')');
}

// Behind the last character of the word that begins there.
qsizetype endOfWord(QStringView text, qsizetype begin) {
    qsizetype end = begin + 1;
    while (end < text.size() && !isBlank(text[end]) &&
           (text[end - 1] != QLatin1Char(')') || text[end] != QLatin1Char('(')))
        ++end;
    return end;
}

qsizetype endOfBlanks(QStringView text, qsizetype begin) {
    while (begin < text.size() && isBlank(text[begin]))
        ++begin;
    return begin;
}

}  // namespace

CellLines::CellLines(const QFont& font) : metrics_(font), blank_(metrics_.horizontalAdvance(QLatin1Char(' '))) {}

qreal CellLines::digitWidth(QChar digit) {
    const auto [found, isNew] = digits_.try_emplace(digit.unicode());
    if (isNew) found->second = metrics_.horizontalAdvance(digit);
    return found->second;
}

qreal CellLines::measured(QStringView word) {
    if (std::all_of(word.begin(), word.end(), standsAlone)) {
        qreal width = 0;
        for (const QChar character : word)
            width += digitWidth(character);
        return width;
    }
    if (const auto found = words_.find(word); found != words_.end()) return found->second;
    if (words_.size() >= kMostWords) words_.clear();
    const QString text = word.toString();
    return words_.emplace(text, metrics_.horizontalAdvance(text)).first->second;
}

qsizetype CellLines::fitting(QStringView word, qreal width) const {
    const QString text = word.toString();
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    qsizetype fits = 0;
    for (qsizetype next = characters.toNextBoundary(); next > 0; next = characters.toNextBoundary()) {
        if (fits > 0 && metrics_.horizontalAdvance(text.left(next)) > width + kTolerance) break;
        fits = next;
    }
    return std::max<qsizetype>(1, fits);
}

void CellLines::eachLine(QStringView text, qreal width, const std::function<bool(qsizetype, qsizetype)>& take) {
    qsizetype begin = endOfBlanks(text, 0);
    qsizetype end = begin;
    qreal used = 0;
    qsizetype word = begin;
    while (word < text.size()) {
        const qsizetype behind = endOfWord(text, word);
        const qreal own = measured(text.mid(word, behind - word));
        const qreal longer = used + (word > end ? blank_ : 0) + own;
        if (end > begin && longer > width + kTolerance) {
            if (!take(begin, end)) return;
            begin = word;
            used = own;
        } else {
            used = longer;
        }
        end = behind;
        while (used > width + kTolerance) {
            const qsizetype cut = begin + fitting(text.mid(begin, end - begin), width);
            if (cut >= end) break;
            if (!take(begin, cut)) return;
            begin = cut;
            used = measured(text.mid(begin, end - begin));
        }
        word = endOfBlanks(text, behind);
    }
    if (end > begin) (void)take(begin, end);
}

int CellLines::count(const QString& text, qreal width) {
    int lines = 0;
    eachLine(text, width, [&](qsizetype, qsizetype) {
        ++lines;
        return true;
    });
    return std::max(1, lines);
}

QStringList CellLines::broken(const QString& text, qreal width, int most) {
    QStringList lines;
    qsizetype last = 0;
    eachLine(text, width, [&](qsizetype begin, qsizetype end) {
        if (lines.size() == most) {
            lines.back() = metrics_.elidedText(text.mid(last), Qt::ElideRight, width);
            return false;
        }
        lines += text.mid(begin, end - begin);
        last = begin;
        return true;
    });
    if (lines.isEmpty()) lines += QString();
    return lines;
}

qreal CellLines::widestWord(const QString& text) {
    qreal widest = 0;
    const QStringView view(text);
    for (qsizetype word = endOfBlanks(view, 0); word < view.size();) {
        const qsizetype behind = endOfWord(view, word);
        widest = std::max(widest, measured(view.mid(word, behind - word)));
        word = endOfBlanks(view, behind);
    }
    return std::ceil(widest);
}

}  // namespace basalt::host
