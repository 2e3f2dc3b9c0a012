#include "engines/embedded/lexer/utf8.h"

namespace basalt::embedded {

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

std::size_t utf8Prefix(std::string_view text, std::size_t bytes) {
    if (bytes >= text.size()) return text.size();
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U)
        --bytes;
    return bytes;
}

}  // namespace basalt::embedded
