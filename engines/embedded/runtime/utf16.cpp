#include "engines/embedded/runtime/utf16.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <vector>

namespace basalt::embedded {

void appendCharacter(std::string& text, char32_t character) {
    std::uint8_t bytes[4];
    std::int32_t length = 0;
    UBool failed = false;
    U8_APPEND(bytes, length, 4, static_cast<UChar32>(character), failed);
    if (!failed) text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string_view utf16Substring(std::string_view text, std::int64_t start, std::int64_t length) {
    if (start < 0) {
        length += start;
        start = 0;
    }
    if (length <= 0) return {};
    const std::size_t begin = utf16Offset(text, start);
    text.remove_prefix(begin);
    return text.substr(0, utf16Offset(text, length));
}

Bytes utf16Bytes(std::string_view text) {
    Bytes bytes;
    bytes.reserve(text.size() * 2);
    const auto append = [&bytes](char32_t unit) {
        bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    };
    for (std::size_t offset = 0; offset < text.size();) {
        const auto character = static_cast<UChar32>(nextCharacter(text, offset));
        if (character <= 0xFFFF) {
            append(static_cast<char32_t>(character));
        } else {
            append(U16_LEAD(character));
            append(U16_TRAIL(character));
        }
    }
    return bytes;
}

std::string textOfUtf16(const Bytes& bytes) {
    std::vector<char16_t> units;
    units.reserve((bytes.size() + 1) / 2);
    for (std::size_t i = 0; i < bytes.size(); i += 2)
        units.push_back(static_cast<char16_t>(bytes[i] | (i + 1 < bytes.size() ? bytes[i + 1] << 8 : 0)));
    std::string text;
    for (std::size_t i = 0; i < units.size();) {
        UChar32 character = 0;
        U16_NEXT_OR_FFFD(units.data(), i, units.size(), character);
        appendCharacter(text, static_cast<char32_t>(character));
    }
    return text;
}

namespace {

template <typename Map>
std::string mapped(std::string_view text, Map map) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t offset = 0; offset < text.size();)
        appendCharacter(result, map(nextCharacter(text, offset)));
    return result;
}

}  // namespace

std::string upperCase(std::string_view text) {
    return mapped(text, [](char32_t c) { return static_cast<char32_t>(u_toupper(static_cast<UChar32>(c))); });
}

std::string lowerCase(std::string_view text) {
    return mapped(text, [](char32_t c) { return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c))); });
}

}  // namespace basalt::embedded
