// x op ANY (q): some row compares so. x op ALL (q): no row compares otherwise, and none is unknown.
//
// = ANY and <> ALL are IN and NOT IN. For the others the smallest and the largest value of q decide, together with
// whether it has rows and NULLs at all; these are worked out once for all rows when q sees none of them:
//
//   (WITH w(c1, c2, c3, c4) AS MATERIALIZED (SELECT min(c1), max(c1), count(*), count(c1) FROM (q))
//    SELECT c3 > 0 AND (x < c2 OR CASE WHEN c4 < c3 THEN NULL ELSE 0 END) FROM w)       x < ANY (q)
//    SELECT c3 = 0 OR (x < c1 AND CASE WHEN c4 < c3 THEN NULL ELSE 1 END) FROM w)       x < ALL (q)
#include <algorithm>

#include "engines/embedded/binder/binder.h"

namespace basalt::embedded {

namespace {

SqlType truth() {
    return SqlType::of(TypeKind::Bit);
}

BoundPtr boundColumn(const std::string& table, const std::string& name, const SqlType& type) {
    auto column = std::make_unique<BoundExpression>();
    column->kind = BoundKind::Column;
    column->type = type;
    column->table = table;
    column->name = name;
    return column;
}

BoundPtr aggregateOf(const char* name, BoundPtr argument) {
    auto call = std::make_unique<BoundExpression>();
    call->kind = BoundKind::Aggregate;
    call->name = name;
    call->star = argument == nullptr;
    call->type = call->star ? SqlType::of(TypeKind::Int) : argument->type;
    if (argument != nullptr) {
        call->order = argument->order;
        call->arguments.push_back(std::move(argument));
    }
    return call;
}

// SELECT ... FROM source
std::unique_ptr<BoundQuery> queryFrom(std::unique_ptr<BoundSource> source) {
    auto query = std::make_unique<BoundQuery>();
    query->body = std::make_unique<BoundBody>();
    query->body->select = std::make_unique<BoundSelect>();
    query->body->select->from = std::move(source);
    return query;
}

void addItem(BoundQuery& query, BoundPtr item) {
    query.columns.push_back({{}, item->type, true, {}, item->order});
    query.body->select->items.push_back({std::move(item), {}});
}

// Of the query that the expression stands in, not of one inside of it.
bool holdsWindow(const BoundExpression& expression) {
    return expression.over != nullptr || std::any_of(expression.arguments.begin(), expression.arguments.end(),
                                                     [](const BoundPtr& argument) { return holdsWindow(*argument); });
}

bool namesColumn(const BoundExpression& expression) {
    return expression.kind == BoundKind::Column ||
           std::any_of(expression.arguments.begin(), expression.arguments.end(),
                       [](const BoundPtr& argument) { return namesColumn(*argument); });
}

// Lets aggregates that name no column name one of this source: in a subquery they would aggregate its own rows. False
// when there is an aggregate and no source.
bool tieAggregates(BoundExpression& expression, const ScopeSource* source) {
    for (const BoundPtr& argument : expression.arguments) {
        if (expression.kind != BoundKind::Aggregate && !tieAggregates(*argument, source)) return false;
    }
    if (expression.kind != BoundKind::Aggregate || namesColumn(expression)) return true;
    if (source == nullptr || source->columns.empty()) return false;
    const SourceColumn& column = source->columns.front();
    if (expression.star) {
        expression.star = false;
        expression.arguments.push_back(boundInteger(1));
    }
    // CASE WHEN column IS NULL THEN value ELSE value END
    BoundPtr value = std::move(expression.arguments.front());
    auto test = std::make_unique<BoundExpression>();
    test->kind = BoundKind::Postfix;
    test->type = truth();
    test->name = "IS NULL";
    test->arguments.push_back(boundColumn(source->sqlAlias, column.sqlName, column.shown.type));
    auto tied = std::make_unique<BoundExpression>();
    tied->kind = BoundKind::Case;
    tied->type = value->type;
    tied->order = value->order;
    tied->arguments.push_back(std::move(test));
    tied->arguments.push_back(cloned(*value));
    tied->arguments.push_back(std::move(value));
    expression.arguments.front() = std::move(tied);
    return true;
}

BoundPtr between(BoundPtr operand, BoundPtr low, BoundPtr high, bool negated) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Between;
    result->type = truth();
    result->negated = negated;
    result->arguments.push_back(std::move(operand));
    result->arguments.push_back(std::move(low));
    result->arguments.push_back(std::move(high));
    return result;
}

}  // namespace

BoundPtr Binder::quantified(const ast::QuantifiedExpression& expression, Scope* scope) {
    using Op = ast::ComparisonOperator;
    const bool anyEqual = !expression.all && expression.op == Op::Equal;
    const bool allDifferent = expression.all && expression.op == Op::NotEqual;
    auto result = std::make_unique<BoundExpression>();
    result->type = truth();
    result->query = oneColumnQuery(*expression.query, scope);
    BoundPtr operand = this->expression(*expression.operand, scope);
    const SqlType compared = compareWithColumn(operand, *result->query);
    if (anyEqual || allDifferent) {
        result->kind = BoundKind::In;
        result->negated = allDifferent;
        result->arguments.push_back(std::move(operand));
        return result;
    }
    const ScopeSource* source = scope == nullptr || scope->sources.empty() ? nullptr : &scope->sources.front();
    if (holdsWindow(*operand) || !tieAggregates(*operand, source)) {
        unsupported(std::string("an aggregate or a window function before ") + (expression.all ? "ALL" : "ANY"),
                    expression.range);
    }

    auto rows = std::make_unique<BoundSource>();
    rows->kind = SourceKind::Query;
    rows->alias = newAlias();
    rows->query = std::move(result->query);
    const std::string alias = rows->alias;
    const TextOrder order = operand->order;
    const auto value = [&] {
        BoundPtr column = boundColumn(alias, "c1", compared);
        column->order = order;
        return column;
    };
    std::unique_ptr<BoundQuery> extremes = queryFrom(std::move(rows));
    addItem(*extremes, aggregateOf("min", value()));
    addItem(*extremes, aggregateOf("max", value()));
    addItem(*extremes, aggregateOf("count", nullptr));
    addItem(*extremes, aggregateOf("count", value()));

    auto worked = std::make_unique<BoundSource>();
    worked->kind = SourceKind::CommonTable;
    worked->alias = newAlias();
    worked->table = "w" + std::to_string(++aliases());
    const std::string name = worked->alias;
    const auto extreme = [&](bool largest) {
        BoundPtr column = boundColumn(name, largest ? "c2" : "c1", compared);
        column->order = order;
        return column;
    };
    const auto count = [&](bool known) { return boundColumn(name, known ? "c4" : "c3", SqlType::of(TypeKind::Int)); };

    BoundPtr comparison;
    if (expression.op == Op::Equal || expression.op == Op::NotEqual) {
        // Equal to all: not below the largest and not above the smallest. Different from one is the opposite.
        comparison = between(std::move(operand), extreme(true), extreme(false), expression.op == Op::NotEqual);
    } else {
        const bool less = expression.op == Op::Less || expression.op == Op::LessOrEqual;
        comparison = boundInfix(symbol(expression.op), truth(), std::move(operand), extreme(less != expression.all));
    }
    auto unknown = std::make_unique<BoundExpression>();
    unknown->kind = BoundKind::Case;
    unknown->type = truth();
    unknown->arguments.push_back(boundInfix("<", truth(), count(true), count(false)));
    unknown->arguments.push_back(boundConstant(Null{}, truth()));
    unknown->arguments.push_back(boundInteger(expression.all ? 1 : 0));
    BoundPtr decided = boundInfix(expression.all ? "AND" : "OR", truth(), std::move(comparison), std::move(unknown));
    BoundPtr together =
        boundInfix(expression.all ? "OR" : "AND", truth(),
                   boundInfix(expression.all ? "=" : ">", truth(), count(false), boundInteger(0)), std::move(decided));

    result->kind = BoundKind::Subquery;
    const std::string table = worked->table;
    result->query = queryFrom(std::move(worked));
    result->query->with.push_back({table, std::move(extremes), true});
    addItem(*result->query, std::move(together));
    result->query->singleRow = true;
    return result;
}

}  // namespace basalt::embedded
