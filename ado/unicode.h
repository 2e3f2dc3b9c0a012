// UTF-8 texts, counted as SQL Server counts: in UTF-16 units (value.h has the length).
//
//   utf16Offset("سلام", 2)   4, the byte where the third unit begins
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace basalt {

inline constexpr std::size_t kValidUtf8 = static_cast<std::size_t>(-1);

// The offset of the first byte that does not belong to well-formed UTF-8 (overlong forms, surrogates and values above
// U+10FFFF are not well-formed); kValidUtf8 when there is none.
[[nodiscard]] std::size_t findInvalidUtf8(std::string_view text);

// The code point at `offset`, which moves behind it. A byte that starts no character reads as U+FFFD, one byte long.
[[nodiscard]] char32_t nextCharacter(std::string_view text, std::size_t& offset);

// The byte offset of the `units`-th UTF-16 unit, the size of the text when there are fewer. A position inside a
// surrogate pair counts as the one before the pair.
[[nodiscard]] std::size_t utf16Offset(std::string_view text, std::int64_t units);

}  // namespace basalt
