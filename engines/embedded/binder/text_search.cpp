// LIKE over columns whose texts are kept in pieces: which rows come into question is looked up by what the pattern
// says.
#include <algorithm>

#include "engines/embedded/binder/binder.h"

namespace basalt::embedded {

namespace {

const BoundSource* tableWith(const BoundSource& source, const std::string& alias) {
    if (source.kind == SourceKind::Table) return source.alias == alias ? &source : nullptr;
    // The tables of a FULL JOIN are read before its conditions.
    if (source.kind != SourceKind::Join || source.join == "FULL JOIN") return nullptr;
    const BoundSource* found = tableWith(*source.left, alias);
    return found != nullptr ? found : tableWith(*source.right, alias);
}

bool isColumnOf(const BoundExpression& expression, const std::string& alias) {
    return expression.kind == BoundKind::Column && expression.table == alias;
}

// A column of the source that has to have a certain value finds fewer rows than a text inside of another does.
bool isFixed(const std::vector<BoundExpression*>& conditions, const std::string& alias) {
    return std::any_of(conditions.begin(), conditions.end(), [&](const BoundExpression* condition) {
        return condition->kind == BoundKind::Infix && condition->name == "=" &&
               (isColumnOf(*condition->arguments[0], alias) || isColumnOf(*condition->arguments[1], alias));
    });
}

void addConditions(BoundExpression& expression, std::vector<BoundExpression*>& into) {
    if (expression.kind != BoundKind::Infix || expression.name != "AND") {
        into.push_back(&expression);
        return;
    }
    for (const BoundPtr& part : expression.arguments)
        addConditions(*part, into);
}

bool isLike(const BoundExpression& condition) {
    if (condition.kind != BoundKind::Call || condition.name != "t_like") return false;
    const BoundExpression& escape = *condition.arguments[2];
    return condition.arguments[0]->kind == BoundKind::Column && condition.arguments[0]->base &&
           condition.arguments[1]->kind == BoundKind::Slot && escape.kind == BoundKind::Constant &&
           std::holds_alternative<std::string>(escape.value) && std::get<std::string>(escape.value).empty();
}

}  // namespace

void Binder::findTextSearches(BoundSelect& select) {
    if (select.where == nullptr || select.from == nullptr) return;
    std::vector<BoundExpression*> conditions;
    addConditions(*select.where, conditions);
    for (BoundExpression* condition : conditions) {
        if (!isLike(*condition)) continue;
        const BoundExpression& column = *condition->arguments[0];
        const BoundSource* source = tableWith(*select.from, column.table);
        if (source == nullptr || isFixed(conditions, column.table)) continue;
        const Table* table = catalog_.table(column.base->table);
        if (table == nullptr || table->sqlName() != source->table) continue;
        const auto position = static_cast<std::size_t>(table->find(column.base->column));
        if (std::find(table->searched.begin(), table->searched.end(), position) == table->searched.end()) continue;
        condition->search = std::make_unique<BoundTextSearch>();
        condition->search->pieces = "main." + sqlQuoted(piecesTable(table->name, table->columns[position].name));
        for (const std::size_t key : table->key)
            condition->search->key.push_back(column.table + "." + sqlQuoted(table->columns[key].name));
    }
}

}  // namespace basalt::embedded
