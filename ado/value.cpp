#include "ado/value.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "ado/error.h"

namespace basalt {

namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kTicksPerDay = 86'400 * kTicksPerSecond;

using Days = std::chrono::sys_days;
using CalendarDay = std::chrono::year_month_day;

// The day from which a DateTime counts.
constexpr Days kFirstDay = CalendarDay(std::chrono::year(1), std::chrono::January, std::chrono::day(1));

constexpr CalendarDay calendarDay(int year, int month, int day) {
    return {std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
            std::chrono::day(static_cast<unsigned>(day))};
}

std::string_view trimmed(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

[[noreturn]] void failConversion(const Value& value, const char* target) {
    throw DatabaseError(ErrorCategory::Conversion, "22018", 8114,
                        "the value '" + toText(value) + "' cannot be converted to " + target);
}

[[noreturn]] void failRange(const Value& value, const char* target) {
    throw DatabaseError(ErrorCategory::Conversion, "22003", 8115,
                        "the value '" + toText(value) + "' is out of range for " + target);
}

// Texts with an exponent are numbers to the variants of the platform, though not exact decimals.
std::optional<double> parseDouble(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty() || !(text.front() == '-' || text.front() == '.' || (text.front() >= '0' && text.front() <= '9'))) {
        return std::nullopt;
    }
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
    return number;
}

std::string doubleText(double number) {
    if (!std::isfinite(number)) return std::isnan(number) ? "NaN" : number > 0 ? "INF" : "-INF";
    std::array<char, 64> buffer;
    const double size = std::fabs(number);
    const bool plain = size == 0 || (size >= 1e-7 && size < 1e21);
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    return {buffer.data(), result.ptr};
}

std::string bytesText(const Bytes& bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "0x";
    text.reserve(2 + bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::string dateTimeText(DateTime value) {
    const CivilDateTime c = toCivil(value);
    std::array<char, 64> buffer;
    int length = std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02d", c.year, c.month, c.day);
    std::string text(buffer.data(), static_cast<std::size_t>(length));
    if (c.hour == 0 && c.minute == 0 && c.second == 0 && c.nanosecond == 0) return text;
    length = std::snprintf(buffer.data(), buffer.size(), " %02d:%02d:%02d", c.hour, c.minute, c.second);
    text.append(buffer.data(), static_cast<std::size_t>(length));
    if (c.nanosecond == 0) return text;
    length = std::snprintf(buffer.data(), buffer.size(), ".%07d", c.nanosecond / 100);
    std::string_view fraction(buffer.data(), static_cast<std::size_t>(length));
    // Milliseconds are what DATETIME shows; finer digits only when they say something.
    while (fraction.size() > 4 && fraction.back() == '0')
        fraction.remove_suffix(1);
    return text.append(fraction);
}

std::int64_t roundedInt64(const Value& source, Extended number) {
    const Extended rounded = std::nearbyint(number);
    // 2^63 itself does not fit; the comparison also refuses a value that is not a number.
    if (!(rounded >= -0x1p63L && rounded < 0x1p63L)) failRange(source, "bigint");
    return static_cast<std::int64_t>(rounded);
}

std::int64_t roundedInt64(const Value& source, const Decimal& number) {
    const Int128 power = powerOfTen(number.scale());
    Int128 whole = number.coefficient() / power;
    Int128 rest = number.coefficient() % power;
    const bool negative = number.coefficient() < 0;
    if (rest < 0) rest = -rest;
    const Int128 toNext = power - rest;
    if (rest > toNext || (rest == toNext && whole % 2 != 0)) whole += negative ? -1 : 1;
    if (whole < INT64_MIN || whole > INT64_MAX) failRange(source, "bigint");
    return static_cast<std::int64_t>(whole);
}

// Numbers among themselves. The variant holds no text, bytes or date here.
bool sameNumber(const Value& a, const Value& b) {
    const auto exact = [](const Value& v) -> std::optional<Decimal> {
        if (const auto* flag = std::get_if<bool>(&v)) return Decimal(*flag ? 1 : 0, 0);
        if (const auto* integer = std::get_if<std::int64_t>(&v)) return Decimal(*integer, 0);
        if (const auto* decimal = std::get_if<Decimal>(&v)) return *decimal;
        return std::nullopt;
    };
    const auto left = exact(a);
    const auto right = exact(b);
    if (left && right) return *left == *right;
    // 0.1 as a float equals 0.1 as a decimal: the decimal is asked for its nearest float.
    const double x = left ? left->toDouble() : std::get<double>(a);
    const double y = right ? right->toDouble() : std::get<double>(b);
    return x == y;
}

bool isNumber(const Value& value) {
    return std::holds_alternative<bool>(value) || std::holds_alternative<std::int64_t>(value) ||
           std::holds_alternative<double>(value) || std::holds_alternative<Decimal>(value);
}

// Reads exactly `count` digits, or nullopt.
std::optional<int> takeDigits(std::string_view& text, std::size_t count) {
    if (text.size() < count) return std::nullopt;
    int number = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (text[i] < '0' || text[i] > '9') return std::nullopt;
        number = number * 10 + (text[i] - '0');
    }
    text.remove_prefix(count);
    return number;
}

bool takeChar(std::string_view& text, char c) {
    if (text.empty() || text.front() != c) return false;
    text.remove_prefix(1);
    return true;
}

bool parseTime(std::string_view& text, CivilDateTime& civil) {
    const auto hour = takeDigits(text, 2);
    if (!hour || *hour > 23 || !takeChar(text, ':')) return false;
    const auto minute = takeDigits(text, 2);
    if (!minute || *minute > 59) return false;
    civil.hour = *hour;
    civil.minute = *minute;
    if (!takeChar(text, ':')) return true;
    const auto second = takeDigits(text, 2);
    if (!second || *second > 59) return false;
    civil.second = *second;
    if (!takeChar(text, '.')) return true;
    int unit = 100'000'000;
    if (text.empty()) return false;
    while (!text.empty() && text.front() >= '0' && text.front() <= '9' && unit >= 100) {
        civil.nanosecond += (text.front() - '0') * unit;
        unit /= 10;
        text.remove_prefix(1);
    }
    return true;
}

}  // namespace

DateTime fromCivil(const CivilDateTime& civil) {
    const std::int64_t seconds = civil.hour * 3600LL + civil.minute * 60LL + civil.second;
    const std::int64_t days = (Days(calendarDay(civil.year, civil.month, civil.day)) - kFirstDay).count();
    return {days * kTicksPerDay + seconds * kTicksPerSecond + civil.nanosecond / 100};
}

CivilDateTime toCivil(DateTime value) {
    std::int64_t days = value.ticks / kTicksPerDay;
    std::int64_t rest = value.ticks % kTicksPerDay;
    if (rest < 0) {
        rest += kTicksPerDay;
        --days;
    }
    const CalendarDay date(kFirstDay + std::chrono::days(days));
    CivilDateTime civil;
    civil.day = static_cast<int>(static_cast<unsigned>(date.day()));
    civil.month = static_cast<int>(static_cast<unsigned>(date.month()));
    civil.year = static_cast<int>(date.year());
    const std::int64_t seconds = rest / kTicksPerSecond;
    civil.hour = static_cast<int>(seconds / 3600);
    civil.minute = static_cast<int>(seconds / 60 % 60);
    civil.second = static_cast<int>(seconds % 60);
    civil.nanosecond = static_cast<int>(rest % kTicksPerSecond * 100);
    return civil;
}

std::optional<DateTime> parseDateTime(std::string_view text) {
    text = trimmed(text);
    CivilDateTime civil;
    const auto year = takeDigits(text, 4);
    if (!year || *year < 1) return std::nullopt;
    const char separator = text.empty() ? '\0' : text.front();
    const bool separated = separator == '-' || separator == '/';
    if (separated) text.remove_prefix(1);
    const auto month = takeDigits(text, 2);
    if (!month || *month < 1 || *month > 12 || (separated && !takeChar(text, separator))) return std::nullopt;
    const auto day = takeDigits(text, 2);
    if (!day || !calendarDay(*year, *month, *day).ok()) return std::nullopt;
    civil.year = *year;
    civil.month = *month;
    civil.day = *day;
    if (!text.empty() && ((!takeChar(text, ' ') && !takeChar(text, 'T')) || !parseTime(text, civil))) {
        return std::nullopt;
    }
    if (!text.empty()) return std::nullopt;
    return fromCivil(civil);
}

std::string toText(const Value& value) {
    switch (value.index()) {
        case 1:
            return std::get<bool>(value) ? "True" : "False";
        case 2:
            return std::to_string(std::get<std::int64_t>(value));
        case 3:
            return doubleText(std::get<double>(value));
        case 4:
            return std::get<Decimal>(value).toString();
        case 5:
            return std::get<std::string>(value);
        case 6:
            return bytesText(std::get<Bytes>(value));
        case 7:
            return dateTimeText(std::get<DateTime>(value));
        default:
            return {};
    }
}

std::int64_t toInt64(const Value& value) {
    if (isNull(value)) return 0;
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
    if (const auto* number = std::get_if<double>(&value)) return roundedInt64(value, static_cast<Extended>(*number));
    if (const auto* decimal = std::get_if<Decimal>(&value)) return roundedInt64(value, *decimal);
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (const auto decimal = Decimal::parse(*text)) return roundedInt64(value, *decimal);
        if (const auto number = parseDouble(*text)) return roundedInt64(value, static_cast<Extended>(*number));
    }
    failConversion(value, "an integer");
}

Extended toExtended(const Value& value) {
    if (isNull(value)) return 0;
    if (const auto* number = std::get_if<double>(&value)) return static_cast<Extended>(*number);
    if (const auto* decimal = std::get_if<Decimal>(&value)) return decimal->toExtended();
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return static_cast<Extended>(*integer);
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (const auto decimal = Decimal::parse(*text)) return decimal->toExtended();
        if (const auto number = parseDouble(*text)) return static_cast<Extended>(*number);
    }
    failConversion(value, "a number");
}

bool toBool(const Value& value) {
    if (isNull(value)) return false;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag;
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer != 0;
    if (const auto* number = std::get_if<double>(&value)) return *number != 0;
    if (const auto* decimal = std::get_if<Decimal>(&value)) return decimal->coefficient() != 0;
    if (const auto* text = std::get_if<std::string>(&value)) {
        const std::string_view word = trimmed(*text);
        const auto is = [&](std::string_view other) {
            if (word.size() != other.size()) return false;
            for (std::size_t i = 0; i < word.size(); ++i) {
                if ((word[i] | 0x20) != other[i]) return false;
            }
            return true;
        };
        if (is("true")) return true;
        if (is("false") || word.empty()) return false;
        if (const auto decimal = Decimal::parse(word)) return decimal->coefficient() != 0;
    }
    failConversion(value, "a truth value");
}

Decimal toDecimal(const Value& value) {
    if (isNull(value)) return {};
    if (const auto* decimal = std::get_if<Decimal>(&value)) return *decimal;
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return {*integer, 0};
    if (const auto* flag = std::get_if<bool>(&value)) return {*flag ? 1 : 0, 0};
    std::optional<double> number;
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (const auto decimal = Decimal::parse(*text)) return *decimal;
        number = parseDouble(*text);
    } else if (const auto* real = std::get_if<double>(&value)) {
        number = *real;
    }
    if (!number) failConversion(value, "a decimal");
    // The shortest text that reads back as the same float is the number its writer meant: 0.1 stays 0.1.
    std::array<char, 400> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), *number, std::chars_format::fixed);
    const std::string_view digits(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
    if (result.ec == std::errc()) {
        if (const auto decimal = Decimal::parse(digits)) return *decimal;
    }
    if (const auto decimal = Decimal::fromExtended(static_cast<Extended>(*number), kMaxDecimalDigits)) return *decimal;
    failRange(value, "decimal");
}

bool sameValue(const Value& a, const Value& b) {
    if (isNumber(a) && isNumber(b)) return sameNumber(a, b);
    return a.index() == b.index() && a == b;
}

std::size_t utf16Length(std::string_view text) {
    std::size_t units = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        // Continuation bytes count nothing; a lead byte of four stands for a surrogate pair.
        if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

}  // namespace basalt
