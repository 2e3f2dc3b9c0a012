// DBCC CHECKIDENT: the number that an identity column goes on with.
#include "ado/names.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/statement_guard.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

namespace {

std::string shown(const std::optional<std::int64_t>& number) {
    return number ? "'" + std::to_string(*number) + "'" : "'NULL'";
}

}  // namespace

void Executor::checkIdentity(const ast::Batch& batch, const ast::CheckIdentityStatement& statement,
                             const Environment& environment, BatchResult& into) {
    using Action = ast::CheckIdentityStatement::Action;
    try {
        std::string name = statement.name.text;
        PlanSet plans;
        if (statement.table != nullptr) name = toText(evaluate(batch, *statement.table, plans, environment).value);
        name = objectPart(name);
        TypedValue value{Null{}, {}};
        if (statement.value != nullptr) value = evaluate(batch, *statement.value, plans, environment);
        catalog_.settleIdentities();
        StatementGuard guard(*this, true, false, isTemporaryName(name));
        catalog_.refresh();
        const Table* table = catalog_.table(name);
        if (table == nullptr) {
            throwSqlError(2501,
                          "Cannot find a table or object with the name \"" + name + "\". Check the system catalog.");
        }
        const TableColumn* column = table->identityColumn();
        if (column == nullptr) throwSqlError(7997, "'" + table->name + "' does not contain an identity column.");
        IdentityState state = catalog_.identity(table->name);
        if (const auto used = usedIdentities_.find(foldName(table->name)); used != usedIdentities_.end())
            state.last = used->second;
        std::string told = "Checking identity information: current identity value " + shown(state.last);
        if (statement.action == Action::Set) {
            const Value number = convert(value.value, value.type, column->type);
            if (isNull(number)) throwSqlError(2560, "Parameter 3 is incorrect for this DBCC statement.");
            // A table that has never had a row begins with the number itself; any other goes on behind it.
            const std::int64_t given = toInt64(number);
            state.last = state.last ? given : given - state.increment;
        } else {
            const bool rising = state.increment > 0;
            SqliteStatement extreme = database_.prepare(std::string("SELECT ") + (rising ? "max(" : "min(") +
                                                        sqlQuoted(column->name) + ") FROM " + table->sqlName());
            std::optional<std::int64_t> inRows;
            if (extreme.step() && !extreme.isNullAt(0))
                inRows = toInt64(readValue(sqlite3_column_value(extreme.handle(), 0), column->type));
            extreme.reset();
            told += ", current column value " + shown(inRows);
            const bool behind = inRows && (!state.last || (rising ? *inRows > *state.last : *inRows < *state.last));
            if (behind && statement.action == Action::Correct) state.last = inRows;
        }
        if (statement.action != Action::Report) {
            usedIdentities_.erase(foldName(table->name));
            catalog_.setIdentity(table->name, state);
        }
        guard.succeed();
        if (!statement.silent) {
            into.say(told + ".");
            into.say("DBCC execution completed. If DBCC printed error messages, contact your system administrator.");
        }
        state_.rowCount = 0;
        state_.error = 0;
    } catch (const DatabaseError& error) {
        afterFailure(error);
        throw;
    }
}

}  // namespace basalt::embedded
