// Values that change while rows are delivered, because the statement assigns variables and reads them.
#pragma once

#include <string>
#include <vector>

#include "engines/embedded/binder/bound_query.h"

namespace basalt::embedded {

// t_variable('@v'): the value of the variable at that moment.
inline constexpr const char* kReadVariable = "t_variable";
// t_assign('@v', value, type): gives the variable the value, which is its result too.
inline constexpr const char* kAssignVariable = "t_assign";

// Whether the expression reads a variable at the moment of its row.
[[nodiscard]] bool readsRunning(const BoundExpression& expression);
// The expression as one over the rows `alias`, whose items `inner` it extends by what can be worked out before.
[[nodiscard]] BoundPtr lifted(BoundPtr expression, const std::string& alias, std::vector<BoundItem>& inner);

}  // namespace basalt::embedded
