// Tables on paper: right to left, titles on every page, page numbers.
#pragma once

#include <QFontMetricsF>
#include <QPrinter>
#include <vector>

#include "host/screens/table_content.h"

namespace basalt::host {

// OutputError when the table has more rows than a print can sensibly hold.
void checkPrintable(const TableContent& table);

// Draws the table on the printer's pages. `footer` stands beside the page number.
void paintTable(const TableContent& table, const QString& footer, QPrinter& printer);

// The lines above a printed table as rows of that width: three lines or fewer a row each, more of them side by side.
[[nodiscard]] std::vector<QString> headRows(const std::vector<QString>& lines, const QFontMetricsF& metrics,
                                            qreal width);

// The same pages as a PDF file; OutputError when it cannot be written.
void writePdf(const TableContent& table, const QString& footer, const QString& path);

}  // namespace basalt::host
