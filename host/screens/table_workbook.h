// A table as an XLSX workbook: right-to-left sheet, numbers as numbers with their formats, dates as dates.
#pragma once

#include <QString>

#include "host/screens/output_file.h"
#include "host/screens/table_content.h"

namespace basalt::host {

// More rows than a sheet holds go on in further sheets. Numbers of more than 15 digits are written as text, because a
// spreadsheet would round them. The sheets bear the table's title, as far as names of
// sheets go. The file appears whole or not at all; OutputError when it cannot be written, OutputCancelled when it is
// given up.
void writeWorkbook(const TableContent& table, const QString& path, const OutputProgress& progress = {});

}  // namespace basalt::host
