// An order of a table's rows in which each comes behind the row of the same table that it refers to.
#pragma once

#include <vector>

#include "ado/rowset.h"
#include "ado/schema.h"

namespace basalt::host {

// Indexes of the rows. Rows that refer to each other in a circle stand side by side; without references of a table to
// itself the order is as it was. `rows` has the table's columns, found by name.
[[nodiscard]] std::vector<std::size_t> rowOrder(const TableSchema& table, const RowSet& rows);

}  // namespace basalt::host
