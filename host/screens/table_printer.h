// Tables on paper: right to left, titles on every page, page numbers.
#pragma once

#include <QPrinter>

#include "host/screens/table_content.h"

namespace basalt::host {

// OutputError when the table has more rows than a print can sensibly hold.
void checkPrintable(const TableContent& table);

// Draws the table on the printer's pages. `footer` stands beside the page number.
void paintTable(const TableContent& table, const QString& footer, QPrinter& printer);

// The same pages as a PDF file; OutputError when it cannot be written.
void writePdf(const TableContent& table, const QString& footer, const QString& path);

}  // namespace basalt::host
