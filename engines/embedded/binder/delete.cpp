// DELETE.
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/one_row.h"
#include "engines/embedded/binder/reads_rows.h"
#include "engines/embedded/binder/row_by_row.h"

namespace basalt::embedded {

BoundDelete Binder::remove(const ast::DeleteStatement& statement) {
    BoundDelete result;
    const std::size_t visible = commonTables_.size();
    commonTables(statement.with, result.with);
    Scope scope(nullptr);
    auto rows = std::make_unique<BoundSelect>();
    if (statement.from.empty()) {
        result.table = &target(statement.target);
        rows->from = tableSource(*result.table,
                                 statement.target.variable.empty() ? result.table->name : statement.target.variable,
                                 scope, statement.target.range);
        result.alias = rows->from->alias;
    } else {
        result.table = &targetAmong(statement.target, statement.from, scope, result.alias, *rows);
    }
    if (!statement.from.empty() && showsOthers(statement.output, "deleted")) {
        RowByRow each = rowsOf(*result.table, result.alias, std::move(rows), statement.target.range);
        Scope shown = scope.without(result.alias);
        shown.sources.push_back(targetSource(*result.table, "deleted", ""));
        outputs(*statement.output, shown, result.returning, result.outputs);
        for (BoundItem& item : result.returning)
            each.supply(item.expression);
        if (statement.where != nullptr) each.select().where = condition(*statement.where, &scope);
        result.byRow = readFirst(std::move(each), std::move(result.with), statement.top, true);
        result.with.clear();
        result.where = isRowOf(*result.byRow, *result.table, result.alias);
        commonTables_.resize(visible);
        return result;
    }
    BoundPtr where = statement.where == nullptr ? nullptr : condition(*statement.where, &scope);
    // A row alone is read before it goes; of several the later ones would miss the earlier ones.
    const bool seesItself = readsChanged(result.table->sqlName(), result.with, {}, where.get()) &&
                            !pinsOneRow(where.get(), *result.table, result.alias);
    if (statement.from.empty() && !statement.top && !seesItself) {
        result.where = std::move(where);
    } else {
        rows->where = std::move(where);
        addKey(*result.table, result.alias, *rows, statement.target.range);
        result.rows = std::make_unique<BoundQuery>();
        if (statement.top) limitChange(*result.rows, *statement.top);
        result.rows->body = std::make_unique<BoundBody>();
        result.rows->body->select = std::move(rows);
    }
    outputs(statement.output, *result.table, "deleted", result.returning, result.outputs);
    commonTables_.resize(visible);
    return result;
}

}  // namespace basalt::embedded
