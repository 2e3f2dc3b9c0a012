// A table as an XLSX workbook: right-to-left sheet, numbers as numbers with their formats, dates as dates.
#pragma once

#include <QString>

#include "host/screens/table_content.h"

namespace basalt::host {

// More rows than a sheet holds go on in further sheets. Numbers of more than 15 digits are written as text, because a
// spreadsheet would round them. The file appears whole or not at all; OutputError when it cannot be written.
void writeWorkbook(const TableContent& table, const QString& path);

}  // namespace basalt::host
