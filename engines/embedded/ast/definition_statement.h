// Statements that create, change and drop objects of the database.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engines/embedded/ast/query.h"
#include "engines/embedded/ast/statement.h"
#include "engines/embedded/ast/table_definition.h"

namespace basalt::embedded::ast {

struct CreateTableStatement : StatementOf<StatementKind::CreateTable> {
    ObjectName name;
    TableDefinition definition;
};

struct AlterTableStatement : StatementOf<StatementKind::AlterTable> {
    enum class Action : std::uint8_t { Add, AlterColumn, Drop, EnableConstraints, DisableConstraints };
    struct DropItem {
        bool column = false;  // otherwise a constraint
        bool ifExists = false;
        Identifier name;
    };

    ObjectName name;
    Action action = Action::Add;
    TableDefinition added;                    // Add
    std::optional<ColumnDefinition> altered;  // AlterColumn
    std::vector<DropItem> dropped;            // Drop
    bool allConstraints = false;              // EnableConstraints, DisableConstraints
    std::vector<Identifier> constraints;
};

struct CreateIndexStatement : StatementOf<StatementKind::CreateIndex> {
    bool unique = false;
    std::optional<bool> clustered;
    Identifier name;
    ObjectName table;
    std::vector<KeyColumn> columns;
    std::vector<Identifier> included;
    ExpressionPtr where;
};

// CREATE, ALTER, or CREATE OR ALTER of a view, procedure or function
enum class DefinitionMode : std::uint8_t { Create, Alter, CreateOrAlter };

struct CreateViewStatement : StatementOf<StatementKind::CreateView> {
    DefinitionMode mode = DefinitionMode::Create;
    ObjectName name;
    std::vector<Identifier> columns;
    QueryPtr query;
    bool checkOption = false;
};

struct ParameterDefinition {
    std::string name;  // with the leading @
    DataType type;
    ExpressionPtr defaultValue;  // null when there is none
    bool output = false;
    bool readOnly = false;
    SourceRange range;
};

struct CreateProcedureStatement : StatementOf<StatementKind::CreateProcedure> {
    DefinitionMode mode = DefinitionMode::Create;
    ObjectName name;
    std::vector<ParameterDefinition> parameters;
    Statements body;
};

struct CreateFunctionStatement : StatementOf<StatementKind::CreateFunction> {
    enum class Returns : std::uint8_t { Scalar, InlineTable, TableVariable };

    DefinitionMode mode = DefinitionMode::Create;
    ObjectName name;
    std::vector<ParameterDefinition> parameters;
    Returns returns = Returns::Scalar;
    DataType type;          // Scalar
    std::string variable;   // TableVariable, with the leading @
    TableDefinition table;  // TableVariable
    QueryPtr query;         // InlineTable
    Statements body;        // Scalar, TableVariable
};

enum class ObjectType : std::uint8_t { Table, View, Procedure, Function, Index, Trigger };

struct DropStatement : StatementOf<StatementKind::Drop> {
    struct Item {
        ObjectName name;
        ObjectName table;  // Index: DROP INDEX name ON table; the old form table.name is split so too
    };
    ObjectType type = ObjectType::Table;
    bool ifExists = false;
    std::vector<Item> items;
};

}  // namespace basalt::embedded::ast
