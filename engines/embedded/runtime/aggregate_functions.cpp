// SUM, AVG, STDEV and VAR by SQL Server's types. COUNT, MIN and MAX are SQLite's own: the stored forms sort as they
// are.
#include <cmath>
#include <string>

#include "engines/embedded/runtime/decimal_math.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

[[noreturn]] void overflow(std::string_view type) {
    throwSqlError(error::kArithmeticOverflow,
                  "Arithmetic overflow error converting expression to data type " + std::string(type) + ".");
}

// SQLite's memory for a state is aligned to 8 bytes only.
using StoredInt128 __attribute__((aligned(8))) = Int128;

// Each aggregate has one argument, for DISTINCT takes no more, and one parameter that its registration sets.

struct IntegerSum {
    StoredInt128 sum;
    std::int64_t count;

    void add(sqlite3_value* cell, int sign) {
        sum += sign * Int128{sqlite3_value_int64(cell)};
        count += sign;
    }
};

// The parameter is the kind of the result, which has to hold the sum, also on the way to an average.
struct SumOfIntegers : IntegerSum {
    void finish(sqlite3_context* context, std::int64_t parameter) const {
        sqlite3_result_int64(context, whole(parameter));
    }

protected:
    [[nodiscard]] std::int64_t whole(std::int64_t parameter) const {
        const auto kind = static_cast<TypeKind>(parameter);
        if (sum < lowest(kind) || sum > highest(kind)) overflow(SqlType::of(kind).baseName());
        return static_cast<std::int64_t>(sum);
    }
};

struct AverageOfIntegers : SumOfIntegers {
    void finish(sqlite3_context* context, std::int64_t parameter) const {
        sqlite3_result_int64(context, whole(parameter) / count);
    }
};

struct DecimalSum {
    StoredInt128 sum;
    std::int64_t count;

    void add(sqlite3_value* cell, int sign) {
        const void* data = sqlite3_value_blob(cell);
        const Int128 value = decodeDecimal(data, sqlite3_value_bytes(cell));
        Int128 total = 0;
        if (__builtin_add_overflow(Int128{sum}, sign * value, &total)) overflow("numeric");
        sum = total;
        count += sign;
    }
};

// The parameter is the type of the result, whose scale is that of the argument whatever it says itself.
struct SumOfDecimals : DecimalSum {
    void finish(sqlite3_context* context, std::int64_t parameter) const { returnDecimal(context, whole(parameter)); }

protected:
    [[nodiscard]] Int128 whole(std::int64_t parameter) const {
        const SqlType result = SqlType::fromCode(parameter);
        return fit({sum, result.scale}, result).coefficient();
    }
};

// The parameter is the type of the result, which has to hold the sum too.
struct AverageOfMoney : SumOfDecimals {
    void finish(sqlite3_context* context, std::int64_t parameter) const {
        const SqlType result = SqlType::fromCode(parameter);
        returnDecimal(context, divide({whole(parameter), result.scale}, {count, 0}, result).coefficient());
    }
};

// The parameter is how many digits after the point the result has beyond those of the argument.
struct AverageOfDecimals : DecimalSum {
    void finish(sqlite3_context* context, std::int64_t parameter) const {
        const SqlType result = SqlType::decimal(kMaxDecimalDigits, static_cast<int>(parameter));
        returnDecimal(context, divide({sum, 0}, {count, 0}, result).coefficient());
    }
};

struct SumOfFloats {
    double sum;
    std::int64_t count;

    void add(sqlite3_value* cell, int sign) {
        sum += sign * sqlite3_value_double(cell);
        count += sign;
    }
    void finish(sqlite3_context* context, std::int64_t) const {
        if (!std::isfinite(sum)) overflow("float");
        sqlite3_result_double(context, sum);
    }
};

// STDEV, STDEVP, VAR, VARP: the parameter is 0 to 3 in this order.
struct Deviation {
    std::int64_t count;
    double mean;
    double squares;

    void add(sqlite3_value* cell, int sign) {
        const double value = sqlite3_value_double(cell);
        if (sign > 0) {
            ++count;
            const double delta = value - mean;
            mean += delta / static_cast<double>(count);
            squares += delta * (value - mean);
        } else if (count == 1) {
            count = 0;
            mean = squares = 0;
        } else {
            const double old = mean;
            mean = (mean * static_cast<double>(count) - value) / static_cast<double>(count - 1);
            squares -= (value - mean) * (value - old);
            --count;
        }
    }
    void finish(sqlite3_context* context, std::int64_t kind) const {
        const bool population = kind % 2 == 1;
        if (!population && count < 2) return sqlite3_result_null(context);
        const double variance = std::max(0.0, squares) / static_cast<double>(population ? count : count - 1);
        sqlite3_result_double(context, kind < 2 ? std::sqrt(variance) : variance);
    }
};

struct Registration {
    SqliteDatabase* database;
    std::int64_t parameter;
};

// The four callbacks of a window aggregate over a state that starts zeroed. No value at all gives NULL.
template <typename State>
struct Aggregate {
    static Registration& registration(sqlite3_context* context) {
        return *static_cast<Registration*>(sqlite3_user_data(context));
    }
    static void change(sqlite3_context* context, sqlite3_value* cell, int sign) {
        if (sqlite3_value_type(cell) == SQLITE_NULL) return;
        auto* state = static_cast<State*>(sqlite3_aggregate_context(context, sizeof(State)));
        if (state == nullptr) return sqlite3_result_error_nomem(context);
        guarded(context, *registration(context).database, [&] { state->add(cell, sign); });
    }
    static void step(sqlite3_context* context, int, sqlite3_value** arguments) { change(context, arguments[0], 1); }
    static void inverse(sqlite3_context* context, int, sqlite3_value** arguments) { change(context, arguments[0], -1); }
    static void value(sqlite3_context* context) {
        const auto* state = static_cast<const State*>(sqlite3_aggregate_context(context, 0));
        if (state == nullptr || state->count == 0) return sqlite3_result_null(context);
        const Registration& own = registration(context);
        guarded(context, *own.database, [&] { state->finish(context, own.parameter); });
    }
};

template <typename State>
void addAggregate(SqliteDatabase& database, const std::string& name, std::int64_t parameter = 0) {
    using Callbacks = Aggregate<State>;
    const int code = sqlite3_create_window_function(
        database.handle(), name.c_str(), 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
        new Registration{&database, parameter}, Callbacks::step, Callbacks::value, Callbacks::value, Callbacks::inverse,
        [](void* pointer) { delete static_cast<Registration*>(pointer); });
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace

void addAggregateFunctions(SqliteDatabase& database) {
    addAggregate<SumOfIntegers>(database, "t_sum_int", static_cast<std::int64_t>(TypeKind::Int));
    addAggregate<SumOfIntegers>(database, "t_sum_bigint", static_cast<std::int64_t>(TypeKind::BigInt));
    addAggregate<AverageOfIntegers>(database, "t_avg_int", static_cast<std::int64_t>(TypeKind::Int));
    addAggregate<AverageOfIntegers>(database, "t_avg_bigint", static_cast<std::int64_t>(TypeKind::BigInt));
    addAggregate<SumOfDecimals>(database, "t_sum_decimal", SqlType::decimal(kMaxDecimalDigits, 0).code());
    addAggregate<SumOfDecimals>(database, "t_sum_money", SqlType::of(TypeKind::Money).code());
    addAggregate<AverageOfMoney>(database, "t_avg_money", SqlType::of(TypeKind::Money).code());
    // AVG of decimals has at least six digits after the point.
    for (int digits = 0; digits <= 6; ++digits)
        addAggregate<AverageOfDecimals>(database, "t_avg_decimal" + std::to_string(digits), digits);
    addAggregate<SumOfFloats>(database, "t_sum_float");
    addAggregate<Deviation>(database, "t_stdev", 0);
    addAggregate<Deviation>(database, "t_stdevp", 1);
    addAggregate<Deviation>(database, "t_var", 2);
    addAggregate<Deviation>(database, "t_varp", 3);
}

}  // namespace basalt::embedded
