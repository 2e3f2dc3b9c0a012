#include "engines/embedded/executor/definition/stored_index.h"

#include "engines/embedded/catalog/included_columns.h"
#include "engines/embedded/executor/definition/schema_reader.h"

namespace basalt::embedded {

std::vector<StoredIndex> indexesOf(const Table& table, SqliteDatabase& database) {
    const std::string schema = table.schemaName();
    SqliteStatement list =
        database.prepare("SELECT name, sql FROM " + schema +
                         ".sqlite_schema WHERE type = 'index' AND tbl_name = ?1 AND sql IS NOT NULL");
    list.bind(1, std::string_view(table.name));
    std::vector<StoredIndex> result;
    while (list.step())
        result.push_back({list.textAt(0), list.textAt(1), {}, {}, {}});
    list.reset();
    for (StoredIndex& index : result) {
        SqliteStatement columns =
            database.prepare("SELECT name FROM pragma_index_info(" + sqlText(index.name) + ", '" + schema + "')");
        while (columns.step())
            index.columns.push_back(columns.textAt(0));
        index.condition = indexCondition(database, table, index.name);
        index.included = includedColumns(database, table, index.name);
    }
    return result;
}

bool keepsNullSingle(const StoredIndex& index) {
    return index.name.starts_with("basalt_null_");
}

}  // namespace basalt::embedded
