// CREATE TABLE, CREATE INDEX, CREATE VIEW, CREATE PROCEDURE, CREATE FUNCTION, and where all definitions part.
#include <algorithm>

#include "ado/names.h"
#include "engines/embedded/catalog/included_columns.h"
#include "engines/embedded/catalog/text_search.h"
#include "engines/embedded/executor/definition/stored_index.h"
#include "engines/embedded/executor/definition/table_design.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/statement_guard.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/printer/printer.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// Whether nothing but temporary tables changes.
bool definesTemporary(const ast::Statement& statement) {
    using ast::StatementKind;
    switch (statement.kind) {
        case StatementKind::CreateTable:
            return ast::as<ast::CreateTableStatement>(statement).name.isTemporary();
        case StatementKind::AlterTable:
            return ast::as<ast::AlterTableStatement>(statement).name.isTemporary();
        case StatementKind::CreateIndex:
            return ast::as<ast::CreateIndexStatement>(statement).table.isTemporary();
        case StatementKind::Drop: {
            const auto& drop = ast::as<ast::DropStatement>(statement);
            return drop.type == ast::ObjectType::Table &&
                   std::ranges::all_of(drop.items, [](const auto& item) { return item.name.isTemporary(); });
        }
        default:
            return false;
    }
}

}  // namespace

void Executor::define(const ast::Batch& batch, const ast::Statement& statement, const Environment& environment) {
    using ast::StatementKind;
    try {
        catalog_.settleIdentities();
        StatementGuard guard(*this, true, false, definesTemporary(statement));
        catalog_.refresh();
        // The rows that are there are checked, and take defaults.
        if (const auto* alter = ast::tryAs<ast::AlterTableStatement>(&statement)) {
            std::vector<std::string> texts{std::string(batch.textOf(alter->range))};
            if (const Table* table = catalog_.table(alter->name.last()))
                texts.insert(texts.end(), table->checks.begin(), table->checks.end());
            static_cast<void>(makeReady({}, texts));
        }
        switch (statement.kind) {
            case StatementKind::CreateTable: {
                const auto& create = ast::as<ast::CreateTableStatement>(statement);
                requireTableName(batch, create.name);
                createTable(create.name.last(), create.definition, batch, environment);
                break;
            }
            case StatementKind::AlterTable:
                alterTable(batch, ast::as<ast::AlterTableStatement>(statement));
                break;
            case StatementKind::CreateIndex:
                createIndex(batch, ast::as<ast::CreateIndexStatement>(statement));
                break;
            case StatementKind::CreateView:
                createView(batch, ast::as<ast::CreateViewStatement>(statement), environment);
                break;
            case StatementKind::CreateProcedure: {
                const auto& create = ast::as<ast::CreateProcedureStatement>(statement);
                createModule(batch, statement, create.name, create.mode, ModuleKind::Procedure);
                break;
            }
            case StatementKind::CreateFunction: {
                const auto& create = ast::as<ast::CreateFunctionStatement>(statement);
                createModule(batch, statement, create.name, create.mode, ModuleKind::Function);
                break;
            }
            case StatementKind::Drop:
                drop(batch, ast::as<ast::DropStatement>(statement));
                break;
            default:
                throwUnsupported("This statement", batch.text, statement.range);
        }
        guard.succeed();
        catalog_.invalidate();
        state_.rowCount = 0;
        state_.error = 0;
    } catch (const DatabaseError& error) {
        catalog_.invalidate();
        afterFailure(error);
        throw;
    }
}

void Executor::requireFreeName(const ast::Batch& batch, const ast::ObjectName& name) {
    if (catalog_.objectId(name.last(), {})) {
        throw statementError(ErrorCategory::Other, 2714,
                             "There is already an object named '" + name.last() + "' in the database.", batch.text,
                             name.range);
    }
}

void Executor::requireTableName(const ast::Batch& batch, const ast::ObjectName& name) {
    const std::string folded = foldName(name.last());
    if (folded.starts_with("basalt_") || folded.starts_with("sqlite_")) {
        throw statementError(ErrorCategory::Other, 40517,
                             "Names that begin with basalt_ or sqlite_ are the database's own and cannot be given to "
                             "tables.",
                             batch.text, name.range);
    }
    requireFreeName(batch, name);
}

void Executor::createTable(const std::string& name, const ast::TableDefinition& definition, const ast::Batch& batch,
                           const Environment& environment) {
    catalog_.settleIdentities();
    Binder binder(catalog_, binderInput(batch, environment));
    TableDesign design;
    design.name = name;
    design.temporary = name.starts_with('#');
    if (design.temporary) Catalog::createSystemTables(database_, true);
    design.add(definition, batch.literals, binder);
    design.create(database_, catalog_);
    usedIdentities_.erase(foldName(name));
    catalog_.invalidate();
}

void Executor::createIndex(const ast::Batch& batch, const ast::CreateIndexStatement& statement) {
    const Table* found = catalog_.table(statement.table.last());
    if (found == nullptr) {
        throw statementError(ErrorCategory::NotFound, 1088,
                             "Cannot find the object \"" + statement.table.last() +
                                 "\" because it does not exist or you do not have permissions.",
                             batch.text, statement.table.range);
    }
    const Table table = *found;
    const std::string stored = storedIndexName(table.name, statement.name.text);
    std::string columns;
    std::vector<std::string> names;
    for (const ast::KeyColumn& key : statement.columns) {
        const int position = table.find(key.name.text);
        if (position < 0) {
            throw statementError(ErrorCategory::NotFound, 1911,
                                 "Column name '" + key.name.text + "' does not exist in the target table or view.",
                                 batch.text, key.name.range);
        }
        const TableColumn& column = table.columns[static_cast<std::size_t>(position)];
        if (std::find(names.begin(), names.end(), column.name) != names.end()) {
            throw statementError(
                ErrorCategory::Other, 1909,
                "Cannot use duplicate column names in index. Column name '" + column.name + "' listed more than once.",
                batch.text, key.name.range);
        }
        requireKeyType(table.name, column.name, column.type);
        names.push_back(column.name);
        columns += (columns.empty() ? "" : ", ") + sqlQuoted(names.back()) + (key.descending ? " DESC" : "");
    }
    std::vector<std::string> included;
    for (const ast::Identifier& name : statement.included) {
        const int position = table.find(name.text);
        if (position < 0) {
            throw statementError(ErrorCategory::NotFound, 1911,
                                 "Column name '" + name.text + "' does not exist in the target table or view.",
                                 batch.text, name.range);
        }
        const std::string& column = table.columns[static_cast<std::size_t>(position)].name;
        const auto twice = [&](const std::vector<std::string>& list) {
            return std::find(list.begin(), list.end(), column) != list.end();
        };
        if (twice(names) || twice(included)) {
            throw statementError(
                ErrorCategory::Other, 1909,
                "Cannot use duplicate column names in index. Column name '" + column + "' listed more than once.",
                batch.text, name.range);
        }
        included.push_back(column);
        if (!statement.unique) columns += ", " + sqlQuoted(column);
    }
    SqliteStatement taken = database_.prepare("SELECT 1 FROM " + table.schemaName() +
                                              ".sqlite_schema WHERE type = 'index' AND name = ?1 COLLATE NOCASE");
    taken.bind(1, std::string_view(stored));
    if (taken.step()) {
        throw statementError(ErrorCategory::Other, 1913,
                             "The operation failed because an index or statistics with name '" + statement.name.text +
                                 "' already exists on table '" + table.name + "'.",
                             batch.text, statement.name.range);
    }
    taken.reset();
    StoredIndex index{stored, {}, statement.unique, names, {}, included};
    index.sql = std::string("CREATE ") + (statement.unique ? "UNIQUE " : "") + "INDEX " +
                (table.temporary ? "temp." : "main.") + sqlQuoted(stored) + " ON " + sqlQuoted(table.name) + "(" +
                columns + ")";
    if (statement.where != nullptr) {
        index.condition = print(*statement.where, batch.literals);
        index.sql += " WHERE " + storedCondition(catalog_, table, index.condition, true);
    }
    create(index, table, database_, catalog_);
    if (!included.empty() && !table.temporary) {
        settleTextSearch(database_, table, includedColumns(database_, table));
    }
}

void Executor::createView(const ast::Batch& batch, const ast::CreateViewStatement& statement,
                          const Environment& environment) {
    // A view that cannot be read is refused now, not when it is first used.
    Binder binder(catalog_, {.text = batch.text, .literals = &batch.literals, .inlineLiterals = true});
    Scope none(nullptr);
    const std::unique_ptr<BoundQuery> query = binder.query(*statement.query, &none);
    static_cast<void>(environment);
    if (!statement.columns.empty() && statement.columns.size() != query->columns.size()) {
        throw statementError(
            ErrorCategory::Syntax, statement.columns.size() > query->columns.size() ? 8158 : 8159,
            "'" + statement.name.last() + "' has a different number of columns than were specified in the column list.",
            batch.text, statement.name.range);
    }
    for (std::size_t i = 0; statement.columns.empty() && i < query->columns.size(); ++i) {
        if (!query->columns[i].name.empty()) continue;
        throw statementError(ErrorCategory::Syntax, 4511,
                             "Create View or Function failed because no column name was specified for column " +
                                 std::to_string(i + 1) + ".",
                             batch.text, statement.name.range);
    }
    std::vector<std::string> names;
    for (const OutputColumn& column : query->columns)
        names.push_back(statement.columns.empty() ? column.name : statement.columns[names.size()].text);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (std::none_of(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(i),
                         [&](const std::string& other) { return sameName(other, names[i]); })) {
            continue;
        }
        throw statementError(ErrorCategory::Syntax, 4506,
                             "Column names in each view or function must be unique. Column name '" + names[i] +
                                 "' in view or function '" + statement.name.last() + "' is specified more than once.",
                             batch.text, statement.name.range);
    }
    createModule(batch, statement, statement.name, statement.mode, ModuleKind::View);
}

void Executor::createModule(const ast::Batch& batch, const ast::Statement& statement, const ast::ObjectName& name,
                            ast::DefinitionMode mode, ModuleKind kind) {
    const Module* existing = catalog_.module(name.last());
    if (mode == ast::DefinitionMode::Alter && (existing == nullptr || existing->kind != kind)) {
        throw statementError(ErrorCategory::NotFound, 208, "Invalid object name '" + name.last() + "'.", batch.text,
                             name.range);
    }
    const bool replaces = mode != ast::DefinitionMode::Create && existing != nullptr && existing->kind == kind;
    if (!replaces) requireFreeName(batch, name);
    catalog_.saveModule({name.last(), kind, std::string(batch.textOf(statement.range)), name.isTemporary()});
}

}  // namespace basalt::embedded
