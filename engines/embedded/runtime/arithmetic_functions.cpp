// The operators + - * / % of each kind of number, with SQL Server's overflow and zero checks.
#include <cmath>
#include <type_traits>

#include "engines/embedded/runtime/decimal_math.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

[[noreturn]] void overflow(std::string_view type) {
    throwSqlError(error::kArithmeticOverflow,
                  "Arithmetic overflow error converting expression to data type " + std::string(type) + ".");
}

[[noreturn]] void zeroDivisor() {
    throwSqlError(error::kDivideByZero, "Divide by zero error encountered.");
}

// t_range(x, kind): x when the integer kind holds it.
void range(Call& call) {
    const std::int64_t value = call.integer(0);
    const auto kind = static_cast<TypeKind>(call.integer(1));
    if (value < lowest(kind) || value > highest(kind)) overflow(SqlType::of(kind).baseName());
    call.result(value);
}

void int32Range(Call& call) {
    const std::int64_t value = call.integer(0);
    if (value != static_cast<std::int32_t>(value)) overflow("int");
    call.result(value);
}

// The int and float operations as one call, for the long chains that are written as steps.
template <typename Number, Number (*operation)(Number, Number)>
void checked(Call& call) {
    if constexpr (std::is_same_v<Number, double>) {
        const double result = operation(call.real(0), call.real(1));
        if (!std::isfinite(result)) overflow("float");
        call.result(result);
    } else {
        const std::int64_t result = operation(call.integer(0), call.integer(1));
        if (result != static_cast<std::int32_t>(result)) overflow("int");
        call.result(result);
    }
}

template <typename Number>
Number sum(Number a, Number b) {
    return a + b;
}
template <typename Number>
Number difference(Number a, Number b) {
    return a - b;
}
template <typename Number>
Number product(Number a, Number b) {
    return a * b;
}

void addBig(Call& call) {
    std::int64_t result = 0;
    if (__builtin_add_overflow(call.integer(0), call.integer(1), &result)) overflow("bigint");
    call.result(result);
}

void subtractBig(Call& call) {
    std::int64_t result = 0;
    if (__builtin_sub_overflow(call.integer(0), call.integer(1), &result)) overflow("bigint");
    call.result(result);
}

void multiplyBig(Call& call) {
    std::int64_t result = 0;
    if (__builtin_mul_overflow(call.integer(0), call.integer(1), &result)) overflow("bigint");
    call.result(result);
}

void divideInteger(Call& call) {
    const std::int64_t divisor = call.integer(1);
    if (divisor == 0) zeroDivisor();
    if (divisor == -1) {
        std::int64_t result = 0;
        if (__builtin_sub_overflow(std::int64_t{0}, call.integer(0), &result)) overflow("bigint");
        return call.result(result);
    }
    call.result(call.integer(0) / divisor);
}

void moduloInteger(Call& call) {
    const std::int64_t divisor = call.integer(1);
    if (divisor == 0) zeroDivisor();
    call.result(divisor == -1 ? std::int64_t{0} : call.integer(0) % divisor);
}

void xorInteger(Call& call) {
    call.result(call.integer(0) ^ call.integer(1));
}

// t_finite(x): a float operation's result when it is a number.
void finite(Call& call) {
    if (!std::isfinite(call.real(0))) overflow("float");
    call.result(call.real(0));
}

void divideFloat(Call& call) {
    if (call.real(1) == 0) zeroDivisor();
    const double result = call.real(0) / call.real(1);
    if (!std::isfinite(result)) overflow("float");
    call.result(result);
}

using Operation = Decimal (*)(const Decimal&, const Decimal&, const SqlType&);

// (a, type of a, b, type of b, type of the result)
template <Operation operation>
void decimalOperation(Call& call) {
    const Decimal a(call.coefficient(0), call.type(1).scale);
    const Decimal b(call.coefficient(2), call.type(3).scale);
    call.resultDecimal(operation(a, b, call.type(4)).coefficient());
}

void negateDecimal(Call& call) {
    call.resultDecimal(-call.coefficient(0));
}

// (a, type of a and of the result)
void negateMoney(Call& call) {
    const SqlType type = call.type(1);
    call.resultDecimal(fit({-call.coefficient(0), type.scale}, type).coefficient());
}

}  // namespace

void addArithmeticFunctions(SqliteDatabase& database) {
    addFunction(database, "t_range", 2, range);
    addFunction(database, "t_i32", 1, int32Range);
    addFunction(database, "t_i32+", 2, checked<std::int64_t, sum<std::int64_t>>);
    addFunction(database, "t_i32-", 2, checked<std::int64_t, difference<std::int64_t>>);
    addFunction(database, "t_i32*", 2, checked<std::int64_t, product<std::int64_t>>);
    addFunction(database, "t_finite+", 2, checked<double, sum<double>>);
    addFunction(database, "t_finite-", 2, checked<double, difference<double>>);
    addFunction(database, "t_finite*", 2, checked<double, product<double>>);
    addFunction(database, "t_add64", 2, addBig);
    addFunction(database, "t_sub64", 2, subtractBig);
    addFunction(database, "t_mul64", 2, multiplyBig);
    addFunction(database, "t_idiv", 2, divideInteger);
    addFunction(database, "t_imod", 2, moduloInteger);
    addFunction(database, "t_ixor", 2, xorInteger);
    addFunction(database, "t_finite", 1, finite);
    addFunction(database, "t_fdiv", 2, divideFloat);
    addFunction(database, "t_dadd", 5, decimalOperation<add>);
    addFunction(database, "t_dsub", 5, decimalOperation<subtract>);
    addFunction(database, "t_dmul", 5, decimalOperation<multiply>);
    addFunction(database, "t_ddiv", 5, decimalOperation<divide>);
    addFunction(database, "t_dmod", 5, decimalOperation<modulo>);
    addFunction(database, "t_dneg", 1, negateDecimal);
    addFunction(database, "t_dneg", 2, negateMoney);
}

}  // namespace basalt::embedded
