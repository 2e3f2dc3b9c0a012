// SUM, AVG, STDEV and VAR by SQL Server's types. COUNT, MIN and MAX are SQLite's own: the stored forms sort as they
// are.
#include <cmath>
#include <new>

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

// The second argument of each aggregate is the type of its first; it is kept for the final step.

struct IntegerSum {
    StoredInt128 sum;
    std::int64_t count;
    std::int64_t type;

    void add(sqlite3_value** arguments, int sign) {
        sum += sign * Int128{sqlite3_value_int64(arguments[0])};
        count += sign;
        type = sqlite3_value_int64(arguments[1]);
    }
    [[nodiscard]] TypeKind resultKind() const {
        const TypeKind kind = SqlType::fromCode(type).kind;
        return kind == TypeKind::BigInt ? TypeKind::BigInt : TypeKind::Int;
    }
};

struct SumOfIntegers : IntegerSum {
    void finish(sqlite3_context* context) const {
        const TypeKind kind = resultKind();
        if (sum < lowest(kind) || sum > highest(kind)) overflow(SqlType::of(kind).baseName());
        sqlite3_result_int64(context, static_cast<std::int64_t>(sum));
    }
};

struct AverageOfIntegers : IntegerSum {
    void finish(sqlite3_context* context) const {
        sqlite3_result_int64(context, static_cast<std::int64_t>(sum / count));
    }
};

struct DecimalSum {
    StoredInt128 sum;
    std::int64_t count;
    std::int64_t type;

    void add(sqlite3_value** arguments, int sign) {
        const void* data = sqlite3_value_blob(arguments[0]);
        const Int128 value = decodeDecimal(data, sqlite3_value_bytes(arguments[0]));
        Int128 total = 0;
        if (__builtin_add_overflow(Int128{sum}, sign * value, &total)) overflow("numeric");
        sum = total;
        count += sign;
        type = sqlite3_value_int64(arguments[1]);
    }
};

struct SumOfDecimals : DecimalSum {
    void finish(sqlite3_context* context) const {
        const SqlType of = SqlType::fromCode(type);
        const SqlType result =
            of.kind == TypeKind::Decimal ? SqlType::decimal(kMaxDecimalDigits, of.scale) : SqlType::of(TypeKind::Money);
        returnDecimal(context, fit({sum, of.scale}, result).coefficient());
    }
};

struct AverageOfDecimals : DecimalSum {
    void finish(sqlite3_context* context) const {
        const SqlType of = SqlType::fromCode(type);
        const SqlType result = of.kind == TypeKind::Decimal
                                   ? SqlType::decimal(kMaxDecimalDigits, std::max<int>(of.scale, 6))
                                   : SqlType::of(TypeKind::Money);
        returnDecimal(context, divide({sum, of.scale}, {count, 0}, result).coefficient());
    }
};

struct SumOfFloats {
    double sum;
    std::int64_t count;

    void add(sqlite3_value** arguments, int sign) {
        sum += sign * sqlite3_value_double(arguments[0]);
        count += sign;
    }
    void finish(sqlite3_context* context) const {
        if (!std::isfinite(sum)) overflow("float");
        sqlite3_result_double(context, sum);
    }
};

// STDEV, STDEVP, VAR, VARP: the second argument is 0 to 3 in this order.
struct Deviation {
    std::int64_t count;
    double mean;
    double squares;
    std::int64_t kind;

    void add(sqlite3_value** arguments, int sign) {
        const double value = sqlite3_value_double(arguments[0]);
        kind = sqlite3_value_int64(arguments[1]);
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
    void finish(sqlite3_context* context) const {
        const bool population = kind % 2 == 1;
        if (!population && count < 2) return sqlite3_result_null(context);
        const double variance = std::max(0.0, squares) / static_cast<double>(population ? count : count - 1);
        sqlite3_result_double(context, kind < 2 ? std::sqrt(variance) : variance);
    }
};

// The four callbacks of a window aggregate over a state that starts zeroed. No value at all gives NULL.
template <typename State>
struct Aggregate {
    static void change(sqlite3_context* context, sqlite3_value** arguments, int sign) {
        if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) return;
        auto* state = static_cast<State*>(sqlite3_aggregate_context(context, sizeof(State)));
        if (state == nullptr) return sqlite3_result_error_nomem(context);
        guarded(context, [&] { state->add(arguments, sign); });
    }
    static void step(sqlite3_context* context, int, sqlite3_value** arguments) { change(context, arguments, 1); }
    static void inverse(sqlite3_context* context, int, sqlite3_value** arguments) { change(context, arguments, -1); }
    static void value(sqlite3_context* context) {
        const auto* state = static_cast<const State*>(sqlite3_aggregate_context(context, 0));
        if (state == nullptr || state->count == 0) return sqlite3_result_null(context);
        guarded(context, [&] { state->finish(context); });
    }
};

template <typename State>
void addAggregate(SqliteDatabase& database, const char* name, int count) {
    using Callbacks = Aggregate<State>;
    const int code = sqlite3_create_window_function(
        database.handle(), name, count, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, &database,
        Callbacks::step, Callbacks::value, Callbacks::value, Callbacks::inverse, nullptr);
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace

void addAggregateFunctions(SqliteDatabase& database) {
    addAggregate<SumOfIntegers>(database, "t_sum_i", 2);
    addAggregate<AverageOfIntegers>(database, "t_avg_i", 2);
    addAggregate<SumOfDecimals>(database, "t_sum_d", 2);
    addAggregate<AverageOfDecimals>(database, "t_avg_d", 2);
    addAggregate<SumOfFloats>(database, "t_sum_f", 1);
    addAggregate<Deviation>(database, "t_deviation", 2);
}

}  // namespace basalt::embedded
