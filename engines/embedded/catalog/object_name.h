// Names of objects as texts carry them: "dbo.CostLevel", "[dbo].[Cost Level]", "tempdb..#t".
#pragma once

#include <string>
#include <string_view>

namespace basalt::embedded {

// The last part, without brackets, quotes and trailing blanks.
[[nodiscard]] std::string objectPart(std::string_view name);

}  // namespace basalt::embedded
