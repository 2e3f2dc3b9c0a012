// The operators + - * / % & | ^ ~ with the types that SQL Server gives their results.
#include <algorithm>

#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/runtime/dates.h"
#include "engines/embedded/runtime/decimal_math.h"

namespace basalt::embedded {

namespace {

using Operator = ast::BinaryOperator;

const char* nameOf(Operator op) {
    switch (op) {
        case Operator::Add:
            return "add";
        case Operator::Subtract:
            return "subtract";
        case Operator::Multiply:
            return "multiply";
        case Operator::Divide:
            return "divide";
        case Operator::Modulo:
            return "modulo";
        case Operator::BitAnd:
            return "'&'";
        case Operator::BitOr:
            return "'|'";
        case Operator::BitXor:
            return "'^'";
    }
    return "";
}

bool isBitwise(Operator op) {
    return op == Operator::BitAnd || op == Operator::BitOr || op == Operator::BitXor;
}

BoundPtr checkedRange(BoundPtr value, TypeKind kind) {
    const SqlType type = SqlType::of(kind);
    if (kind == TypeKind::Int) return boundCall("t_i32", type, std::move(value));
    return boundCall("t_range", type, std::move(value), boundInteger(static_cast<std::int64_t>(kind)));
}

// A text that has reached the longest length of its type is cut there, before more is put behind it.
BoundPtr concatenated(BoundPtr left, BoundPtr right) {
    const SqlType type = concatenatedType(left->type, right->type);
    const bool cuts = mayExceed(type, left->type.length + right->type.length, {left.get(), right.get()});
    // The cut of a longer text makes that of its beginning superfluous.
    if (cuts && left->kind == BoundKind::Call && left->name == kCut) left = std::move(left->arguments[0]);
    BoundPtr joined = boundInfix("||", type, std::move(left), std::move(right));
    return cuts ? boundCut(std::move(joined)) : std::move(joined);
}

}  // namespace

ast::BinaryOperator operatorOf(ast::AssignmentOperator op) {
    using From = ast::AssignmentOperator;
    using To = ast::BinaryOperator;
    switch (op) {
        case From::Subtract:
            return To::Subtract;
        case From::Multiply:
            return To::Multiply;
        case From::Divide:
            return To::Divide;
        case From::Modulo:
            return To::Modulo;
        case From::BitAnd:
            return To::BitAnd;
        case From::BitOr:
            return To::BitOr;
        case From::BitXor:
            return To::BitXor;
        default:
            return To::Add;
    }
}

BoundPtr Binder::unary(const ast::UnaryExpression& expression, Scope* scope) {
    BoundPtr operand = this->expression(*expression.operand, scope);
    if (expression.op == ast::UnaryOperator::Plus || operand->isNullConstant()) return operand;
    const SqlType type = operand->type;
    if (expression.op == ast::UnaryOperator::BitwiseNot) {
        if (!type.isInteger()) {
            fail(8117, "Operand data type " + std::string(type.baseName()) + " is invalid for '~' operator.",
                 expression.range);
        }
        if (type.kind == TypeKind::Bit) return boundInfix("-", type, boundInteger(1), std::move(operand));
        if (type.kind == TypeKind::TinyInt) return boundInfix("-", type, boundInteger(255), std::move(operand));
        return boundPrefix("~", type, std::move(operand));
    }
    if (type.kind == TypeKind::Decimal) return boundCall("t_dneg", type, std::move(operand));
    // The lowest amount of money has no counterpart.
    if (type.isDecimal()) return boundCall("t_dneg", type, std::move(operand), boundTypeCode(type));
    if (type.isFloat()) return boundPrefix("-", type, std::move(operand));
    if (type.isText()) {
        operand = cast(std::move(operand), SqlType::of(TypeKind::Int));
    } else if (!type.isInteger() || type.kind == TypeKind::Bit) {
        fail(8117, "Operand data type " + std::string(type.baseName()) + " is invalid for minus operator.",
             expression.range);
    }
    if (operand->type.kind == TypeKind::BigInt) {
        const SqlType big = operand->type;
        return boundCall("t_sub64", big, boundInteger(0), std::move(operand));
    }
    const TypeKind kind = operand->type.kind == TypeKind::TinyInt ? TypeKind::SmallInt : operand->type.kind;
    return checkedRange(boundPrefix("-", SqlType::of(kind), std::move(operand)), kind);
}

BoundPtr Binder::binary(const ast::BinaryExpression& expression, Scope* scope) {
    BoundPtr left = this->expression(*expression.left, scope);
    BoundPtr right = this->expression(*expression.right, scope);
    return operation(expression.op, std::move(left), std::move(right), expression.operatorRange);
}

BoundPtr Binder::operation(ast::BinaryOperator op, BoundPtr left, BoundPtr right, SourceRange range) {
    if (left->type.isNull()) left->type = right->type;
    if (right->type.isNull()) right->type = left->type;
    const SqlType a = left->type;
    const SqlType b = right->type;
    if (a.isNull()) return boundConstant(Null{}, SqlType::of(TypeKind::Int));
    const auto refuse = [&] {
        fail(402,
             "The data types " + std::string(a.baseName()) + " and " + std::string(b.baseName()) +
                 " are incompatible in the " + nameOf(op) + " operator.",
             range);
    };
    if (a.isText() && b.isText()) {
        if (op != Operator::Add) {
            fail(8117,
                 "Operand data type " + std::string(a.baseName()) + " is invalid for " + nameOf(op) + " operator.",
                 range);
        }
        return concatenated(std::move(left), std::move(right));
    }
    if (a.isBinary() && b.isBinary() && op == Operator::Add) {
        const bool unbounded = a.length == kMaxLength || b.length == kMaxLength;
        const SqlType joined =
            SqlType::text(TypeKind::VarBinary, unbounded ? kMaxLength : std::min(a.length + b.length, 8000));
        return boundCall("t_join_bytes", joined, std::move(left), std::move(right),
                         boundInteger(unbounded ? -1 : boundOf(joined)));
    }
    if ((a.isText() && b.kind == TypeKind::UniqueIdentifier) || (b.isText() && a.kind == TypeKind::UniqueIdentifier))
        refuse();
    const auto modern = [](const SqlType& type) {
        return type.isDate() && type.kind != TypeKind::DateTime && type.kind != TypeKind::SmallDateTime;
    };
    if (a.isNumber() || b.isNumber()) refuseClash(a, b, range);
    if (a.isDate() && b.isDate() && (modern(a) || modern(b))) refuse();
    const SqlType common = commonType(a, b);
    if (common.isDate()) {
        // Points in time add up as days since 1900-01-01, the older types only.
        if ((op != Operator::Add && op != Operator::Subtract) ||
            (common.kind != TypeKind::DateTime && common.kind != TypeKind::SmallDateTime)) {
            refuse();
        }
        BoundPtr zero =
            boundConstant(op == Operator::Add ? -kDateTimeZero : kDateTimeZero, SqlType::of(TypeKind::BigInt));
        BoundPtr sum = boundInfix(op == Operator::Add ? "+" : "-", common, cast(std::move(left), common),
                                  cast(std::move(right), common));
        sum = boundInfix("+", common, std::move(sum), std::move(zero));
        return boundCall("t_cast", common, std::move(sum), boundTypeCode(common), boundTypeCode(common),
                         boundInteger(0));
    }
    if (!common.isNumber()) refuse();
    if (isBitwise(op)) {
        if (!common.isInteger()) refuse();
        left = cast(std::move(left), common);
        right = cast(std::move(right), common);
        if (op == Operator::BitXor) return boundCall("t_ixor", common, std::move(left), std::move(right));
        return boundInfix(op == Operator::BitAnd ? "&" : "|", common, std::move(left), std::move(right));
    }
    if (common.isInteger()) {
        if (common.kind == TypeKind::Bit) refuse();
        return integerOperation(op, cast(std::move(left), common), cast(std::move(right), common), common.kind);
    }
    if (common.isFloat()) {
        if (op == Operator::Modulo) refuse();
        const SqlType wide = SqlType::of(TypeKind::Float);
        left = cast(std::move(left), wide);
        right = cast(std::move(right), wide);
        if (op == Operator::Divide) return cast(boundCall("t_fdiv", wide, std::move(left), std::move(right)), common);
        const char* sign = op == Operator::Add ? "+" : op == Operator::Subtract ? "-" : "*";
        // Rounding the wide result of two reals gives what computing with reals gives.
        return cast(boundCall("t_finite", wide, boundInfix(sign, wide, std::move(left), std::move(right))), common);
    }
    return decimalOperation(op, std::move(left), std::move(right));
}

BoundPtr Binder::integerOperation(ast::BinaryOperator op, BoundPtr left, BoundPtr right, TypeKind kind) {
    const SqlType type = SqlType::of(kind);
    const bool big = kind == TypeKind::BigInt;
    switch (op) {
        case Operator::Add:
            if (big) return boundCall("t_add64", type, std::move(left), std::move(right));
            return checkedRange(boundInfix("+", type, std::move(left), std::move(right)), kind);
        case Operator::Subtract:
            if (big) return boundCall("t_sub64", type, std::move(left), std::move(right));
            return checkedRange(boundInfix("-", type, std::move(left), std::move(right)), kind);
        case Operator::Multiply:
            if (big) return boundCall("t_mul64", type, std::move(left), std::move(right));
            return checkedRange(boundInfix("*", type, std::move(left), std::move(right)), kind);
        case Operator::Divide: {
            BoundPtr quotient = boundCall("t_idiv", type, std::move(left), std::move(right));
            return big ? std::move(quotient) : checkedRange(std::move(quotient), kind);
        }
        default:
            return boundCall("t_imod", type, std::move(left), std::move(right));
    }
}

BoundPtr Binder::decimalOperation(ast::BinaryOperator op, BoundPtr left, BoundPtr right) {
    const bool money = left->type.kind == TypeKind::Money || left->type.kind == TypeKind::SmallMoney ||
                       right->type.kind == TypeKind::Money || right->type.kind == TypeKind::SmallMoney;
    const bool decimal = left->type.kind == TypeKind::Decimal || right->type.kind == TypeKind::Decimal;
    const auto toDecimal = [&](BoundPtr value, const SqlType& other) {
        SqlType type = decimalOf(value->type);
        // Texts and whole numbers beside money become money of that width.
        if (value->type.isText()) type = money && !decimal ? other : SqlType::decimal(38, 8);
        if (value->type.isInteger() && money && !decimal) type = other;
        // An integer written down takes the digits that it has, as SQL Server counts them for the result's precision.
        if (value->writtenDigits > 0 && value->type.kind == TypeKind::Int && !money) {
            if (value->kind == BoundKind::Slot) value->slot.literals->fix(value->slot.index);
            const SqlType own = SqlType::decimal(value->writtenDigits, 0);
            return asWritten(std::move(value), own);
        }
        // A text beside a decimal takes the decimal's type.
        if (value->type.isText() && !money && other.isDecimal()) type = other;
        if (value->type.isBinary()) type = other;
        return cast(std::move(value), type);
    };
    const SqlType leftType = left->type;
    const SqlType rightType = right->type;
    left = toDecimal(std::move(left), rightType);
    right = toDecimal(std::move(right), leftType);
    const SqlType a = left->type;
    const SqlType b = right->type;
    const auto call = [&](const char* name, const SqlType& type) {
        return boundCall(name, type, std::move(left), boundTypeCode(a), std::move(right), boundTypeCode(b),
                         boundTypeCode(type));
    };
    switch (op) {
        case Operator::Add:
            return call("t_dadd", sumType(a, b));
        case Operator::Subtract:
            return call("t_dsub", sumType(a, b));
        case Operator::Multiply:
            return call("t_dmul", productType(a, b));
        case Operator::Divide:
            return call("t_ddiv", quotientType(a, b));
        default:
            return call("t_dmod", moduloType(a, b));
    }
}

}  // namespace basalt::embedded
