// ROUND, FLOOR, ABS, POWER and their kin.
#include <cmath>
#include <limits>

#include "engines/embedded/runtime/decimal_math.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

[[noreturn]] void overflow(std::string_view type) {
    throwSqlError(error::kArithmeticOverflow,
                  "Arithmetic overflow error converting expression to data type " + std::string(type) + ".");
}

[[noreturn]] void outOfDomain() {
    throwSqlError(3623, "An invalid floating point operation occurred.");
}

double checked(double value) {
    if (std::isnan(value)) outOfDomain();
    if (std::isinf(value)) overflow("float");
    return value;
}

// t_round_d(x, type, digits, cut)
void roundDecimal(Call& call) {
    const SqlType type = call.type(1);
    const Decimal result = roundTo({call.coefficient(0), type.scale}, call.integer(2), call.integer(3) != 0);
    call.resultDecimal(fit(result, type).coefficient());
}

// t_round_i(x, kind, digits, cut)
void roundInteger(Call& call) {
    const Decimal result = roundTo({call.integer(0), 0}, call.integer(2), call.integer(3) != 0);
    const auto kind = static_cast<TypeKind>(call.integer(1));
    if (result.coefficient() < lowest(kind) || result.coefficient() > highest(kind))
        overflow(SqlType::of(kind).baseName());
    call.result(static_cast<std::int64_t>(result.coefficient()));
}

// t_round_f(x, digits, cut)
void roundFloat(Call& call) {
    const double value = call.real(0);
    const std::int64_t digits = std::max<std::int64_t>(-400, std::min<std::int64_t>(400, call.integer(1)));
    const long double unit = std::pow(10.0L, static_cast<long double>(digits));
    if (!std::isfinite(unit)) return call.result(value);
    const long double scaled = static_cast<long double>(value) * unit;
    if (!std::isfinite(scaled) || unit == 0) return call.result(unit == 0 ? 0.0 : value);
    const long double whole = call.integer(2) != 0 ? std::trunc(scaled) : std::round(scaled);
    call.result(static_cast<double>(whole / unit));
}

// t_abs_d(x)
void absoluteDecimal(Call& call) {
    const Int128 value = call.coefficient(0);
    call.resultDecimal(value < 0 ? -value : value);
}

// t_abs_d(x, type)
void absoluteMoney(Call& call) {
    const Int128 value = call.coefficient(0);
    const SqlType type = call.type(1);
    call.resultDecimal(fit({value < 0 ? -value : value, type.scale}, type).coefficient());
}

void absoluteInteger(Call& call) {
    const std::int64_t value = call.integer(0);
    if (value == std::numeric_limits<std::int64_t>::min()) overflow("bigint");
    call.result(value < 0 ? -value : value);
}

// t_sign_d(x, type): -1, 0 or 1 at the type's scale
void signDecimal(Call& call) {
    const Int128 value = call.coefficient(0);
    const Int128 one = powerOfTen(call.type(1).scale);
    call.resultDecimal(value == 0 ? Int128{0} : value < 0 ? -one : one);
}

template <double (*function)(double)>
void ofFloat(Call& call) {
    call.result(checked(function(call.real(0))));
}

void logarithm(Call& call) {
    if (call.real(0) <= 0) outOfDomain();
    if (call.count() == 1) return call.result(checked(std::log(call.real(0))));
    if (call.real(1) <= 0 || call.real(1) == 1) outOfDomain();
    call.result(checked(std::log(call.real(0)) / std::log(call.real(1))));
}

void power(Call& call) {
    const double result = std::pow(call.real(0), call.real(1));
    call.result(checked(result));
}

}  // namespace

void addMathFunctions(SqliteDatabase& database) {
    addFunction(database, "t_round_d", 4, roundDecimal);
    addFunction(database, "t_round_i", 4, roundInteger);
    addFunction(database, "t_round_f", 3, roundFloat);
    addFunction(database, "t_floor_d", 2, [](Call& call) {
        call.resultDecimal(floorOf({call.coefficient(0), call.type(1).scale}).coefficient());
    });
    addFunction(database, "t_ceiling_d", 2, [](Call& call) {
        call.resultDecimal(ceilingOf({call.coefficient(0), call.type(1).scale}).coefficient());
    });
    addFunction(database, "t_abs_d", 1, absoluteDecimal);
    addFunction(database, "t_abs_d", 2, absoluteMoney);
    addFunction(database, "t_abs_i", 1, absoluteInteger);
    addFunction(database, "t_sign_d", 2, signDecimal);
    addFunction(database, "t_sqrt", 1, ofFloat<std::sqrt>);
    addFunction(database, "t_exp", 1, ofFloat<std::exp>);
    addFunction(database, "t_log", -1, logarithm);
    addFunction(database, "t_log10", 1, [](Call& call) {
        if (call.real(0) <= 0) outOfDomain();
        call.result(std::log10(call.real(0)));
    });
    addFunction(database, "t_sin", 1, ofFloat<std::sin>);
    addFunction(database, "t_cos", 1, ofFloat<std::cos>);
    addFunction(database, "t_tan", 1, ofFloat<std::tan>);
    addFunction(database, "t_asin", 1, ofFloat<std::asin>);
    addFunction(database, "t_acos", 1, ofFloat<std::acos>);
    addFunction(database, "t_atan", 1, ofFloat<std::atan>);
    addFunction(database, "t_atn2", 2, [](Call& call) { call.result(std::atan2(call.real(0), call.real(1))); });
    addFunction(database, "t_power", 2, power);
}

}  // namespace basalt::embedded
