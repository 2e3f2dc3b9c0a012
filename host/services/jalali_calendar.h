// The Iranian solar calendar, in which the application dates everything.
//
//   toJalali(2025, 3, 21)                 {1404, 1, 1}
//   toText(toJalali(2026, 11, 21), "/")   "1405/08/30"
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace basalt::host {

struct JalaliDate {
    int year = 1;
    int month = 1;  // 1 Farvardin to 12 Esfand
    int day = 1;
    auto operator<=>(const JalaliDate&) const = default;
};

struct GregorianDate {
    int year = 1;
    int month = 1;
    int day = 1;
    auto operator<=>(const GregorianDate&) const = default;
};

// Years 1 to 3177, the span for which the leap years are known. UsageError outside of it and for a day that does not
// exist.
[[nodiscard]] JalaliDate toJalali(int year, int month, int day);
[[nodiscard]] GregorianDate toGregorian(JalaliDate date);

[[nodiscard]] bool isLeapYear(int jalaliYear);  // 30 days in Esfand
[[nodiscard]] int daysInMonth(int jalaliYear, int month);
[[nodiscard]] std::string_view monthName(int month);  // "فروردین"

// Four, two and two digits.
[[nodiscard]] std::string toText(JalaliDate date, std::string_view separator);
// Reads y/m/d with "/" or "-", Persian digits too; nullopt for any other text and for a day that does not exist.
[[nodiscard]] std::optional<JalaliDate> parseJalali(std::string_view text);

}  // namespace basalt::host
