// The functions of generated statements that need the session: identity numbers, look-ups in the catalog, and the
// guards of subqueries and row limits.
#include <cmath>
#include <random>

#include "engines/embedded/binder/reads_rows.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/catalog/system_view.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/identity_run.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

std::string newGuid() {
    static std::random_device device;
    std::uint32_t words[4] = {device(), device(), device(), device()};
    words[1] = (words[1] & 0xFFFF0FFFU) | 0x00004000U;  // version 4
    words[2] = (words[2] & 0x3FFFFFFFU) | 0x80000000U;
    char text[37];
    std::snprintf(text, sizeof text, "%08X-%04X-%04X-%04X-%04X%08X", words[0], words[1] >> 16, words[1] & 0xFFFF,
                  words[2] >> 16, words[2] & 0xFFFF, words[3]);
    return text;
}

// Registers a function that differs from call to call and knows its owner.
template <typename Owner>
void addOwned(SqliteDatabase& database, const char* name, int count, Owner* owner,
              void (*function)(sqlite3_context*, int, sqlite3_value**)) {
    const int code = sqlite3_create_function_v2(database.handle(), name, count, SQLITE_UTF8, owner, function, nullptr,
                                                nullptr, nullptr);
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace

std::unique_ptr<RowSource> Executor::openRows(std::string_view kind, std::string_view text,
                                              std::span<sqlite3_value* const> arguments) {
    if (kind == "apply") return std::make_unique<QueryRows>(applied_, std::string(text), arguments);
    if (kind == "function") return std::make_unique<StoredRows>(functions_->callTable(text, arguments));
    catalog_.refresh();
    return std::make_unique<StoredRows>(systemRows(text, catalog_, database_));
}

void Executor::registerFunctions() {
    addRowSources(database_,
                  [this](std::string_view kind, std::string_view text, std::span<sqlite3_value* const> arguments) {
                      return openRows(kind, text, arguments);
                  });
    addOwned(database_, "t_identity", 0, this, [](sqlite3_context* context, int, sqlite3_value**) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        guarded(context, self->database_, [&] {
            const std::int64_t value = self->identity_->next();
            if (self->identity_->type().isDecimal()) return returnDecimal(context, value);
            sqlite3_result_int64(context, value);
        });
    });
    addOwned(database_, "t_variable", 1, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        guarded(context, self->database_,
                [&] { returnValue(context, self->running_->variables->valueOf(call.text(0))); });
    });
    addOwned(database_, "t_assign", 3, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        guarded(context, self->database_, [&] {
            Variables& variables = *self->running_->variables;
            const std::string name(call.text(0));
            const SqlType from = call.type(2);
            variables.assign(name, convert(call.value(1, from), from, *variables.typeOf(name)));
            sqlite3_result_value(context, arguments[1]);
        });
    });
    addOwned(database_, "t_object_id", 2, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        if (call.isNull(0) || call.isNull(1)) return;
        guarded(context, self->database_, [&] {
            // Another program may have made or dropped the object since.
            self->catalog_.refresh();
            if (const auto id = self->catalog_.objectId(objectPart(call.text(0)), call.text(1))) {
                sqlite3_result_int64(context, *id);
            }
        });
    });
    addOwned(database_, "t_object_name", 1, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        if (call.isNull(0)) return;
        guarded(context, self->database_, [&] {
            self->catalog_.refresh();
            const std::string name = objectName(call.integer(0), self->catalog_, self->database_);
            if (!name.empty()) returnValue(context, name);
        });
    });
    addOwned(database_, "t_type_name", 1, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        if (call.isNull(0)) return;
        guarded(context, self->database_, [&] {
            const std::string name = typeName(call.integer(0));
            if (!name.empty()) returnValue(context, name);
        });
    });
    addOwned(database_, "t_col_length", 2, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        if (call.isNull(0) || call.isNull(1)) return;
        guarded(context, self->database_, [&] {
            const Table* table = self->catalog_.table(objectPart(call.text(0)));
            const int position = table == nullptr ? -1 : table->find(objectPart(call.text(1)));
            if (position < 0) return;
            const SqlType& type = table->columns[static_cast<std::size_t>(position)].type;
            sqlite3_result_int(context, bytesOf(type));
        });
    });
    addOwned(database_, "t_ident_current", 1, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        if (call.isNull(0)) return;
        guarded(context, self->database_, [&] {
            const Table* table = self->catalog_.table(objectPart(call.text(0)));
            if (table == nullptr || table->identityColumn() == nullptr) return;
            const IdentityState state = self->catalog_.identity(table->name);
            sqlite3_result_int64(context, state.last ? *state.last : state.seed);
        });
    });
    addOwned(database_, "t_newid", 0, this, [](sqlite3_context* context, int, sqlite3_value**) {
        const std::string text = newGuid();
        sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    });
    addOwned(database_, "t_rand", 1, this, [](sqlite3_context* context, int, sqlite3_value**) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        // Kept with the argument, a constant, until the statement ends: each place has one number for all rows.
        if (const auto* kept = static_cast<const double*>(sqlite3_get_auxdata(context, 0))) {
            return sqlite3_result_double(context, *kept);
        }
        auto drawn = std::make_unique<double>(self->random_.next());
        sqlite3_result_double(context, *drawn);
        sqlite3_set_auxdata(context, 0, drawn.release(), [](void* number) { delete static_cast<double*>(number); });
    });
    addOwned(database_, "t_rand_seed", 1, this, [](sqlite3_context* context, int count, sqlite3_value** arguments) {
        auto* self = static_cast<Executor*>(sqlite3_user_data(context));
        const Call call(context, count, arguments);
        self->random_.seed(call.isNull(0) ? 0 : call.integer(0));
        sqlite3_result_double(context, self->random_.next());
    });
    addOwned(database_, kCallUserFunction, -1, this,
             [](sqlite3_context* context, int count, sqlite3_value** arguments) {
                 auto* self = static_cast<Executor*>(sqlite3_user_data(context));
                 const Call call(context, count, arguments);
                 guarded(context, self->database_, [&] {
                     const std::span<sqlite3_value* const> values(arguments + 1, static_cast<std::size_t>(count - 1));
                     returnValue(context, self->functions_->callScalar(call.text(0), values));
                 });
             });
    addFunction(
        database_, "t_one", 2,
        [](Call& call) {
            if (call.integer(1) > 1) {
                throwSqlError(
                    error::kSubqueryManyRows,
                    "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, "
                    "<= , >, >= or when the subquery is used as an expression.");
            }
            call.resultArgument(0);
        },
        NullRule::Pass);
    // The depth of a row that a row of that depth leads to.
    addFunction(database_, "t_depth", 2, [](Call& call) {
        if (call.integer(0) >= call.integer(1)) {
            throwSqlError(530, "The statement terminated. The maximum recursion " + std::to_string(call.integer(1)) +
                                   " has been exhausted before statement completion.");
        }
        call.result(call.integer(0) + 1);
    });
    // The rows that so many percent of a number of rows are.
    addFunction(database_, "t_percent", 2, [](Call& call) {
        const double percent = call.real(1);
        if (percent < 0 || percent > 100) throwSqlError(1031, "Percent values must be between 0 and 100.");
        call.result(static_cast<std::int64_t>(std::ceil(static_cast<double>(call.integer(0)) * percent / 100)));
    });
    addFunction(
        database_, "t_limit", 2,
        [](Call& call) {
            if (call.isNull(0)) {
                throwSqlError(
                    1060,
                    "The number of rows provided for a TOP or FETCH clauses row count parameter must be an integer.");
            }
            const auto clause = static_cast<RowLimit>(call.integer(1));
            if (clause == RowLimit::Fetch && call.integer(0) < 1) {
                throwSqlError(10744, "The number of rows provided for a FETCH clause must be greater then zero.");
            }
            if (call.integer(0) < 0 && clause == RowLimit::Offset) {
                throwSqlError(10742, "The offset specified in a OFFSET clause may not be negative.");
            }
            if (call.integer(0) < 0) {
                throwSqlError(127, "A TOP N or FETCH rowcount value may not be negative.");
            }
            call.resultArgument(0);
        },
        NullRule::Pass);
}

}  // namespace basalt::embedded
