// What a database is made of, as data: tables with their columns, keys and indexes, and the texts of views, procedures
// and functions. An engine fills it in; tools list it, complete names from it and write it down as T-SQL.
//
//   const DatabaseSchema schema = session.schema();
//   schema.tables.at(0).columns.at(0).type        "nvarchar(50)"
//
// Names are as created. Texts of defaults, computed columns, checks and conditions are T-SQL expressions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace basalt {

struct ColumnSchema {
    struct Identity {
        std::int64_t seed = 1;
        std::int64_t increment = 1;
    };

    std::string name{};
    std::string type{};  // "decimal(23,9)"
    bool nullable = true;
    std::optional<Identity> identity{};
    std::string defaultName{}, defaultText{};  // empty when there is none
    std::string computedText{};                // empty for a column that is stored
};

struct KeyColumnSchema {
    std::string name;
    bool descending = false;
};

// A primary key or a unique constraint.
struct KeySchema {
    std::string name;
    bool primary = false;
    std::vector<KeyColumnSchema> columns;
};

struct ForeignKeySchema {
    std::string name;
    std::vector<std::string> columns;
    std::string referencedTable;
    std::vector<std::string> referencedColumns;
    std::string onDelete = "NO ACTION";
    std::string onUpdate = "NO ACTION";
};

struct CheckSchema {
    std::string name;
    std::string text;
};

struct IndexSchema {
    std::string name;
    bool unique = false;
    std::vector<KeyColumnSchema> columns;
    std::string condition{};  // of a filtered index; empty when it holds every row
    std::vector<std::string> included{};
};

struct TableSchema {
    std::string name;
    std::vector<ColumnSchema> columns;
    std::vector<KeySchema> keys;  // the primary key first
    std::vector<ForeignKeySchema> foreignKeys;
    std::vector<CheckSchema> checks;
    std::vector<IndexSchema> indexes;  // those that no constraint made
};

struct ModuleSchema {
    enum class Kind : std::uint8_t { View, Procedure, Function };

    std::string name;
    Kind kind = Kind::View;
    std::string text;  // the CREATE statement
};

// Both lists by name.
struct DatabaseSchema {
    std::vector<TableSchema> tables;
    std::vector<ModuleSchema> modules;
};

}  // namespace basalt
