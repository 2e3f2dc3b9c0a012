#include "host/transfer/sql_literal.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "ado/names.h"

namespace basalt::host {

namespace {

// Beyond so many UTF-16 units, pieces of text that are put together with + would be cut.
constexpr std::size_t kLongestShortText = 4000;

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string textLiteral(const std::string& text) {
    std::string result;
    std::string piece;
    bool joined = false;
    const auto add = [&](const std::string& part) {
        joined = joined || !result.empty();
        result += (result.empty() ? "" : " + ") + part;
    };
    const auto endPiece = [&] {
        if (!piece.empty()) add("N'" + piece + "'");
        piece.clear();
    };
    for (const char c : text) {
        if (isControl(c)) {
            endPiece();
            add("NCHAR(" + std::to_string(static_cast<unsigned char>(c)) + ")");
            continue;
        }
        if (c == '\'') piece += '\'';
        piece += c;
    }
    endPiece();
    if (result.empty()) return "N''";
    if (joined && utf16Length(text) > kLongestShortText) return "CAST(N'' AS nvarchar(max)) + " + result;
    return result;
}

// With an exponent always, which makes it a float and not a decimal.
std::string floatLiteral(double value) {
    std::array<char, 40> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific).ptr;
    return {buffer.data(), end};
}

std::string bytesLiteral(const Bytes& bytes) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string result = "0x";
    for (const std::uint8_t byte : bytes) {
        result += digits[byte >> 4U];
        result += digits[byte & 0xFU];
    }
    return result;
}

// The digits of the fraction that a type takes at most.
int fractionDigits(std::string_view type) {
    const std::string_view base = type.substr(0, type.find('('));
    if (sameName(base, "datetime")) return 3;
    if (sameName(base, "smalldatetime")) return 0;
    return 7;
}

std::string fraction(int nanosecond, int digits) {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), ".%09d", nanosecond);
    std::string text(buffer.data(), 1 + static_cast<std::size_t>(digits));
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

// The forms that no setting of language or date order changes.
std::string dateLiteral(DateTime value, std::string_view type) {
    const int digits = fractionDigits(type);
    // To the nearest of the last digit, as a moment in three-hundredths of a second is read back.
    constexpr std::int64_t ticksOfMillisecond = 10'000;
    if (digits == 3) value.ticks = (value.ticks + ticksOfMillisecond / 2) / ticksOfMillisecond * ticksOfMillisecond;
    const CivilDateTime civil = toCivil(value);
    std::array<char, 32> day{};
    std::array<char, 32> time{};
    std::snprintf(day.data(), day.size(), "%04d-%02d-%02d", civil.year, civil.month, civil.day);
    std::snprintf(time.data(), time.size(), "%02d:%02d:%02d", civil.hour, civil.minute, civil.second);
    const std::string_view base = type.substr(0, type.find('('));
    if (sameName(base, "date")) return "'" + std::string(day.data()) + "'";
    const std::string clock = time.data() + (digits == 0 ? std::string() : fraction(civil.nanosecond, digits));
    if (sameName(base, "time")) return "'" + clock + "'";
    return "'" + std::string(day.data()) + "T" + clock + "'";
}

struct LiteralWriter {
    std::string_view type;

    std::string operator()(Null) const { return "NULL"; }
    std::string operator()(bool flag) const { return flag ? "1" : "0"; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const { return floatLiteral(number); }
    std::string operator()(const Decimal& number) const { return number.toPlainString(); }
    std::string operator()(const std::string& text) const { return textLiteral(text); }
    std::string operator()(const Bytes& bytes) const { return bytesLiteral(bytes); }
    std::string operator()(const DateTime& time) const { return dateLiteral(time, type); }
};

}  // namespace

std::string sqlLiteral(const Value& value, std::string_view type) {
    return std::visit(LiteralWriter{type}, value);
}

}  // namespace basalt::host
