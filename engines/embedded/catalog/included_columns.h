// The INCLUDE of an index. SQLite has no such columns: where the index is not unique they stand behind its key, so that
// it holds them as well; which they are is kept aside.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

// `stored` is the index by SQLite's name.
void keepIncludedColumns(SqliteDatabase& database, const Table& table, std::string_view stored,
                         const std::vector<std::string>& columns);
// Empty when the index includes none.
[[nodiscard]] std::vector<std::string> includedColumns(SqliteDatabase& database, const Table& table,
                                                       std::string_view stored);
void forgetIncludedColumns(SqliteDatabase& database, const Table& table, std::string_view stored);

// Of all indexes of the table.
[[nodiscard]] std::vector<std::string> includedColumns(SqliteDatabase& database, const Table& table);

}  // namespace basalt::embedded
