// Names of objects as texts carry them: "dbo.CostLevel", "[dbo].[Cost Level]", "tempdb..#t".
#pragma once

#include <string>
#include <string_view>

namespace basalt::embedded {

// The last part, without brackets, quotes and trailing blanks.
[[nodiscard]] std::string objectPart(std::string_view name);

// Whether a table of that name lives in the session only. Table variables are kept under such names.
[[nodiscard]] inline bool isTemporaryName(std::string_view name) {
    return name.starts_with('#');
}

}  // namespace basalt::embedded
