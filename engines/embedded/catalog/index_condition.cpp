#include "engines/embedded/catalog/index_condition.h"

#include "ado/names.h"

namespace basalt::embedded {

namespace {

constexpr const char* kFilteredIndex = "IX";

}  // namespace

void keepIndexCondition(SqliteDatabase& database, const Table& table, std::string_view stored, std::string_view text) {
    SqliteStatement insert = database.prepare("INSERT OR REPLACE INTO " + table.schemaName() +
                                              ".basalt_constraint VALUES (?1, ?2, ?3, '', ?4)");
    insert.bind(1, stored);
    insert.bind(2, std::string_view(foldName(table.name)));
    insert.bind(3, std::string_view(kFilteredIndex));
    insert.bind(4, text);
    insert.run();
}

std::string indexCondition(SqliteDatabase& database, const Table& table, std::string_view stored) {
    SqliteStatement find = database.prepare("SELECT definition FROM " + table.schemaName() +
                                            ".basalt_constraint WHERE name = ?1 AND kind = ?2 AND table_name = ?3");
    find.bind(1, stored);
    find.bind(2, std::string_view(kFilteredIndex));
    find.bind(3, std::string_view(foldName(table.name)));
    return find.step() ? find.textAt(0) : std::string();
}

void forgetIndexCondition(SqliteDatabase& database, const Table& table, std::string_view stored) {
    SqliteStatement remove = database.prepare("DELETE FROM " + table.schemaName() +
                                              ".basalt_constraint WHERE name = ?1 AND kind = ?2 AND table_name = ?3");
    remove.bind(1, stored);
    remove.bind(2, std::string_view(kFilteredIndex));
    remove.bind(3, std::string_view(foldName(table.name)));
    remove.run();
}

}  // namespace basalt::embedded
