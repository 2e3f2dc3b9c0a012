#include "host/services/script_lines.h"

#include "ado/error.h"

namespace basalt::host {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

void append(std::string& text, char32_t character) {
    const auto add = [&](char32_t bits) { text += static_cast<char>(static_cast<unsigned char>(bits)); };
    const auto addRest = [&](int shift) { add(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0 | (character >> 6));
        addRest(0);
    } else if (character < 0x10000) {
        add(0xE0 | (character >> 12));
        addRest(6);
        addRest(0);
    } else {
        add(0xF0 | (character >> 18));
        addRest(12);
        addRest(6);
        addRest(0);
    }
}

bool isHigh(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

[[noreturn]] void throwMalformed() {
    throw UsageError("the script is not well-formed UTF-16");
}

}  // namespace

bool ScriptLines::next(std::string& line) {
    line.clear();
    if (!begun_) begin(line);
    return encoding_ == Encoding::Utf8 ? nextUtf8(line) : nextUtf16(line);
}

void ScriptLines::begin(std::string& line) {
    begun_ = true;
    // One byte at a time, and no more than can still be a mark: behind a pipe nothing else may be there yet.
    const auto mayBe = [&](std::string_view mark) { return mark.starts_with(line); };
    while (mayBe(kUtf8Mark) || mayBe(kLittleMark) || mayBe(kBigMark)) {
        const bool whole = line == kUtf8Mark || line == kLittleMark || line == kBigMark;
        if (whole) {
            encoding_ = line == kLittleMark ? Encoding::Utf16Little
                        : line == kBigMark  ? Encoding::Utf16Big
                                            : Encoding::Utf8;
            line.clear();
            return;
        }
        const int byte = script_.get();
        if (byte == std::istream::traits_type::eof()) return;
        line += static_cast<char>(byte);
    }
}

bool ScriptLines::nextUtf8(std::string& line) {
    if (line.ends_with('\n')) return true;
    std::string rest;
    if (!std::getline(script_, rest)) return !line.empty();
    line += rest;
    if (!script_.eof()) line += '\n';
    return true;
}

bool ScriptLines::nextUtf16(std::string& line) {
    while (const std::optional<char16_t> unit = nextUnit()) {
        char32_t character = *unit;
        if (isLow(character)) throwMalformed();
        if (isHigh(character)) {
            const std::optional<char16_t> low = nextUnit();
            if (!low || !isLow(*low)) throwMalformed();
            character = 0x10000 + ((character - 0xD800) << 10) + (static_cast<char32_t>(*low) - 0xDC00);
        }
        append(line, character);
        if (character == '\n') return true;
    }
    return !line.empty();
}

std::optional<char16_t> ScriptLines::nextUnit() {
    const int first = script_.get();
    if (first == std::istream::traits_type::eof()) return std::nullopt;
    const int second = script_.get();
    if (second == std::istream::traits_type::eof()) throwMalformed();
    return static_cast<char16_t>(encoding_ == Encoding::Utf16Little ? first | (second << 8) : (first << 8) | second);
}

}  // namespace basalt::host
