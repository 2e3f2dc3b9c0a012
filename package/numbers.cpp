#include "package/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "ado/error.h"

namespace basalt {

namespace {

// How many digits after the point an amount shows.
constexpr int kAmountDecimals = 9;

// From here on every extended value is a whole number, and Decimal may run out of digits.
constexpr Extended kAllWhole = 0x1p64L;

struct Symbol {
    std::string_view text;  // UTF-8
    char reads = 0;         // '0' to '9', '.' or ','
};

// What the keyboards of the customers produce for digits and separators besides ASCII. Digits follow each other in
// Unicode, so their last bytes do too.
constexpr std::array<Symbol, 3> kSeparators{{{"٫", '.'}, {"٬", ','}, {"،", ','}}};
constexpr std::string_view kPersianZero = "۰";
constexpr std::string_view kArabicZero = "٠";

// The ASCII character that the text begins with the equivalent of, and how many bytes it takes; 0 when it is none.
struct Reading {
    char character = 0;
    std::size_t bytes = 0;
};

Reading readDigit(std::string_view text, std::string_view zero) {
    if (text.size() < zero.size() || text[0] != zero[0]) return {};
    const int digit = static_cast<unsigned char>(text[1]) - static_cast<unsigned char>(zero[1]);
    if (digit < 0 || digit > 9) return {};
    return {static_cast<char>('0' + digit), zero.size()};
}

Reading read(std::string_view text) {
    const char first = text.front();
    if ((first >= '0' && first <= '9') || first == '.' || first == ',') return {first, 1};
    for (const Symbol& separator : kSeparators) {
        if (text.starts_with(separator.text)) return {separator.reads, separator.text.size()};
    }
    const Reading persian = readDigit(text, kPersianZero);
    return persian.bytes != 0 ? persian : readDigit(text, kArabicZero);
}

bool isBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// Digits with at most one point between them and no sign, as from_chars reads them; empty when the text is no number.
std::string plainDigits(std::string_view text) {
    std::string plain;
    bool fraction = false;
    bool afterSeparator = false;
    while (!text.empty()) {
        const Reading reading = read(text);
        if (reading.bytes == 0) return {};
        text.remove_prefix(reading.bytes);
        if (isDigit(reading.character)) {
            plain += reading.character;
            afterSeparator = false;
            continue;
        }
        // A separator of either kind stands between two digits of the integer part, or right after its last one.
        if (plain.empty() || fraction || afterSeparator) return {};
        if (reading.character == '.') {
            fraction = true;
            plain += '.';
        }
        afterSeparator = true;
    }
    if (afterSeparator) return {};
    return plain;
}

[[noreturn]] void failConversion(std::string_view text) {
    throw DatabaseError(ErrorCategory::Conversion, "22018", 8114, "'" + std::string(text) + "' is not a number");
}

}  // namespace

std::string FloatToStr_VRO(Extended value) {
    if (!std::isfinite(value)) throw UsageError("an amount must be a finite number");
    if (std::fabs(value) < kAllWhole) return Decimal::fromExtended(value, kAmountDecimals)->toPlainString();
    const int size = std::snprintf(nullptr, 0, "%.0Lf", value);
    std::string text(static_cast<std::size_t>(size) + 1, '\0');
    std::snprintf(text.data(), text.size(), "%.0Lf", value);
    text.pop_back();
    return text;
}

Extended StrToFloat_VRO(std::string_view text) {
    std::string_view rest = trimmed(text);
    bool negative = false;
    if (!rest.empty() && (rest.front() == '-' || rest.front() == '+')) {
        negative = rest.front() == '-';
        rest.remove_prefix(1);
    }
    const std::string plain = plainDigits(rest);
    if (plain.empty()) failConversion(text);
    Extended value = 0;
    const auto [end, error] =
        std::from_chars(plain.data(), plain.data() + plain.size(), value, std::chars_format::fixed);
    if (error == std::errc::result_out_of_range) {
        // Too small to tell from 0 is 0; too large is no amount.
        if (plain.find_first_of("123456789") < plain.find('.')) failConversion(text);
        value = 0;
    } else if (error != std::errc{} || end != plain.data() + plain.size()) {
        failConversion(text);
    }
    return negative && value != 0 ? -value : value;
}

Value VarIsNull_VRO(const Value& value) {
    return isNull(value) ? Value{std::int64_t{0}} : value;
}

std::string QuotedStr(std::string_view text) {
    std::string quoted;
    quoted.reserve(text.size() + 2);
    quoted += '\'';
    for (const char character : text) {
        if (character == '\'') quoted += '\'';
        quoted += character;
    }
    quoted += '\'';
    return quoted;
}

std::string Format(std::string_view pattern, std::initializer_list<std::string> arguments) {
    std::string text;
    const auto* next = arguments.begin();
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '%') {
            text += pattern[i];
            continue;
        }
        const char kind = ++i < pattern.size() ? pattern[i] : '\0';
        if (kind == '%') {
            text += '%';
        } else if (kind != 'd' && kind != 's') {
            throw UsageError("a pattern knows %d, %s and %% only: " + std::string(pattern));
        } else if (next == arguments.end()) {
            throw UsageError("too few texts for the pattern " + std::string(pattern));
        } else {
            text += *next++;
        }
    }
    if (next != arguments.end()) throw UsageError("too many texts for the pattern " + std::string(pattern));
    return text;
}

}  // namespace basalt
