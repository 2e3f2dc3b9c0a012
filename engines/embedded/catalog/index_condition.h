// The T-SQL condition of a filtered index, which SQLite keeps in its own words only. `stored` is the index by SQLite's
// name.
#pragma once

#include <string>
#include <string_view>

#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

void keepIndexCondition(SqliteDatabase& database, const Table& table, std::string_view stored, std::string_view text);
// Empty when the index holds every row.
[[nodiscard]] std::string indexCondition(SqliteDatabase& database, const Table& table, std::string_view stored);
void forgetIndexCondition(SqliteDatabase& database, const Table& table, std::string_view stored);

}  // namespace basalt::embedded
