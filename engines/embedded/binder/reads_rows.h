// What reads rows while a statement runs.
//
// A change has to see every table as it was before it. SQLite works out subqueries when a row first needs them and
// functions for each row anew, and by then it may have changed other rows.
#pragma once

#include "engines/embedded/binder/bound_expression.h"

namespace basalt::embedded {

// t_call('name', arguments...): the value of a user's function, which reads through statements of its own.
inline constexpr const char* kCallUserFunction = "t_call";

[[nodiscard]] bool holdsQuery(const BoundExpression& expression);
// Whether the expression holds a query or calls a user's function.
[[nodiscard]] bool readsRows(const BoundExpression& expression);

}  // namespace basalt::embedded
