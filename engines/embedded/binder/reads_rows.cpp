#include "engines/embedded/binder/reads_rows.h"

#include <algorithm>

namespace basalt::embedded {

bool holdsQuery(const BoundExpression& expression) {
    return expression.query != nullptr ||
           std::ranges::any_of(expression.arguments, [](const BoundPtr& argument) { return holdsQuery(*argument); });
}

RowReading RowReading::ofCommonTable(std::string name) {
    RowReading reading(std::move(name));
    reading.common_ = true;
    return reading;
}

bool RowReading::in(const BoundExpression& expression) const {
    if (expression.kind == BoundKind::Call && expression.name == kCallUserFunction && !common_) return true;
    return in(expression.arguments) || (expression.query != nullptr && in(*expression.query)) ||
           (expression.over != nullptr && in(*expression.over));
}

bool RowReading::in(const std::vector<BoundPtr>& expressions) const {
    return std::ranges::any_of(expressions, [&](const BoundPtr& expression) { return in(expression); });
}

bool RowReading::in(const BoundOver& over) const {
    return in(over.partitionBy) ||
           std::ranges::any_of(over.orderBy, [&](const BoundOrder& order) { return in(order.expression); });
}

bool RowReading::in(const BoundQuery& query) const {
    return std::ranges::any_of(query.with, [&](const BoundCommonTable& table) { return in(*table.query); }) ||
           in(*query.body) ||
           std::ranges::any_of(query.orderBy, [&](const BoundOrdering& order) { return in(order.expression); }) ||
           in(query.limit) || in(query.offset);
}

bool RowReading::in(const BoundBody& body) const {
    if (body.select == nullptr) return in(*body.left) || in(*body.right);
    return (body.select->from != nullptr && in(*body.select->from)) || inExpressions(*body.select);
}

bool RowReading::inExpressions(const BoundSelect& select) const {
    return std::ranges::any_of(select.items, [&](const BoundItem& item) { return in(item.expression); }) ||
           in(select.where) || in(select.groupBy) || in(select.having) || in(select.limit);
}

bool RowReading::in(const BoundSource& source) const {
    switch (source.kind) {
        case SourceKind::Table:
            return !common_ && source.table == table_;
        case SourceKind::CommonTable:
            return common_ && source.table == table_;
        case SourceKind::Query:
            return in(*source.query);
        case SourceKind::Values:
            return std::ranges::any_of(source.rows, [&](const std::vector<BoundPtr>& row) { return in(row); });
        case SourceKind::Join:
            return in(*source.left) || in(*source.right) || in(source.condition);
        case SourceKind::Rows:
            return (source.query == nullptr ? !common_ : in(*source.query)) || in(source.arguments);
    }
    return true;
}

bool readsChanged(const std::string& table, const std::vector<BoundCommonTable>& with,
                  const std::vector<BoundPtr>& values, const BoundExpression* condition) {
    const RowReading reading(table);
    const bool common =
        std::ranges::any_of(with, [&](const BoundCommonTable& each) { return reading.in(*each.query); });
    const auto reads = [&](const BoundExpression& expression) {
        return reading.in(expression) || (common && holdsQuery(expression));
    };
    return (condition != nullptr && reads(*condition)) ||
           std::ranges::any_of(values, [&](const BoundPtr& value) { return reads(*value); });
}

}  // namespace basalt::embedded
