#include "engines/embedded/binder/bound_expression.h"

#include <stdexcept>

#include "ado/names.h"
#include "engines/embedded/binder/bound_query.h"
#include "engines/embedded/lexer/literal.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// How much longer the texts of literals under the same key may be.
int roomOfLiterals(const BoundExpression& expression) {
    int room = 0;
    const SqlType& type = expression.slot.from;
    if (expression.kind == BoundKind::Slot && expression.slot.source == Slot::Source::Literal && type.isText() &&
        type.length != kMaxLength) {
        const int shortest = static_cast<int>(kLongestShort);
        room = (type.length <= shortest ? shortest : boundOf(type)) - type.length;
    }
    for (const BoundPtr& argument : expression.arguments)
        room += roomOfLiterals(*argument);
    return room;
}

}  // namespace

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
    if (type.isText()) {
        for (const BoundPtr& argument : arguments)
            takeOrder(*result, *argument);
    }
    result->arguments = std::move(arguments);
    return result;
}

BoundPtr boundInfix(std::string op, SqlType type, BoundPtr left, BoundPtr right) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Infix;
    result->type = type;
    result->nullable = left->nullable || right->nullable;
    if (type.isText()) {
        takeOrder(*result, *left);
        takeOrder(*result, *right);
    }
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

int boundOf(const SqlType& type) {
    return type.isUnicode() ? 4000 : 8000;
}

bool mayExceed(const SqlType& type, int length, std::initializer_list<const BoundExpression*> parts) {
    if (type.length == kMaxLength) return false;
    for (const BoundExpression* part : parts) {
        if (length > boundOf(type)) break;
        length += roomOfLiterals(*part);
    }
    return length > boundOf(type);
}

BoundPtr boundCut(BoundPtr text) {
    const SqlType type = text->type;
    return boundCall(kCut, type, std::move(text), boundInteger(boundOf(type)));
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

BoundPtr boundCollate(BoundPtr text, TextOrder order, std::string collation) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Postfix;
    result->type = text->type;
    result->nullable = text->nullable;
    result->name = std::string("COLLATE ") + sqliteCollation(order);
    result->order = order;
    result->collation = std::move(collation);
    result->ownCollation = true;
    result->arguments.push_back(std::move(text));
    return result;
}

void takeOrder(BoundExpression& whole, const BoundExpression& part) {
    if (!part.type.isText()) return;
    if (part.collation.empty()) {
        if (whole.collation.empty() && whole.order == TextOrder::Database) whole.order = part.order;
        return;
    }
    if (!whole.collation.empty() && !sameName(whole.collation, part.collation)) {
        throwSqlError(468, "Cannot resolve the collation conflict between \"" + part.collation + "\" and \"" +
                               whole.collation + "\".");
    }
    whole.order = part.order;
    whole.collation = part.collation;
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
    result->writtenDigits = expression.writtenDigits;
    result->ownCollation = expression.ownCollation;
    result->order = expression.order;
    result->collation = expression.collation;
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
