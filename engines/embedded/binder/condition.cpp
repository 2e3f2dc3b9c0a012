// Conditions: comparisons, AND, OR, NOT, IN, BETWEEN, LIKE, IS NULL, EXISTS, ANY and ALL.
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"

namespace basalt::embedded {

namespace {

const SqlType& truth() {
    static const SqlType type = SqlType::of(TypeKind::Bit);
    return type;
}

const char* nameOf(ast::ComparisonOperator op) {
    switch (op) {
        case ast::ComparisonOperator::Equal:
            return "equal to";
        case ast::ComparisonOperator::NotEqual:
            return "not equal to";
        case ast::ComparisonOperator::Less:
            return "less than";
        case ast::ComparisonOperator::LessOrEqual:
            return "less than or equal to";
        case ast::ComparisonOperator::Greater:
            return "greater than";
        case ast::ComparisonOperator::GreaterOrEqual:
            return "greater than or equal to";
    }
    return "";
}

}  // namespace

const char* symbol(ast::ComparisonOperator op) {
    switch (op) {
        case ast::ComparisonOperator::Equal:
            return "=";
        case ast::ComparisonOperator::NotEqual:
            return "<>";
        case ast::ComparisonOperator::Less:
            return "<";
        case ast::ComparisonOperator::LessOrEqual:
            return "<=";
        case ast::ComparisonOperator::Greater:
            return ">";
        case ast::ComparisonOperator::GreaterOrEqual:
            return ">=";
    }
    return "=";
}

BoundPtr Binder::condition(const ast::Expression& expression, Scope* scope) {
    using Kind = ast::ExpressionKind;
    switch (expression.kind) {
        case Kind::Comparison: {
            const auto& comparison = ast::as<ast::ComparisonExpression>(expression);
            BoundPtr left = this->expression(*comparison.left, scope);
            BoundPtr right = this->expression(*comparison.right, scope);
            return this->comparison(comparison.op, std::move(left), std::move(right), comparison.operatorRange);
        }
        case Kind::And: {
            const auto& both = ast::as<ast::AndExpression>(expression);
            BoundPtr left = condition(*both.left, scope);
            return boundInfix("AND", truth(), std::move(left), condition(*both.right, scope));
        }
        case Kind::Or: {
            const auto& either = ast::as<ast::OrExpression>(expression);
            BoundPtr left = condition(*either.left, scope);
            return boundInfix("OR", truth(), std::move(left), condition(*either.right, scope));
        }
        case Kind::Not:
            return boundPrefix("NOT", truth(), condition(*ast::as<ast::NotExpression>(expression).operand, scope));
        case Kind::IsNull: {
            const auto& test = ast::as<ast::IsNullExpression>(expression);
            auto result = std::make_unique<BoundExpression>();
            result->kind = BoundKind::Postfix;
            result->type = truth();
            result->nullable = false;
            result->name = test.negated ? "IS NOT NULL" : "IS NULL";
            result->arguments.push_back(this->expression(*test.operand, scope));
            return result;
        }
        case Kind::In:
            return in(ast::as<ast::InExpression>(expression), scope);
        case Kind::Between: {
            const auto& between = ast::as<ast::BetweenExpression>(expression);
            BoundPtr operand = this->expression(*between.operand, scope);
            BoundPtr low = this->expression(*between.low, scope);
            BoundPtr high = this->expression(*between.high, scope);
            BoundPtr limits = boundConstant(Null{}, commonType(low->type, high->type));
            unifyForComparison(operand, limits);
            unifyForComparison(operand, low);
            unifyForComparison(operand, high);
            // A bound that brought a finer type with it moves the operand; the other bound follows.
            unifyForComparison(operand, low);
            settleOrder(operand, {low.get(), high.get()}, expression.range);
            auto result = std::make_unique<BoundExpression>();
            result->kind = BoundKind::Between;
            result->type = truth();
            result->negated = between.negated;
            result->arguments.push_back(std::move(operand));
            result->arguments.push_back(std::move(low));
            result->arguments.push_back(std::move(high));
            return result;
        }
        case Kind::Like:
            return like(ast::as<ast::LikeExpression>(expression), scope);
        case Kind::Exists: {
            auto result = std::make_unique<BoundExpression>();
            result->kind = BoundKind::Exists;
            result->type = truth();
            result->nullable = false;
            result->query = query(*ast::as<ast::ExistsExpression>(expression).query, scope);
            return result;
        }
        case Kind::Quantified:
            return quantified(ast::as<ast::QuantifiedExpression>(expression), scope);
        default:
            fail(4145, "An expression of non-boolean type specified in a context where a condition is expected.",
                 expression.range);
    }
}

BoundPtr Binder::comparison(ast::ComparisonOperator op, BoundPtr left, BoundPtr right, SourceRange range) {
    const SqlType a = left->type;
    const SqlType b = right->type;
    if (a.isDate() && b.isDate() && !converts(a, b)) {
        fail(402,
             "The data types " + std::string(a.baseName()) + " and " + std::string(b.baseName()) +
                 " are incompatible in the " + nameOf(op) + " operator.",
             range);
    }
    refuseClash(a, b, range);
    unifyForComparison(left, right);
    settleOrder(left, {right.get()}, range);
    return boundInfix(symbol(op), truth(), std::move(left), std::move(right));
}

std::unique_ptr<BoundQuery> Binder::oneColumnQuery(const ast::QueryExpression& expression, Scope* scope) {
    std::unique_ptr<BoundQuery> bound = query(expression, scope);
    if (bound->columns.size() == 1) return bound;
    fail(116,
         "Only one expression can be specified in the select list when the subquery is not introduced with EXISTS.",
         expression.range);
}

SqlType Binder::compareWithColumn(BoundPtr& operand, BoundQuery& query) {
    const SqlType inner = query.columns[0].type;
    BoundPtr sample = boundConstant(Null{}, inner);
    sample->order = query.columns[0].order;
    unifyForComparison(operand, sample);
    settleOrder(operand, {sample.get()}, {});
    if (!isSameStored(inner, sample->type) && !(inner.isText() && sample->type.isText())) {
        std::vector<OutputColumn> columns = query.columns;
        columns[0].type = sample->type;
        convertColumns(*query.body, columns);
        query.columns = std::move(columns);
    }
    return sample->type;
}

BoundPtr Binder::in(const ast::InExpression& expression, Scope* scope) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::In;
    result->type = truth();
    result->negated = expression.negated;
    BoundPtr operand = this->expression(*expression.operand, scope);
    if (expression.query != nullptr) {
        result->query = oneColumnQuery(*expression.query, scope);
        compareWithColumn(operand, *result->query);
        result->arguments.push_back(std::move(operand));
        return result;
    }
    std::vector<BoundPtr> list;
    for (const ast::ExpressionPtr& item : expression.list)
        list.push_back(this->expression(*item, scope));
    for (BoundPtr& item : list)
        unifyForComparison(operand, item);
    // The operand may have moved to a finer type with a later item.
    for (BoundPtr& item : list)
        unifyForComparison(operand, item);
    std::vector<const BoundExpression*> items;
    items.reserve(list.size());
    for (const BoundPtr& item : list)
        items.push_back(item.get());
    settleOrder(operand, items, expression.range);
    result->arguments.push_back(std::move(operand));
    for (BoundPtr& item : list)
        result->arguments.push_back(std::move(item));
    return result;
}

BoundPtr Binder::like(const ast::LikeExpression& expression, Scope* scope) {
    const auto text = [&](const ast::Expression& part) {
        BoundPtr value = this->expression(part, scope);
        if (value->type.isText()) return value;
        return cast(std::move(value), SqlType::text(TypeKind::VarChar, 8000));
    };
    BoundPtr operand = text(*expression.operand);
    BoundPtr pattern = text(*expression.pattern);
    const bool unicode = operand->type.isUnicode() || pattern->type.isUnicode();
    BoundPtr escape = expression.escape == nullptr ? boundConstant(std::string(), SqlType::text(TypeKind::VarChar, 1))
                                                   : text(*expression.escape);
    const auto order = static_cast<int>(orderOf({operand.get(), pattern.get()}, expression.range));
    BoundPtr match = boundCall("t_like", truth(), std::move(operand), std::move(pattern), std::move(escape),
                               boundInteger((unicode ? 1 : 0) + 2 * order));
    if (!expression.negated) return match;
    return boundPrefix("NOT", truth(), std::move(match));
}

}  // namespace basalt::embedded
