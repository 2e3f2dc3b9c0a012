// Characters of a text by position, counted as the server counts them: in UTF-16 units, from 1.
//
//   cutCharacters("2812345", 3, 5)   "12345"
//   cutCharacters("2812345", 6, 5)   "45"      the part that lies inside
//   cutCharacters("2812345", 0, 3)   "28"      position 0 is before the text and counts
#pragma once

#include <string>
#include <string_view>

namespace basalt {

// What SUBSTRING(text, start, count) gives: the characters of the positions start to start + count - 1 that the text
// has; empty for a count of 0 or less. A cut through a pair of units leaves U+FFFD for the half.
[[nodiscard]] std::string cutCharacters(std::string_view text, int start, int count);

// The text without blanks and control characters at either end.
[[nodiscard]] std::string_view withoutOuterBlanks(std::string_view text);

// The text in UTF-16; a byte that belongs to no character becomes U+FFFD.
[[nodiscard]] std::u16string toUtf16(std::string_view text);

}  // namespace basalt
