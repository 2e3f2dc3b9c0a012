// Small helpers for the text of statements (ado/unicode.h has those that every folder needs).
#pragma once

#include <cstddef>
#include <string_view>

#include "ado/unicode.h"
#include "ado/value.h"

namespace basalt::embedded {

// Bytes of the blank that stands at the start of a valid text, 0 when there is none: Unicode's blanks outside ASCII,
// which reach statements through pasted text, and the byte order mark.
[[nodiscard]] std::size_t leadingUnicodeBlank(std::string_view text);

// The length of the longest prefix with at most `bytes` bytes that ends between two characters.
[[nodiscard]] std::size_t utf8Prefix(std::string_view text, std::size_t bytes);

}  // namespace basalt::embedded
