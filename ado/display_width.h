// Columns that a character takes where every character has the same width: a terminal, a row of marks below a text.
//
//   displayWidth(U'ی')   1        displayWidth(U'本')   2        displayWidth(U'\u200C')   0
#pragma once

#include <cstddef>

namespace basalt {

// 0 for marks on other letters and for characters that nobody sees, 2 for wide ones, else 1.
[[nodiscard]] std::size_t displayWidth(char32_t character);

}  // namespace basalt
