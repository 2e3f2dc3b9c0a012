// UPDATE that assigns variables, SET @sum = Rest = @sum + Amount, @n = @n + 1, or whose OUTPUT shows what was or
// columns of other tables.
//
// The rows are read one after the other in the order of the table's key. For each row the clauses with a variable come
// first, from left to right, and then the columns, which see what these have assigned. All rows are read before the
// first one changes.
#include <algorithm>
#include <iterator>
#include <utility>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/running_values.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

BoundPtr itemOfRow(std::size_t index, const SqlType& type) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Slot;
    result->type = type;
    result->slot.source = Slot::Source::Row;
    result->slot.index = static_cast<std::uint32_t>(index);
    result->slot.from = result->slot.to = type;
    return result;
}

// In an OUTPUT: what is not of the changed row comes with the row that was read, as one more of its values.
void takeFromRow(BoundPtr& expression, std::size_t keys, std::vector<BoundPtr>& values) {
    if (expression->kind == BoundKind::Column && !expression->table.empty()) {
        BoundPtr item = itemOfRow(keys + values.size(), expression->type);
        item->order = expression->order;
        item->collation = expression->collation;
        values.push_back(std::exchange(expression, std::move(item)));
        return;
    }
    for (BoundPtr& argument : expression->arguments)
        takeFromRow(argument, keys, values);
}

}  // namespace

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
    auto query = std::make_unique<BoundQuery>();
    const std::size_t visible = commonTables_.size();
    commonTables(statement.with, query->with);
    Scope scope(nullptr);
    auto rows = std::make_unique<BoundSelect>();
    if (statement.from.empty()) {
        const Table& table = target(statement.target);
        rows->from = tableSource(table, statement.target.variable.empty() ? table.name : statement.target.variable,
                                 scope, statement.target.range);
        result.table = &table;
        result.alias = rows->from->alias;
    } else {
        result.table = &targetAmong(statement, scope, result.alias, *rows);
    }
    const Table& table = *result.table;
    addKey(table, result.alias, *rows, statement.target.range);
    const std::size_t keys = rows->items.size();

    for (const ast::SetClause& clause : statement.assignments) {
        if (!clause.variable.empty()) running_.push_back({clause.variable, nullptr});
    }
    byRow_ = true;
    std::vector<BoundPtr> values;
    for (const bool variables : {true, false}) {
        for (const ast::SetClause& clause : statement.assignments) {
            if (clause.variable.empty() == variables) continue;
            BoundPtr value;
            if (clause.column.empty()) {
                value = expression(*clause.value, &scope);
                if (clause.op != ast::AssignmentOperator::Set) {
                    value = operation(operatorOf(clause.op), runningVariable(clause.variable, clause.range),
                                      std::move(value), clause.range);
                }
            } else {
                const std::size_t index = assignedColumn(clause, table, result.columns);
                value = newValue(clause, table, index, result.alias, scope);
                result.columns.push_back(index);
                result.values.push_back(itemOfRow(keys + values.size(), table.columns[index].type));
            }
            if (variables) value = assignedByRow(clause, std::move(value));
            relyOnLength(*value);
            values.push_back(std::move(value));
        }
    }
    byRow_ = false;
    running_.clear();
    if (statement.output) {
        if (result.columns.empty()) unsupported("OUTPUT of an UPDATE that changes no column", statement.output->range);
        Scope shown(nullptr);
        std::ranges::copy_if(scope.sources, std::back_inserter(shown.sources),
                             [&](const ScopeSource& source) { return source.sqlAlias != result.alias; });
        shown.sources.push_back(targetSource(table, "deleted", result.alias));
        shown.sources.push_back(targetSource(table, "inserted", ""));
        outputs(*statement.output, shown, result.returning, result.outputs);
        for (BoundItem& item : result.returning)
            takeFromRow(item.expression, keys, values);
    }
    if (statement.where != nullptr) rows->where = condition(*statement.where, &scope);
    // An outer join may have rows without one of the table, which are none to change.
    if (!statement.from.empty()) {
        auto exists = std::make_unique<BoundExpression>();
        exists->kind = BoundKind::Postfix;
        exists->type = SqlType::of(TypeKind::Bit);
        exists->nullable = false;
        exists->name = "IS NOT NULL";
        exists->arguments.push_back(cloned(*rows->items.front().expression));
        rows->where = rows->where == nullptr
                          ? std::move(exists)
                          : boundInfix("AND", SqlType::of(TypeKind::Bit), std::move(rows->where), std::move(exists));
    }

    // What depends on the row alone is worked out and sorted first.
    auto select = std::make_unique<BoundSelect>();
    const std::string rowsName = "v" + std::to_string(++aliases());
    const std::string alias = newAlias();
    for (std::size_t i = 0; i < keys; ++i) {
        auto key = cloned(*rows->items[i].expression);
        key->table = alias;
        key->name = "c" + std::to_string(i + 1);
        select->items.push_back({std::move(key), {}});
        query->orderBy.push_back({i + 1, nullptr, false});
        // A row that FROM meets several times changes once.
        if (!statement.from.empty()) rows->groupBy.push_back(cloned(*rows->items[i].expression));
    }
    for (BoundPtr& value : values) {
        const bool assigns = value->kind == BoundKind::Call && value->name == kAssignVariable;
        BoundPtr& inner = assigns ? value->arguments[1] : value;
        inner = lifted(std::move(inner), alias, rows->items);
        select->items.push_back({std::move(value), {}});
    }
    for (const BoundItem& item : rows->items)
        query->columns.push_back({{}, item.expression->type, true, {}});
    // A limit that limits nothing keeps SQLite from dropping the order of the inner rows.
    query->limit = boundInteger(-1);
    if (statement.top) limitChange(*query, *statement.top);
    query->body = std::make_unique<BoundBody>();
    query->body->select = std::move(rows);

    auto outer = std::make_unique<BoundQuery>();
    select->from = std::make_unique<BoundSource>();
    select->from->kind = SourceKind::CommonTable;
    select->from->alias = alias;
    select->from->table = rowsName;
    outer->with = std::move(query->with);
    outer->with.push_back({rowsName, std::move(query), true});
    outer->body = std::make_unique<BoundBody>();
    outer->body->select = std::move(select);

    for (std::size_t i = 0; i < keys; ++i) {
        BoundPtr key = cloned(*outer->body->select->items[i].expression);
        key->table = result.alias;
        key->name = table.rowNumber.empty() ? sqlQuoted(table.columns[table.key[i]].name) : table.rowNumber;
        BoundPtr item = itemOfRow(i, key->type);
        BoundPtr same = boundInfix("=", SqlType::of(TypeKind::Bit), std::move(key), std::move(item));
        result.where = result.where == nullptr
                           ? std::move(same)
                           : boundInfix("AND", SqlType::of(TypeKind::Bit), std::move(result.where), std::move(same));
    }
    result.byRow = std::move(outer);
    commonTables_.resize(visible);
    return result;
}

}  // namespace basalt::embedded
