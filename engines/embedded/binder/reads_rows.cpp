#include "engines/embedded/binder/reads_rows.h"

#include <algorithm>

#include "engines/embedded/binder/bound_query.h"

namespace basalt::embedded {

bool holdsQuery(const BoundExpression& expression) {
    return expression.query != nullptr ||
           std::ranges::any_of(expression.arguments, [](const BoundPtr& argument) { return holdsQuery(*argument); });
}

bool readsRows(const BoundExpression& expression) {
    if (expression.query != nullptr) return true;
    if (expression.kind == BoundKind::Call && expression.name == kCallUserFunction) return true;
    return std::ranges::any_of(expression.arguments, [](const BoundPtr& argument) { return readsRows(*argument); });
}

}  // namespace basalt::embedded
