// Comparison of texts: case does not count, accents do, ی and ي differ, trailing blanks do not count.
//
//   compareTexts("Abc  ", "aBC")   0
//
// The order is that of the Unicode collation algorithm (root order) at its second level. Expressions may ask for
// another order with COLLATE; runtime/collation_name.h knows the names.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace basalt::embedded {

// What counts when texts are compared; trailing blanks never do.
enum class TextOrder : std::uint8_t {
    Database,        // accents (CI_AS)
    Case,            // accents and case, small letters first (CS_AS)
    Letters,         // neither (CI_AI)
    LettersAndCase,  // case (CS_AI)
    Codes,           // every UTF-16 unit (BIN, BIN2)
};

// The SQLite collation that compares so.
[[nodiscard]] const char* sqliteCollation(TextOrder order);

// Negative, 0 or positive. Any bytes are accepted; both texts are UTF-8.
[[nodiscard]] int compareTexts(std::string_view a, std::string_view b);
[[nodiscard]] int compareTexts(std::string_view a, std::string_view b, TextOrder order);

// Whether two single characters (code points) are the same to the collation.
[[nodiscard]] bool sameCharacter(char32_t a, char32_t b);
[[nodiscard]] bool sameCharacter(char32_t a, char32_t b, TextOrder order);
// The one that stands for all characters that are the same.
[[nodiscard]] char32_t foldedCharacter(char32_t character);
[[nodiscard]] int compareCharacters(char32_t a, char32_t b, TextOrder order);

// Changes when a new release of the collation data may order texts differently: indexes must then be rebuilt.
[[nodiscard]] std::string collationVersion();

}  // namespace basalt::embedded
