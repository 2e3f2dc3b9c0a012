// Common tables: their columns, and those that name themselves.
#include <algorithm>
#include <functional>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/reads_rows.h"
#include "engines/embedded/binder/type_rules.h"

namespace basalt::embedded {

namespace {

// The queries between UNION ALL, in their order.
void collectParts(const ast::QueryBody& body, std::vector<const ast::QueryBody*>& parts) {
    const ast::QueryBody* at = &body;
    std::vector<const ast::QueryBody*> behind;
    while (at->kind == ast::QueryBodyKind::SetOperation &&
           ast::as<ast::SetOperation>(*at).op == ast::SetOperator::UnionAll) {
        behind.push_back(ast::as<ast::SetOperation>(*at).right.get());
        at = ast::as<ast::SetOperation>(*at).left.get();
    }
    parts.push_back(at);
    for (auto part = behind.rbegin(); part != behind.rend(); ++part) {
        if ((*part)->kind == ast::QueryBodyKind::SetOperation) {
            collectParts(**part, parts);
        } else {
            parts.push_back(*part);
        }
    }
}

// Where a FROM names the common table: by which aliases of sources, and whether elsewhere too.
struct Naming {
    std::vector<std::string> aliases;
    bool inOuterJoin = false;
    bool inDerivedTable = false;
    bool inCondition = false;
};

void findNaming(const BoundSource* source, const std::string& table, bool outer, Naming& found) {
    if (source == nullptr) return;
    const RowReading reading = RowReading::ofCommonTable(table);
    if (source->kind == SourceKind::CommonTable && source->table == table) {
        found.aliases.push_back(source->alias);
        found.inOuterJoin = found.inOuterJoin || outer;
    }
    if (source->query != nullptr && reading.in(*source->query)) found.inDerivedTable = true;
    if (source->condition != nullptr && reading.in(*source->condition)) found.inCondition = true;
    // OUTER APPLY is a left join too, and may stand behind the table.
    const bool applies = source->right != nullptr && source->right->kind == SourceKind::Rows;
    const bool within = outer || (source->join == "LEFT JOIN" && !applies) || source->join == "FULL JOIN";
    findNaming(source->left.get(), table, within, found);
    findNaming(source->right.get(), table, within, found);
}

bool hasWindow(const BoundExpression& expression) {
    return expression.over != nullptr ||
           std::ranges::any_of(expression.arguments, [](const BoundPtr& argument) { return hasWindow(*argument); });
}

void append(BoundBody& body, const std::function<BoundPtr()>& value) {
    if (body.select != nullptr) {
        body.select->items.push_back({value(), {}});
        return;
    }
    append(*body.left, value);
    append(*body.right, value);
}

}  // namespace

std::vector<SourceColumn> Binder::columnsOf(const ast::CommonTableExpression& table,
                                            const std::vector<OutputColumn>& outputs) const {
    if (!table.columns.empty() && table.columns.size() != outputs.size()) {
        fail(table.columns.size() > outputs.size() ? 8158 : 8159,
             "'" + table.name.text + "' has a different number of columns than were specified in the column list.",
             table.range);
    }
    std::vector<SourceColumn> columns;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        SourceColumn column{outputs[i], "c" + std::to_string(i + 1)};
        if (!table.columns.empty()) column.shown.name = table.columns[i].text;
        if (column.shown.name.empty()) {
            fail(8155,
                 "No column name was specified for column " + std::to_string(i + 1) + " of '" + table.name.text + "'.",
                 table.range);
        }
        for (const SourceColumn& other : columns) {
            if (!sameName(other.shown.name, column.shown.name)) continue;
            fail(8156,
                 "The column '" + column.shown.name + "' was specified multiple times for '" + table.name.text + "'.",
                 table.range);
        }
        columns.push_back(std::move(column));
    }
    return columns;
}

void Binder::requireRepeatable(const BoundBody& part, const ast::QueryBody& written, const std::string& sqlName,
                               const std::string& name) const {
    if (part.select == nullptr) unsupported("recursion within EXCEPT, INTERSECT or UNION", written.range);
    const BoundSelect& select = *part.select;
    const std::string ofTable = " the recursive part of a recursive common table expression '" + name + "'.";
    Naming naming;
    findNaming(select.from.get(), sqlName, false, naming);
    if (naming.inCondition || RowReading::ofCommonTable(sqlName).inExpressions(select))
        fail(465, "Recursive references are not allowed in subqueries.", written.range);
    if (naming.aliases.size() > 1 || (naming.inDerivedTable && !naming.aliases.empty())) {
        fail(253, "Recursive member of a common table expression '" + name + "' has multiple recursive references.",
             written.range);
    }
    if (naming.aliases.empty()) unsupported("recursion within a derived table", written.range);
    if (naming.inOuterJoin) fail(462, "Outer join is not allowed in" + ofTable, written.range);
    if (select.distinct) fail(460, "DISTINCT operator is not allowed in" + ofTable, written.range);
    if (select.limit != nullptr) fail(461, "The TOP or OFFSET operator is not allowed in" + ofTable, written.range);
    if (select.aggregated || !select.groupBy.empty() || select.having != nullptr)
        fail(467, "GROUP BY, HAVING, or aggregate functions are not allowed in" + ofTable, written.range);
    if (std::ranges::any_of(select.items, [](const BoundItem& item) { return hasWindow(*item.expression); }))
        unsupported("a window function in the recursive part of a common table expression", written.range);
}

std::unique_ptr<BoundQuery> Binder::unionOfParts(const ast::CommonTableExpression& table, const std::string& sqlName) {
    std::vector<const ast::QueryBody*> written;
    collectParts(*table.query->body, written);
    Scope none(nullptr);
    std::vector<OutputColumn> columns;
    std::vector<std::unique_ptr<BoundBody>> parts;
    commonTables_.push_back({table.name.text, sqlName, {}, kNoAnchor});
    parts.push_back(part(*written.front(), &none, columns));
    commonTables_.back() = {table.name.text, sqlName, columnsOf(table, columns)};
    const RowReading reading = RowReading::ofCommonTable(sqlName);
    std::size_t anchors = 1;
    for (std::size_t i = 1; i < written.size(); ++i) {
        const SourceRange range = table.query->body->range;
        std::vector<OutputColumn> own;
        parts.push_back(part(*written[i], &none, own));
        requireSameCount(columns, own, range);
        const bool repeated = reading.in(*parts.back());
        if (repeated) requireRepeatable(*parts.back(), *written[i], sqlName, table.name.text);
        if (!repeated && anchors < i) {
            fail(247,
                 "An anchor member was found in the recursive part of recursive query \"" + table.name.text + "\".",
                 written[i]->range);
        }
        for (std::size_t c = 0; c < columns.size(); ++c) {
            OutputColumn& column = columns[c];
            const bool differs = column.type != own[c].type && !column.type.isNull() && !own[c].type.isNull();
            if (repeated && differs) {
                fail(240,
                     "Types don't match between the anchor and the recursive part in column \"" +
                         commonTables_.back().columns[c].shown.name + "\" of recursive query \"" + table.name.text +
                         "\".",
                     range);
            }
            const SqlType common = commonType(column.type, own[c].type);
            refuseClash(column.type, common, range);
            refuseClash(own[c].type, common, range);
            column.type = common;
            column.nullable = column.nullable || own[c].nullable;
            column.base.reset();
        }
        if (repeated) continue;
        ++anchors;
        commonTables_.back().columns = columnsOf(table, columns);
    }
    // More of them would be grouped, and what repeats stand inside of a group.
    constexpr std::size_t kMostRepeated = 400;
    if (anchors < parts.size() && parts.size() > kMostRepeated) {
        unsupported("recursion in a UNION ALL of more than " + std::to_string(kMostRepeated) + " queries",
                    table.query->body->range);
    }
    settleNulls(columns);
    for (const auto& each : parts)
        convertColumns(*each, columns);
    commonTables_.back().columns = columnsOf(table, columns);

    auto query = std::make_unique<BoundQuery>();
    query->columns = std::move(columns);
    if (anchors < parts.size() && maxRecursion_ != 0) {
        // A column behind the others counts how deep a row is.
        const SqlType type = SqlType::of(TypeKind::Int);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            Naming naming;
            if (i >= anchors) findNaming(parts[i]->select->from.get(), sqlName, false, naming);
            append(*parts[i], [&]() -> BoundPtr {
                if (naming.aliases.empty()) return boundInteger(0);
                auto depth = std::make_unique<BoundExpression>();
                depth->kind = BoundKind::Column;
                depth->type = type;
                depth->table = naming.aliases.front();
                depth->name = "c" + std::to_string(query->columns.size() + 1);
                return boundCall("t_depth", type, std::move(depth), boundInteger(maxRecursion_));
            });
        }
        query->columns.push_back({{}, type, false, {}});
    }
    query->body = std::move(parts.front());
    for (std::size_t i = 1; i < parts.size(); ++i) {
        auto both = std::make_unique<BoundBody>();
        both->operation = "UNION ALL";
        both->left = std::move(query->body);
        both->right = std::move(parts[i]);
        query->body = std::move(both);
    }
    return query;
}

void Binder::commonTables(const std::vector<ast::CommonTableExpression>& with, std::vector<BoundCommonTable>& into) {
    for (const ast::CommonTableExpression& table : with) {
        if (std::any_of(with.data(), &table, [&](const ast::CommonTableExpression& other) {
                return sameName(other.name.text, table.name.text);
            })) {
            fail(239, "Duplicate common table expression name '" + table.name.text + "' was specified.", table.range);
        }
        BoundCommonTable bound;
        bound.name = "w" + std::to_string(++aliases());
        const ast::QueryBody& body = *table.query->body;
        // What orders or cuts all rows is no part, and nothing that could be repeated.
        const bool whole = !table.query->orderBy.empty() || table.query->offset != nullptr ||
                           table.query->fetch != nullptr || table.query->forXml;
        if (!whole && body.kind == ast::QueryBodyKind::SetOperation &&
            ast::as<ast::SetOperation>(body).op == ast::SetOperator::UnionAll) {
            bound.query = unionOfParts(table, bound.name);
        } else {
            Scope none(nullptr);
            commonTables_.push_back({table.name.text, bound.name, {}, kNoUnion});
            bound.query = query(*table.query, &none);
            commonTables_.back() = {table.name.text, bound.name, columnsOf(table, bound.query->columns)};
        }
        into.push_back(std::move(bound));
    }
}

}  // namespace basalt::embedded
