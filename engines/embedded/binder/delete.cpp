// DELETE.
#include "engines/embedded/binder/binder.h"

namespace basalt::embedded {

BoundDelete Binder::remove(const ast::DeleteStatement& statement) {
    BoundDelete result;
    const std::size_t visible = commonTables_.size();
    commonTables(statement.with, result.with);
    Scope scope(nullptr);
    if (statement.from.empty() && !statement.top) {
        result.table = &target(statement.target);
        result.alias = newAlias();
        scope.sources.push_back(targetSource(
            *result.table, statement.target.variable.empty() ? result.table->name : statement.target.variable,
            result.alias));
        if (statement.where != nullptr) result.where = condition(*statement.where, &scope);
    } else {
        auto rows = std::make_unique<BoundSelect>();
        if (statement.from.empty()) {
            result.table = &target(statement.target);
            rows->from = tableSource(*result.table, result.table->name, scope, statement.target.range);
            result.alias = rows->from->alias;
        } else {
            rows->from = from(statement.from, scope);
            result.table = &targetIn(statement.target, statement.from, scope, result.alias, *rows);
            if (!scope.owns(result.alias)) {
                scope.sources.push_back(targetSource(*result.table, result.table->name, result.alias));
            }
        }
        if (statement.where != nullptr) rows->where = condition(*statement.where, &scope);
        addKey(*result.table, result.alias, *rows, statement.target.range);
        result.rows = std::make_unique<BoundQuery>();
        if (statement.top) limitChange(*result.rows, *statement.top);
        result.rows->body = std::make_unique<BoundBody>();
        result.rows->body->select = std::move(rows);
    }
    outputs(statement.output, *result.table, true, result.returning, result.outputs);
    commonTables_.resize(visible);
    return result;
}

}  // namespace basalt::embedded
