// What stands in FROM: tables, views, common tables, derived tables, VALUES and joins.
#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// Views that name each other in a circle would never end.
constexpr int kDeepestViews = 32;

void makeNullable(std::vector<ScopeSource>& sources, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
        for (SourceColumn& column : sources[i].columns)
            column.shown.nullable = true;
    }
}

// All that may be named of the sources in [begin, end).
std::vector<SourceColumnName> columnNames(const std::vector<ScopeSource>& sources, std::size_t begin, std::size_t end) {
    std::vector<SourceColumnName> names;
    for (std::size_t i = begin; i < end; ++i) {
        for (const SourceColumn& column : sources[i].columns)
            names.push_back({sources[i].sqlAlias, column.sqlName});
    }
    return names;
}

}  // namespace

void Binder::addToScope(Scope& scope, ScopeSource source, SourceRange range) {
    for (const ScopeSource& other : scope.sources) {
        if (!source.name.empty() && sameName(other.name, source.name)) {
            fail(1011, "The correlation name '" + source.name + "' is specified multiple times in a FROM clause.",
                 range);
        }
    }
    scope.sources.push_back(std::move(source));
}

namespace {

std::unique_ptr<BoundSource> crossed(std::unique_ptr<BoundSource> left, std::unique_ptr<BoundSource> right) {
    auto cross = std::make_unique<BoundSource>();
    cross->kind = SourceKind::Join;
    cross->join = "CROSS JOIN";
    cross->left = std::move(left);
    cross->right = std::move(right);
    return cross;
}

// The place in a tree of joins where the sources in front of the comma before it have to stand, so that every APPLY
// finds their rows: behind the last APPLY on the way down the left sides. Null when there is none, or when it stands
// inside of a join that gives rows of its right side alone.
std::unique_ptr<BoundSource>* beforeApply(std::unique_ptr<BoundSource>& tree) {
    std::unique_ptr<BoundSource>* found = nullptr;
    for (auto* place = &tree; (*place)->kind == SourceKind::Join; place = &(*place)->left) {
        if ((*place)->join == "RIGHT JOIN" || (*place)->join == "FULL JOIN") break;
        if ((*place)->right->kind == SourceKind::Rows) found = &(*place)->left;
    }
    return found;
}

}  // namespace

std::unique_ptr<BoundSource> Binder::from(const std::vector<ast::TableSourcePtr>& sources, Scope& scope) {
    std::unique_ptr<BoundSource> result;
    for (const ast::TableSourcePtr& item : sources) {
        std::unique_ptr<BoundSource> next = source(*item, scope, scope.parent);
        if (result == nullptr) {
            result = std::move(next);
            continue;
        }
        if (std::unique_ptr<BoundSource>* place = beforeApply(next)) {
            *place = crossed(std::move(result), std::move(*place));
            result = std::move(next);
        } else {
            result = crossed(std::move(result), std::move(next));
        }
    }
    return result;
}

std::unique_ptr<BoundSource> Binder::source(const ast::TableSource& source, Scope& scope, Scope* outer) {
    using Kind = ast::TableSourceKind;
    switch (source.kind) {
        case Kind::Table:
            return namedTable(ast::as<ast::NamedTable>(source), scope);
        case Kind::Variable: {
            const auto& variable = ast::as<ast::VariableTable>(source);
            const std::string name =
                input_.variables == nullptr ? std::string() : input_.variables->tableOf(variable.name);
            if (name.empty()) fail(1087, "Must declare the table variable \"" + variable.name + "\".", source.range);
            return tableSource(catalog_.requireTable(name), source.alias.empty() ? variable.name : source.alias.text,
                               scope, source.range);
        }
        case Kind::Derived: {
            const auto& table = ast::as<ast::DerivedTable>(source);
            Scope none(outer);
            return derived(query(*table.query, &none), source, source.alias.text, scope);
        }
        case Kind::Values:
            return valuesTable(ast::as<ast::ValuesTable>(source), scope, outer);
        case Kind::Function:
            return functionTable(ast::as<ast::FunctionTable>(source), scope, outer, false);
        case Kind::Join:
            return join(ast::as<ast::Join>(source), scope, outer);
    }
    return nullptr;
}

std::unique_ptr<BoundSource> Binder::namedTable(const ast::NamedTable& source, Scope& scope) {
    const std::string& name = source.name.last();
    const std::string shown = source.alias.empty() ? name : source.alias.text;
    if (std::unique_ptr<BoundSource> system = systemTable(source, scope)) return system;
    if (const CommonTable* table = commonTable(source.name)) {
        if (table->misnamed == kNoUnion) {
            fail(kNoUnion,
                 "Recursive common table expression '" + table->name +
                     "' does not contain a top-level UNION ALL operator.",
                 source.range);
        }
        if (table->misnamed == kNoAnchor)
            fail(kNoAnchor, "No anchor member was specified for recursive query \"" + table->name + "\".",
                 source.range);
        auto result = std::make_unique<BoundSource>();
        result->kind = SourceKind::CommonTable;
        result->alias = newAlias();
        result->table = table->sqlName;
        addToScope(scope, {shown, result->alias, table->columns, "common table expression " + shown}, source.range);
        return result;
    }
    if (const Table* table = catalog_.table(name)) return tableSource(*table, shown, scope, source.range);
    if (const Module* module = catalog_.module(name); module != nullptr && module->kind == ModuleKind::View) {
        return derived(viewQuery(*module, source.range), source, shown, scope);
    }
    for (const char* table : {"sysobjects", "syscolumns", "sysindexes", "systypes", "sysusers", "syscomments"}) {
        if (sameName(name, table)) unsupported(std::string("the system table ") + table, source.name.range);
    }
    std::string full;
    for (const ast::Identifier& part : source.name.parts)
        full += (full.empty() ? "" : ".") + part.text;
    fail(error::kInvalidObject, "Invalid object name '" + full + "'.", source.name.range);
}

const Binder::CommonTable* Binder::commonTable(const ast::ObjectName& name) const {
    if (name.parts.size() != 1) return nullptr;
    for (auto table = commonTables_.rbegin(); table != commonTables_.rend(); ++table) {
        if (sameName(table->name, name.last())) return &*table;
    }
    return nullptr;
}

std::unique_ptr<BoundSource> Binder::tableSource(const Table& table, const std::string& shown, Scope& scope,
                                                 SourceRange range) {
    auto result = std::make_unique<BoundSource>();
    result->kind = SourceKind::Table;
    result->alias = newAlias();
    result->table = table.sqlName();
    ScopeSource entry{shown, result->alias, {}};
    for (const TableColumn& column : table.columns) {
        entry.columns.push_back(
            {{column.name, column.type, column.nullable, BaseColumn{table.name, column.name, column.identity}},
             sqlQuoted(column.name)});
    }
    addToScope(scope, std::move(entry), range);
    return result;
}

std::unique_ptr<BoundSource> Binder::derived(std::unique_ptr<BoundQuery> query, const ast::TableSource& source,
                                             const std::string& name, Scope& scope) {
    auto result = std::make_unique<BoundSource>();
    result->kind = SourceKind::Query;
    result->alias = newAlias();
    if (!source.columnAliases.empty() && source.columnAliases.size() != query->columns.size()) {
        fail(source.columnAliases.size() > query->columns.size() ? 8158 : 8159,
             "'" + name + "' has a different number of columns than were specified in the column list.", source.range);
    }
    const std::string_view what = source.kind == ast::TableSourceKind::Table      ? "view "
                                  : source.kind == ast::TableSourceKind::Function ? "function "
                                                                                  : "derived table ";
    ScopeSource entry{name, result->alias, {}, std::string(what) + name};
    for (std::size_t i = 0; i < query->columns.size(); ++i) {
        SourceColumn column{query->columns[i], "c" + std::to_string(i + 1)};
        if (!source.columnAliases.empty()) column.shown.name = source.columnAliases[i].text;
        if (column.shown.name.empty()) {
            fail(8155, "No column name was specified for column " + std::to_string(i + 1) + " of '" + name + "'.",
                 source.range);
        }
        for (const SourceColumn& other : entry.columns) {
            if (sameName(other.shown.name, column.shown.name)) {
                fail(8156, "The column '" + column.shown.name + "' was specified multiple times for '" + name + "'.",
                     source.range);
            }
        }
        entry.columns.push_back(std::move(column));
    }
    addToScope(scope, std::move(entry), source.range);
    result->query = std::move(query);
    return result;
}

std::unique_ptr<BoundSource> Binder::valuesTable(const ast::ValuesTable& source, Scope& scope, Scope* visible) {
    auto result = std::make_unique<BoundSource>();
    result->kind = SourceKind::Values;
    result->alias = newAlias();
    std::vector<SqlType> types(source.rows.front().size());
    for (const auto& row : source.rows) {
        if (row.size() != types.size()) {
            fail(10709, "The number of columns for each row in a table value constructor must be the same.",
                 source.range);
        }
        std::vector<BoundPtr> values;
        for (std::size_t i = 0; i < row.size(); ++i) {
            values.push_back(expression(*row[i], visible));
            relyOnLength(*values.back());
            types[i] = commonType(types[i], values.back()->type);
        }
        result->rows.push_back(std::move(values));
    }
    std::vector<BoundExpression> orders(types.size());
    for (auto& row : result->rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            takeOrder(orders[i], *row[i]);
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = cast(std::move(row[i]), types[i]);
    }
    if (source.columnAliases.size() != types.size()) {
        fail(8155, "No column name was specified for column 1 of '" + source.alias.text + "'.", source.range);
    }
    ScopeSource entry{source.alias.text, result->alias, {}, "derived table " + source.alias.text};
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (types[i].isNull()) types[i] = SqlType::of(TypeKind::Int);
        // SQLite gives the columns of VALUES no collation.
        entry.columns.push_back({{source.columnAliases[i].text, types[i], true, {}, orders[i].order},
                                 "column" + std::to_string(i + 1),
                                 false});
    }
    addToScope(scope, std::move(entry), source.range);
    return result;
}

std::unique_ptr<BoundSource> Binder::join(const ast::Join& join, Scope& scope, Scope* outer) {
    using Kind = ast::JoinKind;
    auto result = std::make_unique<BoundSource>();
    result->kind = SourceKind::Join;
    const std::size_t first = scope.sources.size();
    result->left = source(*join.left, scope, outer);
    const std::size_t second = scope.sources.size();
    const bool applies = join.joinKind == Kind::CrossApply || join.joinKind == Kind::OuterApply;
    result->right = applies ? applied(*join.right, scope, outer) : source(*join.right, scope, outer);
    if (join.condition != nullptr) {
        // ON sees the two sides of its own join.
        Scope on(scope.parent);
        on.sources.assign(scope.sources.begin() + static_cast<std::ptrdiff_t>(first), scope.sources.end());
        result->condition = condition(*join.condition, &on);
        scope.correlated = scope.correlated || on.correlated;
    }
    switch (join.joinKind) {
        case Kind::Left:
            result->join = "LEFT JOIN";
            makeNullable(scope.sources, second, scope.sources.size());
            break;
        case Kind::Right:
            // SQLite's own RIGHT JOIN loses conditions in some queries.
            result->join = "LEFT JOIN";
            std::swap(result->left, result->right);
            makeNullable(scope.sources, first, second);
            break;
        case Kind::Full:
            result->join = "FULL JOIN";
            result->alias = newAlias();
            result->leftColumns = columnNames(scope.sources, first, second);
            result->rightColumns = columnNames(scope.sources, second, scope.sources.size());
            makeNullable(scope.sources, first, scope.sources.size());
            break;
        case Kind::Cross:
        case Kind::CrossApply:
            result->join = "CROSS JOIN";
            break;
        case Kind::OuterApply:
            result->join = "LEFT JOIN";
            makeNullable(scope.sources, second, scope.sources.size());
            break;
        default:
            result->join = "JOIN";
            break;
    }
    return result;
}

void Binder::requireViewDepth(SourceRange range) const {
    if (viewDepth_ < kDeepestViews) return;
    fail(217, "Maximum view nesting level exceeded (limit " + std::to_string(kDeepestViews) + ").", range);
}

std::unique_ptr<BoundQuery> Binder::viewQuery(const Module& view, SourceRange range) {
    requireViewDepth(range);
    const ast::Batch batch = parse(view.text);
    const auto* definition =
        batch.statements.empty() ? nullptr : ast::tryAs<ast::CreateViewStatement>(batch.statements.front().get());
    if (definition == nullptr) fail(error::kInvalidObject, "Invalid object name '" + view.name + "'.", range);
    Binder inner(catalog_, inputOf(batch));
    inner.sharedAliases_ = &aliases();
    inner.viewDepth_ = viewDepth_ + 1;
    Scope none(nullptr);
    std::unique_ptr<BoundQuery> result = inner.query(*definition->query, &none);
    for (std::size_t i = 0; i < definition->columns.size() && i < result->columns.size(); ++i)
        result->columns[i].name = definition->columns[i].text;
    return result;
}

BinderInput Binder::inputOf(const ast::Batch& stored) const {
    return {.text = stored.text, .literals = &stored.literals, .inlineLiterals = true, .called = input_.called};
}

BoundPtr Binder::storedExpression(const std::string& text) {
    const ast::Batch batch = parse("SELECT " + text);
    Binder inner(catalog_, inputOf(batch));
    inner.sharedAliases_ = &aliases();
    const auto& statement = ast::as<ast::SelectStatement>(*batch.statements.front());
    return inner.expression(*ast::firstSelect(*statement.query->body).items.front().expression, nullptr);
}

}  // namespace basalt::embedded
