#include "engines/embedded/catalog/text_search.h"

#include <algorithm>

#include "ado/names.h"

namespace basalt::embedded {

namespace {

// Programs of the format before know nothing of the tables and functions here, and could not write such a table.
constexpr const char* kFormatWithPieces = "2";

// Statements about the pieces of one column.
class Pieces {
public:
    Pieces(const Table& table, std::size_t column)
        : table_(table), name_(piecesTable(table.name, table.columns[column].name)), column_(column) {}

    void create(SqliteDatabase& database) const {
        std::string columns = "piece BLOB NOT NULL";
        for (std::size_t i = 0; i < table_.key.size(); ++i) {
            columns += ", k" + std::to_string(i + 1) + " " + table_.columns[table_.key[i]].type.columnDeclaration();
        }
        run(database,
            "CREATE TABLE " + sqlName() + "(" + columns + ", PRIMARY KEY(piece" + keys(", k") + ")) WITHOUT ROWID");
        const std::string on = " ON " + sqlQuoted(table_.name);
        const std::string changed = "CAST(old." + text() + " AS BLOB) IS NOT CAST(new." + text() + " AS BLOB)" +
                                    eachKey([](const std::string& key) {
                                        return " OR CAST(old." + key + " AS BLOB) IS NOT CAST(new." + key + " AS BLOB)";
                                    });
        const std::string of = text() + eachKey([](const std::string& key) { return ", " + key; });
        trigger(database, "insert", "INSERT" + on + " BEGIN " + insertion() + "; END");
        trigger(database, "delete", "DELETE" + on + " BEGIN " + removal() + "; END");
        trigger(database, "update",
                "UPDATE OF " + of + on + " WHEN " + changed + " BEGIN " + removal() + "; " + insertion() + "; END");
        fill(database);
    }

    // Where no pieces are.
    void fill(SqliteDatabase& database) const {
        // In the order in which they are stored.
        run(database, "INSERT INTO " + sqlName() + " SELECT p.value" +
                          eachKey([](const std::string& key) { return ", r." + key; }) + " FROM main." +
                          sqlQuoted(table_.name) + " AS r, t_pieces(r." + text() + ") AS p ORDER BY p.value" +
                          eachKey([](const std::string& key) { return ", r." + key; }));
    }

    void clear(SqliteDatabase& database) const { run(database, "DELETE FROM " + sqlName()); }

    // The triggers of a table that has gone are not there any more.
    void drop(SqliteDatabase& database) const {
        for (const char* event : {"insert", "delete", "update"})
            run(database, "DROP TRIGGER IF EXISTS main." + triggerName(event));
        run(database, "DROP TABLE " + sqlName());
    }

    [[nodiscard]] bool isTrue(SqliteDatabase& database) const {
        const std::string row = "SELECT 1 FROM " + sqlName() + " AS p WHERE p.piece = w.value" + sameKeys("p", "r");
        const std::string all = " FROM main." + sqlQuoted(table_.name) + " AS r, t_pieces(r." + text() + ") AS w";
        SqliteStatement missing = database.prepare("SELECT 1" + all + " WHERE NOT EXISTS (" + row + ") LIMIT 1");
        if (missing.step()) return false;
        // When none is missing, equal numbers leave none that should not be there.
        return database.integer(
                   ("SELECT (SELECT count(*)" + all + ") = (SELECT count(*) FROM " + sqlName() + ")").c_str()) != 0;
    }

private:
    [[nodiscard]] std::string sqlName() const { return "main." + sqlQuoted(name_); }
    [[nodiscard]] std::string text() const { return sqlQuoted(table_.columns[column_].name); }
    [[nodiscard]] std::string triggerName(const char* event) const { return sqlQuoted(name_ + "." + event); }

    [[nodiscard]] std::string keys(const char* before) const {
        std::string result;
        for (std::size_t i = 0; i < table_.key.size(); ++i)
            result += before + std::to_string(i + 1);
        return result;
    }
    template <typename Write>
    [[nodiscard]] std::string eachKey(Write write) const {
        std::string result;
        for (const std::size_t position : table_.key)
            result += write(sqlQuoted(table_.columns[position].name));
        return result;
    }
    [[nodiscard]] std::string sameKeys(const std::string& pieces, const std::string& row) const {
        int number = 0;
        return eachKey([&](const std::string& key) {
            return " AND " + pieces + (pieces.empty() ? "k" : ".k") + std::to_string(++number) + " = " + row + "." +
                   key;
        });
    }

    // In a trigger tables have no schema: they are of the trigger's own.
    [[nodiscard]] std::string insertion() const {
        return "INSERT INTO " + sqlQuoted(name_) + " SELECT value" +
               eachKey([](const std::string& key) { return ", new." + key; }) + " FROM t_pieces(new." + text() + ")";
    }
    [[nodiscard]] std::string removal() const {
        return "DELETE FROM " + sqlQuoted(name_) + " WHERE piece IN (SELECT value FROM t_pieces(old." + text() + "))" +
               sameKeys("", "old");
    }

    void trigger(SqliteDatabase& database, const char* event, const std::string& rest) const {
        run(database, "CREATE TRIGGER main." + triggerName(event) + " AFTER " + rest);
    }
    static void run(SqliteDatabase& database, const std::string& sql) { database.execute(sql.c_str()); }

    const Table& table_;
    std::string name_;
    std::size_t column_;
};

// Rows are found again by their key, and what has no bound would make too many pieces.
bool canSearch(const Table& table, std::size_t column) {
    const TableColumn& own = table.columns[column];
    return !table.temporary && !table.key.empty() && own.type.isText() && own.type.length != kMaxLength &&
           !own.computed;
}

bool holds(const std::vector<std::size_t>& list, std::size_t position) {
    return std::find(list.begin(), list.end(), position) != list.end();
}

}  // namespace

void settleTextSearch(SqliteDatabase& database, const Table& table, const std::vector<std::string>& included) {
    std::vector<std::size_t> wanted;
    for (const std::string& name : included) {
        const int found = table.find(name);
        if (found < 0) continue;
        const auto position = static_cast<std::size_t>(found);
        if (canSearch(table, position) && !holds(wanted, position)) wanted.push_back(position);
    }
    for (const std::size_t position : table.searched) {
        if (!holds(wanted, position)) Pieces(table, position).drop(database);
    }
    bool made = false;
    for (const std::size_t position : wanted) {
        if (holds(table.searched, position)) continue;
        Pieces(table, position).create(database);
        made = true;
    }
    if (made) Catalog(database).setProperty("format_version", kFormatWithPieces);
}

void dropTextSearch(SqliteDatabase& database, const Table& table) {
    for (const std::size_t position : table.searched)
        Pieces(table, position).drop(database);
}

void refillTextSearch(SqliteDatabase& database, Catalog& catalog) {
    for (const std::string& name : catalog.tableNames()) {
        const Table& table = catalog.requireTable(name);
        for (const std::size_t position : table.searched) {
            const Pieces pieces(table, position);
            pieces.clear(database);
            pieces.fill(database);
        }
    }
}

void checkTextSearch(SqliteDatabase& database, Catalog& catalog, std::vector<std::string>& problems) {
    for (const std::string& name : catalog.tableNames()) {
        const Table& table = catalog.requireTable(name);
        for (const std::size_t position : table.searched) {
            if (Pieces(table, position).isTrue(database)) continue;
            problems.push_back("The pieces by which texts of " + table.name + "." + table.columns[position].name +
                               " are found are not those of its rows; drop and create the index that includes it");
        }
    }
}

}  // namespace basalt::embedded
