// Any number of SQLite's values in one: t_packed(a, b, ...) gives bytes that hold its arguments, each of its own kind.
#pragma once

#include <sqlite3.h>

#include <span>
#include <vector>

#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// Makes t_packed known to the database.
void addPackedValues(SqliteDatabase& database);

// The values that the results of t_packed hold, in their order.
[[nodiscard]] std::vector<HeldValue> unpacked(SqliteDatabase& database, std::span<sqlite3_value* const> packs);

}  // namespace basalt::embedded
