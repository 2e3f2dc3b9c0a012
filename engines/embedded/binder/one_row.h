// Whether a change can touch one row at the most.
#pragma once

#include "engines/embedded/binder/bound_expression.h"
#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

// True when the condition is a conjunction that compares every column of the table's primary key for equality with a
// value that does not depend on rows. Null stands for no condition.
[[nodiscard]] bool pinsOneRow(const BoundExpression* where, const Table& table, std::string_view alias);

}  // namespace basalt::embedded
