#include "engines/embedded/binder/running_values.h"

namespace basalt::embedded {

namespace {

BoundPtr asItem(BoundPtr expression, const std::string& alias, std::vector<BoundItem>& inner) {
    auto column = std::make_unique<BoundExpression>();
    column->kind = BoundKind::Column;
    column->type = expression->type;
    column->nullable = expression->nullable;
    column->ownCollation = expression->ownCollation;
    column->order = expression->order;
    column->collation = expression->collation;
    column->table = alias;
    inner.push_back({std::move(expression), {}});
    column->name = "c" + std::to_string(inner.size());
    return column;
}

// `chosen`: the expression stands in a CASE, where it is worked out for some rows only and may fail for the others.
BoundPtr lifted(BoundPtr expression, const std::string& alias, std::vector<BoundItem>& inner, bool chosen) {
    if (expression->kind == BoundKind::Constant || expression->kind == BoundKind::Slot) return expression;
    const bool reads = readsRunning(*expression);
    if (reads && expression->name == kReadVariable) return expression;
    const bool whole = expression->arguments.empty() || expression->query != nullptr || expression->over != nullptr ||
                       expression->kind == BoundKind::Aggregate;
    if (!reads && (!chosen || whole)) return asItem(std::move(expression), alias, inner);
    chosen = chosen || expression->kind == BoundKind::Case;
    for (BoundPtr& argument : expression->arguments)
        argument = lifted(std::move(argument), alias, inner, chosen);
    return expression;
}

}  // namespace

bool readsRunning(const BoundExpression& expression) {
    if (expression.kind == BoundKind::Call && expression.name == kReadVariable) return true;
    for (const BoundPtr& argument : expression.arguments) {
        if (readsRunning(*argument)) return true;
    }
    return false;
}

BoundPtr lifted(BoundPtr expression, const std::string& alias, std::vector<BoundItem>& inner) {
    return lifted(std::move(expression), alias, inner, false);
}

}  // namespace basalt::embedded
