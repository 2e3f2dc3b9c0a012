#include "engines/embedded/executor/executor.h"

#include "engines/embedded/executor/constraint_error.h"
#include "engines/embedded/executor/identity_run.h"
#include "engines/embedded/executor/running.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/lexer/literal_value.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/dates.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

using ast::StatementKind;

Executor::Executor(SqliteDatabase& database, Catalog& catalog, std::function<std::int64_t()> clock, int longestWaitMs)
    : database_(database),
      catalog_(catalog),
      clock_(std::move(clock)),
      longestWaitMs_(longestWaitMs),
      identity_(std::make_unique<IdentityRun>()),
      applied_(database) {
    savepoint_ = database_.prepare("SAVEPOINT basalt_statement");
    release_ = database_.prepare("RELEASE basalt_statement");
    rollbackTo_ = database_.prepare("ROLLBACK TO basalt_statement");
    beginImmediate_ = database_.prepare("BEGIN IMMEDIATE");
    beginDeferred_ = database_.prepare("BEGIN");
    commit_ = database_.prepare("COMMIT");
    rollback_ = database_.prepare("ROLLBACK");
    registerFunctions();
}

Executor::~Executor() = default;

bool Executor::takes(StatementKind kind) {
    return isPlanned(kind) || kind == StatementKind::CheckIdentity || kind == StatementKind::Truncate ||
           kind == StatementKind::CreateTable || kind == StatementKind::AlterTable ||
           kind == StatementKind::CreateIndex || kind == StatementKind::CreateView ||
           kind == StatementKind::CreateProcedure || kind == StatementKind::CreateFunction ||
           kind == StatementKind::Drop || kind == StatementKind::SetOption || kind == StatementKind::Transaction;
}

bool Executor::isPlanned(StatementKind kind) {
    return kind == StatementKind::Select || kind == StatementKind::Insert || kind == StatementKind::Update ||
           kind == StatementKind::Delete;
}

namespace {

bool writes(const ast::Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Select:
            return !ast::firstSelect(*ast::as<ast::SelectStatement>(statement).query->body).into.empty();
        case StatementKind::SetOption:
        case StatementKind::Transaction:
            return false;
        default:
            return true;
    }
}

}  // namespace

void Executor::execute(const ast::Batch& batch, const ast::Statement& statement, PlanSet& plans,
                       const Environment& environment, BatchResult& into) {
    if (state_.doomed && writes(statement)) requireCommittable();
    switch (statement.kind) {
        case StatementKind::Select:
            if (const auto& select = ast::as<ast::SelectStatement>(statement);
                !ast::firstSelect(*select.query->body).into.empty()) {
                return selectInto(batch, select, environment, into);
            }
            [[fallthrough]];
        case StatementKind::Insert:
        case StatementKind::Update:
        case StatementKind::Delete:
            return run(*planOf(batch, statement, plans, environment), environment, into);
        case StatementKind::CheckIdentity:
            return checkIdentity(batch, ast::as<ast::CheckIdentityStatement>(statement), environment, into);
        case StatementKind::Truncate:
            return truncate(batch, ast::as<ast::TruncateStatement>(statement));
        case StatementKind::Transaction:
            return transaction(batch, ast::as<ast::TransactionStatement>(statement), environment);
        case StatementKind::SetOption:
            return setOption(batch, ast::as<ast::SetOptionStatement>(statement), environment);
        default:
            define(batch, statement, environment);
    }
}

Value Executor::systemValue(SystemValue value) {
    const CaughtError* caught = state_.caught;
    switch (value) {
        case SystemValue::Now:
            return DateTime{roundedTo(clock_(), SqlType::of(TypeKind::DateTime))};
        case SystemValue::UtcNow:
            return DateTime{roundedTo(clock_() - localTicksAheadOfUtc(), SqlType::of(TypeKind::DateTime))};
        case SystemValue::ScopeIdentity:
            return state_.scopeIdentity;
        case SystemValue::Identity:
            return state_.identity;
        case SystemValue::RowCount:
            return state_.rowCount;
        case SystemValue::Error:
            return state_.error;
        case SystemValue::TranCount:
            return state_.tranCount;
        case SystemValue::FetchStatus:
            return std::int64_t{-1};
        case SystemValue::NestLevel:
            return state_.nestLevel;
        case SystemValue::LockTimeout:
            return std::int64_t{state_.lockTimeout};
        case SystemValue::ProcId:
            return std::int64_t{0};
        case SystemValue::SpId:
            return std::int64_t{51};
        case SystemValue::ErrorNumber:
            return caught == nullptr ? Value(Null{}) : Value(std::int64_t{caught->number});
        case SystemValue::ErrorMessage:
            return caught == nullptr ? Value(Null{}) : Value(caught->message);
        case SystemValue::ErrorSeverity:
            return caught == nullptr ? Value(Null{}) : Value(std::int64_t{caught->severity});
        case SystemValue::ErrorState:
            return caught == nullptr ? Value(Null{}) : Value(std::int64_t{caught->state});
        case SystemValue::ErrorLine:
            return caught == nullptr ? Value(Null{}) : Value(std::int64_t{caught->line});
        case SystemValue::ErrorProcedure:
            return caught == nullptr || caught->procedure.empty() ? Value(Null{}) : Value(caught->procedure);
        case SystemValue::XactState:
            return std::int64_t{isDoomed() ? -1 : inTransaction() ? 1 : 0};
    }
    return Null{};
}

void Executor::bindSlot(SqliteStatement& statement, int index, const Slot& slot, const Environment& environment) {
    const bool plain =
        slot.from == slot.to || (slot.from.storage() == slot.to.storage() && slot.from.scale == slot.to.scale &&
                                 slot.from.storage() != Storage::Integer);
    const auto bindFrom = [&](const Value& value) {
        // Most values are bound as they are, without a copy in between.
        if (plain) {
            statement.bindValue(index, value);
        } else {
            statement.bindValue(index, convert(value, slot.from, slot.to));
        }
    };
    switch (slot.source) {
        case Slot::Source::Literal: {
            const Literal& literal = environment.literal(slot.index);
            switch (literal.type) {
                case LiteralType::Int:
                    if (slot.to.isInteger() && slot.to.kind != TypeKind::Bit)
                        return statement.bind(index, literal.integer);
                    if (slot.to.isDecimal()) {
                        return statement.bindDecimal(index, literal.integer * powerOfTen(slot.to.scale));
                    }
                    break;
                case LiteralType::Varchar:
                case LiteralType::NVarchar:
                    // The text outlives the run, so that SQLite need not copy it.
                    if (slot.to.storage() == Storage::Text) {
                        sqlite3_bind_text64(statement.handle(), index,
                                            literal.text.data() == nullptr ? "" : literal.text.data(),
                                            literal.text.size(), SQLITE_STATIC, SQLITE_UTF8);
                        return;
                    }
                    break;
                default:
                    break;
            }
            return bindFrom(valueOf(literal));
        }
        case Slot::Source::Marker:
            // A marker's own scale may differ from that of the plan's type only when the plan is another's.
            return bindFrom(environment.markers[slot.index]);
        case Slot::Source::Variable:
            return bindFrom(environment.variables->valueOf(slot.variable));
        case Slot::Source::System: {
            const Value value = systemValue(slot.system);
            const bool integral = std::holds_alternative<std::int64_t>(value) && slot.from.isDecimal();
            return statement.bindValue(index,
                                       convert(value, integral ? SqlType::of(TypeKind::BigInt) : slot.from, slot.to));
        }
        case Slot::Source::Row:
            return;  // bound row by row
    }
}

void Executor::bind(Plan& plan, const Environment& environment) {
    if (plan.search != nullptr) chooseTextSearch(plan, environment);
    for (std::size_t i = 0; i < plan.slots.size(); ++i)
        bindSlot(plan.statement, static_cast<int>(i + 1), plan.slots[i], environment);
}

DatabaseError Executor::failureOf(const Plan& plan, int code) {
    const bool refusesCommit = code == SQLITE_CONSTRAINT_COMMITHOOK;
    if ((code & 0xFF) == SQLITE_CONSTRAINT && !refusesCommit) return constraintError(database_, catalog_, plan, code);
    return database_.failure(code);
}

bool Executor::firstStep(Plan& plan, const Environment& environment) {
    if (plan.withoutIndexes.empty()) return step(plan);
    const int code = sqlite3_step(plan.statement.handle());
    // SQLite has read the statement anew when the schema is another one.
    const bool dropped =
        code == SQLITE_ERROR && std::string_view(sqlite3_errmsg(database_.handle())).starts_with("no such index");
    if (!dropped) return hasRow(plan, code);
    plan.statement = database_.prepare(plan.withoutIndexes);
    plan.withoutIndexes.clear();
    plan.outdated = true;
    bind(plan, environment);
    return step(plan);
}

bool Executor::step(Plan& plan) {
    return hasRow(plan, sqlite3_step(plan.statement.handle()));
}

bool Executor::hasRow(Plan& plan, int code) {
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    const DatabaseError error = failureOf(plan, code);
    plan.statement.reset();
    throw error;
}

void Executor::afterFailure(const DatabaseError& error) {
    state_.error = error.nativeCode();
    state_.rowCount = 0;
    const ErrorCategory category = error.category();
    const bool deadly = category == ErrorCategory::Connection || category == ErrorCategory::Corrupt ||
                        category == ErrorCategory::DiskFull;
    if (deadly && inTransaction()) sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    if (inTransaction()) return;
    state_.tranCount = 0;
    state_.doomed = false;
    savepoints_.clear();
    catalog_.forgetIdentities();
}

void Executor::run(Plan& plan, const Environment& environment, BatchResult& into) {
    try {
        bind(plan, environment);
        if (plan.writes()) {
            runChange(plan, into, environment);
        } else {
            runSelect(plan, into, environment);
        }
        state_.error = 0;
    } catch (const DatabaseError& error) {
        plan.statement.reset();
        afterFailure(error);
        throw;
    }
}

void Executor::readRow(const Plan& plan, RowSet& rows) {
    sqlite3_stmt* statement = plan.statement.handle();
    const int count = static_cast<int>(plan.readers.size());
    for (int i = 0; i < count; ++i) {
        Column& column = rows.column(static_cast<std::size_t>(i));
        sqlite3_value* cell = sqlite3_column_value(statement, i);
        if (sqlite3_value_type(cell) == SQLITE_NULL) {
            column.appendNull();
            continue;
        }
        switch (plan.readers[static_cast<std::size_t>(i)]) {
            case CellReader::Integer:
                column.appendInt(sqlite3_value_int64(cell));
                break;
            case CellReader::Real:
                column.appendDouble(sqlite3_value_double(cell));
                break;
            case CellReader::Decimal: {
                const void* data = sqlite3_value_blob(cell);
                column.appendDecimal(decodeDecimal(data, sqlite3_value_bytes(cell)));
                break;
            }
            case CellReader::Text: {
                const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(cell));
                column.appendText({text, static_cast<std::size_t>(sqlite3_value_bytes(cell))});
                break;
            }
            case CellReader::Bytes: {
                const void* data = sqlite3_value_blob(cell);
                column.appendBytes(data, static_cast<std::size_t>(sqlite3_value_bytes(cell)));
                break;
            }
            case CellReader::Ticks:
                column.appendDateTime({sqlite3_value_int64(cell)});
                break;
            case CellReader::Time:
                column.appendText(formatDate(sqlite3_value_int64(cell), plan.types[static_cast<std::size_t>(i)], 121));
                break;
        }
    }
    rows.finishRow();
}

void Executor::assignRow(const Plan& plan, const Environment& environment) {
    const int count = sqlite3_column_count(plan.statement.handle());
    const auto assigned = static_cast<int>(plan.assignments.size());
    for (int i = 0; i < assigned; ++i) {
        const SelectAssignment& assignment = plan.assignments[static_cast<std::size_t>(i)];
        sqlite3_value* cell = sqlite3_column_value(plan.statement.handle(), count - assigned + i);
        environment.variables->assign(assignment.variable,
                                      convert(readValue(cell, assignment.from), assignment.from, assignment.to));
    }
}

void Executor::runSelect(Plan& plan, BatchResult& into, const Environment& environment) {
    std::int64_t count = 0;
    if (plan.assignments.empty()) {
        StatementResult& result = into.results.emplace_back();
        RowSet& rows = result.rows.emplace(plan.columns);
        try {
            for (bool more = firstStep(plan, environment); more; more = step(plan))
                readRow(plan, rows);
        } catch (...) {
            into.results.pop_back();
            throw;
        }
        count = static_cast<std::int64_t>(rows.rowCount());
    } else {
        const Running running(running_, environment);
        for (bool more = firstStep(plan, environment); more; more = step(plan), ++count)
            assignRow(plan, environment);
    }
    plan.statement.reset();
    state_.rowCount = count;
}

TypedValue Executor::evaluate(const ast::Batch& batch, const ast::Expression& expression, PlanSet& plans,
                              const Environment& environment) {
    Plan* plan = plans.find(&expression);
    if (plan == nullptr || plan->generation != catalog_.generation()) {
        catalog_.refresh();
        std::set<std::string> called;
        const auto bind = [&] {
            Binder binder(catalog_, binderInput(batch, environment, &called));
            return ast::isCondition(expression.kind) ? binder.condition(expression, nullptr)
                                                     : binder.expression(expression, nullptr);
        };
        auto query = std::make_unique<BoundQuery>();
        BoundPtr bound = bind();
        if (makeReady(called, {})) bound = bind();
        const SqlType type = bound->type;
        SqlWriter writer;
        auto select = std::make_unique<BoundSelect>();
        select->items.push_back({std::move(bound), {}});
        query->body = std::make_unique<BoundBody>();
        query->body->select = std::move(select);
        writer.query(*query);
        std::unique_ptr<Plan> made = prepared(writer);
        made->types.push_back(type);
        plan = &plans.keep(&expression, std::move(made));
    }
    try {
        bind(*plan, environment);
        TypedValue result{Null{}, plan->types[0]};
        if (step(*plan)) result.value = readValue(sqlite3_column_value(plan->statement.handle(), 0), result.type);
        plan->statement.reset();
        return result;
    } catch (const DatabaseError& error) {
        plan->statement.reset();
        afterFailure(error);
        throw;
    }
}

bool Executor::test(const ast::Batch& batch, const ast::Expression& condition, PlanSet& plans,
                    const Environment& environment) {
    const TypedValue result = evaluate(batch, condition, plans, environment);
    return !isNull(result.value) && toBool(result.value);
}

}  // namespace basalt::embedded
