#include "engines/embedded/binder/row_by_row.h"

#include <utility>

#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/running_values.h"

namespace basalt::embedded {

BoundPtr RowByRow::key(std::size_t index, const SqlType& type) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Slot;
    result->type = type;
    result->slot.source = Slot::Source::Row;
    result->slot.index = static_cast<std::uint32_t>(index);
    result->slot.from = result->slot.to = type;
    return result;
}

BoundPtr RowByRow::add(BoundPtr value, const SqlType& type) {
    values_.push_back(std::move(value));
    return key(keys_ + values_.size() - 1, type);
}

void RowByRow::supply(BoundPtr& shown) {
    if (shown->kind == BoundKind::Column && !shown->table.empty()) {
        const SqlType type = shown->type;
        const auto order = shown->order;
        const auto collation = shown->collation;
        shown = add(std::move(shown), type);
        shown->order = order;
        shown->collation = collation;
        return;
    }
    for (BoundPtr& argument : shown->arguments)
        supply(argument);
}

RowByRow Binder::rowsOf(const Table& table, const std::string& alias, std::unique_ptr<BoundSelect> select,
                        SourceRange range) {
    addKey(table, alias, *select, range);
    const std::size_t keys = select->items.size();
    return {std::move(select), keys};
}

std::unique_ptr<BoundQuery> Binder::readFirst(RowByRow&& rows, std::vector<BoundCommonTable> with,
                                              const std::optional<ast::TopClause>& top, bool joined) {
    BoundSelect& inner = rows.select();
    // An outer join may have rows without one of the table, which are none to change.
    if (joined) {
        auto exists = std::make_unique<BoundExpression>();
        exists->kind = BoundKind::Postfix;
        exists->type = SqlType::of(TypeKind::Bit);
        exists->nullable = false;
        exists->name = "IS NOT NULL";
        exists->arguments.push_back(cloned(*inner.items.front().expression));
        inner.where = inner.where == nullptr
                          ? std::move(exists)
                          : boundInfix("AND", SqlType::of(TypeKind::Bit), std::move(inner.where), std::move(exists));
    }

    // What depends on the row alone is worked out and sorted first.
    auto query = std::make_unique<BoundQuery>();
    query->with = std::move(with);
    auto select = std::make_unique<BoundSelect>();
    const std::string rowsName = "v" + std::to_string(++aliases());
    const std::string alias = newAlias();
    for (std::size_t i = 0; i < rows.keys(); ++i) {
        auto key = cloned(*inner.items[i].expression);
        key->table = alias;
        key->name = "c" + std::to_string(i + 1);
        select->items.push_back({std::move(key), {}});
        query->orderBy.push_back({i + 1, nullptr, false});
        // A row that FROM meets several times changes once.
        if (joined) inner.groupBy.push_back(cloned(*inner.items[i].expression));
    }
    for (BoundPtr& value : rows.values()) {
        const bool assigns = value->kind == BoundKind::Call && value->name == kAssignVariable;
        BoundPtr& item = assigns ? value->arguments[1] : value;
        item = lifted(std::move(item), alias, inner.items);
        select->items.push_back({std::move(value), {}});
    }
    for (const BoundItem& item : inner.items)
        query->columns.push_back({{}, item.expression->type, true, {}});
    // A limit that limits nothing keeps SQLite from dropping the order of the inner rows.
    query->limit = boundInteger(-1);
    if (top) limitChange(*query, *top);
    query->body = std::make_unique<BoundBody>();
    query->body->select = rows.takeSelect();

    auto outer = std::make_unique<BoundQuery>();
    select->from = std::make_unique<BoundSource>();
    select->from->kind = SourceKind::CommonTable;
    select->from->alias = alias;
    select->from->table = rowsName;
    outer->with = std::move(query->with);
    outer->with.push_back({rowsName, std::move(query), true});
    outer->body = std::make_unique<BoundBody>();
    outer->body->select = std::move(select);
    return outer;
}

BoundPtr Binder::isRowOf(const BoundQuery& rows, const Table& table, const std::string& alias) {
    const std::size_t keys = table.rowNumber.empty() ? table.key.size() : 1;
    BoundPtr where;
    for (std::size_t i = 0; i < keys; ++i) {
        BoundPtr key = cloned(*rows.body->select->items[i].expression);
        key->table = alias;
        key->name = table.rowNumber.empty() ? sqlQuoted(table.columns[table.key[i]].name) : table.rowNumber;
        BoundPtr item = RowByRow::key(i, key->type);
        BoundPtr same = boundInfix("=", SqlType::of(TypeKind::Bit), std::move(key), std::move(item));
        where = where == nullptr ? std::move(same)
                                 : boundInfix("AND", SqlType::of(TypeKind::Bit), std::move(where), std::move(same));
    }
    return where;
}

}  // namespace basalt::embedded
