// UPDATE that assigns variables, SET @sum = Rest = @sum + Amount, @n = @n + 1, or whose OUTPUT shows what was or
// columns of other tables.
//
// The rows are read one after the other in the order of the table's key. For each row the clauses with a variable come
// first, from left to right, and then the columns, which see what these have assigned. All rows are read before the
// first one changes.
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/row_by_row.h"
#include "engines/embedded/binder/running_values.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

BoundPtr Binder::assignedByRow(const ast::SetClause& clause, BoundPtr value) {
    const SqlType variable = this->variable(clause.variable, clause.range)->type;
    if (value->type.isNull()) value = cast(std::move(value), variable);
    requireImplicit(value->type, variable, clause.range);
    const SqlType type = value->type;
    return boundCall(kAssignVariable, type, boundConstant(clause.variable, SqlType::text(TypeKind::NVarChar, 128)),
                     std::move(value), boundTypeCode(type));
}

BoundUpdate Binder::updateByRow(const ast::UpdateStatement& statement) {
    BoundUpdate result;
    const std::size_t visible = commonTables_.size();
    std::vector<BoundCommonTable> with;
    commonTables(statement.with, with);
    Scope scope(nullptr);
    auto select = std::make_unique<BoundSelect>();
    if (statement.from.empty()) {
        const Table& table = target(statement.target);
        select->from = tableSource(table, statement.target.variable.empty() ? table.name : statement.target.variable,
                                   scope, statement.target.range);
        result.table = &table;
        result.alias = select->from->alias;
    } else {
        result.table = &targetAmong(statement.target, statement.from, scope, result.alias, *select);
    }
    const Table& table = *result.table;
    RowByRow rows = rowsOf(table, result.alias, std::move(select), statement.target.range);

    for (const ast::SetClause& clause : statement.assignments) {
        if (!clause.variable.empty()) running_.push_back({clause.variable, nullptr});
    }
    byRow_ = true;
    for (const bool variables : {true, false}) {
        for (const ast::SetClause& clause : statement.assignments) {
            if (clause.variable.empty() == variables) continue;
            BoundPtr value;
            const bool assignsColumn = !clause.column.empty();
            if (assignsColumn) {
                const std::size_t index = assignedColumn(clause, table, result.columns);
                value = newValue(clause, table, index, result.alias, scope);
                result.columns.push_back(index);
            } else {
                value = expression(*clause.value, &scope);
                if (clause.op != ast::AssignmentOperator::Set) {
                    value = operation(operatorOf(clause.op), runningVariable(clause.variable, clause.range),
                                      std::move(value), clause.range);
                }
            }
            if (variables) value = assignedByRow(clause, std::move(value));
            relyOnLength(*value);
            const SqlType type = assignsColumn ? table.columns[result.columns.back()].type : value->type;
            BoundPtr item = rows.add(std::move(value), type);
            if (assignsColumn) result.values.push_back(std::move(item));
        }
    }
    byRow_ = false;
    running_.clear();
    if (statement.output) {
        if (result.columns.empty()) unsupported("OUTPUT of an UPDATE that changes no column", statement.output->range);
        Scope shown = scope.without(result.alias);
        shown.sources.push_back(targetSource(table, "deleted", result.alias));
        shown.sources.push_back(targetSource(table, "inserted", ""));
        outputs(*statement.output, shown, result.returning, result.outputs);
        for (BoundItem& item : result.returning)
            rows.supply(item.expression);
    }
    if (statement.where != nullptr) rows.select().where = condition(*statement.where, &scope);
    result.byRow = readFirst(std::move(rows), std::move(with), statement.top, !statement.from.empty());
    result.where = isRowOf(*result.byRow, table, result.alias);
    commonTables_.resize(visible);
    return result;
}

}  // namespace basalt::embedded
