#include "engines/embedded/integrity.h"

#include <map>

#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/catalog/text_search.h"
#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/decimal_codec.h"
#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

namespace {

// SQLite 3.40 misreads the columns that follow a key of several columns in a table stored by its key, and finds NULL
// where there is none. The rows themselves decide; typeof, because IS NULL on such a column is not even evaluated.
class NullReports {
public:
    explicit NullReports(SqliteDatabase& database) : database_(database) {}

    // Whether the line tells of a NULL in a column that holds none.
    bool isMistaken(const std::string& line) {
        constexpr std::string_view prefix = "NULL value in ";
        if (!line.starts_with(prefix)) return false;
        const std::string place = line.substr(prefix.size());
        const auto known = mistaken_.find(place);
        if (known != mistaken_.end()) return known->second;
        return mistaken_[place] = !holdsNull(place);
    }

private:
    // Names may hold points themselves, so every division of the place that names a column is looked at.
    bool holdsNull(const std::string& place) {
        bool found = false;
        for (std::size_t dot = place.find('.'); dot != std::string::npos; dot = place.find('.', dot + 1)) {
            const std::string table = place.substr(0, dot);
            const std::string column = place.substr(dot + 1);
            SqliteStatement known =
                database_.prepare("SELECT 1 FROM pragma_table_xinfo(" + sqlText(table) + ") WHERE name = ?1");
            known.bind(1, std::string_view(column));
            if (!known.step()) continue;
            found = true;
            SqliteStatement rows = database_.prepare("SELECT 1 FROM main." + sqlQuoted(table) + " WHERE typeof(" +
                                                     sqlQuoted(column) + ") = 'null' LIMIT 1");
            if (rows.step()) return true;
        }
        return !found;
    }

    SqliteDatabase& database_;
    std::map<std::string, bool> mistaken_;  // by table and column
};

// "3" or "'a'"; "?" for what is damaged itself.
std::string shown(SqliteStatement& row, int column, const SqlType& type) {
    try {
        const Value value = readValue(sqlite3_column_value(row.handle(), column), type);
        if (isNull(value)) return "NULL";
        const std::string text = toText(convert(value, type, SqlType::text(TypeKind::NVarChar, kMaxLength)));
        if (findInvalidUtf8(text) != kValidUtf8) return "?";
        return type.isText() ? "'" + text + "'" : text;
    } catch (const DatabaseError&) {
        return "?";
    }
}

// What tells a row from the others, as a SELECT lists it.
std::string placeColumns(const Table& table) {
    if (!table.rowNumber.empty()) return table.rowNumber;
    std::string columns;
    for (const std::size_t position : table.key)
        columns += (columns.empty() ? "" : ", ") + sqlQuoted(table.columns[position].name);
    return columns;
}

int placeColumnCount(const Table& table) {
    return table.rowNumber.empty() ? static_cast<int>(table.key.size()) : 1;
}

// "Table, key 3, 'a'" or "Table, row 7", of a row that begins with the columns of its place.
std::string placeOf(const Table& table, SqliteStatement& row) {
    if (!table.rowNumber.empty()) return table.name + ", row " + row.textAt(0);
    std::string place = table.name + ", key ";
    for (std::size_t i = 0; i < table.key.size(); ++i) {
        if (i > 0) place += ", ";
        place += shown(row, static_cast<int>(i), table.columns[table.key[i]].type);
    }
    return place;
}

// What is wrong with the value as one of the type; empty when it can be read.
std::string_view damageOf(sqlite3_value* cell, const SqlType& type) {
    if (sqlite3_value_type(cell) == SQLITE_NULL) return {};
    if (type.storage() == Storage::Decimal) {
        try {
            const void* data = sqlite3_value_blob(cell);
            static_cast<void>(decodeDecimal(data, sqlite3_value_bytes(cell)));
        } catch (const DatabaseError&) {
            return "is no decimal number";
        }
    } else if (type.storage() == Storage::Text) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(cell));
        if (findInvalidUtf8({text, static_cast<std::size_t>(sqlite3_value_bytes(cell))}) != kValidUtf8)
            return "is no valid UTF-8 text";
    }
    return {};
}

// Values that SQLite keeps faithfully and that nobody can read.
void checkValues(SqliteDatabase& database, const Table& table, std::size_t most, std::vector<std::string>& problems) {
    std::string columns = placeColumns(table);
    const int keys = placeColumnCount(table);
    std::vector<const TableColumn*> checked;
    for (const TableColumn& column : table.columns) {
        const Storage storage = column.type.storage();
        // Computed columns follow from the others, and would fail here with them.
        if (column.computed || (storage != Storage::Decimal && storage != Storage::Text)) continue;
        checked.push_back(&column);
        columns += ", " + sqlQuoted(column.name);
    }
    if (checked.empty()) return;
    SqliteStatement rows = database.prepare("SELECT " + columns + " FROM " + table.sqlName());
    while (problems.size() < most && rows.step()) {
        for (std::size_t i = 0; i < checked.size(); ++i) {
            sqlite3_value* cell = sqlite3_column_value(rows.handle(), keys + static_cast<int>(i));
            const std::string_view damage = damageOf(cell, checked[i]->type);
            if (damage.empty()) continue;
            problems.push_back("The value of " + checked[i]->name + " " + std::string(damage) + " (" +
                               placeOf(table, rows) + ")");
        }
    }
}

// As many as a person can use; the rest are of the same kind.
constexpr std::size_t kMostProblems = 100;
// Of one reference: what a person looks at first; of the rest the number tells more than the rows would.
constexpr std::size_t kRowsShown = 5;

// Rows that refer to a row that is not there: the first ones with their keys and values, and how many more there are.
void checkReference(SqliteDatabase& database, const Table& table, const ForeignKey& reference,
                    std::vector<std::string>& problems) {
    std::string columns = placeColumns(table);
    std::string names;
    std::string refers;
    std::string meets;
    for (std::size_t i = 0; i < reference.columns.size(); ++i) {
        const std::string column = sqlQuoted(reference.columns[i]);
        columns += ", " + column;
        names += (i > 0 ? ", " : "") + reference.columns[i];
        refers += (i > 0 ? " AND c." : "c.") + column + " IS NOT NULL";
        meets += (i > 0 ? " AND p." : "p.") + sqlQuoted(reference.referenced[i]) + " = c." + column;
    }
    SqliteStatement rows = database.prepare("SELECT " + columns + " FROM " + table.sqlName() + " AS c WHERE " + refers +
                                            " AND NOT EXISTS (SELECT 1 FROM main." +
                                            sqlQuoted(reference.referencedTable) + " AS p WHERE " + meets + ")");
    const std::string nowhere = reference.referencedTable + " that ";
    std::size_t count = 0;
    while (rows.step()) {
        if (++count > kRowsShown) continue;
        std::string values;
        for (std::size_t i = 0; i < reference.columns.size(); ++i) {
            const int place = placeColumnCount(table) + static_cast<int>(i);
            const int column = table.find(reference.columns[i]);
            values += (i > 0 ? ", " : "") + shown(rows, place, table.columns[static_cast<std::size_t>(column)].type);
        }
        problems.push_back("A row of " + table.name + " refers by " + names + " = " + values + " to a row of " +
                           nowhere + "is not there (" + placeOf(table, rows) + ")");
    }
    if (count <= kRowsShown) return;
    const std::size_t more = count - kRowsShown;
    problems.push_back(std::to_string(more) + (more == 1 ? " row more of " : " rows more of ") + table.name +
                       (more == 1 ? " refers by " : " refer by ") + names + " to rows of " + nowhere + "are not there");
}

}  // namespace

std::vector<std::string> findProblems(SqliteDatabase& database) {
    std::vector<std::string> problems;
    try {
        NullReports nulls(database);
        // Without a bound of its own, which mistaken reports would use up.
        SqliteStatement check = database.prepare("PRAGMA integrity_check(2000000000)");
        while (problems.size() < kMostProblems && check.step()) {
            const std::string line = check.textAt(0);
            if (line != "ok" && !nulls.isMistaken(line)) problems.push_back(line);
        }
        check.reset();
        // References of damaged tables would only repeat what is known.
        if (!problems.empty()) return problems;
        Catalog catalog(database);
        for (const std::string& name : catalog.tableNames()) {
            const Table& table = catalog.requireTable(name);
            for (const ForeignKey& reference : table.foreignKeys) {
                if (problems.size() < kMostProblems) checkReference(database, table, reference, problems);
            }
        }
        for (const std::string& name : catalog.tableNames())
            checkValues(database, catalog.requireTable(name), kMostProblems, problems);
        checkTextSearch(database, catalog, problems);
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Corrupt) throw;
        problems.emplace_back(error.what());
    }
    return problems;
}

}  // namespace basalt::embedded
