// Names of tables, columns, fields and parameters compare without regard to case, in every script.
//
//   sameName("CostType", "costtype")     true
#pragma once

#include <string>
#include <string_view>

namespace basalt {

// True when the UTF-8 names differ at most in case (simple case folding, one character to one).
[[nodiscard]] bool sameName(std::string_view a, std::string_view b);
// The folded form: equal for two names exactly when sameName is true. For keys of maps.
[[nodiscard]] std::string foldName(std::string_view name);
// The name between brackets, with ] doubled: [Name].
[[nodiscard]] std::string quotedName(std::string_view name);

}  // namespace basalt
