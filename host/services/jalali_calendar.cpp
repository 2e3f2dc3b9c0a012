#include "host/services/jalali_calendar.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>

#include "ado/error.h"

namespace basalt::host {

namespace {

// Leap years come every fourth year, and after a run of them the gap is five. Runs last 33 years mostly; these are the
// years in which a run of another length begins (after K. Borkowski's study of the calendar's astronomical definition).
constexpr std::array kBreaks = {-61,  9,    38,   199,  426,  686,  756,  818,  1111, 1181,
                                1210, 1635, 2060, 2097, 2192, 2262, 2324, 2394, 2456, 3178};
constexpr int kFirstYear = 1;
constexpr int kLastYear = 3177;

constexpr std::array<std::string_view, 12> kMonths = {"فروردین", "اردیبهشت", "خرداد", "تیر", "مرداد", "شهریور",
                                                      "مهر",     "آبان",     "آذر",   "دی",  "بهمن",  "اسفند"};

// Days since 1970-01-01 of the Gregorian calendar.
std::int64_t daysFromGregorian(int year, int month, int day) {
    const std::chrono::year_month_day date(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day)));
    return std::chrono::sys_days(date).time_since_epoch().count();
}

GregorianDate gregorianFromDays(std::int64_t days) {
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days))};
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

struct YearStart {
    int march = 0;           // the day of March on which the year begins
    int yearsSinceLeap = 0;  // 0: the year is a leap year
};

YearStart yearStart(int year) {
    int leaps = -14;  // leap years up to the year, counted from where both calendars meet
    int begin = kBreaks.front();
    int run = 0;
    for (std::size_t i = 1; i < kBreaks.size(); ++i) {
        run = kBreaks[i] - begin;
        if (year < kBreaks[i]) break;
        leaps += run / 33 * 8 + run % 33 / 4;
        begin = kBreaks[i];
    }
    int passed = year - begin;
    leaps += passed / 33 * 8 + (passed % 33 + 3) / 4;
    if (run % 33 == 4 && run - passed == 4) ++leaps;
    const int gregorian = year + 621;
    const int gregorianLeaps = gregorian / 4 - (gregorian / 100 + 1) * 3 / 4 - 150;

    // The last years of a run are counted as if the next one had begun, so that the five-year gap falls before it.
    if (run - passed < 6) passed = passed - run + (run + 4) / 33 * 33;
    int sinceLeap = ((passed + 1) % 33 - 1) % 4;
    if (sinceLeap == -1) sinceLeap = 4;
    return {20 + leaps - gregorianLeaps, sinceLeap};
}

void checkYear(int year) {
    if (year < kFirstYear || year > kLastYear) {
        throw UsageError("the Jalali calendar is known for the years 1 to 3177, not for " + std::to_string(year));
    }
}

std::int64_t daysFromJalali(const JalaliDate& date) {
    const std::int64_t newYear = daysFromGregorian(date.year + 621, 3, yearStart(date.year).march);
    const int monthDays = date.month <= 7 ? (date.month - 1) * 31 : 186 + (date.month - 7) * 30;
    return newYear + monthDays + date.day - 1;
}

bool exists(const JalaliDate& date) {
    return date.year >= kFirstYear && date.year <= kLastYear && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
           date.day <= daysInMonth(date.year, date.month);
}

// One decimal digit at the front of the text, ASCII, Persian or Arabic.
std::optional<int> takeDigit(std::string_view& text) {
    if (text.empty()) return std::nullopt;
    const auto first = static_cast<unsigned char>(text[0]);
    if (first >= '0' && first <= '9') {
        text.remove_prefix(1);
        return first - '0';
    }
    if (text.size() < 2) return std::nullopt;
    const auto second = static_cast<unsigned char>(text[1]);
    const bool persian = first == 0xDB && second >= 0xB0 && second <= 0xB9;
    const bool arabic = first == 0xD9 && second >= 0xA0 && second <= 0xA9;
    if (!persian && !arabic) return std::nullopt;
    text.remove_prefix(2);
    return second & 0x0F;
}

std::optional<int> takeNumber(std::string_view& text, int digits) {
    int value = 0;
    int count = 0;
    while (count < digits) {
        const auto digit = takeDigit(text);
        if (!digit) break;
        value = value * 10 + *digit;
        ++count;
    }
    if (count == 0) return std::nullopt;
    return value;
}

}  // namespace

bool isLeapYear(int jalaliYear) {
    checkYear(jalaliYear);
    return yearStart(jalaliYear).yearsSinceLeap == 0;
}

int daysInMonth(int jalaliYear, int month) {
    if (month < 1 || month > 12) throw UsageError("there is no month " + std::to_string(month));
    if (month <= 6) return 31;
    if (month <= 11) return 30;
    return isLeapYear(jalaliYear) ? 30 : 29;
}

std::string_view monthName(int month) {
    if (month < 1 || month > 12) throw UsageError("there is no month " + std::to_string(month));
    return kMonths[static_cast<std::size_t>(month - 1)];
}

JalaliDate toJalali(int year, int month, int day) {
    const std::int64_t days = daysFromGregorian(year, month, day);
    if (month < 1 || month > 12 || gregorianFromDays(days) != GregorianDate{year, month, day}) {
        throw UsageError("there is no day " + std::to_string(year) + "-" + std::to_string(month) + "-" +
                         std::to_string(day));
    }
    // The year begins in March: the first days of a Gregorian year belong to the Jalali year that began in the last
    // one.
    int jalaliYear = year - 621;
    const auto firstDay = [](int y) { return daysFromJalali({y, 1, 1}); };
    const bool known = jalaliYear >= kFirstYear && jalaliYear <= kLastYear;
    if (!known || days < firstDay(jalaliYear)) --jalaliYear;
    checkYear(jalaliYear);
    std::int64_t passed = days - firstDay(jalaliYear);
    if (passed >= (isLeapYear(jalaliYear) ? 366 : 365)) checkYear(jalaliYear + 1);
    if (passed < 186) return {jalaliYear, static_cast<int>(passed / 31) + 1, static_cast<int>(passed % 31) + 1};
    passed -= 186;
    return {jalaliYear, static_cast<int>(passed / 30) + 7, static_cast<int>(passed % 30) + 1};
}

GregorianDate toGregorian(JalaliDate date) {
    checkYear(date.year);
    if (!exists(date)) throw UsageError("there is no day " + toText(date, "/") + " in the Jalali calendar");
    return gregorianFromDays(daysFromJalali(date));
}

std::string toText(JalaliDate date, std::string_view separator) {
    const auto padded = [](int number, int width) {
        std::string text = std::to_string(number);
        if (text.size() < static_cast<std::size_t>(width))
            text.insert(0, static_cast<std::size_t>(width) - text.size(), '0');
        return text;
    };
    std::string text = padded(date.year, 4);
    text += separator;
    text += padded(date.month, 2);
    text += separator;
    text += padded(date.day, 2);
    return text;
}

std::optional<JalaliDate> parseJalali(std::string_view text) {
    const auto year = takeNumber(text, 4);
    if (!year || text.empty() || (text[0] != '/' && text[0] != '-')) return std::nullopt;
    const char separator = text[0];
    text.remove_prefix(1);
    const auto month = takeNumber(text, 2);
    if (!month || text.empty() || text[0] != separator) return std::nullopt;
    text.remove_prefix(1);
    const auto day = takeNumber(text, 2);
    if (!day || !text.empty()) return std::nullopt;
    const JalaliDate date{*year, *month, *day};
    if (!exists(date)) return std::nullopt;
    return date;
}

}  // namespace basalt::host
