// The indexes of a table that CREATE INDEX has made, as they have to be made again for the same table.
#pragma once

#include <string>
#include <vector>

#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

struct StoredIndex {
    std::string name;  // SQLite's
    std::string sql;
    std::vector<std::string> columns;  // of its key
    std::string condition;             // T-SQL; empty when it holds all rows
    std::vector<std::string> included;
};

// Those of the engine's own beside them, which keep NULL single, too (keepsNullSingle).
[[nodiscard]] std::vector<StoredIndex> indexesOf(const Table& table, SqliteDatabase& database);

[[nodiscard]] bool keepsNullSingle(const StoredIndex& index);

}  // namespace basalt::embedded
