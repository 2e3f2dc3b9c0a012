// What INSERT, UPDATE and DELETE have in common: their target and OUTPUT.
#include <algorithm>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/reads_rows.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

const Table& Binder::target(const ast::TableTarget& target) {
    if (!target.variable.empty()) {
        const std::string name =
            input_.variables == nullptr ? std::string() : input_.variables->tableOf(target.variable);
        if (name.empty()) fail(1087, "Must declare the table variable \"" + target.variable + "\".", target.range);
        return catalog_.requireTable(name);
    }
    if (commonTable(target.name) != nullptr)
        unsupported("changing rows through the common table expression " + target.name.last(), target.range);
    if (const Table* table = catalog_.table(target.name.last())) return *table;
    if (catalog_.module(target.name.last()) != nullptr) {
        unsupported("changing rows through the view " + target.name.last(), target.range);
    }
    fail(error::kInvalidObject, "Invalid object name '" + target.name.last() + "'.", target.range);
}

ScopeSource Binder::targetSource(const Table& table, const std::string& name, const std::string& sqlAlias) {
    ScopeSource source{name, sqlAlias, {}};
    for (const TableColumn& column : table.columns) {
        source.columns.push_back(
            {{column.name, column.type, column.nullable, BaseColumn{table.name, column.name, column.identity}},
             sqlQuoted(column.name)});
    }
    return source;
}

void Binder::limitChange(BoundQuery& query, const ast::TopClause& top) {
    if (top.withTies) unsupported("WITH TIES here", top.range);
    query.percent = top.percent;
    query.limit = top.percent ? rowPercent(*top.count) : rowLimit(*top.count, nullptr);
}

void Binder::outputs(const std::optional<ast::OutputClause>& clause, const Table& table, const char* shown,
                     std::vector<BoundItem>& items, std::vector<OutputColumn>& columns) {
    if (!clause) return;
    Scope scope(nullptr);
    // Without an alias: RETURNING names the columns of the changed table alone.
    scope.sources.push_back(targetSource(table, shown, ""));
    outputs(*clause, scope, items, columns);
}

void Binder::outputs(const ast::OutputClause& clause, Scope& scope, std::vector<BoundItem>& items,
                     std::vector<OutputColumn>& columns) {
    const auto add = [&](BoundPtr value, std::string name) {
        relyOnLength(*value);
        columns.push_back(
            {name, value->type, value->nullable, value->kind == BoundKind::Column ? value->base : std::nullopt});
        items.push_back({std::move(value), std::move(name)});
    };
    for (const ast::SelectItem& item : clause.items) {
        if (item.kind == ast::SelectItemKind::Star) {
            const auto source = std::ranges::find_if(scope.sources, [&](const ScopeSource& each) {
                return !item.qualifier.empty() && sameName(item.qualifier.last(), each.name);
            });
            if (source == scope.sources.end())
                unsupported("OUTPUT of other than " + scope.sources.back().name + " columns", item.range);
            for (const SourceColumn& column : source->columns) {
                auto value = std::make_unique<BoundExpression>();
                value->kind = BoundKind::Column;
                value->type = column.shown.type;
                value->nullable = column.shown.nullable;
                value->table = source->sqlAlias;
                value->name = column.sqlName;
                value->ownCollation = column.ownCollation;
                value->order = column.shown.order;
                value->base = column.shown.base;
                add(std::move(value), column.shown.name);
            }
            continue;
        }
        std::string name = item.alias.text;
        if (const auto* column = ast::tryAs<ast::ColumnExpression>(item.expression.get());
            column != nullptr && name.empty()) {
            name = column->name.last();
        }
        BoundPtr value = expression(*item.expression, &scope);
        if (holdsQuery(*value)) fail(10705, "Subqueries are not allowed in the OUTPUT clause.", item.range);
        add(std::move(value), std::move(name));
    }
}

bool Binder::showsOthers(const std::optional<ast::OutputClause>& output, std::string_view side) const {
    if (!output) return false;
    const std::string text = foldName(input_.text.substr(output->range.begin, output->range.size()));
    for (std::size_t point = text.find('.'); point != std::string::npos; point = text.find('.', point + 1)) {
        std::string_view before = std::string_view(text).substr(0, point);
        if (before.ends_with(']')) before.remove_suffix(1);
        if (!before.ends_with(side)) return true;
    }
    return false;
}

bool Binder::showsMoreThanInserted(const ast::UpdateStatement& statement) const {
    if (!statement.output) return false;
    // A word that is something else costs no more than the longer way.
    const SourceRange range = statement.output->range;
    return foldName(input_.text.substr(range.begin, range.size())).find("deleted") != std::string::npos ||
           (!statement.from.empty() && showsOthers(statement.output, "inserted"));
}

const Table& Binder::targetAmong(const ast::TableTarget& target, const std::vector<ast::TableSourcePtr>& sources,
                                 Scope& scope, std::string& sqlAlias, BoundSelect& select) {
    select.from = from(sources, scope);
    const Table& table = targetIn(target, scope, sqlAlias, select);
    if (!scope.owns(sqlAlias)) scope.sources.push_back(targetSource(table, table.name, sqlAlias));
    return table;
}

const Table& Binder::targetIn(const ast::TableTarget& target, const Scope& scope, std::string& sqlAlias,
                              BoundSelect& select) {
    // The target is an alias or a table of FROM, or else a table of its own that every row of FROM meets.
    const std::string name = target.variable.empty() ? target.name.last() : target.variable;
    for (const ScopeSource& source : scope.sources) {
        if (!sameName(source.name, name)) continue;
        if (!source.derivation.empty()) unsupported("changing rows through the " + source.derivation, target.range);
        for (const SourceColumn& column : source.columns) {
            if (!column.shown.base) continue;
            sqlAlias = source.sqlAlias;
            return catalog_.requireTable(column.shown.base->table);
        }
    }
    const Table& table = this->target(target);
    const ScopeSource* found = nullptr;
    for (const ScopeSource& source : scope.sources) {
        if (!source.derivation.empty() || source.columns.empty() || !source.columns[0].shown.base ||
            !sameName(source.columns[0].shown.base->table, table.name)) {
            continue;
        }
        if (found != nullptr) fail(8154, "The table '" + table.name + "' is ambiguous.", target.range);
        found = &source;
    }
    if (found != nullptr) {
        sqlAlias = found->sqlAlias;
        return table;
    }
    auto own = std::make_unique<BoundSource>();
    own->kind = SourceKind::Table;
    own->alias = sqlAlias = newAlias();
    own->table = table.sqlName();
    auto cross = std::make_unique<BoundSource>();
    cross->kind = SourceKind::Join;
    cross->join = "CROSS JOIN";
    cross->left = std::move(own);
    cross->right = std::move(select.from);
    select.from = std::move(cross);
    return table;
}

namespace {

// SQLite does not tell the number of a table's row through the brackets of a join.
bool standsFree(const BoundSource& source, const std::string& alias) {
    if (source.kind != SourceKind::Join) return source.alias == alias;
    if (source.join == "FULL JOIN") return false;
    return standsFree(*source.left, alias) ||
           (source.right->kind != SourceKind::Join && standsFree(*source.right, alias));
}

}  // namespace

void Binder::addKey(const Table& table, const std::string& sqlAlias, BoundSelect& select, SourceRange range) {
    const auto add = [&](const std::string& name, const SqlType& type) {
        auto column = std::make_unique<BoundExpression>();
        column->kind = BoundKind::Column;
        column->type = type;
        column->table = sqlAlias;
        column->name = name;
        column->ownCollation = true;
        select.items.push_back({std::move(column), {}});
    };
    if (!table.rowNumber.empty()) {
        if (!standsFree(*select.from, sqlAlias))
            unsupported("changing a table without a key inside of a FULL JOIN or of a join in brackets", range);
        add(table.rowNumber, SqlType::of(TypeKind::BigInt));
        return;
    }
    for (const std::size_t position : table.key)
        add(sqlQuoted(table.columns[position].name), table.columns[position].type);
}

}  // namespace basalt::embedded
