// Tables as text: for the clipboard and as CSV.
#pragma once

#include <QString>
#include <span>

#include "host/screens/output_file.h"
#include "host/screens/table_content.h"

namespace basalt::host {

// The rows as lines of values separated by tabs, with a line of titles first: what spreadsheets paste. Numbers are in
// plain ASCII digits; a value with a tab, a line break or a quotation mark stands in quotation marks, its own doubled.
// OutputCancelled when it is given up.
[[nodiscard]] QString tabSeparated(const TableContent& table, std::span<const int> rows,
                                   const OutputProgress& progress = {});

// Writes UTF-8 with a byte order mark, lines ended by CR LF, values quoted where RFC 4180 asks for it. The file appears
// whole or not at all; OutputError when it cannot be written, OutputCancelled when it is given up.
void writeCsv(const TableContent& table, const QString& path, const OutputProgress& progress = {});

}  // namespace basalt::host
