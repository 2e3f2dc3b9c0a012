// The scalar functions of T-SQL: one entry a name, with the types of its arguments and of its result.
#include <algorithm>
#include <functional>
#include <iterator>
#include <map>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/function_binder.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/catalog/system_view.h"
#include "engines/embedded/runtime/dates.h"
#include "engines/embedded/runtime/decimal_math.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

SqlType FunctionBinder::textTypeOf(const SqlType& type) {
    if (type.isText()) return type;
    return SqlType::text(TypeKind::VarChar, 8000);
}

BoundPtr FunctionBinder::value(std::size_t i) {
    return binder_.expression(*call_.arguments[i], scope_);
}

BoundPtr FunctionBinder::as(std::size_t i, TypeKind kind) {
    return binder_.cast(value(i), SqlType::of(kind));
}

BoundPtr FunctionBinder::text(std::size_t i) {
    return asText(value(i));
}

BoundPtr FunctionBinder::asText(BoundPtr value) {
    if (value->type.isText()) return value;
    const SqlType type = SqlType::text(TypeKind::VarChar, value->type.isBinary() ? kMaxLength : 8000);
    return binder_.cast(std::move(value), type);
}

DatePart FunctionBinder::datePart(std::size_t i) {
    const auto* part = ast::tryAs<ast::DatePartExpression>(call_.arguments[i].get());
    const std::optional<DatePart> found = part == nullptr ? std::nullopt : datePartOf(part->name);
    if (!found) {
        binder_.fail(155, "The date part of this function is not recognized.", call_.arguments[i]->range);
    }
    return *found;
}

void FunctionBinder::requirePart(DatePart part, const SqlType& type) const {
    const bool ofClock = part >= DatePart::Hour;
    if (type.kind != (ofClock ? TypeKind::Date : TypeKind::Time)) return;
    binder_.fail(9810,
                 "The datepart " + std::string(nameOf(part)) + " is not supported by date function " +
                     foldName(call_.name.last()) + " for data type " + std::string(type.baseName()) + ".",
                 call_.range);
}

BoundPtr FunctionBinder::date(std::size_t i) {
    BoundPtr result = value(i);
    if (result->type.isDate()) return result;
    // Read before the move: the order in which arguments are worked out is the compiler's.
    const SqlType type = SqlType::of(result->type.isText() ? TypeKind::DateTime2 : TypeKind::DateTime);
    return binder_.cast(std::move(result), type);
}

void FunctionBinder::refuse(std::size_t i, const SqlType& type) const {
    binder_.fail(8116,
                 "Argument data type " + std::string(type.baseName()) + " is invalid for argument " +
                     std::to_string(i + 1) + " of " + foldName(call_.name.last()) + " function.",
                 call_.arguments[i]->range);
}

namespace {

constexpr SqlType integerType() {
    return {TypeKind::Int, 0, 0, 0};
}

SqlType floatType() {
    return SqlType::of(TypeKind::Float);
}

BoundPtr boundPart(DatePart part) {
    return boundInteger(static_cast<std::int64_t>(part));
}

// Functions of texts that give a text of the same type.
template <const char* const& name>
BoundPtr sameText(FunctionBinder& f) {
    BoundPtr text = f.text(0);
    SqlType type = text->type;
    if (type.isFixedText()) type.kind = type.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar;
    return boundCall(name, type, std::move(text));
}

constexpr const char* kUpper = "t_upper";
constexpr const char* kLower = "t_lower";
constexpr const char* kLeftTrim = "t_ltrim";
constexpr const char* kRightTrim = "t_rtrim";
constexpr const char* kTrim = "t_trim";
constexpr const char* kReverse = "t_reverse";

SqlType varying(SqlType type) {
    if (type.isFixedText()) type.kind = type.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar;
    return type;
}

BoundPtr len(FunctionBinder& f) {
    BoundPtr value = f.value(0);
    const SqlType from = value->type;
    if (!from.isBinary()) value = f.asText(std::move(value));
    const SqlType type = SqlType::of(value->type.length == kMaxLength ? TypeKind::BigInt : TypeKind::Int);
    // Of bytes all count, those that would be blanks in a text too.
    return from.isBinary() ? boundCall("t_datalength", type, std::move(value), boundTypeCode(from))
                           : boundCall("t_len", type, std::move(value));
}

BoundPtr dataLength(FunctionBinder& f) {
    BoundPtr value = f.value(0);
    const SqlType type = value->type;
    return boundCall("t_datalength", integerType(), std::move(value), boundTypeCode(type));
}

template <bool left>
BoundPtr edge(FunctionBinder& f) {
    BoundPtr text = f.text(0);
    const SqlType type = varying(text->type);
    return boundCall(left ? "t_left" : "t_right", type, std::move(text), f.as(1, TypeKind::Int));
}

BoundPtr substring(FunctionBinder& f) {
    BoundPtr value = f.value(0);
    const bool binary = value->type.isBinary();
    if (!binary) value = f.asText(std::move(value));
    const SqlType type = binary ? SqlType::text(TypeKind::VarBinary, value->type.length) : varying(value->type);
    BoundPtr start = f.as(1, TypeKind::BigInt);
    return boundCall(binary ? "t_substring_b" : "t_substring", type, std::move(value), std::move(start),
                     f.as(2, TypeKind::BigInt));
}

BoundPtr orderCode(TextOrder order) {
    return boundInteger(static_cast<std::int64_t>(order));
}

BoundPtr replace(FunctionBinder& f) {
    BoundPtr text = f.text(0);
    BoundPtr needle = f.text(1);
    BoundPtr replacement = f.text(2);
    const bool unicode = text->type.isUnicode() || needle->type.isUnicode() || replacement->type.isUnicode();
    const bool unbounded = text->type.length == kMaxLength;
    const SqlType type = unicode ? SqlType::text(TypeKind::NVarChar, unbounded ? kMaxLength : 4000)
                                 : SqlType::text(TypeKind::VarChar, unbounded ? kMaxLength : 8000);
    const TextOrder order = f.binder().orderOf({text.get(), needle.get(), replacement.get()}, f.range());
    BoundPtr replaced = order == TextOrder::Database
                            ? boundCall("t_replace", type, std::move(text), std::move(needle), std::move(replacement))
                            : boundCall("t_replace", type, std::move(text), std::move(needle), std::move(replacement),
                                        orderCode(order));
    return unbounded ? std::move(replaced) : boundCut(std::move(replaced));
}

// CHARINDEX in a binary value.
BoundPtr byteIndex(FunctionBinder& f, BoundPtr needle, BoundPtr bytes) {
    // The server would read the bytes as UTF-16.
    if (needle->type.isUnicode()) f.binder().unsupported("CHARINDEX of a Unicode text in a binary value", f.range());
    bool folds = false;
    if (!needle->type.isBinary()) {
        needle = f.asText(std::move(needle));
        const TextOrder order = f.binder().orderOf({needle.get()}, f.range());
        folds = order == TextOrder::Database || order == TextOrder::Letters;
        needle = f.binder().cast(std::move(needle), SqlType::text(TypeKind::VarBinary, kMaxLength));
    }
    BoundPtr start = f.count() == 2 ? boundInteger(1) : f.as(2, TypeKind::BigInt);
    return boundCall("t_charindex_b", integerType(), std::move(needle), std::move(bytes), std::move(start),
                     boundInteger(folds ? 1 : 0));
}

BoundPtr charIndex(FunctionBinder& f) {
    BoundPtr needle = f.value(0);
    BoundPtr text = f.value(1);
    if (text->type.isBinary()) return byteIndex(f, std::move(needle), std::move(text));
    needle = f.asText(std::move(needle));
    text = f.asText(std::move(text));
    const TextOrder order = f.binder().orderOf({needle.get(), text.get()}, f.range());
    if (order != TextOrder::Database) {
        BoundPtr start = f.count() == 2 ? boundInteger(1) : f.as(2, TypeKind::BigInt);
        return boundCall("t_charindex", integerType(), std::move(needle), std::move(text), std::move(start),
                         orderCode(order));
    }
    if (f.count() == 2) return boundCall("t_charindex", integerType(), std::move(needle), std::move(text));
    return boundCall("t_charindex", integerType(), std::move(needle), std::move(text), f.as(2, TypeKind::BigInt));
}

BoundPtr patIndex(FunctionBinder& f) {
    BoundPtr pattern = f.text(0);
    BoundPtr text = f.value(1);
    if (text->type.isBinary()) f.refuse(1, text->type);
    text = f.asText(std::move(text));
    const TextOrder order = f.binder().orderOf({pattern.get(), text.get()}, f.range());
    if (order == TextOrder::Database)
        return boundCall("t_patindex", integerType(), std::move(pattern), std::move(text));
    return boundCall("t_patindex", integerType(), std::move(pattern), std::move(text), orderCode(order));
}

BoundPtr stuff(FunctionBinder& f) {
    BoundPtr text = f.value(0);
    if (text->type.isBinary()) f.binder().unsupported("STUFF of a binary value", f.range());
    text = f.asText(std::move(text));
    BoundPtr start = f.as(1, TypeKind::BigInt);
    BoundPtr count = f.as(2, TypeKind::BigInt);
    BoundPtr insert = f.text(3);
    SqlType type = varying(concatenatedType(text->type, insert->type));
    const int limit = type.length == kMaxLength ? 0 : boundOf(type);
    BoundPtr result = boundCall("t_stuff", type, std::move(text), std::move(start), std::move(count), std::move(insert),
                                boundInteger(limit));
    result->nullable = true;
    return result;
}

BoundPtr replicate(FunctionBinder& f) {
    BoundPtr text = f.text(0);
    const int limit = text->type.length == kMaxLength ? 0 : text->type.isUnicode() ? 4000 : 8000;
    const SqlType type =
        SqlType::text(text->type.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar, limit == 0 ? kMaxLength : limit);
    BoundPtr result = boundCall("t_replicate", type, std::move(text), f.as(1, TypeKind::BigInt), boundInteger(limit));
    result->nullable = true;
    return result;
}

BoundPtr space(FunctionBinder& f) {
    BoundPtr result = boundCall("t_space", SqlType::text(TypeKind::VarChar, 8000), f.as(0, TypeKind::Int));
    result->nullable = true;
    return result;
}

BoundPtr str(FunctionBinder& f) {
    BoundPtr value = f.as(0, TypeKind::Float);
    BoundPtr length = f.count() > 1 ? f.as(1, TypeKind::Int) : boundInteger(10);
    BoundPtr decimals = f.count() > 2 ? f.as(2, TypeKind::Int) : boundInteger(0);
    int size = 10;
    if (f.count() > 1) {
        const std::optional<std::int64_t> fixed = f.binder().fixedInteger(f.argument(1));
        size = fixed ? static_cast<int>(std::clamp<std::int64_t>(*fixed, 1, 8000)) : 8000;
    }
    BoundPtr result = boundCall("t_str", SqlType::text(TypeKind::VarChar, size), std::move(value), std::move(length),
                                std::move(decimals));
    result->nullable = true;
    return result;
}

template <bool unicode>
BoundPtr character(FunctionBinder& f) {
    BoundPtr result = boundCall("t_char", SqlType::text(unicode ? TypeKind::NChar : TypeKind::Char, 1),
                                f.as(0, TypeKind::Int), boundInteger(unicode ? 65535 : 255));
    result->nullable = true;
    return result;
}

BoundPtr codeOf(FunctionBinder& f) {
    BoundPtr result = boundCall("t_code", integerType(), f.text(0));
    result->nullable = true;
    return result;
}

BoundPtr quoteName(FunctionBinder& f) {
    const SqlType type = SqlType::text(TypeKind::NVarChar, 258);
    BoundPtr text = f.text(0);
    BoundPtr result = f.count() == 1 ? boundCall("t_quotename", type, std::move(text))
                                     : boundCall("t_quotename", type, std::move(text), f.text(1));
    result->nullable = true;
    return result;
}

BoundPtr parseName(FunctionBinder& f) {
    BoundPtr name = f.text(0);
    BoundPtr result =
        boundCall("t_parsename", SqlType::text(TypeKind::NVarChar, 128), std::move(name), f.as(1, TypeKind::BigInt));
    result->nullable = true;
    return result;
}

// CONCAT: NULL counts as the empty text.
BoundPtr concat(FunctionBinder& f) {
    if (f.count() < 2) {
        f.binder().fail(189, "The concat function requires 2 to 254 arguments.", f.range());
    }
    BoundPtr result;
    int length = 0;
    for (std::size_t i = 0; i < f.count(); ++i) {
        BoundPtr text = f.text(i);
        const SqlType type = text->type;
        length += type.length;
        if (text->nullable) {
            text = boundCall("ifnull", type, std::move(text),
                             boundConstant(std::string(), SqlType::text(TypeKind::VarChar, 1)));
            text->nullable = false;
        }
        if (result == nullptr) {
            result = std::move(text);
        } else {
            const SqlType joined = concatenatedType(result->type, type);
            result = boundInfix("||", joined, std::move(result), std::move(text));
        }
    }
    result->type = varying(result->type);
    return mayExceed(result->type, length, {result.get()}) ? boundCut(std::move(result)) : std::move(result);
}

BoundPtr isNull(FunctionBinder& f) {
    BoundPtr value = f.value(0);
    BoundPtr replacement = f.value(1);
    // The first argument alone decides the type, and the replacement is cut to it.
    SqlType type = value->type;
    if (type.isNull()) type = replacement->type;
    if (type.isText() || type.isBinary()) f.binder().relyOnLength(*value);
    f.binder().requireImplicit(replacement->type, type, f.range());
    const bool nullable = value->nullable && replacement->nullable;
    replacement = f.binder().cast(std::move(replacement), type);
    BoundPtr result = boundCall("ifnull", type, std::move(value), std::move(replacement));
    result->nullable = nullable;
    return result;
}

BoundPtr coalesce(FunctionBinder& f) {
    std::vector<BoundPtr> values;
    SqlType type = SqlType::of(TypeKind::Null);
    bool nullable = true;
    for (std::size_t i = 0; i < f.count(); ++i) {
        values.push_back(f.value(i));
        type = commonType(type, values.back()->type);
        nullable = nullable && values.back()->nullable;
    }
    if (type.isNull()) {
        f.binder().fail(
            4127, "At least one of the arguments to COALESCE must be an expression that is not the NULL constant.",
            f.range());
    }
    for (BoundPtr& value : values) {
        f.binder().refuseClash(value->type, type, f.range());
        value = f.binder().cast(std::move(value), type);
    }
    // SQLite's functions take 127 arguments.
    constexpr std::ptrdiff_t most = 100;
    while (std::ssize(values) > most) {
        std::vector<BoundPtr> first(std::make_move_iterator(values.begin()),
                                    std::make_move_iterator(values.begin() + most));
        values.erase(values.begin() + 1, values.begin() + most);
        values.front() = makeCall("coalesce", type, std::move(first));
    }
    BoundPtr result = makeCall("coalesce", type, std::move(values));
    result->nullable = nullable;
    return result;
}

BoundPtr nullIf(FunctionBinder& f) {
    BoundPtr shown = f.value(0);
    if (shown->type.isNull()) {
        f.binder().fail(4151,
                        "The type of the first argument to NULLIF cannot be the NULL constant because the type of the "
                        "first argument has to be known.",
                        f.range());
    }
    BoundPtr compared = f.value(0);
    BoundPtr other = f.value(1);
    f.binder().unifyForComparison(compared, other);
    f.binder().settleOrder(compared, {other.get()}, f.range());
    const SqlType type = shown->type;
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Case;
    result->type = type;
    result->arguments.push_back(boundInfix("=", SqlType::of(TypeKind::Bit), std::move(compared), std::move(other)));
    result->arguments.push_back(boundConstant(Null{}, type));
    takeOrder(*result, *shown);
    result->arguments.push_back(std::move(shown));
    return result;
}

// CHOOSE(index, a, b, ...)
BoundPtr choose(FunctionBinder& f) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Case;
    SqlType type = SqlType::of(TypeKind::Null);
    std::vector<BoundPtr> values;
    for (std::size_t i = 1; i < f.count(); ++i) {
        values.push_back(f.value(i));
        type = commonType(type, values.back()->type);
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
        result->arguments.push_back(boundInfix("=", SqlType::of(TypeKind::Bit), f.as(0, TypeKind::Int),
                                               boundInteger(static_cast<std::int64_t>(i) + 1)));
        takeOrder(*result, *values[i]);
        result->arguments.push_back(f.binder().cast(std::move(values[i]), type));
    }
    result->arguments.push_back(boundConstant(Null{}, type));
    result->type = type;
    return result;
}

// A number for ROUND, ABS and their kin: texts count as float.
BoundPtr number(FunctionBinder& f, std::size_t i) {
    BoundPtr value = f.value(i);
    if (value->type.isNull()) return f.binder().cast(std::move(value), integerType());
    if (value->type.isText()) return f.binder().cast(std::move(value), floatType());
    if (!value->type.isNumber()) f.refuse(i, value->type);
    if (value->type.kind == TypeKind::Bit || value->type.kind == TypeKind::TinyInt ||
        value->type.kind == TypeKind::SmallInt) {
        return f.binder().cast(std::move(value), integerType());
    }
    if (value->type.kind == TypeKind::Real) return f.binder().cast(std::move(value), floatType());
    // What comes of it may be beyond the type.
    if (value->type.kind == TypeKind::SmallMoney)
        return f.binder().cast(std::move(value), SqlType::of(TypeKind::Money));
    // It is no number that stands there as it is any more.
    value->writtenDigits = 0;
    return value;
}

BoundPtr round(FunctionBinder& f) {
    BoundPtr value = number(f, 0);
    BoundPtr digits = f.as(1, TypeKind::BigInt);
    BoundPtr cut = f.count() > 2 ? f.as(2, TypeKind::Int) : boundInteger(0);
    const SqlType type = value->type;
    if (type.isDecimal())
        return boundCall("t_round_d", type, std::move(value), boundTypeCode(type), std::move(digits), std::move(cut));
    if (type.isInteger()) {
        return boundCall("t_round_i", type, std::move(value), boundInteger(static_cast<std::int64_t>(type.kind)),
                         std::move(digits), std::move(cut));
    }
    return boundCall("t_round_f", type, std::move(value), std::move(digits), std::move(cut));
}

template <bool up>
BoundPtr whole(FunctionBinder& f) {
    BoundPtr value = number(f, 0);
    const SqlType type = value->type;
    if (type.isInteger()) return value;
    if (type.isFloat()) return boundCall(up ? "ceil" : "floor", type, std::move(value));
    const SqlType result = type.kind == TypeKind::Decimal ? SqlType::decimal(type.precision, 0) : type;
    const SqlType stepType = SqlType::decimal(kMaxDecimalDigits, 0);
    BoundPtr rounded = boundCall(up ? "t_ceiling_d" : "t_floor_d", type.kind == TypeKind::Decimal ? result : stepType,
                                 std::move(value), boundTypeCode(type));
    return f.binder().cast(std::move(rounded), result);
}

BoundPtr absolute(FunctionBinder& f) {
    BoundPtr value = number(f, 0);
    const SqlType type = value->type;
    if (type.kind == TypeKind::Decimal) return boundCall("t_abs_d", type, std::move(value));
    // The lowest amount of money has no counterpart.
    if (type.isDecimal()) return boundCall("t_abs_d", type, std::move(value), boundTypeCode(type));
    if (type.isFloat()) return boundCall("abs", type, std::move(value));
    BoundPtr result = boundCall("t_abs_i", type, std::move(value));
    return type.kind == TypeKind::Int ? boundCall("t_i32", type, std::move(result)) : std::move(result);
}

BoundPtr sign(FunctionBinder& f) {
    BoundPtr value = number(f, 0);
    const SqlType type = value->type;
    if (type.isDecimal()) return boundCall("t_sign_d", type, std::move(value), boundTypeCode(type));
    BoundPtr result = boundCall("sign", type, std::move(value));
    return type.isFloat() ? boundCall("t_cast", type, std::move(result), boundTypeCode(integerType()),
                                      boundTypeCode(type), boundInteger(0))
                          : std::move(result);
}

BoundPtr power(FunctionBinder& f) {
    BoundPtr base = number(f, 0);
    const SqlType type = base->type;
    BoundPtr result =
        boundCall("t_power", floatType(), f.binder().cast(std::move(base), floatType()), f.as(1, TypeKind::Float));
    return f.binder().cast(std::move(result), type);
}

BoundPtr square(FunctionBinder& f) {
    return boundCall("t_power", floatType(), f.as(0, TypeKind::Float), boundConstant(2.0, floatType()));
}

template <const char* const& name>
BoundPtr ofFloat(FunctionBinder& f) {
    return boundCall(name, floatType(), f.as(0, TypeKind::Float));
}

constexpr const char* kSqrt = "t_sqrt";
constexpr const char* kExp = "t_exp";
constexpr const char* kLog10 = "t_log10";
constexpr const char* kSin = "t_sin";
constexpr const char* kCos = "t_cos";
constexpr const char* kTan = "t_tan";
constexpr const char* kAsin = "t_asin";
constexpr const char* kAcos = "t_acos";
constexpr const char* kAtan = "t_atan";

BoundPtr logarithm(FunctionBinder& f) {
    BoundPtr value = f.as(0, TypeKind::Float);
    if (f.count() == 1) return boundCall("t_log", floatType(), std::move(value));
    return boundCall("t_log", floatType(), std::move(value), f.as(1, TypeKind::Float));
}

BoundPtr atn2(FunctionBinder& f) {
    BoundPtr y = f.as(0, TypeKind::Float);
    return boundCall("t_atn2", floatType(), std::move(y), f.as(1, TypeKind::Float));
}

BoundPtr now(FunctionBinder&) {
    return boundSystemValue(SystemValue::Now);
}

template <SystemValue now>
BoundPtr exactNow(FunctionBinder& f) {
    return f.binder().cast(boundSystemValue(now), SqlType::of(TypeKind::DateTime2));
}

// RAND([seed]). Without one it is one number for all rows of a statement, and another at each place where it stands.
BoundPtr random(FunctionBinder& f) {
    if (f.count() == 0) {
        BoundPtr result = boundCall("t_rand", floatType(), boundInteger(0));
        result->nullable = false;
        return result;
    }
    return boundCall("t_rand_seed", floatType(), f.as(0, TypeKind::Int));
}

// What these give follows from how the server stores values.
BoundPtr checksum(FunctionBinder& f) {
    f.binder().unsupported(f.name(), f.range());
}

BoundPtr dateAdd(FunctionBinder& f) {
    const DatePart part = f.datePart(0);
    BoundPtr amount = f.value(1);
    if (amount->type.isText()) f.refuse(1, amount->type);
    amount = f.binder().cast(std::move(amount), SqlType::of(TypeKind::BigInt));
    BoundPtr start = f.value(2);
    if (start->type.isText() || start->type.isNumber() || start->type.isNull()) {
        start = f.binder().cast(std::move(start), SqlType::of(TypeKind::DateTime));
    }
    if (!start->type.isDate()) f.refuse(2, start->type);
    const SqlType type = start->type;
    f.requirePart(part, type);
    return boundCall("t_dateadd", type, boundPart(part), std::move(amount), std::move(start), boundTypeCode(type));
}

BoundPtr dateDiff(FunctionBinder& f) {
    const DatePart part = f.datePart(0);
    BoundPtr from = f.date(1);
    return boundCall("t_datediff", integerType(), boundPart(part), std::move(from), f.date(2));
}

BoundPtr datePartValue(FunctionBinder& f) {
    const DatePart part = f.datePart(0);
    BoundPtr date = f.date(1);
    f.requirePart(part, date->type);
    return boundCall("t_datepart", integerType(), boundPart(part), std::move(date));
}

BoundPtr dateName(FunctionBinder& f) {
    const DatePart part = f.datePart(0);
    BoundPtr date = f.date(1);
    f.requirePart(part, date->type);
    return boundCall("t_datename", SqlType::text(TypeKind::NVarChar, 30), boundPart(part), std::move(date));
}

template <DatePart part>
BoundPtr partOf(FunctionBinder& f) {
    return boundCall("t_datepart", integerType(), boundPart(part), f.date(0));
}

BoundPtr endOfMonth(FunctionBinder& f) {
    BoundPtr start = f.date(0);
    BoundPtr months = f.count() > 1 ? f.as(1, TypeKind::Int) : boundInteger(0);
    return boundCall("t_eomonth", SqlType::of(TypeKind::Date), std::move(start), std::move(months));
}

BoundPtr dateFromParts(FunctionBinder& f) {
    BoundPtr year = f.as(0, TypeKind::Int);
    BoundPtr month = f.as(1, TypeKind::Int);
    return boundCall("t_datefromparts", SqlType::of(TypeKind::Date), std::move(year), std::move(month),
                     f.as(2, TypeKind::Int));
}

BoundPtr dateTimeFromParts(FunctionBinder& f) {
    BoundPtr call = boundCall("t_datetimefromparts", SqlType::of(TypeKind::DateTime), f.as(0, TypeKind::Int));
    for (std::size_t i = 1; i < f.count(); ++i)
        call->arguments.push_back(f.as(i, TypeKind::Int));
    return call;
}

BoundPtr isNumeric(FunctionBinder& f) {
    BoundPtr value = f.value(0);
    if (value->type.isNumber()) {
        BoundPtr text = f.binder().cast(std::move(value), SqlType::text(TypeKind::VarChar, 8000));
        return boundCall("t_isnumeric", integerType(), std::move(text));
    }
    if (!value->type.isText()) return boundInteger(0);
    return boundCall("t_isnumeric", integerType(), std::move(value));
}

BoundPtr isDate(FunctionBinder& f) {
    return boundCall("t_isdate", integerType(), f.text(0));
}

template <SystemValue value>
BoundPtr system(FunctionBinder&) {
    return boundSystemValue(value);
}

BoundPtr fixedName(const char* name) {
    return boundConstant(std::string(name), SqlType::text(TypeKind::NVarChar, 128));
}

BoundPtr databaseName(FunctionBinder&) {
    return fixedName("basalt");
}

BoundPtr userName(FunctionBinder&) {
    return fixedName("dbo");
}

BoundPtr hostName(FunctionBinder&) {
    return fixedName("embedded");
}

// OBJECT_ID('dbo.CostLevel'[, 'U'])
BoundPtr objectId(FunctionBinder& f) {
    BoundPtr name = f.text(0);
    BoundPtr kind = f.count() > 1 ? f.text(1) : boundConstant(std::string(), SqlType::text(TypeKind::VarChar, 2));
    BoundPtr result = boundCall("t_object_id", integerType(), std::move(name), std::move(kind));
    result->nullable = true;
    return result;
}

// OBJECT_NAME(id)
BoundPtr objectNameOf(FunctionBinder& f) {
    BoundPtr result = boundCall("t_object_name", SqlType::text(TypeKind::NVarChar, 128), f.as(0, TypeKind::BigInt));
    result->nullable = true;
    return result;
}

// TYPE_NAME(56)
BoundPtr typeNameOf(FunctionBinder& f) {
    BoundPtr result = boundCall("t_type_name", SqlType::text(TypeKind::NVarChar, 128), f.as(0, TypeKind::BigInt));
    result->nullable = true;
    return result;
}

// DB_ID(): there is one database.
BoundPtr databaseId(FunctionBinder&) {
    return boundInteger(kDatabaseNumber);
}

// COL_LENGTH('CostLevel', 'Name')
BoundPtr columnLength(FunctionBinder& f) {
    BoundPtr table = f.text(0);
    BoundPtr result = boundCall("t_col_length", SqlType::of(TypeKind::SmallInt), std::move(table), f.text(1));
    result->nullable = true;
    return result;
}

BoundPtr identityCurrent(FunctionBinder& f) {
    BoundPtr result = boundCall("t_ident_current", SqlType::of(TypeKind::BigInt), f.text(0));
    result->nullable = true;
    return f.binder().cast(std::move(result), SqlType::decimal(38, 0));
}

BoundPtr newId(FunctionBinder&) {
    return boundCall("t_newid", SqlType::of(TypeKind::UniqueIdentifier));
}

struct Entry {
    int fewest;
    int most;
    BoundPtr (*bind)(FunctionBinder&);
};

const std::map<std::string, Entry, std::less<>>& functions() {
    static const std::map<std::string, Entry, std::less<>> table = {
        {"len", {1, 1, len}},
        {"datalength", {1, 1, dataLength}},
        {"upper", {1, 1, sameText<kUpper>}},
        {"lower", {1, 1, sameText<kLower>}},
        {"ltrim", {1, 1, sameText<kLeftTrim>}},
        {"rtrim", {1, 1, sameText<kRightTrim>}},
        {"trim", {1, 1, sameText<kTrim>}},
        {"reverse", {1, 1, sameText<kReverse>}},
        {"left", {2, 2, edge<true>}},
        {"right", {2, 2, edge<false>}},
        {"substring", {3, 3, substring}},
        {"replace", {3, 3, replace}},
        {"charindex", {2, 3, charIndex}},
        {"patindex", {2, 2, patIndex}},
        {"stuff", {4, 4, stuff}},
        {"replicate", {2, 2, replicate}},
        {"space", {1, 1, space}},
        {"str", {1, 3, str}},
        {"char", {1, 1, character<false>}},
        {"nchar", {1, 1, character<true>}},
        {"ascii", {1, 1, codeOf}},
        {"unicode", {1, 1, codeOf}},
        {"quotename", {1, 2, quoteName}},
        {"parsename", {2, 2, parseName}},
        {"concat", {1, 254, concat}},
        {"isnull", {2, 2, isNull}},
        {"coalesce", {1, 1000, coalesce}},
        {"nullif", {2, 2, nullIf}},
        {"choose", {2, 1000, choose}},
        {"round", {2, 3, round}},
        {"floor", {1, 1, whole<false>}},
        {"ceiling", {1, 1, whole<true>}},
        {"abs", {1, 1, absolute}},
        {"sign", {1, 1, sign}},
        {"power", {2, 2, power}},
        {"square", {1, 1, square}},
        {"sqrt", {1, 1, ofFloat<kSqrt>}},
        {"exp", {1, 1, ofFloat<kExp>}},
        {"log", {1, 2, logarithm}},
        {"log10", {1, 1, ofFloat<kLog10>}},
        {"sin", {1, 1, ofFloat<kSin>}},
        {"cos", {1, 1, ofFloat<kCos>}},
        {"tan", {1, 1, ofFloat<kTan>}},
        {"asin", {1, 1, ofFloat<kAsin>}},
        {"acos", {1, 1, ofFloat<kAcos>}},
        {"atan", {1, 1, ofFloat<kAtan>}},
        {"atn2", {2, 2, atn2}},
        {"pi", {0, 0, [](FunctionBinder&) { return boundConstant(3.14159265358979323846, floatType()); }}},
        {"getdate", {0, 0, now}},
        {"current_timestamp", {0, 0, now}},
        {"getutcdate", {0, 0, system<SystemValue::UtcNow>}},
        {"sysdatetime", {0, 0, exactNow<SystemValue::Now>}},
        {"sysutcdatetime", {0, 0, exactNow<SystemValue::UtcNow>}},
        {"rand", {0, 1, random}},
        {"checksum", {0, 1000, checksum}},
        {"binary_checksum", {0, 1000, checksum}},
        {"dateadd", {3, 3, dateAdd}},
        {"datediff", {3, 3, dateDiff}},
        {"datepart", {2, 2, datePartValue}},
        {"datename", {2, 2, dateName}},
        {"year", {1, 1, partOf<DatePart::Year>}},
        {"month", {1, 1, partOf<DatePart::Month>}},
        {"day", {1, 1, partOf<DatePart::Day>}},
        {"eomonth", {1, 2, endOfMonth}},
        {"datefromparts", {3, 3, dateFromParts}},
        {"datetimefromparts", {7, 7, dateTimeFromParts}},
        {"isnumeric", {1, 1, isNumeric}},
        {"isdate", {1, 1, isDate}},
        {"scope_identity", {0, 0, system<SystemValue::ScopeIdentity>}},
        {"error_number", {0, 0, system<SystemValue::ErrorNumber>}},
        {"error_message", {0, 0, system<SystemValue::ErrorMessage>}},
        {"error_severity", {0, 0, system<SystemValue::ErrorSeverity>}},
        {"error_state", {0, 0, system<SystemValue::ErrorState>}},
        {"error_line", {0, 0, system<SystemValue::ErrorLine>}},
        {"error_procedure", {0, 0, system<SystemValue::ErrorProcedure>}},
        {"xact_state", {0, 0, system<SystemValue::XactState>}},
        {"db_name", {0, 1, databaseName}},
        {"user_name", {0, 1, userName}},
        {"user", {0, 0, userName}},
        {"current_user", {0, 0, userName}},
        {"session_user", {0, 0, userName}},
        {"system_user", {0, 0, userName}},
        {"suser_sname", {0, 1, userName}},
        {"schema_name", {0, 1, userName}},
        {"host_name", {0, 0, hostName}},
        {"object_id", {1, 2, objectId}},
        {"object_name", {1, 2, objectNameOf}},
        {"type_name", {1, 1, typeNameOf}},
        {"db_id", {0, 0, databaseId}},
        {"col_length", {2, 2, columnLength}},
        {"ident_current", {1, 1, identityCurrent}},
        {"newid", {0, 0, newId}},
    };
    return table;
}

}  // namespace

BoundPtr Binder::function(const ast::FunctionExpression& expression, Scope* scope) {
    const std::string name = foldName(expression.name.last());
    // A function of a user is called by its schema, and a built-in one never is.
    if (expression.name.parts.size() > 1) return userFunction(expression, scope);
    if (isAggregate(name) || expression.over != nullptr) return aggregate(expression, scope);
    const auto found = functions().find(name);
    if (found == functions().end()) {
        fail(195, "'" + expression.name.last() + "' is not a recognized built-in function name.",
             expression.name.range);
    }
    const auto count = static_cast<int>(expression.arguments.size());
    if (count < found->second.fewest || count > found->second.most) {
        const std::string wanted =
            found->second.fewest == found->second.most
                ? std::to_string(found->second.fewest)
                : std::to_string(found->second.fewest) + " to " + std::to_string(found->second.most);
        fail(found->second.fewest == found->second.most ? 174 : 189,
             "The " + name + " function requires " + wanted + " argument(s).", expression.range);
    }
    FunctionBinder binder(*this, expression, scope);
    return found->second.bind(binder);
}

}  // namespace basalt::embedded
