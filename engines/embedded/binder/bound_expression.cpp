#include "engines/embedded/binder/bound_expression.h"

#include <stdexcept>

#include "engines/embedded/binder/bound_query.h"

namespace basalt::embedded {

BoundExpression::BoundExpression() = default;
BoundExpression::~BoundExpression() = default;

BoundPtr boundConstant(Value value, SqlType type) {
    auto result = std::make_unique<BoundExpression>();
    result->type = type;
    result->nullable = isNull(value);
    result->value = std::move(value);
    return result;
}

BoundPtr boundInteger(std::int64_t value) {
    return boundConstant(value, SqlType::of(TypeKind::Int));
}

BoundPtr boundTypeCode(const SqlType& type) {
    return boundConstant(type.code(), SqlType::of(TypeKind::BigInt));
}

BoundPtr makeCall(std::string name, SqlType type, std::vector<BoundPtr> arguments) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Call;
    result->type = type;
    result->name = std::move(name);
    result->nullable = false;
    for (const BoundPtr& argument : arguments)
        result->nullable = result->nullable || argument->nullable;
    result->arguments = std::move(arguments);
    return result;
}

BoundPtr boundInfix(std::string op, SqlType type, BoundPtr left, BoundPtr right) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Infix;
    result->type = type;
    result->nullable = left->nullable || right->nullable;
    // Chains of one associative operator stay flat, so that long ones do not become deep ones.
    const bool chains = op == "AND" || op == "OR" || op == "||";
    if (chains && left->kind == BoundKind::Infix && left->name == op) {
        result->arguments = std::move(left->arguments);
    } else {
        result->arguments.push_back(std::move(left));
    }
    result->arguments.push_back(std::move(right));
    result->name = std::move(op);
    return result;
}

BoundPtr boundPrefix(std::string op, SqlType type, BoundPtr operand) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Prefix;
    result->type = type;
    result->nullable = operand->nullable;
    result->name = std::move(op);
    result->arguments.push_back(std::move(operand));
    return result;
}

bool canClone(const BoundExpression& expression) {
    if (expression.query || expression.over) return false;
    for (const BoundPtr& argument : expression.arguments) {
        if (!canClone(*argument)) return false;
    }
    return true;
}

BoundPtr cloned(const BoundExpression& expression) {
    if (!canClone(expression)) throw std::logic_error("A bound subquery stands in one place only.");
    auto result = std::make_unique<BoundExpression>();
    result->kind = expression.kind;
    result->type = expression.type;
    result->nullable = expression.nullable;
    result->negated = expression.negated;
    result->distinct = expression.distinct;
    result->star = expression.star;
    result->ownCollation = expression.ownCollation;
    result->name = expression.name;
    result->table = expression.table;
    result->value = expression.value;
    result->slot = expression.slot;
    result->base = expression.base;
    for (const BoundPtr& argument : expression.arguments)
        result->arguments.push_back(cloned(*argument));
    return result;
}

}  // namespace basalt::embedded
