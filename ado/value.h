// One database value: null, or a value of one of the kinds that columns hold.
//
//   Value v = query.FieldByName("Name").AsValue();
//   if (!isNull(v)) text = toText(v);
//
// Conversions below follow the platform that the data sets stand in for: null reads as 0, false or the empty text;
// a text that is not a number is a conversion error (DatabaseError, category Conversion).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ado/decimal.h"

namespace basalt {

using Bytes = std::vector<std::uint8_t>;

// A point in time: 100-nanosecond ticks since 0001-01-01 00:00:00 of the proleptic Gregorian calendar, no time zone.
struct DateTime {
    std::int64_t ticks = 0;
    auto operator<=>(const DateTime&) const = default;
};

struct CivilDateTime {
    int year = 1, month = 1, day = 1, hour = 0, minute = 0, second = 0;
    int nanosecond = 0;  // a multiple of 100
};

[[nodiscard]] DateTime fromCivil(const CivilDateTime& civil);
[[nodiscard]] CivilDateTime toCivil(DateTime value);
// Reads yyyy-mm-dd, yyyy/mm/dd or yyyymmdd, then optionally a blank or T and hh:mm[:ss[.fffffff]]. nullopt for any
// other text and for a day or time that does not exist.
[[nodiscard]] std::optional<DateTime> parseDateTime(std::string_view text);

using Null = std::monostate;
// Texts are UTF-8. bool is a BIT.
using Value = std::variant<Null, bool, std::int64_t, double, Decimal, std::string, Bytes, DateTime>;

[[nodiscard]] inline bool isNull(const Value& value) {
    return std::holds_alternative<Null>(value);
}

// Text as a server shows it: integers and decimals in plain digits with all decimals of the scale, BIT as "True" or
// "False", dates as yyyy-mm-dd[ hh:mm:ss[.fff]], bytes as 0x and hexadecimal digits, null as the empty text.
[[nodiscard]] std::string toText(const Value& value);
[[nodiscard]] std::int64_t toInt64(const Value& value);  // fractions round half to even, as the platform's variants do
[[nodiscard]] Extended toExtended(const Value& value);
[[nodiscard]] bool toBool(const Value& value);  // any number but 0; texts "True", "-1", "1"

// Equality for data set look-ups: numbers by value whatever their kind, texts as text, null equal to null only.
[[nodiscard]] bool sameValue(const Value& a, const Value& b);

// The decimal that a number or a numeric text stands for, exactly where the value is exact. Null is 0. DatabaseError
// (Conversion) for anything else and beyond 38 digits.
[[nodiscard]] Decimal toDecimal(const Value& value);

// Characters as SQL Server counts them: UTF-16 units of a UTF-8 text.
[[nodiscard]] std::size_t utf16Length(std::string_view text);

}  // namespace basalt
