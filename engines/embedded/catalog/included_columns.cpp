#include "engines/embedded/catalog/included_columns.h"

#include "ado/names.h"

namespace basalt::embedded {

namespace {

constexpr const char* kIncluded = "IN";

std::string keyOf(std::string_view stored) {
    return "include " + std::string(stored);
}

// Names of columns have no line breaks.
void split(const std::string& list, std::vector<std::string>& into) {
    for (std::size_t begin = 0; begin < list.size();) {
        const std::size_t end = std::min(list.find('\n', begin), list.size());
        into.push_back(list.substr(begin, end - begin));
        begin = end + 1;
    }
}

}  // namespace

void keepIncludedColumns(SqliteDatabase& database, const Table& table, std::string_view stored,
                         const std::vector<std::string>& columns) {
    if (columns.empty()) return;
    std::string list;
    for (const std::string& column : columns)
        list += (list.empty() ? "" : "\n") + column;
    SqliteStatement insert = database.prepare("INSERT OR REPLACE INTO " + table.schemaName() +
                                              ".basalt_constraint VALUES (?1, ?2, ?3, ?4, ?5)");
    insert.bind(1, std::string_view(keyOf(stored)));
    insert.bind(2, std::string_view(foldName(table.name)));
    insert.bind(3, std::string_view(kIncluded));
    insert.bind(4, stored);
    insert.bind(5, std::string_view(list));
    insert.run();
}

std::vector<std::string> includedColumns(SqliteDatabase& database, const Table& table, std::string_view stored) {
    SqliteStatement find = database.prepare("SELECT definition FROM " + table.schemaName() +
                                            ".basalt_constraint WHERE name = ?1 AND kind = ?2 AND table_name = ?3");
    find.bind(1, std::string_view(keyOf(stored)));
    find.bind(2, std::string_view(kIncluded));
    find.bind(3, std::string_view(foldName(table.name)));
    std::vector<std::string> columns;
    if (find.step()) split(find.textAt(0), columns);
    return columns;
}

void forgetIncludedColumns(SqliteDatabase& database, const Table& table, std::string_view stored) {
    SqliteStatement remove = database.prepare("DELETE FROM " + table.schemaName() +
                                              ".basalt_constraint WHERE name = ?1 AND kind = ?2 AND table_name = ?3");
    remove.bind(1, std::string_view(keyOf(stored)));
    remove.bind(2, std::string_view(kIncluded));
    remove.bind(3, std::string_view(foldName(table.name)));
    remove.run();
}

std::vector<std::string> includedColumns(SqliteDatabase& database, const Table& table) {
    SqliteStatement list = database.prepare("SELECT definition FROM " + table.schemaName() +
                                            ".basalt_constraint WHERE kind = ?1 AND table_name = ?2");
    list.bind(1, std::string_view(kIncluded));
    list.bind(2, std::string_view(foldName(table.name)));
    std::vector<std::string> columns;
    while (list.step())
        split(list.textAt(0), columns);
    return columns;
}

}  // namespace basalt::embedded
