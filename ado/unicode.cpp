#include "ado/unicode.h"

#include <unicode/utf8.h>

#include <cstring>

namespace basalt {

namespace {

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

// Length of the well-formed sequence at `p`, 0 when there is none.
std::size_t sequenceLength(const unsigned char* p, std::size_t left) {
    const unsigned char first = p[0];
    if (first < 0x80) return 1;
    if (first < 0xC2) return 0;
    if (first < 0xE0) return left >= 2 && isContinuation(p[1]) ? 2 : 0;
    if (first < 0xF0) {
        if (left < 3 || !isContinuation(p[1]) || !isContinuation(p[2])) return 0;
        if (first == 0xE0 && p[1] < 0xA0) return 0;   // overlong
        if (first == 0xED && p[1] >= 0xA0) return 0;  // surrogate
        return 3;
    }
    if (first > 0xF4 || left < 4 || !isContinuation(p[1]) || !isContinuation(p[2]) || !isContinuation(p[3])) return 0;
    if (first == 0xF0 && p[1] < 0x90) return 0;
    if (first == 0xF4 && p[1] >= 0x90) return 0;
    return 4;
}

}  // namespace

std::size_t findInvalidUtf8(std::string_view text) {
    const auto* const begin = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t size = text.size();
    std::size_t at = 0;
    while (at < size) {
        // Statements are mostly ASCII: eight bytes at a time while the high bits are clear.
        while (at + 8 <= size) {
            std::uint64_t word = 0;
            std::memcpy(&word, begin + at, 8);
            if (word & 0x8080808080808080ULL) break;
            at += 8;
        }
        if (at >= size) break;
        const std::size_t length = sequenceLength(begin + at, size - at);
        if (length == 0) return at;
        at += length;
    }
    return kValidUtf8;
}

char32_t nextCharacter(std::string_view text, std::size_t& offset) {
    const auto first = static_cast<unsigned char>(text[offset]);
    if (first < 0x80) {
        ++offset;
        return first;
    }
    auto at = static_cast<std::int32_t>(offset);
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(reinterpret_cast<const std::uint8_t*>(text.data()), at, static_cast<std::int32_t>(text.size()),
                    character);
    offset = static_cast<std::size_t>(at);
    return static_cast<char32_t>(character);
}

std::size_t utf16Offset(std::string_view text, std::int64_t units) {
    std::size_t offset = 0;
    while (offset < text.size() && units > 0) {
        std::size_t next = offset;
        units -= nextCharacter(text, next) > 0xFFFF ? 2 : 1;
        if (units < 0) break;
        offset = next;
    }
    return offset;
}

}  // namespace basalt
