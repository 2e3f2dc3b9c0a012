#include "host/screens/table_text.h"

#include <QFile>
#include <algorithm>

#include "package/screens/exact_text.h"

namespace basalt::host {
namespace {

constexpr int kRowsBetweenQuestions = 128;

// Plain text of a value: numbers without trailing zeros, so that every program reads them.
QString plainText(const Value& value) {
    if (const auto* decimal = std::get_if<Decimal>(&value)) return QString::fromStdString(decimal->toPlainString());
    return exactText(toText(value));
}

// As a cell between such separators: in quotes when a reader would take it for several cells or lines.
QString cellText(QString text, QChar separator) {
    const auto needsQuotes = [separator](QChar c) {
        return c == separator || c == QLatin1Char('"') || c == QLatin1Char('\n') || c == QLatin1Char('\r');
    };
    if (std::none_of(text.cbegin(), text.cend(), needsQuotes)) return text;
    text.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

}  // namespace

QString tabSeparated(const TableContent& table, std::span<const int> rows, const OutputProgress& progress) {
    const auto columnCount = static_cast<int>(table.columns().size());
    QString text;
    for (int column = 0; column < columnCount; ++column) {
        if (column > 0) text += QLatin1Char('\t');
        text += cellText(table.columns()[static_cast<std::size_t>(column)].title, QLatin1Char('\t'));
    }
    text += QLatin1Char('\n');
    int done = 0;
    for (const int row : rows) {
        if (done % kRowsBetweenQuestions == 0) askToGoOn(progress, done, static_cast<int>(rows.size()));
        ++done;
        for (int column = 0; column < columnCount; ++column) {
            if (column > 0) text += QLatin1Char('\t');
            text += cellText(plainText(table.value(row, column)), QLatin1Char('\t'));
        }
        text += QLatin1Char('\n');
    }
    return text;
}

void writeCsv(const TableContent& table, const QString& path, const OutputProgress& progress) {
    writeOutputFile(path, [&](const QString& draft) {
        QFile file(draft);
        if (!file.open(QIODevice::WriteOnly)) return false;
        const auto columnCount = static_cast<int>(table.columns().size());
        QByteArray line("\xEF\xBB\xBF");
        for (int row = -1; row < table.rowCount(); ++row) {
            if (row % kRowsBetweenQuestions == 0) askToGoOn(progress, row, table.rowCount());
            for (int column = 0; column < columnCount; ++column) {
                if (column > 0) line += ',';
                const QString text = row < 0 ? table.columns()[static_cast<std::size_t>(column)].title
                                             : plainText(table.value(row, column));
                line += cellText(text, QLatin1Char(',')).toUtf8();
            }
            line += "\r\n";
            if (file.write(line) != line.size()) return false;
            line.clear();
        }
        return file.flush();
    });
}

}  // namespace basalt::host
