// Writes the cells of a workbook's first sheet as text, one line a row, so that a test can compare them with a file:
// numbers as they stand in the workbook with their format behind them, texts in quotation marks.
//
//   workbook_text report.xlsx report.txt
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <cstdio>
#include <exception>

#include "tests/support/unzipped.h"

namespace {

QString part(const std::map<std::string, std::string>& files, const char* name) {
    return QString::fromStdString(files.at(name));
}

// By the number of a cell's style.
QStringList formats(const QString& styles) {
    QMap<QString, QString> codes;
    static const QRegularExpression code(QStringLiteral("<numFmt numFmtId=\"(\\d+)\" formatCode=\"([^\"]*)\""));
    for (const auto& match : code.globalMatch(styles))
        codes[match.captured(1)] = match.captured(2);
    QStringList all;
    static const QRegularExpression style(QStringLiteral("<xf numFmtId=\"(\\d+)\""));
    const QString cells = styles.mid(styles.indexOf(QStringLiteral("<cellXfs")));
    for (const auto& match : style.globalMatch(cells.left(cells.indexOf(QStringLiteral("</cellXfs>")))))
        all.append(codes.value(match.captured(1)));
    return all;
}

QString plain(QString text) {
    return text.replace(QStringLiteral("&quot;"), QStringLiteral("\""))
        .replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"));
}

QString cellText(const QRegularExpressionMatch& cell, const QStringList& formats) {
    static const QRegularExpression style(QStringLiteral(" s=\"(\\d+)\""));
    static const QRegularExpression value(QStringLiteral("<v>([^<]*)</v>"));
    static const QRegularExpression text(QStringLiteral("<t[^>]*>([^<]*)</t>"));
    const QString attributes = cell.captured(2);
    const QString inside = cell.captured(3);
    const QString place = cell.captured(1) + QLatin1Char(' ');
    if (attributes.contains(QStringLiteral("t=\"inlineStr\"")))
        return place + QLatin1Char('"') + plain(text.match(inside).captured(1)) + QLatin1Char('"');
    const QString format = formats.value(style.match(attributes).captured(1).toInt());
    return place + value.match(inside).captured(1) + (format.isEmpty() ? QString() : QStringLiteral(" as ") + format);
}

void write(const QString& workbook, const QString& target) {
    QFile source(workbook);
    if (!source.open(QIODevice::ReadOnly)) throw std::runtime_error("the workbook cannot be read");
    const auto files = basalt::unzipped(source.readAll());
    const QStringList known = formats(part(files, "xl/styles.xml"));
    QString lines;
    static const QRegularExpression row(QStringLiteral("<row [^>]*>(.*?)</row>"),
                                        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression cell(QStringLiteral("<c r=\"([A-Z]+\\d+)\"([^>/]*)>(.*?)</c>"),
                                         QRegularExpression::DotMatchesEverythingOption);
    for (const auto& line : row.globalMatch(part(files, "xl/worksheets/sheet1.xml"))) {
        QStringList cells;
        for (const auto& match : cell.globalMatch(line.captured(1)))
            cells.append(cellText(match, known));
        lines += cells.join(QStringLiteral(" | ")) + QLatin1Char('\n');
    }
    QFile result(target);
    if (!result.open(QIODevice::WriteOnly) || result.write(lines.toUtf8()) < 0)
        throw std::runtime_error("the text cannot be written");
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: workbook_text WORKBOOK TEXT\n");
        return 2;
    }
    try {
        write(QString::fromLocal8Bit(arguments[1]), QString::fromLocal8Bit(arguments[2]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "workbook_text: %s\n", error.what());
        return 1;
    }
    return 0;
}
