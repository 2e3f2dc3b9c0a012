#include "engines/embedded/runtime/decimal_math.h"

#include <algorithm>
#include <boost/multiprecision/cpp_int.hpp>
#include <limits>

#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// Wide enough for a product of two 38-digit numbers, scaled up by 38 more digits.
using Wide = boost::multiprecision::int512_t;

[[noreturn]] void overflow(const SqlType& type) {
    throwSqlError(error::kArithmeticOverflow,
                  "Arithmetic overflow error converting expression to data type " +
                      std::string(type.kind == TypeKind::Decimal ? "numeric" : type.baseName()) + ".");
}

Wide wide(Int128 value) {
    return Wide(value);
}

Wide wideTen(int exponent) {
    Wide result = 1;
    for (; exponent > kMaxDecimalDigits; exponent -= kMaxDecimalDigits)
        result *= wide(powerOfTen(kMaxDecimalDigits));
    return result * wide(powerOfTen(exponent));
}

template <typename Integer>
bool within(Int128 coefficient) {
    return coefficient >= std::numeric_limits<Integer>::min() && coefficient <= std::numeric_limits<Integer>::max();
}

bool holds(const SqlType& type, Int128 coefficient) {
    // SQL Server keeps money in integers of 64 and of 32 bits.
    if (type.kind == TypeKind::Money) return within<std::int64_t>(coefficient);
    if (type.kind == TypeKind::SmallMoney) return within<std::int32_t>(coefficient);
    const Int128 limit = powerOfTen(type.precision);
    return coefficient < limit && coefficient > -limit;
}

// `value` has `scale` digits after the point; the answer has the type's, rounded half away from zero or cut.
Decimal narrowed(Wide value, int scale, const SqlType& type, bool cut) {
    if (scale > type.scale) {
        const Wide unit = wideTen(scale - type.scale);
        Wide quotient = value / unit;
        const Wide rest = value - quotient * unit;
        if (!cut && abs(rest) * 2 >= unit) quotient += value < 0 ? -1 : 1;
        value = quotient;
    } else if (scale < type.scale) {
        value *= wideTen(type.scale - scale);
    }
    if (abs(value) >= wide(powerOfTen(kMaxDecimalDigits))) overflow(type);
    const auto coefficient = static_cast<Int128>(value);
    if (!holds(type, coefficient)) overflow(type);
    return {coefficient, type.scale};
}

bool small(const Decimal& value) {
    constexpr Int128 limit = Int128{1} << 62;
    return value.coefficient() < limit && value.coefficient() > -limit;
}

// Beyond 38 digits SQL Server gives digits after the point up, keeping those before it that the operands have; the one
// that a carry may need is not among these.
SqlType cappedSum(int integral, int scale, int carry) {
    const int precision = integral + scale + carry;
    if (precision <= kMaxDecimalDigits) return SqlType::decimal(precision, scale);
    return SqlType::decimal(kMaxDecimalDigits, std::max(0, std::min(scale, kMaxDecimalDigits - integral)));
}

// Beyond 38 digits, but six digits after the point are kept at the expense of those before it.
SqlType cappedProduct(int precision, int scale) {
    if (precision > kMaxDecimalDigits) {
        const int integral = precision - scale;
        scale = std::max(std::min(scale, kMaxDecimalDigits - integral), std::min(scale, 6));
        precision = kMaxDecimalDigits;
    }
    return SqlType::decimal(precision, scale);
}

bool bothMoney(const SqlType& a, const SqlType& b) {
    return a.kind != TypeKind::Decimal && b.kind != TypeKind::Decimal;
}

SqlType widerMoney(const SqlType& a, const SqlType& b) {
    return SqlType::of(std::max(a.kind, b.kind));
}

}  // namespace

SqlType sumType(const SqlType& a, const SqlType& b) {
    if (bothMoney(a, b)) return widerMoney(a, b);
    const int scale = std::max(a.scale, b.scale);
    return cappedSum(std::max(a.precision - a.scale, b.precision - b.scale), scale, 1);
}

SqlType productType(const SqlType& a, const SqlType& b) {
    if (bothMoney(a, b)) return widerMoney(a, b);
    return cappedProduct(a.precision + b.precision + 1, a.scale + b.scale);
}

SqlType quotientType(const SqlType& a, const SqlType& b) {
    if (bothMoney(a, b)) return widerMoney(a, b);
    const int scale = std::max(6, a.scale + b.precision + 1);
    return cappedProduct(a.precision - a.scale + b.scale + scale, scale);
}

SqlType moduloType(const SqlType& a, const SqlType& b) {
    if (bothMoney(a, b)) return widerMoney(a, b);
    const int scale = std::max(a.scale, b.scale);
    return SqlType::decimal(std::min(kMaxDecimalDigits, std::min(a.precision - a.scale, b.precision - b.scale) + scale),
                            scale);
}

SqlType commonDecimal(const SqlType& a, const SqlType& b) {
    if (bothMoney(a, b)) return widerMoney(a, b);
    const int scale = std::max(a.scale, b.scale);
    return cappedSum(std::max(a.precision - a.scale, b.precision - b.scale), scale, 0);
}

SqlType decimalOf(const SqlType& type) {
    switch (type.kind) {
        case TypeKind::Bit:
            return SqlType::decimal(1, 0);
        case TypeKind::TinyInt:
            return SqlType::decimal(3, 0);
        case TypeKind::SmallInt:
            return SqlType::decimal(5, 0);
        case TypeKind::Int:
            return SqlType::decimal(10, 0);
        case TypeKind::BigInt:
            return SqlType::decimal(19, 0);
        default:
            return type;
    }
}

Decimal add(const Decimal& a, const Decimal& b, const SqlType& result) {
    if (a.scale() == b.scale() && a.scale() == result.scale && small(a) && small(b)) {
        return fit({a.coefficient() + b.coefficient(), a.scale()}, result);
    }
    const int scale = std::max(a.scale(), b.scale());
    return narrowed(
        wide(a.coefficient()) * wideTen(scale - a.scale()) + wide(b.coefficient()) * wideTen(scale - b.scale()), scale,
        result, false);
}

Decimal subtract(const Decimal& a, const Decimal& b, const SqlType& result) {
    return add(a, {-b.coefficient(), b.scale()}, result);
}

Decimal multiply(const Decimal& a, const Decimal& b, const SqlType& result) {
    if (a.scale() + b.scale() == result.scale && small(a) && small(b)) {
        return fit({a.coefficient() * b.coefficient(), result.scale}, result);
    }
    return narrowed(wide(a.coefficient()) * wide(b.coefficient()), a.scale() + b.scale(), result, false);
}

Decimal divide(const Decimal& a, const Decimal& b, const SqlType& result) {
    if (b.coefficient() == 0) throwSqlError(error::kDivideByZero, "Divide by zero error encountered.");
    // a / b with result.scale digits: scale a up so that whole division leaves exactly these digits.
    const int shift = result.scale + b.scale() - a.scale();
    Wide numerator = wide(a.coefficient());
    Wide denominator = wide(b.coefficient());
    if (shift >= 0) {
        numerator *= wideTen(shift);
    } else {
        denominator *= wideTen(-shift);
    }
    return narrowed(numerator / denominator, result.scale, result, true);
}

Decimal modulo(const Decimal& a, const Decimal& b, const SqlType& result) {
    if (b.coefficient() == 0) throwSqlError(error::kDivideByZero, "Divide by zero error encountered.");
    const int scale = std::max(a.scale(), b.scale());
    const Wide left = wide(a.coefficient()) * wideTen(scale - a.scale());
    const Wide right = wide(b.coefficient()) * wideTen(scale - b.scale());
    return narrowed(left % right, scale, result, true);
}

Decimal fit(const Decimal& value, const SqlType& type) {
    Int128 coefficient = value.coefficient();
    if (value.scale() != type.scale) {
        if (value.scale() < type.scale && !small(value)) return narrowed(wide(coefficient), value.scale(), type, false);
        try {
            coefficient = value.rescaled(type.scale).coefficient();
        } catch (const std::overflow_error&) {
            overflow(type);
        }
    }
    if (!holds(type, coefficient)) overflow(type);
    return {coefficient, type.scale};
}

Decimal roundTo(const Decimal& value, std::int64_t digits, bool truncate) {
    if (digits >= value.scale()) return value;
    const std::int64_t dropped = value.scale() - digits;
    if (dropped > kMaxDecimalDigits) return {0, value.scale()};
    const Int128 unit = powerOfTen(static_cast<int>(dropped));
    const Int128 rest = value.coefficient() % unit;
    Int128 result = value.coefficient() - rest;
    if (!truncate) {
        const Int128 magnitude = rest < 0 ? -rest : rest;
        if (magnitude >= unit - magnitude) result += value.coefficient() < 0 ? -unit : unit;
    }
    return {result, value.scale()};
}

Decimal floorOf(const Decimal& value) {
    const Int128 unit = powerOfTen(value.scale());
    Int128 result = value.coefficient() / unit;
    if (value.coefficient() % unit < 0) --result;
    return {result, 0};
}

Decimal ceilingOf(const Decimal& value) {
    const Int128 unit = powerOfTen(value.scale());
    Int128 result = value.coefficient() / unit;
    if (value.coefficient() % unit > 0) ++result;
    return {result, 0};
}

}  // namespace basalt::embedded
