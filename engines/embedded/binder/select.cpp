// One SELECT: its items, conditions and grouping.
#include <algorithm>
#include <functional>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

BoundPtr columnOf(const ScopeSource& source, const SourceColumn& column) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Column;
    result->type = column.shown.type;
    result->nullable = column.shown.nullable;
    result->table = source.sqlAlias;
    result->name = column.sqlName;
    result->base = column.shown.base;
    result->ownCollation = column.ownCollation;
    result->order = column.shown.order;
    return result;
}

std::string nameOf(const ast::SelectItem& item) {
    if (!item.alias.empty()) return item.alias.text;
    if (const auto* column = ast::tryAs<ast::ColumnExpression>(item.expression.get())) return column->name.last();
    return {};
}

bool seesSources(const Scope* scope) {
    return scope != nullptr && (!scope->sources.empty() || seesSources(scope->parent));
}

OutputColumn outputOf(const BoundExpression& expression, std::string name) {
    return {std::move(name), expression.type, expression.nullable,
            expression.kind == BoundKind::Column ? expression.base : std::nullopt, expression.order};
}

}  // namespace

void Binder::selectItems(const ast::Select& select, Scope& scope, BoundSelect& into,
                         std::vector<OutputColumn>& columns) {
    const auto add = [&](BoundPtr expression, std::string name) {
        relyOnLength(*expression);
        columns.push_back(outputOf(*expression, name));
        into.items.push_back({std::move(expression), std::move(name)});
    };
    for (const ast::SelectItem& item : select.items) {
        if (item.kind != ast::SelectItemKind::Star) {
            add(item.kind == ast::SelectItemKind::Assignment ? assignedItem(item, scope)
                                                             : expression(*item.expression, &scope),
                nameOf(item));
            continue;
        }
        bool found = false;
        for (const ScopeSource& source : scope.sources) {
            if (!item.qualifier.empty() && !sameName(source.name, item.qualifier.last())) continue;
            found = true;
            for (const SourceColumn& column : source.columns)
                add(columnOf(source, column), column.shown.name);
        }
        if (found) continue;
        if (!item.qualifier.empty()) {
            fail(107,
                 "The column prefix '" + item.qualifier.last() +
                     "' does not match with a table name or alias name used in the query.",
                 item.range);
        }
        fail(263, "Must specify table to select from.", item.range);
    }
}

std::unique_ptr<BoundSelect> Binder::select(const ast::Select& select, Scope* outer, std::vector<OutputColumn>& columns,
                                            BoundQuery* query, const ast::QueryExpression* whole) {
    Scope scope(outer);
    auto result = std::make_unique<BoundSelect>();
    result->distinct = select.distinct;
    if (!select.from.empty()) result->from = from(select.from, scope);
    if (select.where != nullptr) result->where = condition(*select.where, &scope);
    findTextSearches(*result);
    if (result->from != nullptr && query != nullptr && !seesSources(outer)) restrictGroups(*result->from, *query);
    for (const ast::ExpressionPtr& group : select.groupBy) {
        if (group->kind == ast::ExpressionKind::Literal) {
            fail(164, "Each GROUP BY expression must contain at least one column that is not an outer reference.",
                 group->range);
        }
        result->groupBy.push_back(expression(*group, &scope));
    }
    scope.aggregatesAllowed = true;
    scope.windowsAllowed = true;
    selectItems(select, scope, *result, columns);
    scope.windowsAllowed = false;
    if (select.having != nullptr) {
        result->having = condition(*select.having, &scope);
        scope.aggregated = true;
    }
    if (query != nullptr && whole != nullptr) {
        scope.windowsAllowed = true;
        for (const ast::OrderItem& item : whole->orderBy)
            query->orderBy.push_back(ordering(item, &scope, columns, *result));
        scope.windowsAllowed = false;
    }
    result->aggregated = scope.aggregated || !result->groupBy.empty();
    if (result->aggregated) checkGrouping(*result, query, scope, select.range);
    if (query != nullptr) {
        query->singleRow = (scope.aggregated && result->groupBy.empty()) || (result->from == nullptr);
    }
    if (select.top) {
        const bool shared = query == nullptr || (select.top->percent && select.top->withTies);
        if (shared && select.top->percent) unsupported("TOP ... PERCENT here", select.top->range);
        if (shared && select.top->withTies) unsupported("WITH TIES here", select.top->range);
        if (select.top->withTies && (whole == nullptr || whole->orderBy.empty())) {
            fail(1062, "The TOP N WITH TIES clause is not allowed without a corresponding ORDER BY clause.",
                 select.top->range);
        }
        if (select.top->percent) {
            query->percent = true;
            query->limit = rowPercent(*select.top->count);
            return result;
        }
        if (query != nullptr) query->withTies = select.top->withTies;
        BoundPtr limit = rowLimit(*select.top->count, nullptr);
        if (const auto* literal = ast::tryAs<ast::LiteralExpression>(select.top->count.get());
            literal != nullptr && query != nullptr && !input_.inlineLiterals) {
            const Literal& value = (*input_.literals)[literal->literal];
            // TOP 1 in a subquery proves that there is one row; the proof holds for this number only.
            if (value.type == LiteralType::Int && value.integer == 1 && outer != nullptr) {
                input_.literals->fix(literal->literal);
                query->singleRow = true;
            }
        }
        (query != nullptr ? query->limit : result->limit) = std::move(limit);
    }
    return result;
}

BoundPtr Binder::rowLimit(const ast::Expression& count, Scope* scope, RowLimit clause) {
    BoundPtr limit = expression(count, scope);
    if (limit->type.isDecimal() || limit->type.isFloat()) {
        fail(1060, "The number of rows provided for a TOP or FETCH clauses row count parameter must be an integer.",
             count.range);
    }
    if (!limit->type.isInteger() && !limit->type.isNull()) {
        limit = cast(std::move(limit), SqlType::of(TypeKind::BigInt));
    }
    return boundCall("t_limit", SqlType::of(TypeKind::BigInt), std::move(limit),
                     boundInteger(static_cast<std::int64_t>(clause)));
}

BoundPtr Binder::rowPercent(const ast::Expression& count) {
    return cast(expression(count, nullptr), SqlType::of(TypeKind::Float));
}

BoundOrdering Binder::ordering(const ast::OrderItem& item, Scope* scope, const std::vector<OutputColumn>& columns,
                               const BoundSelect& select) {
    BoundOrdering result;
    result.descending = item.descending;
    result.position = outputPosition(*item.expression, columns);
    if (result.position != 0) return result;
    result.expression = expression(*item.expression, scope);
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        if (sameExpression(*result.expression, *select.items[i].expression)) {
            result.position = i + 1;
            result.expression.reset();
            return result;
        }
    }
    if (select.distinct) {
        fail(145, "ORDER BY items must appear in the select list if SELECT DISTINCT is specified.",
             item.expression->range);
    }
    return result;
}

namespace {

// Calls `visit` for each expression that stands in the query itself, until one call finds something.
class EachExpression {
public:
    using Visit = std::function<const BoundExpression*(const BoundExpression&)>;

    explicit EachExpression(Visit visit) : visit_(std::move(visit)) {}

    const BoundExpression* in(const BoundQuery& query) const {
        for (const BoundCommonTable& table : query.with) {
            if (const BoundExpression* found = in(*table.query)) return found;
        }
        if (const BoundExpression* found = in(*query.body)) return found;
        for (const BoundOrdering& order : query.orderBy) {
            if (const BoundExpression* found = in(order.expression)) return found;
        }
        return nullptr;
    }

private:
    const BoundExpression* in(const BoundPtr& expression) const { return expression ? visit_(*expression) : nullptr; }

    const BoundExpression* in(const std::vector<BoundPtr>& expressions) const {
        for (const BoundPtr& expression : expressions) {
            if (const BoundExpression* found = in(expression)) return found;
        }
        return nullptr;
    }

    const BoundExpression* in(const BoundBody& body) const {
        if (body.select == nullptr) {
            const BoundExpression* found = in(*body.left);
            return found != nullptr ? found : in(*body.right);
        }
        const BoundSelect& select = *body.select;
        for (const BoundItem& item : select.items) {
            if (const BoundExpression* found = in(item.expression)) return found;
        }
        if (select.from) {
            if (const BoundExpression* found = in(*select.from)) return found;
        }
        for (const BoundPtr* part : {&select.where, &select.having}) {
            if (const BoundExpression* found = in(*part)) return found;
        }
        return in(select.groupBy);
    }

    const BoundExpression* in(const BoundSource& source) const {
        if (source.query) {
            if (const BoundExpression* found = in(*source.query)) return found;
        }
        for (const auto* side : {&source.left, &source.right}) {
            if (*side == nullptr) continue;
            if (const BoundExpression* found = in(**side)) return found;
        }
        for (const auto& row : source.rows) {
            if (const BoundExpression* found = in(row)) return found;
        }
        if (const BoundExpression* found = in(source.arguments)) return found;
        return in(source.condition);
    }

    Visit visit_;
};

}  // namespace

const BoundExpression* Binder::ungrouped(const BoundExpression& expression, const std::vector<BoundPtr>& groups,
                                         const Scope& scope) const {
    for (const BoundPtr& group : groups) {
        if (sameExpression(expression, *group)) return nullptr;
    }
    if (expression.kind == BoundKind::Aggregate && expression.over == nullptr) return nullptr;
    if (expression.kind == BoundKind::Column) return scope.owns(expression.table) ? &expression : nullptr;
    for (const BoundPtr& argument : expression.arguments) {
        if (const BoundExpression* found = ungrouped(*argument, groups, scope)) return found;
    }
    if (expression.query == nullptr) return nullptr;
    // A subquery may name what is grouped, and nothing else of the query around it.
    return EachExpression([&](const BoundExpression& inner) { return ungrouped(inner, groups, scope); })
        .in(*expression.query);
}

namespace {

std::string shownName(const BoundExpression& column, const Scope& scope) {
    if (column.base) return column.base->table + "." + column.base->column;
    for (const ScopeSource& source : scope.sources) {
        if (source.sqlAlias != column.table) continue;
        for (const SourceColumn& each : source.columns) {
            if (each.sqlName == column.name) return source.name + "." + each.shown.name;
        }
    }
    return column.name;
}

}  // namespace

void Binder::checkGrouping(const BoundSelect& select, const BoundQuery* query, const Scope& scope, SourceRange range) {
    const auto check = [&](const BoundExpression& expression, const char* place, int number) {
        const BoundExpression* found = ungrouped(expression, select.groupBy, scope);
        if (found == nullptr) return;
        const std::string name = shownName(*found, scope);
        fail(number,
             "Column '" + name + "' is invalid in the " + place +
                 " because it is not contained in either an aggregate function or the GROUP BY clause.",
             range);
    };
    for (const BoundItem& item : select.items)
        check(*item.expression, "select list", 8120);
    if (select.having) check(*select.having, "HAVING clause", 8121);
    if (query == nullptr) return;
    for (const BoundOrdering& order : query->orderBy) {
        if (order.expression) check(*order.expression, "ORDER BY clause", 8127);
    }
}

}  // namespace basalt::embedded
