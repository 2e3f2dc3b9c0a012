// UPDATE.
#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/one_row.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

BoundUpdate Binder::update(const ast::UpdateStatement& statement) {
    BoundUpdate result;
    const std::size_t visible = commonTables_.size();
    commonTables(statement.with, result.with);
    Scope scope(nullptr);
    auto rows = std::make_unique<BoundSelect>();
    const bool plain = statement.from.empty() && !statement.top;
    if (statement.from.empty()) {
        result.table = &target(statement.target);
        result.alias = newAlias();
        scope.sources.push_back(targetSource(
            *result.table, statement.target.variable.empty() ? result.table->name : statement.target.variable,
            result.alias));
        auto own = std::make_unique<BoundSource>();
        own->kind = SourceKind::Table;
        own->alias = result.alias;
        own->table = result.table->sqlName();
        rows->from = std::move(own);
    } else {
        rows->from = from(statement.from, scope);
        result.table = &targetIn(statement.target, statement.from, scope, result.alias, *rows);
        if (!scope.owns(result.alias))
            scope.sources.push_back(targetSource(*result.table, result.table->name, result.alias));
    }
    const Table& table = *result.table;
    std::vector<std::pair<std::string, std::size_t>> variables;
    for (const ast::SetClause& clause : statement.assignments) {
        if (clause.column.empty()) continue;  // bound below
        const int position = table.find(clause.column.last());
        if (position < 0) {
            fail(error::kInvalidColumn, "Invalid column name '" + clause.column.last() + "'.", clause.column.range);
        }
        const auto index = static_cast<std::size_t>(position);
        const TableColumn& column = table.columns[index];
        if (column.identity) fail(8102, "Cannot update identity column '" + column.name + "'.", clause.column.range);
        if (column.computed) {
            fail(271, "The column \"" + column.name + "\" cannot be modified because it is a computed column.",
                 clause.column.range);
        }
        for (const std::size_t other : result.columns) {
            if (other == index) {
                fail(264, "The column name '" + column.name + "' is specified more than once in the SET clause.",
                     clause.range);
            }
        }
        BoundPtr value;
        if (clause.value->kind == ast::ExpressionKind::Default) {
            value = defaultOf(column);
        } else {
            value = expression(*clause.value, &scope);
            if (clause.op != ast::AssignmentOperator::Set) {
                auto old = std::make_unique<BoundExpression>();
                old->kind = BoundKind::Column;
                old->type = column.type;
                old->nullable = column.nullable;
                old->table = result.alias;
                old->name = sqlQuoted(column.name);
                old->ownCollation = true;
                value = operation(operatorOf(clause.op), std::move(old), std::move(value), clause.range);
            }
        }
        result.columns.push_back(index);
        result.values.push_back(assigned(std::move(value), column, table.name, clause.range));
        if (!clause.variable.empty()) variables.emplace_back(clause.variable, index);
    }
    BoundPtr where = statement.where == nullptr ? nullptr : condition(*statement.where, &scope);
    if (plain) {
        result.oneRow = pinsOneRow(where.get(), table, result.alias);
        result.where = std::move(where);
    } else {
        rows->where = std::move(where);
        addKey(table, result.alias, *rows);
        auto query = std::make_unique<BoundQuery>();
        for (BoundPtr& value : result.values)
            rows->items.push_back({std::move(value), {}});
        result.values.clear();
        if (statement.top) query->limit = rowLimit(*statement.top->count, nullptr);
        query->body = std::make_unique<BoundBody>();
        query->body->select = std::move(rows);
        result.rows = std::move(query);
    }
    if (showsDeleted(statement)) {
        result.shown = shownBefore(statement);
    } else {
        outputs(statement.output, table, false, result.returning, result.outputs);
    }
    for (const auto& [variable, index] : variables) {
        const SqlType* type = input_.variables == nullptr ? nullptr : input_.variables->typeOf(variable);
        if (type == nullptr) fail(137, "Must declare the scalar variable \"" + variable + "\".", statement.range);
        auto value = std::make_unique<BoundExpression>();
        value->kind = BoundKind::Column;
        value->type = table.columns[index].type;
        value->name = sqlQuoted(table.columns[index].name);
        result.assignments.push_back({variable, value->type, *type});
        result.returning.push_back({std::move(value), {}});
    }
    result.before = valuesBefore(statement);
    commonTables_.resize(visible);
    return result;
}

BoundSelectStatement Binder::valuesBefore(const ast::UpdateStatement& statement) {
    BoundSelectStatement result;
    auto select = std::make_unique<BoundSelect>();
    Scope scope(nullptr);
    for (const ast::SetClause& clause : statement.assignments) {
        if (!clause.column.empty()) continue;
        if (select->from == nullptr) {
            select->from = statement.from.empty() ? tableSource(target(statement.target), statement.target.name.last(),
                                                                scope, statement.target.range)
                                                  : from(statement.from, scope);
            if (statement.where != nullptr) select->where = condition(*statement.where, &scope);
        }
        BoundPtr value = expression(*clause.value, &scope);
        const SqlType type = variable(clause.variable, clause.range)->type;
        if (clause.op != ast::AssignmentOperator::Set) {
            value = operation(operatorOf(clause.op), variable(clause.variable, clause.range), std::move(value),
                              clause.range);
        }
        result.assignments.push_back({clause.variable, value->type, type});
        select->items.push_back({std::move(value), {}});
    }
    if (result.assignments.empty()) return result;
    result.query = std::make_unique<BoundQuery>();
    result.query->body = std::make_unique<BoundBody>();
    result.query->body->select = std::move(select);
    return result;
}

}  // namespace basalt::embedded
