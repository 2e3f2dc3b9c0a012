// Keys by the names that people give them: "F3", "Enter", "Ctrl+C".
#pragma once

#include <Qt>
#include <optional>
#include <string>

namespace basalt::host {

// One key with its modifiers; nullopt when there is none of that name.
[[nodiscard]] std::optional<QKeyCombination> keyNamed(const std::string& name);

}  // namespace basalt::host
