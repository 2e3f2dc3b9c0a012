// The names that COLLATE takes.
//
//   collationNamed("Persian_100_CS_AS").order     TextOrder::Case
//
// Names of languages whose order is not the root order of Unicode are known, and have no order here.
#pragma once

#include <optional>
#include <string_view>

#include "engines/embedded/runtime/collation.h"

namespace basalt::embedded {

struct NamedCollation {
    bool known = false;              // whether a server has it
    std::optional<TextOrder> order;  // nothing when this engine does not
};

[[nodiscard]] NamedCollation collationNamed(std::string_view name);

}  // namespace basalt::embedded
