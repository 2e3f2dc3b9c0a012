// T-SQL patterns: % any text, _ one character, [abc], [a-c], [^abc] one character of (not of) a set.
//
//   matchesLike("كالا 12", "%[0-9][0-9]", U'\0', true)
//
// Characters compare as in every other comparison, unless another order is asked for.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "engines/embedded/runtime/collation.h"

namespace basalt::embedded {

// `escape` is U'\0' for none. Trailing blanks of the text count only for Unicode texts.
[[nodiscard]] bool matchesLike(std::string_view text, std::string_view pattern, char32_t escape, bool unicode,
                               TextOrder order = TextOrder::Database);

// The position (in UTF-16 units, from 1) where the pattern first matches as PATINDEX defines it, 0 when it does not.
[[nodiscard]] int patternIndex(std::string_view pattern, std::string_view text, TextOrder order = TextOrder::Database);

}  // namespace basalt::embedded
