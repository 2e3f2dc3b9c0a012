#include "host/screens/marked_statement.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextOption>
#include <algorithm>

#include "ado/display_width.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

// Where the character stands before which that many columns are taken; the end of the line when there are fewer.
qsizetype placeOf(const QString& line, std::size_t columns) {
    std::size_t taken = 0;
    qsizetype at = 0;
    while (at < line.size()) {
        const bool pair = at + 1 < line.size() && line[at].isHighSurrogate() && line[at + 1].isLowSurrogate();
        const char32_t character = pair ? QChar::surrogateToUcs4(line[at], line[at + 1]) : line[at].unicode();
        const std::size_t width = displayWidth(character);
        // What takes no column belongs to the character before it.
        if (taken >= columns && width > 0) break;
        taken += width;
        at += pair ? 2 : 1;
    }
    return at;
}

}  // namespace

MarkedStatement markedStatement(const QString& message) {
    static const QRegularExpression marks(QStringLiteral("^ *\\^+$"));
    static const QRegularExpression place(QStringLiteral("^Line \\d+, column \\d+:$"));
    QStringList lines = message.split(QLatin1Char('\n'));
    for (qsizetype row = 2; row < lines.size(); ++row) {
        if (!marks.match(lines[row]).hasMatch() || !place.match(lines[row - 2]).hasMatch()) continue;
        const QString& line = lines[row - 1];
        const auto first = static_cast<std::size_t>(lines[row].indexOf(QLatin1Char('^')));
        const qsizetype begin = first == 0 ? 0 : placeOf(line, first);
        const qsizetype end = placeOf(line, static_cast<std::size_t>(lines[row].size()));
        qsizetype before = 0;
        for (qsizetype each = 0; each < row - 1; ++each)
            before += lines[each].size() + 1;
        // Behind the end of the statement there is nothing to underline but its last character.
        const bool behind = begin >= line.size();
        const qsizetype shown = behind && begin > 0 ? begin - 1 : begin;
        const qsizetype length = std::max<qsizetype>(end - shown, line.isEmpty() ? 0 : 1);
        lines.removeAt(row);
        return {lines.join(QLatin1Char('\n')), static_cast<int>(before + shown), static_cast<int>(length)};
    }
    return {message, 0, 0};
}

void showMarked(QPlainTextEdit& edit, const QString& message) {
    const MarkedStatement marked = markedStatement(message);
    edit.setLayoutDirection(Qt::LeftToRight);
    // A line that begins with a Persian word is a line of a statement all the same.
    QTextOption option = edit.document()->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    edit.document()->setDefaultTextOption(option);
    edit.setPlainText(marked.text);
    QList<QTextEdit::ExtraSelection> selections;
    if (marked.length > 0) {
        QTextEdit::ExtraSelection wrong;
        wrong.format.setBackground(themeColors().dangerSoft);
        wrong.format.setForeground(themeColors().danger);
        wrong.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        wrong.format.setUnderlineColor(themeColors().danger);
        wrong.cursor = QTextCursor(edit.document());
        wrong.cursor.setPosition(marked.begin);
        wrong.cursor.setPosition(marked.begin + marked.length, QTextCursor::KeepAnchor);
        selections.append(wrong);
    }
    edit.setExtraSelections(selections);
}

}  // namespace basalt::host
