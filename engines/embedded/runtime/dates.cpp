#include "engines/embedded/runtime/dates.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <limits>
#include <vector>

#include "ado/value.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                   "Thursday", "Friday", "Saturday"};

constexpr std::int64_t kLastTick = 3652059 * kTicksPerDay - 1;  // the end of 9999-12-31

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    const std::int64_t quotient = a / b;
    return a % b < 0 ? quotient - 1 : quotient;
}

bool isLeap(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysIn(int year, int month) {
    constexpr std::array<int, 12> lengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : lengths[static_cast<std::size_t>(month - 1)];
}

std::optional<std::int64_t> dayTicks(int year, int month, int day) {
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > daysIn(year, month)) return std::nullopt;
    return fromCivil({year, month, day, 0, 0, 0, 0}).ticks;
}

// 0 = Sunday.
std::int64_t weekDayIndex(std::int64_t ticks) {
    return (floorDiv(ticks, kTicksPerDay) + 1) % 7;
}

std::int64_t monthNumber(std::int64_t ticks) {
    const CivilDateTime civil = toCivil({ticks});
    return static_cast<std::int64_t>(civil.year) * 12 + civil.month - 1;
}

std::int64_t unitOf(DatePart part) {
    switch (part) {
        case DatePart::Week:
            return 7 * kTicksPerDay;
        case DatePart::Hour:
            return 3600 * kTicksPerSecond;
        case DatePart::Minute:
            return 60 * kTicksPerSecond;
        case DatePart::Second:
            return kTicksPerSecond;
        case DatePart::Millisecond:
            return 10'000;
        case DatePart::Microsecond:
            return 10;
        default:
            return kTicksPerDay;
    }
}

std::int64_t addMonths(std::int64_t ticks, std::int64_t months) {
    CivilDateTime civil = toCivil({ticks});
    const std::int64_t number = static_cast<std::int64_t>(civil.year) * 12 + civil.month - 1 + months;
    if (number < 12 || number > 9999 * 12 + 11) {
        throwSqlError(517, "Adding a value to a 'datetime' column caused an overflow.");
    }
    civil.year = static_cast<int>(number / 12);
    civil.month = static_cast<int>(number % 12) + 1;
    civil.day = std::min(civil.day, daysIn(civil.year, civil.month));
    return fromCivil(civil).ticks;
}

// Words of a date's text: numbers (with the count of digits) and everything else.
struct Part {
    enum class Kind { Number, Word, Sign } kind;
    std::int64_t number = 0;
    int digits = 0;
    std::string word;
    char sign = 0;
};

std::optional<std::vector<Part>> split(std::string_view text) {
    std::vector<Part> parts;
    std::size_t i = 0;
    while (i < text.size()) {
        const char c = text[i];
        if (c == ' ' || c == '\t') {
            ++i;
        } else if (c >= '0' && c <= '9') {
            Part part{Part::Kind::Number, 0, 0, {}, 0};
            for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i, ++part.digits) {
                if (part.digits == 18) return std::nullopt;
                part.number = part.number * 10 + (text[i] - '0');
            }
            parts.push_back(part);
        } else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) {
            Part part{Part::Kind::Word, 0, 0, {}, 0};
            for (; i < text.size() && ((text[i] | 0x20) >= 'a' && (text[i] | 0x20) <= 'z'); ++i)
                part.word += static_cast<char>(text[i] | 0x20);
            parts.push_back(part);
        } else if (c == '-' || c == '/' || c == '.' || c == ':' || c == ',' || c == '+') {
            parts.push_back({Part::Kind::Sign, 0, 0, {}, c});
            ++i;
        } else {
            return std::nullopt;
        }
    }
    return parts;
}

class DateReader {
public:
    DateReader(std::vector<Part> parts, int style, int fractionDigits)
        : parts_(std::move(parts)), style_(style % 100), fractionDigits_(fractionDigits) {}

    std::optional<std::int64_t> read() {
        std::int64_t day = kDateTimeZero;
        if (!isTimeNext()) {
            const std::optional<std::int64_t> date = readDate();
            if (!date) return std::nullopt;
            day = *date;
            if (isWord(at_, "t")) ++at_;
        }
        if (at_ == parts_.size()) return day;
        const std::optional<std::int64_t> time = readTime();
        if (!time || at_ != parts_.size()) return std::nullopt;
        return day + *time;
    }

    // Whether it reads as a date that there is not: 2024-02-30.
    [[nodiscard]] bool isOutOfRange() const { return outOfRange_; }

private:
    std::optional<std::int64_t> dayOf(int year, int month, int day) {
        const std::optional<std::int64_t> ticks = dayTicks(year, month, day);
        outOfRange_ = !ticks;
        return ticks;
    }

    [[nodiscard]] bool isNumber(std::size_t i) const {
        return i < parts_.size() && parts_[i].kind == Part::Kind::Number;
    }
    [[nodiscard]] bool isSign(std::size_t i, char sign) const {
        return i < parts_.size() && parts_[i].kind == Part::Kind::Sign && parts_[i].sign == sign;
    }
    [[nodiscard]] bool isWord(std::size_t i, std::string_view word) const {
        return i < parts_.size() && parts_[i].kind == Part::Kind::Word && parts_[i].word == word;
    }
    [[nodiscard]] bool isTimeNext() const {
        return isNumber(at_) && (isSign(at_ + 1, ':') || isWord(at_ + 1, "am") || isWord(at_ + 1, "pm"));
    }

    static int month(const std::string& word) {
        for (std::size_t i = 0; i < kMonths.size(); ++i) {
            std::string name(kMonths[i]);
            name[0] = static_cast<char>(name[0] | 0x20);
            if (word.size() >= 3 && name.starts_with(word) && (word.size() == 3 || word.size() == name.size())) {
                return static_cast<int>(i) + 1;
            }
        }
        return 0;
    }

    static int fullYear(const Part& part) {
        if (part.digits > 2) return static_cast<int>(part.number);
        return static_cast<int>(part.number) + (part.number < 50 ? 2000 : 1900);
    }

    std::optional<std::int64_t> readDate() {
        if (at_ < parts_.size() && parts_[at_].kind == Part::Kind::Word) {  // Mar 20 2024, March 20, 2024
            if (!isNumber(at_ + 1)) return std::nullopt;
            const int named = month(parts_[at_].word);
            const Part& day = parts_[at_ + 1];
            at_ += 2;
            if (isSign(at_, ',')) ++at_;
            if (named == 0 || !isNumber(at_)) return std::nullopt;
            return dayOf(fullYear(parts_[at_++]), named, static_cast<int>(day.number));
        }
        if (!isNumber(at_)) return std::nullopt;
        const Part first = parts_[at_];
        const bool alone = at_ + 1 >= parts_.size() || isWord(at_ + 1, "t") || isNumber(at_ + 1);
        if (alone && (first.digits == 8 || first.digits == 6)) {  // 20240320, 240320
            ++at_;
            const auto year = static_cast<int>(first.number / 10000);
            return dayOf(first.digits == 8 ? year : fullYear({Part::Kind::Number, year, 2, {}, 0}),
                         static_cast<int>(first.number / 100 % 100), static_cast<int>(first.number % 100));
        }
        if (first.digits == 4 && alone) {  // a year alone
            ++at_;
            return dayOf(static_cast<int>(first.number), 1, 1);
        }
        if (at_ + 1 < parts_.size() && parts_[at_ + 1].kind == Part::Kind::Word) {  // 20 Mar 2024
            const int named = month(parts_[at_ + 1].word);
            at_ += 2;
            if (isSign(at_, ',')) ++at_;
            if (named == 0 || !isNumber(at_)) return std::nullopt;
            return dayOf(fullYear(parts_[at_++]), named, static_cast<int>(first.number));
        }
        if (at_ + 4 >= parts_.size() || !isNumber(at_ + 2) || !isNumber(at_ + 4)) return std::nullopt;
        const Part sign = parts_[at_ + 1];
        if (sign.kind != Part::Kind::Sign || (sign.sign != '-' && sign.sign != '/' && sign.sign != '.') ||
            !isSign(at_ + 3, sign.sign)) {
            return std::nullopt;
        }
        const Part second = parts_[at_ + 2];
        const Part third = parts_[at_ + 4];
        at_ += 5;
        if (first.digits > 2) {
            return dayOf(static_cast<int>(first.number), static_cast<int>(second.number),
                         static_cast<int>(third.number));
        }
        const bool dayFirst = style_ == 3 || style_ == 4 || style_ == 5 || style_ == 13;
        const bool yearFirst = style_ == 2 || style_ == 11;
        if (yearFirst) {
            return dayOf(fullYear(first), static_cast<int>(second.number), static_cast<int>(third.number));
        }
        const auto a = static_cast<int>(first.number);
        const auto b = static_cast<int>(second.number);
        return dayFirst ? dayOf(fullYear(third), b, a) : dayOf(fullYear(third), a, b);
    }

    std::optional<std::int64_t> readTime() {
        if (!isNumber(at_)) return std::nullopt;
        std::int64_t hour = parts_[at_++].number;
        std::int64_t minute = 0;
        std::int64_t second = 0;
        std::int64_t fraction = 0;
        bool minuteSeen = false;
        if (isSign(at_, ':')) {
            if (!isNumber(at_ + 1)) return std::nullopt;
            minute = parts_[at_ + 1].number;
            at_ += 2;
            minuteSeen = true;
        }
        if (minuteSeen && isSign(at_, ':')) {
            if (!isNumber(at_ + 1)) return std::nullopt;
            second = parts_[at_ + 1].number;
            at_ += 2;
            if (isSign(at_, '.') || isSign(at_, ':')) {
                if (!isNumber(at_ + 1)) return std::nullopt;
                const Part& digits = parts_[at_ + 1];
                // Behind a colon stand milliseconds.
                const bool decimal = isSign(at_, '.');
                if (digits.digits > (decimal ? fractionDigits_ : 3)) return std::nullopt;
                fraction = digits.number;
                for (int count = decimal ? digits.digits : 3; count < 7; ++count)
                    fraction *= 10;
                at_ += 2;
            }
        }
        if (isWord(at_, "am") || isWord(at_, "pm")) {
            if (hour < 1 || hour > 12) return std::nullopt;
            hour = hour % 12 + (isWord(at_, "pm") ? 12 : 0);
            ++at_;
            minuteSeen = true;
        }
        if (isWord(at_, "z")) ++at_;
        if (!minuteSeen || hour > 23 || minute > 59 || second > 59) return std::nullopt;
        return ((hour * 60 + minute) * 60 + second) * kTicksPerSecond + fraction;
    }

    std::vector<Part> parts_;
    std::size_t at_ = 0;
    int style_;
    int fractionDigits_;
    bool outOfRange_ = false;
};

template <typename... Arguments>
std::string print(const char* format, Arguments... arguments) {
    std::array<char, 80> buffer;
    std::snprintf(buffer.data(), buffer.size(), format, arguments...);
    return buffer.data();
}

std::string fractionText(const CivilDateTime& civil, const SqlType& type) {
    if (type.kind == TypeKind::DateTime) return print(".%03d", civil.nanosecond / 1'000'000);
    if (type.kind == TypeKind::SmallDateTime || type.scale == 0) return {};
    return print(".%09d", civil.nanosecond).substr(0, 1U + type.scale);
}

int twelveHourOf(const CivilDateTime& civil) {
    return civil.hour % 12 == 0 ? 12 : civil.hour % 12;
}

const char* halfOfDay(const CivilDateTime& civil) {
    return civil.hour < 12 ? "AM" : "PM";
}

std::string twelveHour(const CivilDateTime& civil) {
    return print("%2d:%02d%s", twelveHourOf(civil), civil.minute, halfOfDay(civil));
}

// ":007", as the styles with milliseconds show it; the newer types show all that they hold, behind a point.
std::string longFraction(const CivilDateTime& civil, const SqlType& type) {
    if (type.kind == TypeKind::DateTime2) return fractionText(civil, type);
    return print(":%03d", civil.nanosecond / 1'000'000);
}

std::string longTwelveHour(const CivilDateTime& civil, const SqlType& type) {
    return print("%2d:%02d:%02d", twelveHourOf(civil), civil.minute, civil.second) + longFraction(civil, type) +
           halfOfDay(civil);
}

struct HijriDay {
    std::int64_t year, month, day;
};

// By the tabular calendar, in which the years 2, 5, 7, 10, 13, 16, 18, 21, 24, 26 and 29 of thirty have a day more.
std::int64_t daysBeforeHijriYear(std::int64_t year) {
    return (year - 1) * 354 + (11 * (year - 1) + 14) / 30;
}

HijriDay hijriOf(std::int64_t ticks) {
    constexpr std::int64_t kFirstDay = 227'013;  // of the year 1, 622-07-18, in days since 0001-01-01
    const std::int64_t day = floorDiv(ticks, kTicksPerDay) - kFirstDay;
    if (day < 0) {
        throwSqlError(error::kDateOutOfRange, "The date lies before the first year of the Hijri calendar.");
    }
    HijriDay result{day / 355 + 1, 1, 0};
    while (daysBeforeHijriYear(result.year + 1) <= day)
        ++result.year;
    std::int64_t rest = day - daysBeforeHijriYear(result.year);
    // Months have 30 and 29 days by turns; the day more is at the end of the year.
    for (; result.month < 12 && rest >= 29 + result.month % 2; ++result.month)
        rest -= 29 + result.month % 2;
    result.day = rest + 1;
    return result;
}

constexpr std::array<const char*, 12> kHijriMonths = {"محرم",         "صفر",           "ربيع الاول", "ربيع الثاني",
                                                      "جمادى الاولى", "جمادى الثانية", "رجب",        "شعبان",
                                                      "رمضان",        "شوال",          "ذو القعدة",  "ذو الحجة"};

}  // namespace

namespace {

struct PartName {
    std::string_view word;
    DatePart part;
};

// The whole name of each part before its short ones.
constexpr std::array kPartNames = {
    PartName{"year", DatePart::Year},
    PartName{"yyyy", DatePart::Year},
    PartName{"yy", DatePart::Year},
    PartName{"quarter", DatePart::Quarter},
    PartName{"qq", DatePart::Quarter},
    PartName{"q", DatePart::Quarter},
    PartName{"month", DatePart::Month},
    PartName{"mm", DatePart::Month},
    PartName{"m", DatePart::Month},
    PartName{"dayofyear", DatePart::DayOfYear},
    PartName{"dy", DatePart::DayOfYear},
    PartName{"y", DatePart::DayOfYear},
    PartName{"day", DatePart::Day},
    PartName{"dd", DatePart::Day},
    PartName{"d", DatePart::Day},
    PartName{"week", DatePart::Week},
    PartName{"wk", DatePart::Week},
    PartName{"ww", DatePart::Week},
    PartName{"weekday", DatePart::WeekDay},
    PartName{"dw", DatePart::WeekDay},
    PartName{"w", DatePart::WeekDay},
    PartName{"iso_week", DatePart::IsoWeek},
    PartName{"isowk", DatePart::IsoWeek},
    PartName{"isoww", DatePart::IsoWeek},
    PartName{"hour", DatePart::Hour},
    PartName{"hh", DatePart::Hour},
    PartName{"minute", DatePart::Minute},
    PartName{"mi", DatePart::Minute},
    PartName{"n", DatePart::Minute},
    PartName{"second", DatePart::Second},
    PartName{"ss", DatePart::Second},
    PartName{"s", DatePart::Second},
    PartName{"millisecond", DatePart::Millisecond},
    PartName{"ms", DatePart::Millisecond},
    PartName{"microsecond", DatePart::Microsecond},
    PartName{"mcs", DatePart::Microsecond},
    PartName{"nanosecond", DatePart::Nanosecond},
    PartName{"ns", DatePart::Nanosecond},
};

}  // namespace

std::string_view nameOf(DatePart part) {
    for (const PartName& name : kPartNames) {
        if (name.part == part) return name.word;
    }
    return {};
}

std::optional<DatePart> datePartOf(std::string_view word) {
    for (const PartName& name : kPartNames) {
        if (name.word == word) return name.part;
    }
    return std::nullopt;
}

std::int64_t roundedTo(std::int64_t ticks, const SqlType& type) {
    switch (type.kind) {
        case TypeKind::Date:
            ticks = floorDiv(ticks, kTicksPerDay) * kTicksPerDay;
            break;
        case TypeKind::Time: {
            std::int64_t unit = 1;
            for (int i = type.scale; i < 7; ++i)
                unit *= 10;
            ticks = (ticks % kTicksPerDay + unit / 2) / unit * unit % kTicksPerDay;
            break;
        }
        case TypeKind::SmallDateTime: {
            constexpr std::int64_t minute = 60 * kTicksPerSecond;
            // 29.998 s and less go down, 29.999 s and more go up.
            ticks = (ticks + 30 * kTicksPerSecond + 10'000) / minute * minute;
            if (ticks < kDateTimeZero || ticks >= (693595 + 65536) * kTicksPerDay) {
                throwSqlError(error::kDateOutOfRange,
                              "The conversion to a smalldatetime data type resulted in an out-of-range value.");
            }
            break;
        }
        case TypeKind::DateTime: {
            const std::int64_t day = floorDiv(ticks, kTicksPerDay);
            const std::int64_t three = ((ticks - day * kTicksPerDay) * 3 + 50'000) / 100'000;  // 1/300 s
            // Whole milliseconds .000, .003 and .007, as clients see them.
            ticks = day * kTicksPerDay + (three * 10 + 1) / 3 * 10'000;
            if (day < 639905) {
                throwSqlError(error::kDateOutOfRange,
                              "The conversion to a datetime data type resulted in an out-of-range value.");
            }
            break;
        }
        case TypeKind::DateTime2: {
            std::int64_t unit = 1;
            for (int i = type.scale; i < 7; ++i)
                unit *= 10;
            ticks = (ticks + unit / 2) / unit * unit;
            break;
        }
        default:
            break;
    }
    if (ticks < 0 || ticks > kLastTick) {
        throwSqlError(error::kDateOutOfRange, "The conversion to a date data type resulted in an out-of-range value.");
    }
    return ticks;
}

std::optional<std::int64_t> parseDate(std::string_view text, int style, bool* outOfRange, int fractionDigits) {
    if (style == 130 || style == 131) {
        throwSqlError(40517, "CONVERT from a text with style " + std::to_string(style) +
                                 " (Hijri) is not supported in this database.");
    }
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    if (text.empty()) return kDateTimeZero;
    std::optional<std::vector<Part>> parts = split(text);
    if (!parts) return std::nullopt;
    DateReader reader(std::move(*parts), style, fractionDigits);
    const std::optional<std::int64_t> ticks = reader.read();
    if (outOfRange != nullptr) *outOfRange = reader.isOutOfRange();
    return ticks;
}

std::string formatDate(std::int64_t ticks, const SqlType& type, int style) {
    const CivilDateTime c = toCivil({ticks});
    std::string clock = print("%02d:%02d:%02d", c.hour, c.minute, c.second);
    const std::string fraction = fractionText(c, type);
    if (type.kind == TypeKind::Time) {
        // Without a style a time is written out, unlike the older types.
        switch (style) {
            case 100:
                return twelveHour(c);
            case 8:
            case 20:
            case 24:
            case 108:
            case 120:
                return clock;
            default:
                return clock + fraction;
        }
    }
    std::string isoDay = print("%04d-%02d-%02d", c.year, c.month, c.day);
    const bool dayOnly = type.kind == TypeKind::Date;
    const std::string monthName(kMonths[static_cast<std::size_t>(c.month - 1)].substr(0, 3));
    const int shortYear = c.year % 100;
    switch (style) {
        case 0:
        case 100:
            // The newer types have the ISO form for their default; the older ones the form of style 100.
            if (style == 0 && dayOnly) return isoDay;
            if (style == 0 && type.kind == TypeKind::DateTime2) return isoDay + " " + clock + fraction;
            if (dayOnly) return print("%s %2d %04d", monthName.c_str(), c.day, c.year);
            return print("%s %2d %04d ", monthName.c_str(), c.day, c.year) + twelveHour(c);
        case 1:
            return print("%02d/%02d/%02d", c.month, c.day, shortYear);
        case 101:
            return print("%02d/%02d/%04d", c.month, c.day, c.year);
        case 2:
            return print("%02d.%02d.%02d", shortYear, c.month, c.day);
        case 102:
            return print("%04d.%02d.%02d", c.year, c.month, c.day);
        case 3:
            return print("%02d/%02d/%02d", c.day, c.month, shortYear);
        case 103:
            return print("%02d/%02d/%04d", c.day, c.month, c.year);
        case 4:
            return print("%02d.%02d.%02d", c.day, c.month, shortYear);
        case 104:
            return print("%02d.%02d.%04d", c.day, c.month, c.year);
        case 5:
            return print("%02d-%02d-%02d", c.day, c.month, shortYear);
        case 105:
            return print("%02d-%02d-%04d", c.day, c.month, c.year);
        case 6:
            return print("%02d %s %02d", c.day, monthName.c_str(), shortYear);
        case 106:
            return print("%02d %s %04d", c.day, monthName.c_str(), c.year);
        case 7:
            return print("%s %02d, %02d", monthName.c_str(), c.day, shortYear);
        case 107:
            return print("%s %02d, %04d", monthName.c_str(), c.day, c.year);
        case 8:
        case 24:
        case 108:
            return clock;
        case 10:
            return print("%02d-%02d-%02d", c.month, c.day, shortYear);
        case 110:
            return print("%02d-%02d-%04d", c.month, c.day, c.year);
        case 11:
            return print("%02d/%02d/%02d", shortYear, c.month, c.day);
        case 111:
            return print("%04d/%02d/%02d", c.year, c.month, c.day);
        case 12:
            return print("%02d%02d%02d", shortYear, c.month, c.day);
        case 112:
            return print("%04d%02d%02d", c.year, c.month, c.day);
        case 9:
        case 109:
            if (dayOnly) return print("%s %2d %04d", monthName.c_str(), c.day, c.year);
            return print("%s %2d %04d ", monthName.c_str(), c.day, c.year) + longTwelveHour(c, type);
        case 13:
        case 113:
            if (dayOnly) return print("%02d %s %04d", c.day, monthName.c_str(), c.year);
            return print("%02d %s %04d ", c.day, monthName.c_str(), c.year) + clock + longFraction(c, type);
        case 22:
            if (dayOnly) return print("%02d/%02d/%02d", c.month, c.day, shortYear);
            return print("%02d/%02d/%02d %2d:%02d:%02d %s", c.month, c.day, shortYear, twelveHourOf(c), c.minute,
                         c.second, halfOfDay(c));
        case 130:
        case 131: {
            const HijriDay h = hijriOf(ticks);
            const auto [year, month, day] =
                std::array{static_cast<int>(h.year), static_cast<int>(h.month), static_cast<int>(h.day)};
            const std::string shown =
                style == 131 ? print("%2d/%02d/%04d", day, month, year)
                             : print("%2d %s %04d", day, kHijriMonths[static_cast<std::size_t>(month - 1)], year);
            return dayOnly ? shown : shown + " " + longTwelveHour(c, type);
        }
        case 14:
        case 114:
            return clock + print(":%03d", c.nanosecond / 1'000'000);
        case 20:
        case 120:
            return dayOnly ? isoDay : isoDay + " " + clock;
        case 21:
        case 25:
        case 121:
            return dayOnly ? isoDay : isoDay + " " + clock + (fraction.empty() ? ".000" : fraction);
        case 23:
            return isoDay;
        case 126:
        case 127:
            if (dayOnly) return isoDay;
            return isoDay + "T" + clock + (c.nanosecond == 0 ? std::string() : fraction);
        default:
            throwSqlError(281, std::to_string(style) +
                                   " is not a valid style number when converting from datetime to a character string.");
    }
}

std::int64_t dateAdd(DatePart part, std::int64_t number, std::int64_t ticks) {
    if (number > std::numeric_limits<std::int32_t>::max() || number < std::numeric_limits<std::int32_t>::min()) {
        throwSqlError(error::kArithmeticOverflow, "Arithmetic overflow error converting expression to data type int.");
    }
    std::int64_t result = 0;
    switch (part) {
        case DatePart::Year:
            return addMonths(ticks, number * 12);
        case DatePart::Quarter:
            return addMonths(ticks, number * 3);
        case DatePart::Month:
            return addMonths(ticks, number);
        case DatePart::Nanosecond:
            result = ticks + number / 100;
            break;
        default: {
            const Int128 wide = Int128{ticks} + Int128{number} * unitOf(part);
            if (wide < 0 || wide > kLastTick) {
                throwSqlError(517, "Adding a value to a 'datetime' column caused an overflow.");
            }
            result = static_cast<std::int64_t>(wide);
        }
    }
    if (result < 0 || result > kLastTick) {
        throwSqlError(517, "Adding a value to a 'datetime' column caused an overflow.");
    }
    return result;
}

std::int64_t dateDiff(DatePart part, std::int64_t from, std::int64_t to) {
    std::int64_t result = 0;
    switch (part) {
        case DatePart::Year:
            result = monthNumber(to) / 12 - monthNumber(from) / 12;
            break;
        case DatePart::Quarter:
            result = monthNumber(to) / 3 - monthNumber(from) / 3;
            break;
        case DatePart::Month:
            result = monthNumber(to) - monthNumber(from);
            break;
        case DatePart::Week:
        case DatePart::IsoWeek:
            // Weeks start on Sunday, whatever DATEFIRST says; day 0 (0001-01-01) is a Monday.
            result = floorDiv(to + kTicksPerDay, 7 * kTicksPerDay) - floorDiv(from + kTicksPerDay, 7 * kTicksPerDay);
            break;
        case DatePart::Nanosecond:
            result = (to - from) * 100;
            break;
        default: {
            const std::int64_t unit = unitOf(part);
            result = floorDiv(to, unit) - floorDiv(from, unit);
        }
    }
    if (result > std::numeric_limits<std::int32_t>::max() || result < std::numeric_limits<std::int32_t>::min()) {
        throwSqlError(535,
                      "The datediff function resulted in an overflow. The number of dateparts separating two date/time "
                      "instances is too large. Try to use datediff with a less precise datepart.");
    }
    return result;
}

std::int64_t datePart(DatePart part, std::int64_t ticks) {
    const CivilDateTime civil = toCivil({ticks});
    const std::int64_t yearStart = *dayTicks(civil.year, 1, 1);
    const std::int64_t dayOfYear = (ticks - yearStart) / kTicksPerDay + 1;
    switch (part) {
        case DatePart::Year:
            return civil.year;
        case DatePart::Quarter:
            return (civil.month + 2) / 3;
        case DatePart::Month:
            return civil.month;
        case DatePart::DayOfYear:
            return dayOfYear;
        case DatePart::Day:
            return civil.day;
        case DatePart::Week:
            return (dayOfYear + weekDayIndex(yearStart) - 1) / 7 + 1;
        case DatePart::WeekDay:
            return weekDayIndex(ticks) + 1;
        case DatePart::IsoWeek: {
            // The week of a day is the week of its Thursday.
            const std::int64_t thursday = ticks + (3 - (weekDayIndex(ticks) + 6) % 7) * kTicksPerDay;
            const std::int64_t start = *dayTicks(toCivil({thursday}).year, 1, 1);
            return (thursday - start) / kTicksPerDay / 7 + 1;
        }
        case DatePart::Hour:
            return civil.hour;
        case DatePart::Minute:
            return civil.minute;
        case DatePart::Second:
            return civil.second;
        case DatePart::Millisecond:
            return civil.nanosecond / 1'000'000;
        case DatePart::Microsecond:
            return civil.nanosecond / 1000;
        case DatePart::Nanosecond:
            return civil.nanosecond;
    }
    return 0;
}

std::string dateName(DatePart part, std::int64_t ticks) {
    if (part == DatePart::Month) return std::string(kMonths[static_cast<std::size_t>(datePart(part, ticks) - 1)]);
    if (part == DatePart::WeekDay) return std::string(kDays[static_cast<std::size_t>(weekDayIndex(ticks))]);
    return std::to_string(datePart(part, ticks));
}

std::int64_t endOfMonth(std::int64_t ticks, std::int64_t months) {
    CivilDateTime civil = toCivil({addMonths(ticks, months)});
    return *dayTicks(civil.year, civil.month, daysIn(civil.year, civil.month));
}

std::int64_t currentLocalTicks() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t hundreds = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count() / 100;
    const std::time_t seconds = static_cast<std::time_t>(hundreds / kTicksPerSecond);
    // std::localtime is what every platform has; the module runs on one thread.
    const std::tm* local = std::localtime(&seconds);
    if (local == nullptr) throwSqlError(error::kDateOutOfRange, "The clock of this computer cannot be read.");
    const CivilDateTime civil{local->tm_year + 1900,
                              local->tm_mon + 1,
                              local->tm_mday,
                              local->tm_hour,
                              local->tm_min,
                              std::min(local->tm_sec, 59),
                              0};
    return fromCivil(civil).ticks + hundreds % kTicksPerSecond;
}

std::int64_t localTicksAheadOfUtc() {
    const std::time_t seconds = std::time(nullptr);
    const auto ticksOf = [](const std::tm* time) {
        if (time == nullptr) throwSqlError(error::kDateOutOfRange, "The clock of this computer cannot be read.");
        return fromCivil({time->tm_year + 1900, time->tm_mon + 1, time->tm_mday, time->tm_hour, time->tm_min, 0, 0})
            .ticks;
    };
    const std::int64_t local = ticksOf(std::localtime(&seconds));
    return local - ticksOf(std::gmtime(&seconds));
}

}  // namespace basalt::embedded
