// Sources of FROM that are no tables: functions, APPLY, and the views of the system.
#include "engines/embedded/executor/row_source.h"

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/catalog/system_view.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

std::string joined(const ast::ObjectName& name) {
    std::string result;
    for (const ast::Identifier& part : name.parts)
        result += (result.empty() ? "" : ".") + part.text;
    return result;
}

// The columns of rows that come through t_rows.
ScopeSource rowColumns(const std::string& name, const std::string& alias, const std::vector<OutputColumn>& columns) {
    ScopeSource source{name, alias, {}};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        SourceColumn column{columns[i], "c" + std::to_string(i + 1), false};
        column.shown.base.reset();
        source.columns.push_back(std::move(column));
    }
    return source;
}

}  // namespace

std::unique_ptr<BoundSource> Binder::applied(const ast::TableSource& source, Scope& scope, Scope* outer) {
    Scope lateral(outer);
    lateral.sources = scope.sources;
    switch (source.kind) {
        case ast::TableSourceKind::Derived: {
            const auto& table = ast::as<ast::DerivedTable>(source);
            return appliedQuery(query(*table.query, &lateral), source, source.alias.text, scope, lateral);
        }
        case ast::TableSourceKind::Function:
            return functionTable(ast::as<ast::FunctionTable>(source), scope, &lateral, true);
        case ast::TableSourceKind::Values: {
            // As a query of its own: SELECT * FROM (VALUES ...)
            Scope own(outer);
            auto select = std::make_unique<BoundSelect>();
            select->from = valuesTable(ast::as<ast::ValuesTable>(source), own, &lateral);
            auto query = std::make_unique<BoundQuery>();
            for (const SourceColumn& column : own.sources.back().columns) {
                auto item = std::make_unique<BoundExpression>();
                item->kind = BoundKind::Column;
                item->type = column.shown.type;
                item->table = own.sources.back().sqlAlias;
                item->name = column.sqlName;
                select->items.push_back({std::move(item), column.shown.name});
                query->columns.push_back(column.shown);
            }
            query->body = std::make_unique<BoundBody>();
            query->body->select = std::move(select);
            return appliedQuery(std::move(query), source, source.alias.text, scope, lateral);
        }
        default:
            return this->source(source, scope, outer);
    }
}

std::unique_ptr<BoundSource> Binder::appliedQuery(std::unique_ptr<BoundQuery> query, const ast::TableSource& source,
                                                  const std::string& name, Scope& scope, const Scope& visible) {
    if (query->columns.size() > kMostRowColumns)
        unsupported("APPLY with more than " + std::to_string(kMostRowColumns) + " columns", source.range);
    std::vector<OutputColumn> columns = query->columns;
    for (std::size_t i = 0; i < source.columnAliases.size() && i < columns.size(); ++i)
        columns[i].name = source.columnAliases[i].text;
    auto result = std::make_unique<BoundSource>();
    result->kind = SourceKind::Rows;
    result->alias = newAlias();
    result->rowKind = "apply";
    result->query = std::move(query);
    for (const Scope* each = &visible; each != nullptr; each = each->parent) {
        for (const ScopeSource& other : each->sources)
            result->outer.push_back(other.sqlAlias);
    }
    addToScope(scope, rowColumns(name, result->alias, columns), source.range);
    return result;
}

std::unique_ptr<BoundSource> Binder::functionTable(const ast::FunctionTable& source, Scope& scope, Scope* visible,
                                                   bool applies) {
    using Returns = ast::CreateFunctionStatement::Returns;
    const Module* module = catalog_.module(source.name.last());
    const ast::Batch batch =
        module != nullptr && module->kind == ModuleKind::Function ? parse(module->text) : ast::Batch{};
    const auto* function =
        batch.statements.empty() ? nullptr : ast::tryAs<ast::CreateFunctionStatement>(batch.statements.front().get());
    if (function == nullptr || function->returns == Returns::Scalar) {
        fail(error::kInvalidObject, "Invalid object name '" + joined(source.name) + "'.", source.name.range);
    }
    std::vector<BoundPtr> arguments =
        userArguments(*function, batch, source.arguments, source.name, visible, source.range);
    const std::string shown = source.alias.empty() ? source.name.last() : source.alias.text;
    Binder inner(catalog_, inputOf(batch));
    inner.sharedAliases_ = &aliases();
    inner.viewDepth_ = viewDepth_ + 1;
    if (function->returns == Returns::InlineTable) {
        requireViewDepth(source.range);
        for (std::size_t i = 0; i < arguments.size(); ++i)
            inner.parameters_.push_back({function->parameters[i].name, std::move(arguments[i])});
        Scope none(nullptr);
        std::unique_ptr<BoundQuery> query = inner.query(*function->query, &none);
        if (applies) return appliedQuery(std::move(query), source, shown, scope, *visible);
        return derived(std::move(query), source, shown, scope);
    }
    if (input_.called != nullptr) input_.called->insert(module->name);
    std::vector<OutputColumn> columns;
    for (const ast::ColumnDefinition& column : function->table.columns) {
        if (column.computed != nullptr) unsupported("a computed column in a function's table", source.range);
        columns.push_back({column.name.text, inner.dataType(column.type), column.nullable.value_or(true), {}});
    }
    for (std::size_t i = 0; i < source.columnAliases.size() && i < columns.size(); ++i)
        columns[i].name = source.columnAliases[i].text;
    if (columns.size() > kMostRowColumns || arguments.size() > kMostRowArguments)
        unsupported("a function with so many columns or parameters in FROM", source.range);
    auto result = std::make_unique<BoundSource>();
    result->kind = SourceKind::Rows;
    result->alias = newAlias();
    result->rowKind = "function";
    result->table = module->name;
    result->arguments = std::move(arguments);
    addToScope(scope, rowColumns(shown, result->alias, columns), source.range);
    return result;
}

std::unique_ptr<BoundSource> Binder::systemTable(const ast::NamedTable& source, Scope& scope) {
    const SystemView* view = systemView(source.name);
    if (view == nullptr) return nullptr;
    std::vector<OutputColumn> columns;
    for (const SystemColumn& column : view->columns)
        columns.push_back({std::string(column.name), column.type, true, {}});
    auto result = std::make_unique<BoundSource>();
    result->kind = SourceKind::Rows;
    result->alias = newAlias();
    result->rowKind = "system";
    const bool temporary =
        source.name.parts.size() > 2 && sameName(source.name.parts[source.name.parts.size() - 3].text, "tempdb");
    result->table = (temporary ? std::string(kTemporaryPart) : std::string()) + view->name;
    addToScope(scope, rowColumns(source.alias.empty() ? source.name.last() : source.alias.text, result->alias, columns),
               source.range);
    return result;
}

}  // namespace basalt::embedded
