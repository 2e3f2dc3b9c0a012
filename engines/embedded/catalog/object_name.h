// Names of objects as texts carry them: "dbo.CostLevel", "[dbo].[Cost Level]", "tempdb..#t".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace basalt::embedded {

// The last part, without brackets, quotes and trailing blanks.
[[nodiscard]] std::string objectPart(std::string_view name);

// Whether a table of that name lives in the session only. Table variables are kept under such names.
[[nodiscard]] inline bool isTemporaryName(std::string_view name) {
    return name.starts_with('#');
}

// The name of the table that is kept for a table variable; no two of them are the same.
[[nodiscard]] std::string variableTableName(std::uint64_t number, std::string_view variable);
// The table as messages name it: "@t" for a table variable, and otherwise its name.
[[nodiscard]] std::string_view shownTable(std::string_view name);
// With database and schema: "basalt.dbo.T", "tempdb.dbo.#t".
[[nodiscard]] std::string shownPlace(std::string_view name);

}  // namespace basalt::embedded
