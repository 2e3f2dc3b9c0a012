// Blanks at the end of a text, which do not count where texts compare as a server compares them.
//
//   withoutTrailingBlanks("Ali  ")     "Ali"
#pragma once

#include <string_view>

namespace basalt {

// A view of the same characters. Of blanks (U+0020) alone nothing is left; other white space stays.
[[nodiscard]] constexpr std::string_view withoutTrailingBlanks(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace basalt
