// INSERT, UPDATE and DELETE as they run: row by row where they must, with their OUTPUT and their identities.
#include "ado/names.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/identity_run.h"
#include "engines/embedded/executor/running.h"
#include "engines/embedded/executor/statement_guard.h"

namespace basalt::embedded {

std::int64_t Executor::runByRow(Plan& plan, RowSet* output, const Environment& environment) {
    std::vector<HeldValue> items;
    const int width = sqlite3_column_count(plan.statement.handle());
    std::int64_t count = 0;
    {
        const Running running(running_, environment);
        for (bool more = firstStep(plan, environment); more; more = step(plan), ++count) {
            for (int i = 0; i < width && plan.each != nullptr; ++i)
                items.push_back(plan.statement.held(i));
        }
    }
    plan.statement.reset();
    if (plan.each == nullptr) return count;
    Plan& each = *plan.each;
    bind(each, environment);
    for (std::size_t first = 0; first < items.size(); first += static_cast<std::size_t>(width)) {
        for (std::size_t i = 0; i < each.slots.size(); ++i) {
            if (each.slots[i].source == Slot::Source::Row)
                each.statement.bindHeld(static_cast<int>(i + 1), items[first + each.slots[i].index]);
        }
        while (step(each)) {
            if (output != nullptr) readRow(each, *output);
        }
        each.statement.reset();
    }
    return count;
}

Environment Executor::outputEnvironment(const Plan& plan, std::span<const Value> values,
                                        const Environment& environment) {
    return {.table = &plan.target->batch.literals,
            .markers = values,
            .markerTypes = std::span(plan.types).first(plan.columns->size()),
            .variables = environment.variables};
}

void Executor::insertOutput(Plan& plan, const RowSet& rows, const Environment& environment) {
    // What the statement itself has inserted stays the last identity.
    const Value identity = state_.identity;
    const Value scopeIdentity = state_.scopeIdentity;
    std::vector<Value> values(rows.columnCount());
    const ast::Batch& insert = plan.target->batch;
    const Environment row = outputEnvironment(plan, values, environment);
    BatchResult unseen;
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        for (std::size_t c = 0; c < values.size(); ++c)
            values[c] = rows.column(c).valueAt(r);
        execute(insert, *insert.statements.front(), plan.target->plans, row, unseen);
        unseen.results.clear();
    }
    state_.identity = identity;
    state_.scopeIdentity = scopeIdentity;
}

void Executor::startIdentity(const std::string& table) {
    std::optional<std::int64_t> used;
    if (!usedIdentities_.empty()) {
        if (const auto found = usedIdentities_.find(foldName(table)); found != usedIdentities_.end())
            used = found->second;
    }
    identity_->start(catalog_, catalog_.requireTable(table), used);
}

void Executor::keepIdentity(const std::string& table) {
    // A change that has lasted is in the database already.
    if (!inTransaction() || !identity_->last()) return;
    usedIdentities_[foldName(table)] = *identity_->last();
}

void Executor::runChange(Plan& plan, BatchResult& into, const Environment& environment) {
    const bool identity = plan.generatesIdentity || plan.setsIdentity;
    const bool several = plan.byRow || plan.target != nullptr;
    // What comes after SQLite's change of one row cannot fail, unless rows or variables are to take its values.
    const bool whole =
        plan.oneRow && !several && plan.columns == nullptr && plan.assignments.empty() && !plan.setsIdentity;
    const bool unwritten = plan.byRow && plan.each == nullptr;
    const bool temporary = plan.target == nullptr && (unwritten || isTemporaryName(plan.table));
    StatementGuard guard(*this, identity || several, whole, temporary);
    StatementResult result;
    if (plan.columns != nullptr) result.rows.emplace(plan.columns);
    if (identity) startIdentity(plan.table);
    struct Keep {
        Executor& executor;
        const Plan* plan;
        ~Keep() {
            if (plan != nullptr) executor.keepIdentity(plan->table);
        }
    } const keep{*this, identity ? &plan : nullptr};
    std::int64_t changed = 0;
    if (plan.byRow) changed = runByRow(plan, plan.columns != nullptr ? &*result.rows : nullptr, environment);
    for (bool more = !plan.byRow && firstStep(plan, environment); more; more = step(plan)) {
        if (plan.columns != nullptr) readRow(plan, *result.rows);
        if (!plan.assignments.empty()) assignRow(plan, environment);
        if (plan.setsIdentity) {
            identity_->given(sqlite3_column_int64(plan.statement.handle(), static_cast<int>(plan.identityOutput)));
        }
    }
    if (!plan.byRow) changed = sqlite3_changes64(database_.handle());
    plan.statement.reset();
    if (identity) {
        identity_->finish(catalog_);
        if (const std::optional<std::int64_t> last = identity_->last()) {
            state_.identity = state_.scopeIdentity = *last;
        }
    } else if (plan.kind == PlanKind::Insert) {
        state_.identity = state_.scopeIdentity = Null{};
    }
    if (plan.target != nullptr) {
        insertOutput(plan, *result.rows, environment);
        result.rows.reset();
    }
    guard.succeed();
    state_.rowCount = changed;
    result.affectedRows = state_.noCount ? -1 : changed;
    if (result.rows || !state_.noCount) into.results.push_back(std::move(result));
}

}  // namespace basalt::embedded
