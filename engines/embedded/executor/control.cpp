// SELECT ... INTO, transactions as statements, and SET options.
#include <algorithm>

#include "ado/names.h"
#include "engines/embedded/executor/definition/table_design.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/statement_guard.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

namespace {

// As in SQL Server: of one table's rows, neither brought together nor joined, and of a column that is named once.
bool inheritsIdentity(const BoundQuery& query) {
    const BoundSelect* select = query.body->select.get();
    if (select == nullptr || select->aggregated || !select->groupBy.empty()) return false;
    if (select->from != nullptr && select->from->kind == SourceKind::Join) return false;
    return std::ranges::count_if(query.columns,
                                 [](const OutputColumn& column) { return column.base && column.base->identity; }) == 1;
}

}  // namespace

void Executor::selectInto(const ast::Batch& batch, const ast::SelectStatement& statement,
                          const Environment& environment, BatchResult& into) {
    try {
        catalog_.settleIdentities();
        const ast::ObjectName& name = ast::firstSelect(*statement.query->body).into;
        StatementGuard guard(*this, true, false, name.isTemporary());
        catalog_.refresh();
        requireTableName(batch, name);
        std::set<std::string> called;
        Binder binder(catalog_, binderInput(batch, environment, &called));
        BoundSelectStatement bound = binder.selectStatement(statement);
        if (makeReady(called, {})) bound = binder.selectStatement(statement);
        TableDesign design;
        design.name = bound.into;
        design.temporary = name.isTemporary();
        std::string columns;
        const bool inherits = inheritsIdentity(*bound.query);
        bool identity = false;
        for (const OutputColumn& column : bound.query->columns) {
            if (column.name.empty()) {
                binder.fail(1038,
                            "An object or column name is missing or empty. For SELECT INTO statements, verify each "
                            "column has a name.",
                            statement.range);
            }
            if (design.find(column.name) != nullptr) {
                binder.fail(2705,
                            "Column names in each table must be unique. Column name '" + column.name + "' in table '" +
                                bound.into + "' is specified more than once.",
                            statement.range);
            }
            if (column.order != TextOrder::Database) {
                throwUnsupported("a column with another collation than the database's", batch.text, statement.range);
            }
            DesignColumn copy;
            copy.name = column.name;
            copy.type = column.type;
            copy.nullable = column.nullable;
            if (inherits && column.base && column.base->identity) {
                copy.identity = catalog_.identity(column.base->table);
                copy.identity->last.reset();
                identity = true;
            }
            columns += (columns.empty() ? "" : ", ") + sqlQuoted(column.name);
            design.columns.push_back(std::move(copy));
        }
        if (design.temporary) Catalog::createSystemTables(database_, true);
        design.create(database_, catalog_);
        usedIdentities_.erase(foldName(bound.into));
        SqlWriter writer;
        writer.query(*bound.query);
        const std::string target = (design.temporary ? "temp." : "main.") + sqlQuoted(bound.into);
        SqliteStatement insert = database_.prepare("INSERT INTO " + target + "(" + columns + ") " + writer.sql());
        const std::vector<Slot> slots = writer.takeSlots();
        for (std::size_t i = 0; i < slots.size(); ++i)
            bindSlot(insert, static_cast<int>(i + 1), slots[i], environment);
        insert.run();
        state_.rowCount = sqlite3_changes64(database_.handle());
        catalog_.invalidate();
        if (identity) {
            const Table& table = catalog_.requireTable(bound.into);
            IdentityState state = catalog_.identity(table.name);
            SqliteStatement last = database_.prepare((state.increment < 0 ? "SELECT min(" : "SELECT max(") +
                                                     sqlQuoted(table.identityColumn()->name) + ") FROM " + target);
            if (last.step() && !last.isNullAt(0)) state.last = last.integerAt(0);
            last.reset();
            catalog_.setIdentity(table.name, state);
        }
        guard.succeed();
        catalog_.invalidate();
        state_.error = 0;
        if (!state_.noCount) into.results.push_back({std::nullopt, state_.rowCount});
    } catch (const DatabaseError& error) {
        catalog_.invalidate();
        afterFailure(error);
        throw;
    }
}

void Executor::clearTable(const std::string& name) {
    const Table* table = catalog_.table(name);
    if (table == nullptr) return;
    database_.execute(("DELETE FROM " + table->sqlName()).c_str());
    if (table->identityColumn() == nullptr) return;
    // Every run has a table of its own, whose numbers begin with the seed.
    usedIdentities_.erase(foldName(name));
    IdentityState state = catalog_.identity(name);
    if (!state.last) return;
    state.last.reset();
    catalog_.setIdentity(name, state);
}

namespace {

// The names of the columns whose values are stored, and how many there are.
std::pair<std::string, int> storedColumns(const Table& table) {
    std::string names;
    int count = 0;
    for (const TableColumn& column : table.columns) {
        if (column.computed) continue;
        names += (count++ == 0 ? "" : ", ") + sqlQuoted(column.name);
    }
    return {names, count};
}

}  // namespace

Executor::TableContents Executor::contentsOf(const std::string& name) {
    TableContents result;
    const Table* table = catalog_.table(name);
    if (table == nullptr) return result;
    const auto [columns, count] = storedColumns(*table);
    SqliteStatement rows = database_.prepare("SELECT " + columns + " FROM " + table->sqlName() +
                                             (table->rowNumber.empty() ? "" : " ORDER BY " + table->rowNumber));
    while (rows.step()) {
        for (int i = 0; i < count; ++i)
            result.cells.push_back(rows.held(i));
    }
    if (table->identityColumn() != nullptr) result.identity = catalog_.identity(name);
    return result;
}

void Executor::putBack(const std::string& name, const TableContents& contents) {
    clearTable(name);
    const Table& table = catalog_.requireTable(name);
    const auto [columns, count] = storedColumns(table);
    std::string markers;
    for (int i = 0; i < count; ++i)
        markers += i == 0 ? "?" : ", ?";
    SqliteStatement insert =
        database_.prepare("INSERT INTO " + table.sqlName() + "(" + columns + ") VALUES (" + markers + ")");
    for (std::size_t cell = 0; cell < contents.cells.size();) {
        for (int i = 1; i <= count; ++i)
            insert.bindHeld(i, contents.cells[cell++]);
        insert.run();
    }
    if (contents.identity) catalog_.setIdentity(name, *contents.identity);
}

std::vector<std::vector<Value>> Executor::rowsOf(const std::string& name) {
    const Table& table = catalog_.requireTable(name);
    std::string columns;
    for (const TableColumn& column : table.columns)
        columns += (columns.empty() ? "" : ", ") + sqlQuoted(column.name);
    SqliteStatement list = database_.prepare("SELECT " + columns + " FROM " + table.sqlName());
    std::vector<std::vector<Value>> rows;
    while (list.step()) {
        std::vector<Value>& row = rows.emplace_back();
        for (std::size_t i = 0; i < table.columns.size(); ++i)
            row.push_back(readValue(sqlite3_column_value(list.handle(), static_cast<int>(i)), table.columns[i].type));
    }
    return rows;
}

void Executor::atomically(bool temporary, const std::function<void()>& change) {
    StatementGuard guard(*this, true, false, temporary);
    try {
        change();
    } catch (const DatabaseError& error) {
        afterFailure(error);
        throw;
    }
    guard.succeed();
}

void Executor::begin() {
    try {
        if (!inTransaction()) {
            beginImmediate_.run();
            // Told before the user has done his work, too.
            database_.requireInPlace();
            transactionName_.clear();
        }
        ++state_.tranCount;
        catalog_.refresh();
    } catch (const DatabaseError& error) {
        afterFailure(error);
        throw;
    }
}

bool Executor::dooms(const DatabaseError& error) const {
    if (state_.abortOnError) return true;
    switch (error.nativeCode()) {
        case 235:   // not a text of money
        case 241:   // not a text of a date
        case 244:   // a text of a number too large for tinyint and smallint
        case 245:   // not a text of a number
        case 248:   // a text of a number too large for int
        case 295:   // not a text of a smalldatetime
        case 8114:  // other types that do not convert
        case 8169:  // not a text of a uniqueidentifier
            return true;
        default:
            return false;
    }
}

void Executor::endBatch(const DatabaseError& error) {
    if (state_.tranCount > 0 && inTransaction() && dooms(error)) rollback();
}

void Executor::requireCommittable() const {
    if (!isDoomed()) return;
    throwSqlError(3930,
                  "The current transaction cannot be committed and cannot support operations that write to the log "
                  "file. Roll back the transaction.");
}

void Executor::commit() {
    if (!inTransaction()) {
        throwSqlError(3902, "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
    }
    requireCommittable();
    if (state_.tranCount > 1) {
        --state_.tranCount;
        return;
    }
    try {
        catalog_.settleIdentities();
        commit_.run();
        state_.tranCount = 0;
    } catch (const DatabaseError& error) {
        afterFailure(error);
        throw;
    }
}

void Executor::rollback() {
    if (!inTransaction()) {
        throwSqlError(3903, "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION.");
    }
    rollback_.run();
    state_.tranCount = 0;
    state_.doomed = false;
    savepoints_.clear();
    catalog_.forgetIdentities();
    // What was created in the transaction is gone again.
    catalog_.invalidate();
}

void Executor::transaction(const ast::Batch& batch, const ast::TransactionStatement& statement,
                           const Environment& environment) {
    std::string name = statement.name.text;
    if (!statement.variable.empty()) {
        if (environment.variables == nullptr || environment.variables->typeOf(statement.variable) == nullptr) {
            throw statementError(ErrorCategory::Syntax, 137,
                                 "Must declare the scalar variable \"" + statement.variable + "\".", batch.text,
                                 statement.range);
        }
        name = toText(environment.variables->valueOf(statement.variable));
    }
    using Action = ast::TransactionStatement::Action;
    const std::string savepoint = sqlQuoted("basalt_save_" + foldName(name));
    switch (statement.action) {
        case Action::Begin:
            begin();
            if (state_.tranCount == 1) transactionName_ = foldName(name);
            break;
        case Action::Commit:
            commit();
            break;
        case Action::Save:
            if (!inTransaction())
                throwSqlError(628, "Cannot issue SAVE TRANSACTION when there is no active transaction.");
            requireCommittable();
            catalog_.settleIdentities();
            database_.execute(("SAVEPOINT " + savepoint).c_str());
            savepoints_.push_back(foldName(name));
            break;
        case Action::Rollback:
            if (!name.empty() && inTransaction() &&
                std::find(savepoints_.begin(), savepoints_.end(), foldName(name)) != savepoints_.end()) {
                if (isDoomed()) {
                    throwSqlError(3931,
                                  "The current transaction cannot be committed and cannot be rolled back to a "
                                  "savepoint. Roll back the entire transaction.");
                }
                database_.execute(("ROLLBACK TO " + savepoint).c_str());
                catalog_.forgetIdentities();
                catalog_.invalidate();
                break;
            }
            if (!name.empty() && inTransaction() && foldName(name) != transactionName_) {
                throwSqlError(6401,
                              "Cannot roll back " + name + ". No transaction or savepoint of that name was found.");
            }
            rollback();
            break;
    }
    if (!inTransaction()) savepoints_.clear();
    state_.error = 0;
    state_.rowCount = 0;
}

void Executor::setLockTimeout(int milliseconds) {
    state_.lockTimeout = std::max(milliseconds, -1);
    database_.setLockTimeout(milliseconds < 0 ? longestWaitMs_ : milliseconds);
}

void Executor::setLockTimeout(const ast::Batch& batch, const ast::SetOptionStatement& statement,
                              const Environment& environment) {
    PlanSet plans;
    const TypedValue given =
        statement.value ? evaluate(batch, *statement.value, plans, environment) : TypedValue{Null{}, {}};
    if (!given.type.isInteger() || isNull(given.value)) {
        throw statementError(ErrorCategory::Syntax, 1050, "SET LOCK_TIMEOUT takes a number of milliseconds, or -1.",
                             batch.text, statement.range);
    }
    setLockTimeout(static_cast<int>(toInt64(convert(given.value, given.type, SqlType::of(TypeKind::Int)))));
}

void Executor::setOption(const ast::Batch& batch, const ast::SetOptionStatement& statement,
                         const Environment& environment) {
    state_.rowCount = 0;
    for (const std::string& option : statement.options) {
        const bool on = statement.on.value_or(false);
        if (option == "NOCOUNT") {
            state_.noCount = on;
        } else if (option == "XACT_ABORT") {
            state_.abortOnError = on;
        } else if (option == "IDENTITY_INSERT") {
            if (catalog_.table(statement.table.last()) == nullptr) {
                throw statementError(ErrorCategory::NotFound, 1088,
                                     "Cannot find the object \"" + statement.table.last() +
                                         "\" because it does not exist or you do not have permissions.",
                                     batch.text, statement.table.range);
            }
            if (on && !state_.identityInsert.empty() && !sameName(state_.identityInsert, statement.table.last())) {
                throwSqlError(8107, "IDENTITY_INSERT is already ON for table '" + state_.identityInsert +
                                        "'. Cannot perform SET operation for table '" + statement.table.last() + "'.");
            }
            if (catalog_.table(statement.table.last())->identityColumn() == nullptr) {
                throwSqlError(8106, "Table '" + statement.table.last() +
                                        "' does not have the identity property. Cannot perform SET operation.");
            }
            state_.identityInsert = on ? statement.table.last() : std::string();
            // The same INSERT means something else now.
            catalog_.invalidate();
        } else if (option == "ANSI_NULLS" || option == "ANSI_WARNINGS" || option == "QUOTED_IDENTIFIER" ||
                   option == "ANSI_PADDING" || option == "ARITHABORT" || option == "CONCAT_NULL_YIELDS_NULL" ||
                   option == "ANSI_NULL_DFLT_ON" || option == "ANSI_DEFAULTS") {
            // These are always on here.
            if (!on) throwUnsupported("SET " + option + " OFF", batch.text, statement.range);
        } else if (option == "NUMERIC_ROUNDABORT" || option == "IMPLICIT_TRANSACTIONS") {
            if (on) throwUnsupported("SET " + option + " ON", batch.text, statement.range);
        } else if (option == "LOCK_TIMEOUT") {
            setLockTimeout(batch, statement, environment);
        } else if (option == "TRANSACTION ISOLATION LEVEL" || option == "DEADLOCK_PRIORITY") {
            // Every transaction is serializable here.
            continue;
        } else {
            throwUnsupported("SET " + option, batch.text, statement.range);
        }
    }
}

}  // namespace basalt::embedded
