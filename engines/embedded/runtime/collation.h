// Comparison of texts: case does not count, accents do, ی and ي differ, trailing blanks do not count.
//
//   compareTexts("Abc  ", "aBC")   0
//
// The order is that of the Unicode collation algorithm (root order) at its second level.
#pragma once

#include <string>
#include <string_view>

namespace basalt::embedded {

// Negative, 0 or positive. Any bytes are accepted; both texts are UTF-8.
[[nodiscard]] int compareTexts(std::string_view a, std::string_view b);

// Whether two single characters (code points) are the same to the collation.
[[nodiscard]] bool sameCharacter(char32_t a, char32_t b);
// The one that stands for all characters that are the same.
[[nodiscard]] char32_t foldedCharacter(char32_t character);
[[nodiscard]] int compareCharacters(char32_t a, char32_t b);

// Changes when a new release of the collation data may order texts differently: indexes must then be rebuilt.
[[nodiscard]] std::string collationVersion();

}  // namespace basalt::embedded
