#include "engines/embedded/lexer/utf8.h"

#include <cstdint>
#include <cstring>

namespace basalt::embedded {

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

std::size_t leadingUnicodeBlank(std::string_view text) {
    const auto at = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    switch (at(0)) {
        case 0xC2:  // no-break space, next line
            return at(1) == 0xA0 || at(1) == 0x85 ? 2 : 0;
        case 0xE1:  // ogham space mark
            return at(1) == 0x9A && at(2) == 0x80 ? 3 : 0;
        case 0xE2:
            // the typographic spaces, line and paragraph separator, narrow no-break space, mathematical space
            if (at(1) == 0x80) {
                return (at(2) >= 0x80 && at(2) <= 0x8A) || at(2) == 0xA8 || at(2) == 0xA9 || at(2) == 0xAF ? 3 : 0;
            }
            return at(1) == 0x81 && at(2) == 0x9F ? 3 : 0;
        case 0xE3:  // ideographic space
            return at(1) == 0x80 && at(2) == 0x80 ? 3 : 0;
        case 0xEF:  // byte order mark
            return at(1) == 0xBB && at(2) == 0xBF ? 3 : 0;
        default:
            return 0;
    }
}

std::size_t utf16Length(std::string_view text) {
    std::size_t length = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (!isContinuation(byte)) length += byte >= 0xF0 ? 2 : 1;
    }
    return length;
}

std::size_t utf8Prefix(std::string_view text, std::size_t bytes) {
    if (bytes >= text.size()) return text.size();
    while (bytes > 0 && isContinuation(static_cast<unsigned char>(text[bytes])))
        --bytes;
    return bytes;
}

}  // namespace basalt::embedded
