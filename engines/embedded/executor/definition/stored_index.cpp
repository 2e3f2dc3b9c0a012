#include "engines/embedded/executor/definition/stored_index.h"

#include "engines/embedded/catalog/included_columns.h"
#include "engines/embedded/catalog/index_condition.h"
#include "engines/embedded/catalog/null_guard.h"
#include "engines/embedded/executor/constraint_error.h"
#include "engines/embedded/executor/definition/table_design.h"

namespace basalt::embedded {

namespace {

void createUnder(const std::string& sql, const Table& table, std::string_view shown, SqliteDatabase& database) {
    const int code = sqlite3_exec(database.handle(), sql.c_str(), nullptr, nullptr, nullptr);
    if ((code & 0xFF) == SQLITE_CONSTRAINT) throwDuplicatesUnder(table.name, shown);
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace

std::vector<StoredIndex> indexesOf(const Table& table, SqliteDatabase& database) {
    const std::string schema = table.schemaName();
    SqliteStatement list =
        database.prepare("SELECT name, sql FROM " + schema +
                         ".sqlite_schema WHERE type = 'index' AND tbl_name = ?1 AND sql IS NOT NULL");
    list.bind(1, std::string_view(table.name));
    std::vector<StoredIndex> result;
    while (list.step()) {
        if (isNullGuard(list.textAt(0))) continue;
        StoredIndex index;
        index.name = list.textAt(0);
        index.sql = list.textAt(1);
        index.unique = index.sql.starts_with("CREATE UNIQUE ");
        result.push_back(std::move(index));
    }
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

void create(const StoredIndex& index, const Table& table, SqliteDatabase& database, Catalog& catalog) {
    const std::string shown = shownIndexName(table.name, index.name);
    createUnder(index.sql, table, shown, database);
    if (!index.condition.empty()) keepIndexCondition(database, table, index.name, index.condition);
    keepIncludedColumns(database, table, index.name, index.included);
    if (!index.unique) return;
    createNullGuard(table, shown, index.columns,
                    index.condition.empty() ? std::string() : storedCondition(catalog, table, index.condition, true),
                    database);
}

void createNullGuard(const Table& table, std::string_view index, const std::vector<std::string>& columns,
                     const std::string& condition, SqliteDatabase& database) {
    std::string keys;
    std::string nulls;
    for (const std::string& name : columns) {
        const TableColumn& column = table.columns[static_cast<std::size_t>(table.find(name))];
        const std::string quoted = sqlQuoted(name);
        if (!keys.empty()) keys += ", ";
        if (!column.nullable) {
            keys += quoted;
            continue;
        }
        // A value that is there may be 0 as well; what stands behind it tells the two apart.
        keys += "ifnull(" + quoted + ", 0)";
        if (column.type.isText()) keys += " COLLATE TSQL";
        keys += ", " + quoted + " IS NULL";
        nulls += (nulls.empty() ? "(" : " + (") + quoted + " IS NULL)";
    }
    if (nulls.empty()) return;
    // A sum, because SQLite would take "IS NULL OR IS NULL" for queries that ask for NULL, and read the table through
    // this index.
    createUnder("CREATE UNIQUE INDEX " + table.schemaName() + "." + sqlQuoted(nullGuardName(table.name, index)) +
                    " ON " + sqlQuoted(table.name) + "(" + keys + ") WHERE " + nulls + " > 0" +
                    (condition.empty() ? "" : " AND (" + condition + ")"),
                table, index, database);
}

}  // namespace basalt::embedded
