// The parts of a name with database and schema as a text carries it: "dbo.CostLevel", "[dbo].[Cost.Level]",
// "tempdb..#t".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace basalt::embedded {

// From left to right, without their brackets and quotes; at least one, which may be empty.
[[nodiscard]] std::vector<std::string> nameParts(std::string_view name);

}  // namespace basalt::embedded
