// The words of T-SQL.
#pragma once

#include <cstdint>
#include <string_view>

#include "engines/embedded/parser/keyword_list.h"

namespace basalt::embedded {

#define BASALT_KEYWORD_NAME(name, spelling) name,
enum class Keyword : std::uint16_t { None, BASALT_SQL_KEYWORDS(BASALT_KEYWORD_NAME, BASALT_KEYWORD_NAME) };
#undef BASALT_KEYWORD_NAME

// The keyword of that spelling in any letter case, None when there is none.
[[nodiscard]] Keyword findKeyword(std::string_view word);
[[nodiscard]] bool isReserved(Keyword keyword);
// In capitals; empty for None.
[[nodiscard]] std::string_view spelling(Keyword keyword);

}  // namespace basalt::embedded
