// Parts of UTF-8 texts, counted as SQL Server counts: in UTF-16 units (ado/unicode.h has length and offset).
//
//   utf16Substring("سلام", 1, 2)        "لا"
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ado/unicode.h"
#include "ado/value.h"

namespace basalt::embedded {

void appendCharacter(std::string& text, char32_t character);

[[nodiscard]] bool isAscii(std::string_view text);
// `start` counts from 0. Both may be out of range.
[[nodiscard]] std::string_view utf16Substring(std::string_view text, std::int64_t start, std::int64_t length);

// The units in memory as a server keeps them, the low byte first.
[[nodiscard]] Bytes utf16Bytes(std::string_view text);
// The other way round. Half a surrogate pair becomes U+FFFD; a last byte without its second one counts as a unit.
[[nodiscard]] std::string textOfUtf16(const Bytes& bytes);

[[nodiscard]] std::string upperCase(std::string_view text);
[[nodiscard]] std::string lowerCase(std::string_view text);

}  // namespace basalt::embedded
