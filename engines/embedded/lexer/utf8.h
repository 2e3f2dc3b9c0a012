// Small helpers for UTF-8 text.
#pragma once

#include <cstddef>
#include <string_view>

namespace basalt::embedded {

inline constexpr std::size_t kValidUtf8 = static_cast<std::size_t>(-1);

// The offset of the first byte that does not belong to well-formed UTF-8 (overlong forms, surrogates and values above
// U+10FFFF are not well-formed); kValidUtf8 when there is none.
[[nodiscard]] std::size_t findInvalidUtf8(std::string_view text);

// Bytes of the blank that stands at the start of a valid text, 0 when there is none: Unicode's blanks outside ASCII,
// which reach statements through pasted text, and the byte order mark.
[[nodiscard]] std::size_t leadingUnicodeBlank(std::string_view text);

// Length in UTF-16 units, which is how SQL Server counts characters.
[[nodiscard]] std::size_t utf16Length(std::string_view text);

// The length of the longest prefix with at most `bytes` bytes that ends between two characters.
[[nodiscard]] std::size_t utf8Prefix(std::string_view text, std::size_t bytes);

}  // namespace basalt::embedded
