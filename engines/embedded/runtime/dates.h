// Points in time: reading and writing them as text, and the arithmetic of DATEADD, DATEDIFF and DATEPART.
//
// All are ticks of 100 ns since 0001-01-01; a `time` is the ticks since midnight.
//
//   *parseDate("2024-03-20 10:30", 0)
//   formatDate(ticks, SqlType::of(TypeKind::DateTime), 120)      "2024-03-20 10:30:00"
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

inline constexpr std::int64_t kTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kTicksPerDay = 86400 * kTicksPerSecond;
// 1900-01-01, day 0 of datetime.
inline constexpr std::int64_t kDateTimeZero = 693595 * kTicksPerDay;

enum class DatePart : std::uint8_t {
    Year,
    Quarter,
    Month,
    DayOfYear,
    Day,
    Week,
    WeekDay,
    IsoWeek,
    Hour,
    Minute,
    Second,
    Millisecond,
    Microsecond,
    Nanosecond,
};

// "year", "yy", "dd" ...; nullopt for an unknown word. The word is in lower case.
[[nodiscard]] std::optional<DatePart> datePartOf(std::string_view word);

// Its whole name.
[[nodiscard]] std::string_view nameOf(DatePart part);

// Ticks as the type keeps them: datetime in steps of 1/300 s, smalldatetime in minutes, date in days.
// Throws DatabaseError 242 when the type does not reach so far.
[[nodiscard]] std::int64_t roundedTo(std::int64_t ticks, const SqlType& type);

// Reads the customary ways to write a date or a time; `style` is CONVERT's, 0 for any. nullopt when it is none.
// `outOfRange` tells a text that reads as a date which does not exist from one that is no date at all;
// `fractionDigits` is how many digits may stand behind the seconds.
[[nodiscard]] std::optional<std::int64_t> parseDate(std::string_view text, int style, bool* outOfRange = nullptr,
                                                    int fractionDigits = 7);
// Writes by CONVERT's style. Throws DatabaseError 281 for a style that does not exist.
[[nodiscard]] std::string formatDate(std::int64_t ticks, const SqlType& type, int style);

// Throws DatabaseError 517 when the result is out of range.
[[nodiscard]] std::int64_t dateAdd(DatePart part, std::int64_t number, std::int64_t ticks);
// How many boundaries of the part lie between. Throws DatabaseError 535 when they do not fit an int (unless `big`).
[[nodiscard]] std::int64_t dateDiff(DatePart part, std::int64_t from, std::int64_t to);
[[nodiscard]] std::int64_t datePart(DatePart part, std::int64_t ticks);
[[nodiscard]] std::string dateName(DatePart part, std::int64_t ticks);
// The last day of the month that lies `months` later.
[[nodiscard]] std::int64_t endOfMonth(std::int64_t ticks, std::int64_t months);

// Now, in the local time of this machine.
[[nodiscard]] std::int64_t currentLocalTicks();
// How much later the clock on the wall is now than that of Greenwich.
[[nodiscard]] std::int64_t localTicksAheadOfUtc();

}  // namespace basalt::embedded
