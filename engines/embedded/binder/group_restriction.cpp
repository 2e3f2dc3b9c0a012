// FROM (q) AS l JOIN (SELECT g, SUM(x) FROM t GROUP BY g) AS r ON l.a = r.g: only groups that some row of l asks for
// are needed. Without being told, the database works out all of them.
//
// q becomes a common table that is worked out once, and the grouped query takes only the rows with g among its a.
// Groups that go so could meet no row of l; that holds for a LEFT JOIN too, and for a g that is NULL, which is equal to
// nothing.
#include <algorithm>

#include "engines/embedded/binder/binder.h"

namespace basalt::embedded {

namespace {

bool hasWindow(const BoundExpression& expression) {
    return expression.over != nullptr || std::any_of(expression.arguments.begin(), expression.arguments.end(),
                                                     [](const BoundPtr& argument) { return hasWindow(*argument); });
}

// The SELECT of a source whose rows are one a group, whatever other groups there are; null for other sources.
BoundSelect* groupedSelect(const BoundSource& source) {
    if (source.kind != SourceKind::Query) return nullptr;
    const BoundQuery& query = *source.query;
    if (query.limit != nullptr || query.offset != nullptr || query.withTies || !query.orderBy.empty()) return nullptr;
    BoundSelect* select = query.body->select.get();
    if (select == nullptr || select->groupBy.empty() || select->limit != nullptr) return nullptr;
    for (const BoundItem& item : select->items) {
        if (hasWindow(*item.expression)) return nullptr;
    }
    return select->having != nullptr && hasWindow(*select->having) ? nullptr : select;
}

// Whether rows of the column's table can be found by it.
bool isSought(const BoundExpression& column, Catalog& catalog) {
    if (!column.base) return false;
    const Table* table = catalog.table(column.base->table);
    if (table == nullptr) return false;
    const int position = table->find(column.base->column);
    return position >= 0 && std::find(table->sought.begin(), table->sought.end(), static_cast<std::size_t>(position)) !=
                                table->sought.end();
}

bool isColumnOf(const BoundExpression& expression, const std::string& alias) {
    return expression.kind == BoundKind::Column && expression.table == alias;
}

// The grouping column of `select` that the condition sets equal to a column of the left side, and the latter.
struct Equality {
    const BoundExpression* group = nullptr;
    const BoundExpression* asked = nullptr;
};

Equality equality(const BoundExpression& condition, const BoundSource& left, const BoundSource& right,
                  const BoundSelect& select, Catalog& catalog) {
    if (condition.kind != BoundKind::Infix) return {};
    if (condition.name == "AND") {
        for (const BoundPtr& part : condition.arguments) {
            if (const Equality found = equality(*part, left, right, select, catalog); found.group != nullptr)
                return found;
        }
        return {};
    }
    if (condition.name != "=") return {};
    const BoundExpression* asked = condition.arguments[0].get();
    const BoundExpression* grouped = condition.arguments[1].get();
    if (!isColumnOf(*asked, left.alias)) std::swap(asked, grouped);
    if (!isColumnOf(*asked, left.alias) || !isColumnOf(*grouped, right.alias)) return {};
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        const BoundExpression& item = *select.items[i].expression;
        if ("c" + std::to_string(i + 1) != grouped->name || item.kind != BoundKind::Column) continue;
        for (const BoundPtr& group : select.groupBy) {
            if (group->kind == BoundKind::Column && group->table == item.table && group->name == item.name &&
                isSought(*group, catalog))
                return {group.get(), asked};
        }
    }
    return {};
}

}  // namespace

void Binder::restrictGroups(BoundSource& source, BoundQuery& query) {
    if (source.kind != SourceKind::Join) return;
    restrictGroups(*source.left, query);
    restrictGroups(*source.right, query);
    if ((source.join != "JOIN" && source.join != "LEFT JOIN") || source.condition == nullptr) return;
    BoundSource& left = *source.left;
    BoundSelect* select = groupedSelect(*source.right);
    if (select == nullptr || left.kind != SourceKind::Query) return;
    const Equality found = equality(*source.condition, left, *source.right, *select, catalog_);
    if (found.group == nullptr) return;

    auto asked = std::make_unique<BoundSelect>();
    asked->from = std::make_unique<BoundSource>();
    asked->from->kind = SourceKind::CommonTable;
    asked->from->alias = newAlias();
    asked->from->table = "w" + std::to_string(++aliases());
    BoundPtr item = cloned(*found.asked);
    item->table = asked->from->alias;

    query.with.push_back({asked->from->table, std::move(left.query), true});
    left.kind = SourceKind::CommonTable;
    left.table = asked->from->table;

    auto in = std::make_unique<BoundExpression>();
    in->kind = BoundKind::In;
    in->type = SqlType::of(TypeKind::Bit);
    in->arguments.push_back(cloned(*found.group));
    in->query = std::make_unique<BoundQuery>();
    in->query->columns.push_back({{}, item->type, item->nullable, {}});
    asked->items.push_back({std::move(item), {}});
    in->query->body = std::make_unique<BoundBody>();
    in->query->body->select = std::move(asked);
    const SqlType truth = in->type;
    select->where =
        select->where == nullptr ? std::move(in) : boundInfix("AND", truth, std::move(select->where), std::move(in));
}

}  // namespace basalt::embedded
