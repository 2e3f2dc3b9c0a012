// The indexes of a table that CREATE INDEX makes, as they have to be made again for the same table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

struct StoredIndex {
    std::string name;  // SQLite's
    std::string sql;
    bool unique = false;
    std::vector<std::string> columns;  // of its key
    std::string condition;             // T-SQL; empty when it holds all rows
    std::vector<std::string> included;
};

// Without the guards beside them (catalog/null_guard.h).
[[nodiscard]] std::vector<StoredIndex> indexesOf(const Table& table, SqliteDatabase& database);

// With its guard. Throws 1505 when rows have the same key. Not atomic by itself.
void create(const StoredIndex& index, const Table& table, SqliteDatabase& database, Catalog& catalog);

// Keeps NULL single in the columns of a unique index or constraint. `condition`: SQLite's SQL; empty for one that holds
// all rows. A table without NULLs there pays no more than a look at its rows as they are written.
void createNullGuard(const Table& table, std::string_view index, const std::vector<std::string>& columns,
                     const std::string& condition, SqliteDatabase& database);

}  // namespace basalt::embedded
