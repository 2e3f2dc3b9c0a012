// What the database contains: tables with their T-SQL types, keys and defaults, and the T-SQL texts of views,
// procedures and functions.
//
//   Catalog catalog(db);
//   const Table* t = catalog.table("CostLevel");      null when there is none; names compare without regard to case
//   t->columns[0].type.name()                         "int"
//
// The declared types of the SQLite schema are the T-SQL types, so the schema itself is read, one table at a time when
// it is first asked for. A few tables named basalt_... keep what SQLite has no place for. Answers stay valid until the
// generation changes.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/runtime/sql_type.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

struct TableColumn {
    std::string name;
    SqlType type;
    bool nullable = true;
    bool identity = false;
    std::string defaultText;  // T-SQL; empty when there is none
    bool computed = false;
};

struct ForeignKey {
    std::string name;  // of the constraint
    std::string referencedTable;
    std::vector<std::string> columns;
    std::vector<std::string> referenced;  // their columns there, in the same order
};

struct Index {
    std::string name;         // of the constraint or index, as T-SQL knows it
    bool constraint = false;  // made by PRIMARY KEY or UNIQUE
    bool primary = false;
    bool filtered = false;  // it holds some of the rows only
    std::vector<std::string> columns;
    std::vector<bool> descending;  // for each of them
};

struct Table {
    std::string name;  // as created
    bool temporary = false;
    // SQLite's own number of a row, by one of its names that is no column; empty for tables that are stored by their
    // key.
    std::string rowNumber;
    std::vector<TableColumn> columns;
    std::vector<std::size_t> key;  // positions of the primary key's columns
    std::vector<Index> uniques;
    std::vector<ForeignKey> foreignKeys;
    std::vector<std::string> checks;  // T-SQL
    // Positions of the columns by which an index finds rows.
    std::vector<std::size_t> sought;
    // Positions of the columns whose texts are kept in pieces too (catalog/text_search.h).
    std::vector<std::size_t> searched;

    // -1 when there is none.
    [[nodiscard]] int find(std::string_view column) const;
    [[nodiscard]] const TableColumn* identityColumn() const;
    // SQLite's name of the part of the database that holds it: main or temp.
    [[nodiscard]] std::string schemaName() const { return temporary ? "temp" : "main"; }
    // The name as SQLite takes it, schema included.
    [[nodiscard]] std::string sqlName() const;
};

enum class ModuleKind : std::uint8_t { View, Procedure, Function };

// A view, procedure or function: its CREATE statement as it was written.
struct Module {
    std::string name;
    ModuleKind kind = ModuleKind::View;
    std::string text;
    bool temporary = false;
};

struct IdentityState {
    std::int64_t seed = 1;
    std::int64_t increment = 1;
    std::optional<std::int64_t> last;  // nothing before the first row
};

class Catalog {
public:
    explicit Catalog(SqliteDatabase& database) : database_(database) {}

    // Creates the tables of the engine's own in an empty database.
    static void createSystemTables(SqliteDatabase& database, bool temporary);

    // Names may carry a schema ("dbo") in front of the table in other layers; here they are single. Names with # are
    // temporary tables.
    [[nodiscard]] const Table* table(std::string_view name);
    // The table, or DatabaseError 208.
    [[nodiscard]] const Table& requireTable(std::string_view name);
    [[nodiscard]] const Module* module(std::string_view name);
    [[nodiscard]] std::vector<std::string> tableNames();

    // Grows with every change of the schema that is known here. Plans made under another number are stale.
    [[nodiscard]] std::uint64_t generation() const { return generation_; }
    // Forgets everything read so far. Called after each change of the schema.
    void invalidate();
    // Compares with the schema that other programs may have changed; true when it was stale (and is forgotten now).
    bool refresh();

    void saveModule(const Module& module);
    void dropModule(std::string_view name);

    [[nodiscard]] IdentityState identity(std::string_view table);
    void setIdentity(std::string_view table, const IdentityState& state);
    // For the rows of a table: in a transaction the number is kept here, so that not every row writes it, until
    // settleIdentities writes all of them. That goes before COMMIT and before whatever changes tables or sets a
    // savepoint of the user's. After a rollback, to a savepoint of the user's too, they are forgotten.
    void takeIdentity(std::string_view table, const IdentityState& state);
    void settleIdentities();
    void forgetIdentities() { taken_.clear(); }

    // The number by which OBJECT_ID tells an object of the kind ("U", "P", "V", "FN", ... or empty for any);
    // nullopt when there is none.
    [[nodiscard]] std::optional<std::int64_t> objectId(std::string_view name, std::string_view kind);

    // The number of an object that is there.
    [[nodiscard]] static std::int64_t objectNumber(std::string_view name);

    [[nodiscard]] std::string property(std::string_view name);
    void setProperty(std::string_view name, std::string_view value);

private:
    std::unique_ptr<Table> read(std::string_view name);
    void readDetails(Table& table);
    void bumpModuleVersion();
    [[nodiscard]] bool hasTemporarySystemTables();

    SqliteDatabase& database_;
    std::map<std::string, std::unique_ptr<Table>, std::less<>> tables_;  // by folded name; null: known not to be there
    std::map<std::string, std::unique_ptr<Module>, std::less<>> modules_;
    std::uint64_t generation_ = 1;
    std::int64_t schemaVersion_ = -1;
    SqliteStatement schemaVersionStatement_;
    SqliteStatement moduleStatement_;
    // Kept, because every row that takes a number needs them.
    struct IdentityStatements {
        SqliteStatement read;
        SqliteStatement write;
    };
    IdentityStatements& identityStatements(std::string_view table);
    IdentityStatements identity_;
    IdentityStatements temporaryIdentity_;
    std::map<std::string, IdentityState> taken_;  // in the running transaction, by folded table name
};

// T-SQL's index names are unique within a table, SQLite's within the database.
[[nodiscard]] std::string storedIndexName(std::string_view table, std::string_view index);
[[nodiscard]] std::string shownIndexName(std::string_view table, std::string_view stored);

// The table that keeps the pieces of a column's texts.
[[nodiscard]] std::string piecesTable(std::string_view table, std::string_view column);

// "name" with doubled quotes inside.
[[nodiscard]] std::string sqlQuoted(std::string_view name);
// 'text' with doubled quotes inside.
[[nodiscard]] std::string sqlText(std::string_view text);

}  // namespace basalt::embedded
