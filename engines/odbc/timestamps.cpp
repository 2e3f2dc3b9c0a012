#include "engines/odbc/timestamps.h"

#include <array>
#include <cstdio>

#include "ado/names.h"

namespace basalt::odbc {

namespace {

constexpr std::int64_t kTicksPerMillisecond = 10'000;
constexpr int kNanosecondsPerTick = 100;
constexpr int kNanosecondsPerMillisecond = 1'000'000;

}  // namespace

bool countsInMilliseconds(const ColumnInfo& column) {
    return sameName(column.typeName, "datetime");
}

DateTime fromTimestamp(const SQL_TIMESTAMP_STRUCT& stamp, bool roundToMilliseconds) {
    DateTime value =
        fromCivil({.year = stamp.year,
                   .month = stamp.month,
                   .day = stamp.day,
                   .hour = stamp.hour,
                   .minute = stamp.minute,
                   .second = stamp.second,
                   .nanosecond = static_cast<int>(stamp.fraction) / kNanosecondsPerTick * kNanosecondsPerTick});
    if (roundToMilliseconds) {
        value.ticks = (value.ticks + kTicksPerMillisecond / 2) / kTicksPerMillisecond * kTicksPerMillisecond;
    }
    return value;
}

SQL_TIMESTAMP_STRUCT toTimestamp(DateTime value) {
    const CivilDateTime civil = toCivil(value);
    SQL_TIMESTAMP_STRUCT stamp{};
    stamp.year = static_cast<SQLSMALLINT>(civil.year);
    stamp.month = static_cast<SQLUSMALLINT>(civil.month);
    stamp.day = static_cast<SQLUSMALLINT>(civil.day);
    stamp.hour = static_cast<SQLUSMALLINT>(civil.hour);
    stamp.minute = static_cast<SQLUSMALLINT>(civil.minute);
    stamp.second = static_cast<SQLUSMALLINT>(civil.second);
    stamp.fraction = static_cast<SQLUINTEGER>(civil.nanosecond);
    return stamp;
}

std::string isoText(DateTime value) {
    const CivilDateTime civil = toCivil(value);
    const bool fine = civil.nanosecond % kNanosecondsPerMillisecond != 0;
    std::array<char, 96> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%0*d", civil.year,
                                     civil.month, civil.day, civil.hour, civil.minute, civil.second, fine ? 7 : 3,
                                     civil.nanosecond / (fine ? kNanosecondsPerTick : kNanosecondsPerMillisecond));
    return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace basalt::odbc
