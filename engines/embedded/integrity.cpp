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

// "Table, key 3, 'a'" or "Table, row 7".
std::string placeOf(const Table& table, SqliteStatement& row) {
    std::string place = table.name + (table.rowid ? ", row " : ", key ");
    const int count = table.rowid ? 1 : static_cast<int>(table.key.size());
    for (int i = 0; i < count; ++i) {
        if (i > 0) place += ", ";
        if (table.rowid) return place + row.textAt(i);
        const SqlType& type = table.columns[table.key[static_cast<std::size_t>(i)]].type;
        try {
            const Value value = readValue(sqlite3_column_value(row.handle(), i), type);
            const std::string text =
                isNull(value) ? "NULL" : toText(convert(value, type, SqlType::text(TypeKind::NVarChar, kMaxLength)));
            const bool valid = findInvalidUtf8(text) == kValidUtf8;
            place += !valid ? "?" : type.isText() ? "'" + text + "'" : text;
        } catch (const DatabaseError&) {
            // The key may be what is damaged.
            place += "?";
        }
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
    std::string columns;
    if (table.rowid) columns = "rowid";
    for (const std::size_t position : table.key) {
        if (!table.rowid) columns += (columns.empty() ? "" : ", ") + sqlQuoted(table.columns[position].name);
    }
    const int keys = table.rowid ? 1 : static_cast<int>(table.key.size());
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
        SqliteStatement references = database.prepare("PRAGMA foreign_key_check");
        while (problems.size() < kMostProblems && references.step()) {
            problems.push_back("A row of " + references.textAt(0) + " refers to a row of " + references.textAt(2) +
                               " that is not there");
        }
        references.reset();
        Catalog catalog(database);
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
