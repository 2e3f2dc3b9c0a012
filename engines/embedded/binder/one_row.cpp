#include "engines/embedded/binder/one_row.h"

#include <algorithm>

namespace basalt::embedded {

namespace {

bool isValue(const BoundExpression& expression) {
    return expression.kind == BoundKind::Slot || expression.kind == BoundKind::Constant;
}

bool isColumn(const BoundExpression& expression, std::string_view alias, std::string_view name) {
    return expression.kind == BoundKind::Column && expression.depth == 0 && expression.table == alias &&
           expression.name == name;
}

bool pins(const BoundExpression& condition, std::string_view alias, std::string_view name) {
    if (condition.kind != BoundKind::Infix) return false;
    if (condition.name == "AND") {
        return std::ranges::any_of(condition.arguments,
                                   [&](const BoundPtr& argument) { return pins(*argument, alias, name); });
    }
    if (condition.name != "=" || condition.arguments.size() != 2) return false;
    const BoundExpression& left = *condition.arguments[0];
    const BoundExpression& right = *condition.arguments[1];
    return (isColumn(left, alias, name) && isValue(right)) || (isColumn(right, alias, name) && isValue(left));
}

}  // namespace

bool pinsOneRow(const BoundExpression* where, const Table& table, std::string_view alias) {
    return where != nullptr && !table.key.empty() && std::ranges::all_of(table.key, [&](std::size_t position) {
               return pins(*where, alias, sqlQuoted(table.columns[position].name));
           });
}

}  // namespace basalt::embedded
