// Columns and constraints, as CREATE TABLE, ALTER TABLE and DECLARE @t TABLE write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engines/embedded/ast/expression.h"

namespace basalt::embedded::ast {

struct IdentityClause {
    std::int64_t seed = 1;
    std::int64_t increment = 1;
};

struct KeyColumn {
    Identifier name;
    bool descending = false;
};

enum class ConstraintKind : std::uint8_t { PrimaryKey, Unique, ForeignKey, Check, Default };
enum class ReferentialAction : std::uint8_t { NoAction, Cascade, SetNull, SetDefault };

// Of a column or of a table. A constraint of a column names no columns of its own.
struct Constraint {
    ConstraintKind kind = ConstraintKind::PrimaryKey;
    Identifier name;                            // empty when the database is to choose
    std::optional<bool> clustered;              // PrimaryKey, Unique; noted, of no effect
    std::vector<KeyColumn> columns;             // PrimaryKey, Unique, ForeignKey
    ObjectName referencedTable;                 // ForeignKey
    std::vector<Identifier> referencedColumns;  // ForeignKey; empty: the key of that table
    ReferentialAction onDelete = ReferentialAction::NoAction;
    ReferentialAction onUpdate = ReferentialAction::NoAction;
    ExpressionPtr expression;  // Check: the condition; Default: the value
    Identifier forColumn;      // Default in ALTER TABLE ... ADD DEFAULT x FOR c
    bool withValues = false;   // Default: the rows that are there take it too, also where the column takes NULL
    SourceRange range;
};

struct ColumnDefinition {
    Identifier name;
    DataType type;           // of no meaning for a computed column
    ExpressionPtr computed;  // name AS expression; null for an ordinary column
    bool persisted = false;
    Identifier collation;
    std::optional<bool> nullable;  // NULL, NOT NULL, or nothing said
    std::optional<IdentityClause> identity;
    std::vector<Constraint> constraints;
    SourceRange range;
};

struct TableDefinition {
    std::vector<ColumnDefinition> columns;
    std::vector<Constraint> constraints;
};

}  // namespace basalt::embedded::ast
