// The whole design of a table, from which its SQLite statements are made: read from CREATE TABLE, or from the database
// when ALTER TABLE has to build the table anew.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engines/embedded/ast/table_definition.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

struct DesignColumn {
    std::string name;
    SqlType type;
    bool nullable = true;
    bool takesNull = false;  // NULL was asked for, or the column has it already: no primary key makes it NOT NULL
    std::optional<IdentityState> identity;
    std::string defaultName, defaultText;  // T-SQL; empty when there is none
    bool withValues = false;               // the rows that a new column comes to take its default, also for NULL
    std::string computedText;              // T-SQL; empty for an ordinary column
};

struct DesignKeyColumn {
    std::string name;
    bool descending = false;
};

struct DesignKey {
    bool primary = false;
    std::string name;
    std::vector<DesignKeyColumn> columns;
};

struct DesignForeignKey {
    std::string name;
    std::vector<std::string> columns;
    std::string table;
    std::vector<std::string> referenced;
    std::string onDelete = "NO ACTION";
    std::string onUpdate = "NO ACTION";
};

struct DesignCheck {
    std::string name;
    std::string text;  // T-SQL
};

class TableDesign {
public:
    std::string name;
    bool temporary = false;
    std::vector<DesignColumn> columns;
    std::vector<DesignKey> keys;
    std::vector<DesignForeignKey> foreignKeys;
    std::vector<DesignCheck> checks;

    // From the tree. `binder` gives types their meaning and errors their place; references are looked up in its
    // catalog.
    void add(const ast::TableDefinition& definition, const LiteralTable& literals, Binder& binder);
    // Throws 2749 for a type that cannot count.
    static void requireIdentityType(const DesignColumn& column, Binder& binder, SourceRange range);
    // From the database.
    [[nodiscard]] static TableDesign of(const Table& table, SqliteDatabase& database, Catalog& catalog);

    // Creates the table with its indexes and its entries in the system tables. Not atomic by itself.
    void create(SqliteDatabase& database, Catalog& catalog) const;
    // Removes a table's entries from the system tables.
    static void forget(const std::string& table, bool temporary, SqliteDatabase& database);

    [[nodiscard]] DesignColumn* find(std::string_view column);

private:
    // A computed one has no type yet.
    void addColumn(const ast::ColumnDefinition& column, const LiteralTable& literals, Binder& binder);
    void typeComputed(const ast::ColumnDefinition& column, Binder& binder);
    void addConstraint(const ast::Constraint& constraint, const std::string& column, const LiteralTable& literals,
                       Binder& binder);
    [[nodiscard]] bool hasConstraint(std::string_view wanted) const;
    // "CK__CostLevel__Price__1A2B3C4D", as the server names constraints that are given no name; the same one each time
    // that the same table is made.
    [[nodiscard]] std::string generatedName(std::string_view kind, std::string_view column,
                                            std::string_view rest) const;
    [[nodiscard]] Table shape() const;
    [[nodiscard]] bool isNullable(std::string_view column) const;
};

// Throws 1919 for a type whose values are too long for a key.
void requireKeyType(std::string_view table, std::string_view column, const SqlType& type);

// A condition over a table's columns, as SQLite's SQL without parameters.
// `nested`: for an index, whose calls have to stand inside each other (SqlWriter::keepCallsNested).
[[nodiscard]] std::string storedCondition(Catalog& catalog, const Table& table, const std::string& text,
                                          bool nested = false);

// Whether a condition or a value over a table's columns reads the column.
[[nodiscard]] bool readsColumn(Catalog& catalog, const Table& table, const std::string& text, bool condition,
                               std::string_view column);

}  // namespace basalt::embedded
