#include "engines/embedded/binder/type_rules.h"

#include <algorithm>

#include "engines/embedded/runtime/decimal_math.h"

namespace basalt::embedded {

namespace {

int longest(const SqlType& a, const SqlType& b) {
    return a.length == kMaxLength || b.length == kMaxLength ? kMaxLength : std::max(a.length, b.length);
}

SqlType commonText(const SqlType& a, const SqlType& b) {
    const bool unicode = a.isUnicode() || b.isUnicode();
    const bool fixed = a.isFixedText() && b.isFixedText();
    const TypeKind kind =
        unicode ? (fixed ? TypeKind::NChar : TypeKind::NVarChar) : (fixed ? TypeKind::Char : TypeKind::VarChar);
    const int length = longest(a, b);
    return SqlType::text(kind, unicode && length > 4000 ? kMaxLength : length);
}

// Of how many digits every number fits the type: money ends amid the numbers of its greatest length.
int surePrecision(const SqlType& type) {
    return type.kind == TypeKind::Decimal ? type.precision : type.precision - 1;
}

}  // namespace

SqlType commonType(const SqlType& a, const SqlType& b) {
    if (a == b || b.isNull()) return a;
    if (a.isNull()) return b;
    if (a.isText() && b.isText()) return commonText(a, b);
    if (a.isBinary() && b.isBinary()) {
        const bool fixed = a.kind == TypeKind::Binary && b.kind == TypeKind::Binary;
        return SqlType::text(fixed ? TypeKind::Binary : TypeKind::VarBinary, longest(a, b));
    }
    const bool exact = (a.isInteger() || a.isDecimal()) && (b.isInteger() || b.isDecimal());
    if (exact && (a.isDecimal() || b.isDecimal())) {
        const bool money =
            (a.isInteger() || a.kind != TypeKind::Decimal) && (b.isInteger() || b.kind != TypeKind::Decimal);
        if (money) return a.isInteger() ? b : b.isInteger() ? a : SqlType::of(std::max(a.kind, b.kind));
        return commonDecimal(decimalOf(a), decimalOf(b));
    }
    if (a.kind == b.kind) return a.scale >= b.scale ? a : b;
    // A date and a time of day meet in the point in time.
    if (a.kind == TypeKind::Time && b.kind == TypeKind::Date) return SqlType::of(TypeKind::DateTime2);
    if (a.kind == TypeKind::Date && b.kind == TypeKind::Time) return SqlType::of(TypeKind::DateTime2);
    return a.kind > b.kind ? a : b;
}

bool convertsImplicitly(const SqlType& from, const SqlType& to) {
    if (from.isNull() || from.isText() || from.kind == to.kind) return !(from.isText() && to.isBinary());
    if (from.isNumber() && to.isNumber()) return true;
    if (from.isBinary()) {
        return to.isBinary() || to.isInteger() || to.isText() || to.kind == TypeKind::UniqueIdentifier;
    }
    if (from.kind == TypeKind::UniqueIdentifier && to.isBinary()) return true;
    if (to.isText()) return true;
    if (from.isDate() && to.isDate()) {
        return !((from.kind == TypeKind::Date && to.kind == TypeKind::Time) ||
                 (from.kind == TypeKind::Time && to.kind == TypeKind::Date));
    }
    if (from.isInteger() && to.isBinary()) return true;
    // Numbers become datetime by themselves, never the other way round.
    return from.isNumber() && (to.kind == TypeKind::DateTime || to.kind == TypeKind::SmallDateTime);
}

bool converts(const SqlType& from, const SqlType& to) {
    if (from.isNull() || from.isText() || to.isText() || from.kind == to.kind) return true;
    if (from.kind == TypeKind::UniqueIdentifier) return to.isBinary();
    if (to.kind == TypeKind::UniqueIdentifier) return from.isBinary();
    // A number stands for the days of the older types only.
    const auto newer = [](const SqlType& type) {
        return type.isDate() && type.kind != TypeKind::DateTime && type.kind != TypeKind::SmallDateTime;
    };
    if (newer(from)) {
        return !to.isNumber() && !(from.kind == TypeKind::Date && to.kind == TypeKind::Time) &&
               !(from.kind == TypeKind::Time && to.kind == TypeKind::Date);
    }
    return !(newer(to) && from.isNumber());
}

bool isSameStored(const SqlType& from, const SqlType& to) {
    if (from == to || from.isNull()) return true;
    if (from.isInteger() && to.isInteger()) return from.kind < to.kind && to.kind != TypeKind::Bit;
    if (from.isDecimal() && to.isDecimal()) {
        if (from.kind != TypeKind::Decimal && to.kind != TypeKind::Decimal) return from.kind <= to.kind;
        return from.scale == to.scale && from.precision <= surePrecision(to);
    }
    if (from.kind == TypeKind::Real && to.kind == TypeKind::Float) return true;
    if (from.isText() && to.isText()) {
        if (to.isFixedText()) return from.isFixedText() && from.length == to.length;
        return to.length == kMaxLength || (from.length != kMaxLength && from.length <= to.length);
    }
    if (from.isBinary() && to.isBinary()) {
        return to.kind == TypeKind::VarBinary &&
               (to.length == kMaxLength || (from.length != kMaxLength && from.length <= to.length));
    }
    if (from.isDate() && to.isDate()) {
        if (from.kind == TypeKind::Time || to.kind == TypeKind::Time) return false;
        if (to.kind == TypeKind::DateTime2 && to.scale == 7) return true;
        // datetime reaches back to 1753 only.
        return from.kind == TypeKind::SmallDateTime && to.kind == TypeKind::DateTime;
    }
    return false;
}

bool alwaysConverts(const SqlType& from, const SqlType& to) {
    if (isSameStored(from, to)) return true;
    if (from.isInteger() && to.isDecimal()) return decimalOf(from).precision <= surePrecision(to) - to.scale;
    if (from.isInteger() && (to.isFloat() || to.kind == TypeKind::Bit)) return true;
    if (from.isDecimal() && to.isFloat()) return true;
    if (from.isDecimal() && to.isDecimal())
        return from.precision - from.scale < surePrecision(to) - to.scale ||
               (from.scale <= to.scale && from.precision - from.scale <= surePrecision(to) - to.scale);
    return false;
}

SqlType concatenatedType(const SqlType& a, const SqlType& b) {
    const bool unicode = a.isUnicode() || b.isUnicode();
    const bool fixed = a.isFixedText() && b.isFixedText();
    const TypeKind kind =
        unicode ? (fixed ? TypeKind::NChar : TypeKind::NVarChar) : (fixed ? TypeKind::Char : TypeKind::VarChar);
    if (a.length == kMaxLength || b.length == kMaxLength) {
        return SqlType::text(unicode ? TypeKind::NVarChar : TypeKind::VarChar, kMaxLength);
    }
    return SqlType::text(kind, std::max(1, std::min(a.length + b.length, unicode ? 4000 : 8000)));
}

}  // namespace basalt::embedded
