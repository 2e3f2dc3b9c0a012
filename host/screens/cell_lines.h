// The texts of a table's cells on as many lines as they need. A list has a hundred thousand of them, and where its
// pages end depends on each; so every word is measured once, and a text only added up.
//
//   CellLines lines(font);
//   const int needed = lines.count(text, width);
//   for (const QString& line : lines.broken(text, width, needed)) draw(line);
//
// Lines end at blanks and between two pairs of brackets, which is how several barcodes are listed; a word that is wider
// than a line goes on on the next. No letter is left out.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QString>
#include <QStringList>
#include <functional>
#include <unordered_map>

namespace basalt::host {

class CellLines {
public:
    explicit CellLines(const QFont& font);

    // At least one.
    [[nodiscard]] int count(const QString& text, qreal width);
    // As many lines as that counts, but no more than `most`, at least one: then the last of them ends in three dots.
    [[nodiscard]] QStringList broken(const QString& text, qreal width, int most);
    // The widest of the text's words, which a line must hold so that none is broken.
    [[nodiscard]] qreal widestWord(const QString& text);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(QStringView text) const { return qHash(text); }
    };

    [[nodiscard]] qreal measured(QStringView word);
    [[nodiscard]] qreal digitWidth(QChar digit);
    // Calls with the first character of each line and the one behind its last until told to stop with false.
    void eachLine(QStringView text, qreal width, const std::function<bool(qsizetype, qsizetype)>& take);
    // How many characters of the word, at least one, a line holds.
    [[nodiscard]] qsizetype fitting(QStringView word, qreal width) const;

    QFontMetricsF metrics_;
    qreal blank_;
    std::unordered_map<QString, qreal, Hash, std::equal_to<>> words_;
    std::unordered_map<char16_t, qreal> digits_;
};

}  // namespace basalt::host
