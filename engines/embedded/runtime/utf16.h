// Parts of UTF-8 texts, counted as SQL Server counts: in UTF-16 units (lexer/utf8.h has the length).
//
//   utf16Substring("سلام", 1, 2)        "لا"
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ado/value.h"

namespace basalt::embedded {

// The code point at `offset`, which moves behind it. A byte that starts no character reads as U+FFFD, one byte long.
[[nodiscard]] char32_t nextCharacter(std::string_view text, std::size_t& offset);
void appendCharacter(std::string& text, char32_t character);

[[nodiscard]] bool isAscii(std::string_view text);
// The byte offset of the `units`-th UTF-16 unit, the size of the text when there are fewer. A position inside a
// surrogate pair counts as the one before the pair.
[[nodiscard]] std::size_t utf16Offset(std::string_view text, std::int64_t units);
// `start` counts from 0. Both may be out of range.
[[nodiscard]] std::string_view utf16Substring(std::string_view text, std::int64_t start, std::int64_t length);

// The units in memory as a server keeps them, the low byte first.
[[nodiscard]] Bytes utf16Bytes(std::string_view text);
// The other way round. Half a surrogate pair becomes U+FFFD; a last byte without its second one counts as a unit.
[[nodiscard]] std::string textOfUtf16(const Bytes& bytes);

[[nodiscard]] std::string upperCase(std::string_view text);
[[nodiscard]] std::string lowerCase(std::string_view text);

}  // namespace basalt::embedded
