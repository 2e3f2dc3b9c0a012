// Rows as lines, to compare them with other rows or with what is expected.
#pragma once

#include <string>
#include <vector>

#include "ado/rowset.h"

namespace basalt {

// Each row as its cells with "|" between; null reads as "NULL".
inline std::vector<std::string> linesOf(const RowSet& rows) {
    std::vector<std::string> lines;
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        std::string line;
        for (std::size_t column = 0; column < rows.columnCount(); ++column) {
            if (column > 0) line += "|";
            const Value value = rows.column(column).valueAt(row);
            line += isNull(value) ? "NULL" : toText(value);
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace basalt
