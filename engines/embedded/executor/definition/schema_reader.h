// The tables and modules of the database for tools outside of the engine.
#pragma once

#include "ado/schema.h"
#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

// Without temporary tables and the engine's own.
[[nodiscard]] DatabaseSchema readSchema(SqliteDatabase& database, Catalog& catalog);

// The T-SQL condition of a filtered index, which SQLite keeps in its own words only; `stored` as
// storedIndexName.
void keepIndexCondition(SqliteDatabase& database, const Table& table, std::string_view stored, std::string_view text);
[[nodiscard]] std::string indexCondition(SqliteDatabase& database, const Table& table, std::string_view stored);
void forgetIndexCondition(SqliteDatabase& database, const Table& table, std::string_view stored);

}  // namespace basalt::embedded
