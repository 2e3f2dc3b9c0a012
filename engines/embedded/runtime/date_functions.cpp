// DATEADD, DATEDIFF, DATEPART and their kin. A date part travels as the number of its DatePart.
#include <array>

#include "ado/value.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/dates.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

constexpr std::int64_t kFirstYearOfDateTime = 1753;

DatePart partAt(const Call& call, int i) {
    return static_cast<DatePart>(call.integer(i));
}

// t_dateadd(part, number, x, type)
void add(Call& call) {
    const SqlType type = call.type(3);
    const std::int64_t start = call.integer(2);
    if (type.kind == TypeKind::Time) {
        const std::int64_t moved = dateAdd(partAt(call, 0), call.integer(1), start + kDateTimeZero);
        return call.result(moved % kTicksPerDay);
    }
    try {
        call.result(roundedTo(dateAdd(partAt(call, 0), call.integer(1), start), type));
    } catch (const DatabaseError& error) {
        if (error.nativeCode() != 242 && error.nativeCode() != 517) throw;
        throwSqlError(517, "Adding a value to a '" + std::string(type.baseName()) + "' column caused an overflow.");
    }
}

[[noreturn]] void refuseParts(const std::string& type) {
    throwSqlError(289,
                  "Cannot construct data type " + type + ", some of the arguments have values which are not valid.");
}

// The day that these are; an error of the type that is made of it when they are none.
DateTime dayOf(const Call& call, const char* type) {
    const std::int64_t year = call.integer(0);
    const std::int64_t month = call.integer(1);
    const std::int64_t day = call.integer(2);
    if (year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= 31) {
        const DateTime result =
            fromCivil({static_cast<int>(year), static_cast<int>(month), static_cast<int>(day), 0, 0, 0, 0});
        if (toCivil(result).day == day) return result;
    }
    refuseParts(type);
}

// t_datefromparts(year, month, day)
void fromParts(Call& call) {
    call.result(dayOf(call, "date").ticks);
}

// t_datetimefromparts(year, month, day, hour, minute, second, milliseconds)
void timeFromParts(Call& call) {
    constexpr std::array<std::int64_t, 4> kLimits = {24, 60, 60, 1000};
    std::int64_t milliseconds = 0;
    bool valid = call.integer(0) >= kFirstYearOfDateTime;
    for (std::size_t i = 0; i < kLimits.size(); ++i) {
        const std::int64_t part = call.integer(static_cast<int>(i) + 3);
        valid = valid && part >= 0 && part < kLimits[i];
        milliseconds = milliseconds * kLimits[i] + part;
    }
    if (!valid) refuseParts("datetime");
    constexpr std::int64_t kTicksPerMillisecond = 10'000;
    call.result(roundedTo(dayOf(call, "datetime").ticks + milliseconds * kTicksPerMillisecond,
                          SqlType::of(TypeKind::DateTime)));
}

void isDate(Call& call) {
    // An empty text converts, and is no date all the same.
    if (call.isNull(0) || call.text(0).find_first_not_of(' ') == std::string_view::npos)
        return call.result(std::int64_t{0});
    try {
        const Value value = convert(std::string(call.text(0)), SqlType::text(TypeKind::NVarChar, kMaxLength),
                                    SqlType::of(TypeKind::DateTime));
        call.result(std::int64_t{!basalt::isNull(value)});
    } catch (const DatabaseError&) {
        call.result(std::int64_t{0});
    }
}

}  // namespace

void addDateFunctions(SqliteDatabase& database) {
    addFunction(database, "t_dateadd", 4, add);
    addFunction(database, "t_datediff", 3,
                [](Call& call) { call.result(dateDiff(partAt(call, 0), call.integer(1), call.integer(2))); });
    addFunction(database, "t_datepart", 2, [](Call& call) { call.result(datePart(partAt(call, 0), call.integer(1))); });
    addFunction(database, "t_datename", 2,
                [](Call& call) { call.result(std::string_view(dateName(partAt(call, 0), call.integer(1)))); });
    addFunction(database, "t_eomonth", 2,
                [](Call& call) { call.result(endOfMonth(call.integer(0), call.integer(1))); });
    addFunction(database, "t_datefromparts", 3, fromParts);
    addFunction(database, "t_datetimefromparts", 7, timeFromParts);
    addFunction(database, "t_isdate", 1, isDate, NullRule::Pass);
}

}  // namespace basalt::embedded
