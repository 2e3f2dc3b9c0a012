// What a half-written word of a statement can become.
//
//   completions("costl", schema)        CostLevel
//   completions("CostLevel.N", schema)  CostLevel.Name
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ado/schema.h"

namespace basalt::cli {

// Names of tables, views, procedures, functions and columns, and T-SQL's words, that begin with `word` without regard
// to case; behind "table." the columns of that table, behind "dbo." objects. Names that need brackets come in them. By
// name, each once; nothing for an empty word.
[[nodiscard]] std::vector<std::string> completions(std::string_view word, const DatabaseSchema& schema);

}  // namespace basalt::cli
