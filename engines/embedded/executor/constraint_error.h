// What SQL Server says when a key, foreign key, check or NOT NULL rule refuses a change.
#pragma once

#include <string_view>

#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/executor/plan.h"

namespace basalt::embedded {

// `code` is SQLite's extended result code of the failed step.
[[nodiscard]] DatabaseError constraintError(SqliteDatabase& database, Catalog& catalog, const Plan& plan, int code);

// Throws 1505: rows that are there already have the same key under a new index or constraint.
[[noreturn]] void throwDuplicatesUnder(std::string_view table, std::string_view index);

// Whether two spellings name the same table.
[[nodiscard]] bool sameTable(std::string_view a, std::string_view b);

}  // namespace basalt::embedded
