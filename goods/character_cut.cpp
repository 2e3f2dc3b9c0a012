#include "goods/character_cut.h"

#include <cstdint>

namespace basalt {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr char32_t kReplacementCharacter = 0xFFFD;

bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The bytes of the first character with whatever continues it, so that every byte of any text belongs to one.
std::size_t characterBytes(std::string_view text) {
    std::size_t bytes = 1;
    while (bytes < text.size() && continues(text[bytes]))
        ++bytes;
    return bytes;
}

// As utf16Length counts them.
int unitsOf(std::string_view character) {
    if (continues(character.front())) return 0;
    return static_cast<unsigned char>(character.front()) >= 0xF0 ? 2 : 1;
}

// U+FFFD for bytes that are no character.
char32_t codePoint(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length != character.size()) return kReplacementCharacter;
    char32_t code = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (const char byte : character.substr(1))
        code = (code << 6) | (static_cast<unsigned char>(byte) & 0x3FU);
    const bool longer = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool none = code > 0x10FFFF || (code >= 0xD800 && code < 0xE000);
    return longer || none ? kReplacementCharacter : code;
}

}  // namespace

std::string cutCharacters(std::string_view text, int start, int count) {
    const std::int64_t end = std::int64_t{start} + count;  // the position after the cut
    std::string cut;
    if (count <= 0) return cut;
    std::int64_t position = 1;
    while (!text.empty() && position < end) {
        const std::string_view character = text.substr(0, characterBytes(text));
        const std::int64_t after = position + unitsOf(character);
        if (position >= start && after <= end) {
            cut += character;
        } else if (after > start) {
            cut += kReplacement;
        }
        position = after;
        text.remove_prefix(character.size());
    }
    return cut;
}

std::string_view withoutOuterBlanks(std::string_view text) {
    const auto blank = [](char byte) { return static_cast<unsigned char>(byte) <= ' '; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    while (!text.empty()) {
        const std::string_view character = text.substr(0, characterBytes(text));
        const char32_t code = codePoint(character);
        if (code >= 0x10000) {
            units += static_cast<char16_t>(0xD7C0 + (code >> 10));
            units += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        } else {
            units += static_cast<char16_t>(code);
        }
        text.remove_prefix(character.size());
    }
    return units;
}

}  // namespace basalt
