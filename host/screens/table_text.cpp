#include "host/screens/table_text.h"

#include <QSaveFile>
#include <algorithm>

#include "host/screens/output_file.h"

namespace basalt::host {
namespace {

// Plain text of a value: numbers without trailing zeros, so that every program reads them.
QString plainText(const Value& value) {
    if (const auto* decimal = std::get_if<Decimal>(&value)) return QString::fromStdString(decimal->toPlainString());
    return QString::fromStdString(toText(value));
}

QString oneLine(QString text) {
    for (QChar& character : text)
        if (character == QLatin1Char('\t') || character == QLatin1Char('\n') || character == QLatin1Char('\r'))
            character = QLatin1Char(' ');
    return text;
}

QString csvValue(QString text) {
    const auto needsQuotes = [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char('"') || c == QLatin1Char('\n') || c == QLatin1Char('\r');
    };
    if (std::none_of(text.cbegin(), text.cend(), needsQuotes)) return text;
    text.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

}  // namespace

QString tabSeparated(const TableContent& table, std::span<const int> rows) {
    const auto columnCount = static_cast<int>(table.columns().size());
    QString text;
    for (int column = 0; column < columnCount; ++column) {
        if (column > 0) text += QLatin1Char('\t');
        text += oneLine(table.columns()[static_cast<std::size_t>(column)].title);
    }
    text += QLatin1Char('\n');
    for (const int row : rows) {
        for (int column = 0; column < columnCount; ++column) {
            if (column > 0) text += QLatin1Char('\t');
            text += oneLine(plainText(table.value(row, column)));
        }
        text += QLatin1Char('\n');
    }
    return text;
}

void writeCsv(const TableContent& table, const QString& path) {
    QSaveFile file(path);
    const auto fail = [&] { outputFails(path, file.errorString()); };
    if (!file.open(QIODevice::WriteOnly)) fail();
    const auto columnCount = static_cast<int>(table.columns().size());
    QByteArray line("\xEF\xBB\xBF");
    for (int row = -1; row < table.rowCount(); ++row) {
        for (int column = 0; column < columnCount; ++column) {
            if (column > 0) line += ',';
            const QString text =
                row < 0 ? table.columns()[static_cast<std::size_t>(column)].title : plainText(table.value(row, column));
            line += csvValue(text).toUtf8();
        }
        line += "\r\n";
        if (file.write(line) != line.size()) fail();
        line.clear();
    }
    if (!file.commit()) fail();
}

}  // namespace basalt::host
