// How a statement becomes a plan.
#include "ado/names.h"
#include "engines/embedded/executor/constraint_error.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/key_order.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/parser/parser.h"

namespace basalt::embedded {

using ast::StatementKind;

BinderInput Executor::binderInput(const ast::Batch& batch, const Environment& environment,
                                  std::set<std::string>* called) const {
    return {.text = batch.text,
            .literals = &batch.literals,
            .markers = environment.markerTypes,
            .variables = environment.variables,
            .called = called};
}

Plan* Executor::planOf(const ast::Batch& batch, const ast::Statement& statement, PlanSet& plans,
                       const Environment& environment) {
    Plan* found = plans.find(&statement);
    // A change has to know the schema that other programs may have changed before it writes. Literals that were scanned
    // belong to plans that the session has just found fresh.
    if (statement.kind != StatementKind::Select && environment.scanned == nullptr) catalog_.refresh();
    if (found != nullptr && found->generation == catalog_.generation()) return found;
    return &plans.keep(&statement, plan(batch, statement, environment));
}

std::unique_ptr<Plan> Executor::prepared(SqlWriter& writer) {
    auto plan = std::make_unique<Plan>();
    plan->statement = database_.prepare(writer.sql());
    plan->slots = writer.takeSlots();
    plan->generation = catalog_.generation();
    return plan;
}

std::unique_ptr<Plan> Executor::preparedByKey(SqlWriter& writer, const std::function<void(SqlWriter&)>& write) {
    std::string plain = writer.sql();
    const bool indexed = keepKeyOrder(database_, writer, write);
    std::unique_ptr<Plan> plan = prepared(writer);
    if (indexed) plan->withoutIndexes = std::move(plain);
    return plan;
}

void Executor::describe(Plan& plan, const std::vector<OutputColumn>& columns) {
    if (columns.empty()) return;
    auto infos = std::make_shared<std::vector<ColumnInfo>>();
    for (const OutputColumn& column : columns) {
        ColumnInfo info;
        info.name = column.name;
        column.type.describe(info);
        info.nullable = column.nullable;
        if (column.base) {
            info.baseTable = column.base->table;
            info.baseColumn = column.base->column;
            info.identity = column.base->identity;
        }
        infos->push_back(std::move(info));
        plan.types.push_back(column.type);
        switch (column.type.storage()) {
            case Storage::Integer:
                plan.readers.push_back(CellReader::Integer);
                break;
            case Storage::Real:
                plan.readers.push_back(CellReader::Real);
                break;
            case Storage::Decimal:
                plan.readers.push_back(CellReader::Decimal);
                break;
            case Storage::Text:
                plan.readers.push_back(CellReader::Text);
                break;
            case Storage::Blob:
                plan.readers.push_back(CellReader::Bytes);
                break;
            case Storage::Ticks:
                plan.readers.push_back(column.type.kind == TypeKind::Time ? CellReader::Time : CellReader::Ticks);
                break;
        }
    }
    plan.columns = std::move(infos);
}

bool Executor::makeReady(const std::set<std::string>& called, std::span<const std::string> texts) {
    // Inside of a function it has been done: before the statement that calls it.
    if (functions_ == nullptr || state_.functionDepth > 0 || (called.empty() && texts.empty())) return false;
    return functions_->makeReady(called, texts);
}

void Executor::planEach(Plan& plan, SqlWriter& writer, const std::vector<OutputColumn>& outputs) {
    plan.each = prepared(writer);
    plan.each->kind = plan.kind;
    plan.each->table = plan.table;
    describe(*plan.each, outputs);
}

void Executor::planTarget(Plan& plan, const ast::Batch& batch, const std::optional<ast::OutputClause>& clause,
                          const Environment& environment) {
    if (!clause || !clause->into) return;
    std::string text = "INSERT INTO " + std::string(batch.textOf(clause->into->range));
    std::string separator = " (";
    for (const ast::Identifier& column : clause->columns)
        text += std::exchange(separator, ", ") + quotedName(column.text);
    if (!clause->columns.empty()) text += ")";
    separator = " VALUES (";
    for (std::size_t i = 0; i < plan.columns->size(); ++i)
        text += std::exchange(separator, ", ") + "?";
    plan.target = std::make_unique<OutputTarget>(OutputTarget{parse(text + ")"), {}});
    const ast::Batch& insert = plan.target->batch;
    try {
        planOf(insert, *insert.statements.front(), plan.target->plans, outputEnvironment(plan, {}, environment));
    } catch (const DatabaseError& error) {
        // Its place is in a text that nobody has written.
        const std::string message = error.what();
        Binder(catalog_, binderInput(batch, environment, nullptr))
            .fail(error.nativeCode(), message.substr(0, message.find('\n')), clause->into->range);
    }
}

std::unique_ptr<Plan> Executor::plan(const ast::Batch& batch, const ast::Statement& statement,
                                     const Environment& environment) {
    std::set<std::string> called;
    std::unique_ptr<Plan> made = planOnce(batch, statement, environment, called);
    const bool checks = made->kind == PlanKind::Insert || made->kind == PlanKind::Update;
    const std::vector<std::string> texts =
        checks ? catalog_.requireTable(made->table).checks : std::vector<std::string>();
    if (makeReady(called, texts)) made = planOnce(batch, statement, environment, called);
    return made;
}

std::unique_ptr<Plan> Executor::planOnce(const ast::Batch& batch, const ast::Statement& statement,
                                         const Environment& environment, std::set<std::string>& called) {
    // The first reading of the schema fixes the version that later ones are compared with.
    catalog_.refresh();
    Binder binder(catalog_, binderInput(batch, environment, &called));
    SqlWriter writer;
    std::unique_ptr<Plan> result;
    switch (statement.kind) {
        case StatementKind::Select: {
            BoundSelectStatement bound = binder.selectStatement(ast::as<ast::SelectStatement>(statement));
            writer.query(*bound.query);
            result = preparedByKey(writer, [&](SqlWriter& again) { again.query(*bound.query); });
            planTextSearch(*result, *bound.query, writer);
            if (bound.assignments.empty()) describe(*result, bound.query->columns);
            result->assignments = std::move(bound.assignments);
            break;
        }
        case StatementKind::Insert: {
            const auto& insert = ast::as<ast::InsertStatement>(statement);
            const bool explicitIdentity = !state_.identityInsert.empty() && insert.target.variable.empty() &&
                                          sameTable(state_.identityInsert, insert.target.name.last());
            BoundInsert bound = binder.insert(insert, explicitIdentity);
            // The identity value comes back with each row, for SCOPE_IDENTITY() and the next number.
            if (bound.setsIdentity) {
                auto identity = std::make_unique<BoundExpression>();
                identity->kind = BoundKind::Column;
                identity->name = sqlQuoted(bound.table->identityColumn()->name);
                bound.returning.push_back({std::move(identity), {}});
            }
            writer.insert(bound);
            // New rows are numbered in the order in which they are read.
            result = bound.query != nullptr && bound.generatesIdentity
                         ? preparedByKey(writer, [&](SqlWriter& again) { again.insert(bound); })
                         : prepared(writer);
            result->kind = PlanKind::Insert;
            result->table = bound.table->name;
            result->oneRow = bound.query == nullptr && bound.rows.size() == 1 && bound.table->searched.empty();
            result->generatesIdentity = bound.generatesIdentity;
            result->setsIdentity = bound.setsIdentity;
            result->identityOutput = bound.returning.empty() ? 0 : bound.returning.size() - 1;
            describe(*result, bound.outputs);
            planTarget(*result, batch, insert.output, environment);
            break;
        }
        case StatementKind::Update: {
            const auto& update = ast::as<ast::UpdateStatement>(statement);
            BoundUpdate bound = binder.update(update);
            if (bound.byRow != nullptr) {
                writer.query(*bound.byRow);
            } else {
                writer.update(bound);
            }
            result = prepared(writer);
            result->kind = PlanKind::Update;
            result->table = bound.table->name;
            result->oneRow = bound.oneRow && bound.table->searched.empty();
            result->assignments = std::move(bound.assignments);
            describe(*result, bound.outputs);
            result->byRow = bound.byRow != nullptr;
            if (result->byRow && !bound.columns.empty()) {
                SqlWriter each;
                each.update(bound);
                planEach(*result, each, bound.outputs);
            }
            planTarget(*result, batch, update.output, environment);
            break;
        }
        default: {
            const auto& remove = ast::as<ast::DeleteStatement>(statement);
            BoundDelete bound = binder.remove(remove);
            if (bound.byRow != nullptr) {
                writer.query(*bound.byRow);
            } else {
                writer.remove(bound);
            }
            result = prepared(writer);
            result->kind = PlanKind::Delete;
            result->table = bound.table->name;
            describe(*result, bound.outputs);
            result->byRow = bound.byRow != nullptr;
            if (result->byRow) {
                SqlWriter each;
                each.remove(bound);
                planEach(*result, each, bound.outputs);
            }
            planTarget(*result, batch, remove.output, environment);
            break;
        }
    }
    return result;
}

}  // namespace basalt::embedded
