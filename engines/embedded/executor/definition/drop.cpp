// DROP TABLE, VIEW, PROCEDURE, FUNCTION and INDEX; TRUNCATE TABLE.
#include <algorithm>
#include <utility>
#include <vector>

#include "ado/names.h"
#include "engines/embedded/catalog/included_columns.h"
#include "engines/embedded/catalog/null_guard.h"
#include "engines/embedded/catalog/text_search.h"
#include "engines/embedded/executor/definition/schema_reader.h"
#include "engines/embedded/executor/definition/table_design.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/statement_guard.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

constexpr std::string_view kHiddenPrefix = "basalt_hidden_";

const char* nameOf(ast::ObjectType type) {
    switch (type) {
        case ast::ObjectType::Table:
            return "table";
        case ast::ObjectType::View:
            return "view";
        case ast::ObjectType::Procedure:
            return "procedure";
        case ast::ObjectType::Function:
            return "function";
        case ast::ObjectType::Index:
            return "index";
        case ast::ObjectType::Trigger:
            return "trigger";
    }
    return "";
}

// The table that refers to this one, empty when none does.
std::string referrerOf(Catalog& catalog, const Table& table) {
    for (const std::string& name : catalog.tableNames()) {
        const Table* other = catalog.table(name);
        if (other == nullptr || sameName(name, table.name)) continue;
        for (const ForeignKey& key : other->foreignKeys) {
            if (sameName(key.referencedTable, table.name)) return name;
        }
    }
    return {};
}

std::string wordOf(ast::ObjectType type) {
    std::string word = nameOf(type);
    std::ranges::transform(word, word.begin(), [](char c) { return static_cast<char>(c - 'a' + 'A'); });
    return word;
}

}  // namespace

void Executor::refuseOtherKind(const ast::Batch& batch, ast::ObjectType wanted, const ast::ObjectName& name) {
    ast::ObjectType is = ast::ObjectType::Table;
    if (wanted == ast::ObjectType::Index || wanted == ast::ObjectType::Trigger) return;
    if (catalog_.table(name.last()) == nullptr) {
        const Module* module = catalog_.module(name.last());
        if (module == nullptr) return;
        is = module->kind == ModuleKind::View        ? ast::ObjectType::View
             : module->kind == ModuleKind::Procedure ? ast::ObjectType::Procedure
                                                     : ast::ObjectType::Function;
    }
    throw statementError(ErrorCategory::Other, 3705,
                         "Cannot use DROP " + wordOf(wanted) + " with '" + name.last() + "' because '" + name.last() +
                             "' is a " + nameOf(is) + ". Use DROP " + wordOf(is) + ".",
                         batch.text, name.range);
}

void Executor::drop(const ast::Batch& batch, const ast::DropStatement& statement) {
    for (const ast::DropStatement::Item& item : statement.items) {
        const std::string& name = item.name.last();
        const auto missing = [&] {
            refuseOtherKind(batch, statement.type, item.name);
            if (statement.ifExists) return;
            throw statementError(ErrorCategory::NotFound, 3701,
                                 std::string("Cannot drop the ") + nameOf(statement.type) + " '" + name +
                                     "', because it does not exist or you do not have permission.",
                                 batch.text, item.name.range);
        };
        switch (statement.type) {
            case ast::ObjectType::Table: {
                const Table* table = catalog_.table(name);
                if (table == nullptr) {
                    missing();
                    break;
                }
                if (!referrerOf(catalog_, *table).empty()) {
                    throw statementError(
                        ErrorCategory::Constraint, 3726,
                        "Could not drop object '" + name + "' because it is referenced by a FOREIGN KEY constraint.",
                        batch.text, item.name.range);
                }
                dropTable(table->name);
                break;
            }
            case ast::ObjectType::Index: {
                const Table* table = item.table.empty() ? nullptr : catalog_.table(item.table.last());
                bool dropped = false;
                if (table != nullptr) {
                    const std::string schema = table->schemaName();
                    SqliteStatement find =
                        database_.prepare("SELECT name FROM " + schema +
                                          ".sqlite_schema WHERE type = 'index' AND tbl_name = ?1 AND "
                                          "(name = ?2 COLLATE NOCASE OR name LIKE 'basalt\\_null\\_%' ESCAPE '\\')");
                    find.bind(1, std::string_view(table->name));
                    find.bind(2, std::string_view(storedIndexName(table->name, name)));
                    std::vector<std::string> names;
                    while (find.step()) {
                        const std::string stored = find.textAt(0);
                        const bool guard = isNullGuard(stored);
                        if (guard && !sameName(guardedIndex(table->name, stored), name)) continue;
                        dropped = dropped || !guard;
                        names.push_back(stored);
                    }
                    find.reset();
                    if (dropped) {
                        for (const std::string& stored : names) {
                            database_.execute(("DROP INDEX " + schema + "." + sqlQuoted(stored)).c_str());
                            forgetIndexCondition(database_, *table, stored);
                            forgetIncludedColumns(database_, *table, stored);
                        }
                        settleTextSearch(database_, *table, includedColumns(database_, *table));
                    }
                }
                if (!dropped) missing();
                break;
            }
            case ast::ObjectType::Trigger:
                throwUnsupported("DROP TRIGGER", batch.text, statement.range);
            default: {
                const Module* module = catalog_.module(name);
                const ModuleKind kind = statement.type == ast::ObjectType::View        ? ModuleKind::View
                                        : statement.type == ast::ObjectType::Procedure ? ModuleKind::Procedure
                                                                                       : ModuleKind::Function;
                if (module == nullptr || module->kind != kind) {
                    missing();
                    break;
                }
                catalog_.dropModule(name);
            }
        }
    }
}

void Executor::dropTable(const std::string& name) {
    catalog_.settleIdentities();
    const Table table = catalog_.requireTable(name);
    dropTextSearch(database_, table);
    database_.execute(("DROP TABLE " + table.sqlName()).c_str());
    TableDesign::forget(table.name, table.temporary, database_);
    usedIdentities_.erase(foldName(table.name));
    catalog_.invalidate();
}

void Executor::renameTemporary(const std::string& from, const std::string& to) {
    SqliteStatement find =
        database_.prepare("SELECT name FROM temp.sqlite_schema WHERE type = 'table' AND name = ?1 COLLATE NOCASE");
    find.bind(1, std::string_view(from));
    if (!find.step()) return;
    const std::string stored = find.textAt(0);
    find.reset();
    catalog_.settleIdentities();
    atomically(true, [&] {
        database_.execute(("ALTER TABLE temp." + sqlQuoted(stored) + " RENAME TO " + sqlQuoted(to)).c_str());
        for (const char* system : {"basalt_identity", "basalt_default", "basalt_constraint"}) {
            SqliteStatement move =
                database_.prepare(std::string("UPDATE temp.") + system + " SET table_name = ?2 WHERE table_name = ?1");
            move.bind(1, std::string_view(foldName(from)));
            move.bind(2, std::string_view(foldName(to)));
            move.run();
        }
        // Constraints have names in the whole database: theirs make way too.
        const bool hides = to.starts_with(kHiddenPrefix);
        SqliteStatement constraints = database_.prepare(
            hides ? "UPDATE temp.basalt_constraint SET name = ?1 || ' ' || name WHERE table_name = ?1"
                  : "UPDATE temp.basalt_constraint SET name = substr(name, length(?2) + 2) WHERE table_name = ?1");
        constraints.bind(1, std::string_view(foldName(to)));
        if (!hides) constraints.bind(2, std::string_view(from));
        constraints.run();
        // So do those of indexes, which SQLite cannot rename.
        SqliteStatement list = database_.prepare(
            "SELECT name, sql FROM temp.sqlite_schema WHERE type = 'index' AND tbl_name = ?1 AND sql IS NOT NULL");
        list.bind(1, std::string_view(to));
        std::vector<std::pair<std::string, std::string>> indexes;
        while (list.step())
            indexes.emplace_back(list.textAt(0), list.textAt(1));
        list.reset();
        for (auto& [name, sql] : indexes) {
            const std::string quoted = sqlQuoted(name);
            const std::string renamed = hides ? to + " " + name : name.substr(std::min(name.size(), from.size() + 1));
            database_.execute(("DROP INDEX temp." + quoted).c_str());
            sql.replace(sql.find(quoted), quoted.size(), "temp." + sqlQuoted(renamed));
            database_.execute(sql.c_str());
        }
    });
    catalog_.invalidate();
}

bool Executor::hasHidden(const std::string& name) {
    SqliteStatement find = database_.prepare("SELECT 1 FROM temp.sqlite_schema WHERE name = ?1");
    find.bind(1, std::string_view(name));
    return find.step();
}

bool Executor::hasVariable(const std::string& name) {
    return sqlite3_table_column_metadata(database_.handle(), "temp", name.c_str(), nullptr, nullptr, nullptr, nullptr,
                                         nullptr, nullptr) == SQLITE_OK;
}

void Executor::truncate(const ast::Batch& batch, const ast::TruncateStatement& statement) {
    try {
        catalog_.settleIdentities();
        StatementGuard guard(*this, true, false, statement.table.isTemporary());
        catalog_.refresh();
        const Table* table = catalog_.table(statement.table.last());
        if (table == nullptr) {
            throw statementError(ErrorCategory::NotFound, 4701,
                                 "Cannot find the object \"" + statement.table.last() +
                                     "\" because it does not exist or you do not have permissions.",
                                 batch.text, statement.table.range);
        }
        if (!referrerOf(catalog_, *table).empty()) {
            throw statementError(ErrorCategory::Constraint, 4712,
                                 "Cannot truncate table '" + table->name +
                                     "' because it is being referenced by a FOREIGN KEY constraint.",
                                 batch.text, statement.table.range);
        }
        database_.execute(("DELETE FROM " + table->sqlName()).c_str());
        if (table->identityColumn() != nullptr) {
            IdentityState state = catalog_.identity(table->name);
            state.last.reset();
            usedIdentities_.erase(foldName(table->name));
            catalog_.setIdentity(table->name, state);
        }
        guard.succeed();
        state_.rowCount = 0;
        state_.error = 0;
    } catch (const DatabaseError& error) {
        afterFailure(error);
        throw;
    }
}

}  // namespace basalt::embedded
