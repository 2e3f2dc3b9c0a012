// Conversions that the binder inserts: implicit ones, CAST and CONVERT, and those of assignments.
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/catalog/data_type.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

bool hasTextSlot(const BoundExpression& value) {
    if (value.kind == BoundKind::Slot) return value.type.isText() || value.type.isBinary();
    for (const BoundPtr& argument : value.arguments) {
        if (hasTextSlot(*argument)) return true;
    }
    return value.query != nullptr;
}

BoundPtr castCall(const char* name, BoundPtr value, const SqlType& to, BoundPtr style) {
    const SqlType from = value->type;
    return boundCall(name, to, std::move(value), boundTypeCode(from), boundTypeCode(to), std::move(style));
}

bool textOrBinary(const SqlType& type) {
    return type.isText() || type.isBinary();
}

}  // namespace

void Binder::relyOnLength(const BoundExpression& value) {
    if (value.kind == BoundKind::Slot && value.slot.source == Slot::Source::Literal && textOrBinary(value.slot.from)) {
        value.slot.literals->narrow(value.slot.index, LiteralUse::Length);
    }
    for (const BoundPtr& argument : value.arguments)
        relyOnLength(*argument);
}

BoundPtr Binder::asWritten(BoundPtr number, const SqlType& to) {
    if (number->kind == BoundKind::Constant) return boundConstant(convert(number->value, number->type, to), to);
    number->slot.to = number->type = to;
    number->writtenDigits = 0;
    return number;
}

BoundPtr Binder::cast(BoundPtr value, const SqlType& to) {
    const SqlType from = value->type;
    value->writtenDigits = 0;
    if (from == to) return value;
    if (to.isNull()) return value;
    if (value->isNullConstant()) {
        value->type = to;
        return value;
    }
    if (value->kind == BoundKind::Constant && alwaysConverts(from, to)) {
        return boundConstant(convert(value->value, from, to), to);
    }
    if (isSameStored(from, to)) {
        if (textOrBinary(from)) relyOnLength(*value);
        value->type = to;
        // What has been rounded to real stays so.
        if (value->kind == BoundKind::Slot && from.kind != TypeKind::Real) value->slot.to = to;
        return value;
    }
    if (value->kind == BoundKind::Slot && value->slot.to == from && alwaysConverts(from, to)) {
        value->slot.to = to;
        value->type = to;
        return value;
    }
    return castCall("t_cast", std::move(value), to, boundInteger(0));
}

BoundPtr Binder::castExplicitly(BoundPtr value, const SqlType& to, BoundPtr style, bool tries) {
    const bool plainStyle = style == nullptr;
    if (!tries && plainStyle) return cast(std::move(value), to);
    if (value->isNullConstant()) {
        value->type = to;
        return value;
    }
    if (plainStyle) style = boundInteger(0);
    const bool nullable = value->nullable || tries;
    BoundPtr result = castCall(tries ? "t_try_cast" : "t_cast", std::move(value), to, std::move(style));
    result->nullable = nullable;
    return result;
}

void Binder::unify(BoundPtr& a, BoundPtr& b) {
    const SqlType type = commonType(a->type, b->type);
    a = cast(std::move(a), type);
    b = cast(std::move(b), type);
}

void Binder::refuseClash(const SqlType& from, const SqlType& to, SourceRange range) const {
    if (converts(from, to)) return;
    fail(206,
         "Operand type clash: " + std::string(from.baseName()) + " is incompatible with " + std::string(to.baseName()),
         range);
}

void Binder::requireImplicit(const SqlType& from, const SqlType& to, SourceRange range) const {
    if (convertsImplicitly(from, to)) return;
    refuseClash(from, to, range);
    fail(257,
         "Implicit conversion from data type " + std::string(from.baseName()) + " to " + std::string(to.baseName()) +
             " is not allowed. Use the CONVERT function to run this query.",
         range);
}

void Binder::unifyForComparison(BoundPtr& a, BoundPtr& b) {
    if (a->type.isText() && b->type.isText()) return;
    if (a->type.isInteger() && b->type.isInteger() && a->type.kind != TypeKind::Bit && b->type.kind != TypeKind::Bit)
        return;
    if (a->type.isBinary() && b->type.isBinary()) return;
    const auto dated = [](const SqlType& type) { return type.isDate() && type.kind != TypeKind::Time; };
    if (dated(a->type) && dated(b->type)) return;
    // Digits beyond int without a fraction are decimals by their spelling; beside an integer column they serve as
    // bigint.
    const auto asBigInt = [](BoundPtr& number, const SqlType& other) {
        if (other.isInteger() && number->type.kind == TypeKind::Decimal && number->writtenDigits > 0 &&
            number->writtenDigits <= 18) {
            number = asWritten(std::move(number), SqlType::of(TypeKind::BigInt));
        }
    };
    asBigInt(a, b->type);
    asBigInt(b, a->type);
    if (a->type.isInteger() && b->type.isInteger()) return;
    unify(a, b);
}

BoundPtr Binder::assigned(BoundPtr value, const TableColumn& column, std::string_view table, SourceRange range) {
    const SqlType from = value->type;
    requireImplicit(from, column.type, range);
    if (value->isNullConstant()) {
        value->type = column.type;
        return value;
    }
    if (textOrBinary(column.type) && textOrBinary(from)) {
        if (column.type.length == kMaxLength) {
            value->type = column.type;
            return value;
        }
        if (isSameStored(from, column.type) && !hasTextSlot(*value)) return value;
        return boundCall("t_fit", column.type, std::move(value), boundTypeCode(column.type),
                         boundConstant(shownPlace(table), SqlType::text(TypeKind::NVarChar, 128)),
                         boundConstant(column.name, SqlType::text(TypeKind::NVarChar, 128)));
    }
    if (column.type.isText() && from.isInteger() && column.type.length != kMaxLength) {
        // A number too long for its column is an error on assignment, not the asterisk of CAST.
        value = cast(std::move(value), SqlType::text(TypeKind::VarChar, 20));
        return boundCall("t_fit", column.type, std::move(value), boundTypeCode(column.type),
                         boundConstant(shownPlace(table), SqlType::text(TypeKind::NVarChar, 128)),
                         boundConstant(column.name, SqlType::text(TypeKind::NVarChar, 128)));
    }
    return cast(std::move(value), column.type);
}

std::optional<std::int64_t> Binder::fixedInteger(const ast::Expression& expression) {
    const ast::Expression* inner = &expression;
    bool negative = false;
    while (const auto* unary = ast::tryAs<ast::UnaryExpression>(inner)) {
        if (unary->op == ast::UnaryOperator::BitwiseNot) return std::nullopt;
        if (unary->op == ast::UnaryOperator::Minus) negative = !negative;
        inner = unary->operand.get();
    }
    const auto* literal = ast::tryAs<ast::LiteralExpression>(inner);
    if (literal == nullptr || input_.literals == nullptr) return std::nullopt;
    const Literal& value = (*input_.literals)[literal->literal];
    if (value.type != LiteralType::Int) return std::nullopt;
    input_.literals->fix(literal->literal);
    return negative ? -value.integer : value.integer;
}

std::optional<std::string> Binder::fixedText(const ast::Expression& expression) {
    const auto* literal = ast::tryAs<ast::LiteralExpression>(&expression);
    if (literal == nullptr || input_.literals == nullptr) return std::nullopt;
    const Literal& value = (*input_.literals)[literal->literal];
    if (value.type != LiteralType::Varchar && value.type != LiteralType::NVarchar) return std::nullopt;
    input_.literals->fix(literal->literal);
    return std::string(value.text);
}

SqlType Binder::dataType(const ast::DataType& type) const {
    return dataTypeOf(type, input_.text);
}

void Binder::fail(int number, const std::string& message, SourceRange range) const {
    throw statementError(categoryOf(number), number, message, input_.text, range);
}

void Binder::unsupported(const std::string& construct, SourceRange range) const {
    throwUnsupported(construct, input_.text, range);
}

}  // namespace basalt::embedded
