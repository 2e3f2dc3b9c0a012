// The SELECT statement, and its form that assigns variables: SELECT @v = expression, @w = @w + expression FROM ...
//
// A variable that the statement assigns changes from row to row. Where an item reads one, it is read by t_variable when
// the row is delivered; so that this happens in the order of ORDER BY, the rest is worked out and sorted first.
#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/running_values.h"

namespace basalt::embedded {

BoundSelectStatement Binder::selectStatement(const ast::SelectStatement& statement) {
    BoundSelectStatement result;
    const ast::Select& first = ast::firstSelect(*statement.query->body);
    running_.clear();
    for (const ast::SelectItem& item : first.items) {
        if (item.kind == ast::SelectItemKind::Assignment) running_.push_back({item.variable, nullptr});
    }
    result.query = query(*statement.query, nullptr);
    running_.clear();
    if (!first.into.empty()) result.into = first.into.last();
    bool reads = false;
    bool assigns = false;
    for (const ast::SelectItem& item : first.items) {
        if (item.kind != ast::SelectItemKind::Assignment) {
            reads = true;
            continue;
        }
        assigns = true;
        const SqlType* type = input_.variables == nullptr ? nullptr : input_.variables->typeOf(item.variable);
        if (type == nullptr) fail(137, "Must declare the scalar variable \"" + item.variable + "\".", item.range);
        result.assignments.push_back({item.variable, {}, *type});
    }
    if (assigns && reads) {
        fail(141,
             "A SELECT statement that assigns a value to a variable must not be combined with data-retrieval "
             "operations.",
             statement.range);
    }
    for (std::size_t i = 0; i < result.assignments.size(); ++i)
        result.assignments[i].from = result.query->columns[i].type;
    if (assigns) settleRunningValues(result, statement.range);
    return result;
}

BoundPtr Binder::runningVariable(const std::string& name, SourceRange range) {
    for (const RunningVariable& candidate : running_) {
        if (!sameName(candidate.name, name)) continue;
        if (candidate.value != nullptr) return cloned(*candidate.value);
        BoundPtr declared = variable(name, range);
        const SqlType type = declared->type;
        BoundPtr result = boundCall(kReadVariable, type, boundConstant(name, SqlType::text(TypeKind::NVarChar, 128)));
        result->nullable = true;
        return result;
    }
    return variable(name, range);
}

BoundPtr Binder::assignedItem(const ast::SelectItem& item, Scope& scope) {
    BoundPtr value = expression(*item.expression, &scope);
    if (item.op != ast::AssignmentOperator::Set) {
        value =
            operation(operatorOf(item.op), runningVariable(item.variable, item.range), std::move(value), item.range);
    }
    // Items behind this one see what it has assigned.
    for (RunningVariable& candidate : running_) {
        if (!sameName(candidate.name, item.variable) || !canClone(*value)) continue;
        candidate.value = cast(cloned(*value), variable(item.variable, item.range)->type);
    }
    return value;
}

void Binder::settleRunningValues(BoundSelectStatement& statement, SourceRange range) {
    BoundQuery& query = *statement.query;
    if (query.body->select == nullptr) return;
    BoundSelect& select = *query.body->select;
    bool reads = false;
    for (const BoundItem& item : select.items)
        reads = reads || readsRunning(*item.expression);
    if (!reads || select.from == nullptr) return;
    auto outer = std::make_unique<BoundQuery>();
    const std::string table = "v" + std::to_string(++aliases());
    const std::string alias = newAlias();
    std::vector<BoundItem> inner;
    auto outerSelect = std::make_unique<BoundSelect>();
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        const bool whole = !readsRunning(*select.items[i].expression);
        outerSelect->items.push_back({lifted(std::move(select.items[i].expression), alias, inner), {}});
        for (BoundOrdering& order : query.orderBy) {
            if (order.position != i + 1 || order.expression != nullptr) continue;
            if (!whole) unsupported("ORDER BY a variable that the statement assigns", range);
            order.position = inner.size();
        }
    }
    if (inner.empty()) inner.push_back({boundInteger(1), {}});
    select.items = std::move(inner);
    outer->columns = query.columns;
    query.columns.clear();
    for (const BoundItem& item : select.items)
        query.columns.push_back({{}, item.expression->type, true, {}});
    outerSelect->from = std::make_unique<BoundSource>();
    outerSelect->from->kind = SourceKind::CommonTable;
    outerSelect->from->alias = alias;
    outerSelect->from->table = table;
    // A limit that limits nothing keeps SQLite from dropping the order of the inner rows.
    if (query.limit == nullptr) query.limit = boundInteger(-1);
    outer->with = std::move(query.with);
    outer->with.push_back({table, std::move(statement.query), true});
    outer->body = std::make_unique<BoundBody>();
    outer->body->select = std::move(outerSelect);
    statement.query = std::move(outer);
}

}  // namespace basalt::embedded
