// A table as an XLSX workbook: right-to-left sheet, numbers as numbers with their formats, dates as dates.
#pragma once

#include <QString>

#include "host/screens/output_file.h"
#include "host/screens/table_content.h"

namespace basalt::host {

// The rows of a sheet in the file format, the row of titles among them.
inline constexpr int kSheetRows = 1'048'576;

// More rows than a sheet holds go on in further sheets, each under the titles. Numbers of more than 15 digits are
// written as text, because a spreadsheet would round them. The sheets bear the table's title, as far as names of sheets
// go, from the second one on with their number. `sheetRows` is at least 2. The file appears whole or not at all;
// OutputError when it cannot be written, OutputCancelled when it is given up.
void writeWorkbook(const TableContent& table, const QString& path, const OutputProgress& progress = {},
                   int sheetRows = kSheetRows);

}  // namespace basalt::host
