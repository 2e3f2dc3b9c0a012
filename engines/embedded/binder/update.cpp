// UPDATE.
#include <algorithm>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/one_row.h"
#include "engines/embedded/binder/reads_rows.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// Rows of other tables may refer to such a column, and follow it.
bool movesKey(const Table& table, const std::vector<std::size_t>& columns) {
    return std::ranges::any_of(columns, [&](std::size_t column) {
        return std::ranges::find(table.key, column) != table.key.end() ||
               std::ranges::any_of(table.uniques, [&](const Index& unique) {
                   return std::ranges::any_of(unique.columns, [&](const std::string& name) {
                       return sameName(name, table.columns[column].name);
                   });
               });
    });
}

}  // namespace

BoundUpdate Binder::update(const ast::UpdateStatement& statement) {
    // SET @v = column = e of one row alone can be read from what the change returns.
    const bool assigns = std::ranges::any_of(statement.assignments,
                                             [](const ast::SetClause& clause) { return !clause.variable.empty(); });
    const bool returns = statement.assignments.size() == 1 && !statement.assignments[0].column.empty() &&
                         statement.from.empty() && !statement.top;
    if ((assigns && !returns) || showsMoreThanInserted(statement)) return updateByRow(statement);
    BoundUpdate result;
    const std::size_t visible = commonTables_.size();
    commonTables(statement.with, result.with);
    Scope scope(nullptr);
    auto rows = std::make_unique<BoundSelect>();
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
        result.table = &targetAmong(statement.target, statement.from, scope, result.alias, *rows);
    }
    const Table& table = *result.table;
    std::vector<std::pair<std::string, std::size_t>> variables;
    for (const ast::SetClause& clause : statement.assignments) {
        const std::size_t index = assignedColumn(clause, table, result.columns);
        result.columns.push_back(index);
        result.values.push_back(newValue(clause, table, index, result.alias, scope));
        if (!clause.variable.empty()) variables.emplace_back(clause.variable, index);
    }
    BoundPtr where = statement.where == nullptr ? nullptr : condition(*statement.where, &scope);
    result.oneRow = statement.from.empty() && !statement.top && pinsOneRow(where.get(), table, result.alias);
    // A row alone is read before it is changed; of several the later ones would see what the earlier ones have become.
    const bool seesItself =
        readsChanged(table.sqlName(), result.with, result.values, where.get()) ||
        (movesKey(table, result.columns) &&
         std::ranges::any_of(result.values, [](const BoundPtr& value) { return holdsQuery(*value); }));
    if (statement.from.empty() && !statement.top && (result.oneRow || !seesItself)) {
        result.where = std::move(where);
    } else {
        rows->where = std::move(where);
        addKey(table, result.alias, *rows, statement.target.range);
        auto query = std::make_unique<BoundQuery>();
        for (BoundPtr& value : result.values)
            rows->items.push_back({std::move(value), {}});
        result.values.clear();
        if (statement.top) limitChange(*query, *statement.top);
        query->body = std::make_unique<BoundBody>();
        query->body->select = std::move(rows);
        result.rows = std::move(query);
    }
    outputs(statement.output, table, "inserted", result.returning, result.outputs);
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
    commonTables_.resize(visible);
    // Which row is the last one to give its value has to be settled where there may be several.
    if (!variables.empty() && !result.oneRow) return updateByRow(statement);
    return result;
}

std::size_t Binder::assignedColumn(const ast::SetClause& clause, const Table& table,
                                   const std::vector<std::size_t>& others) const {
    const int position = table.find(clause.column.last());
    if (position < 0)
        fail(error::kInvalidColumn, "Invalid column name '" + clause.column.last() + "'.", clause.column.range);
    const auto index = static_cast<std::size_t>(position);
    const TableColumn& column = table.columns[index];
    if (column.identity) fail(8102, "Cannot update identity column '" + column.name + "'.", clause.column.range);
    if (column.computed) {
        fail(271, "The column \"" + column.name + "\" cannot be modified because it is a computed column.",
             clause.column.range);
    }
    if (std::ranges::find(others, index) != others.end()) {
        fail(264, "The column name '" + column.name + "' is specified more than once in the SET clause.", clause.range);
    }
    return index;
}

BoundPtr Binder::newValue(const ast::SetClause& clause, const Table& table, std::size_t index, const std::string& alias,
                          Scope& scope) {
    const TableColumn& column = table.columns[index];
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
            old->table = alias;
            old->name = sqlQuoted(column.name);
            old->ownCollation = true;
            value = operation(operatorOf(clause.op), std::move(old), std::move(value), clause.range);
        }
    }
    return assigned(std::move(value), column, table.name, clause.range);
}

}  // namespace basalt::embedded
