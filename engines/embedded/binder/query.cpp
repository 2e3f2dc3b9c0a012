// Whole queries: set operations, ORDER BY, OFFSET and FETCH, and the SELECT statement.
#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

const char* nameOf(ast::SetOperator op) {
    switch (op) {
        case ast::SetOperator::Union:
            return "UNION";
        case ast::SetOperator::UnionAll:
            return "UNION ALL";
        case ast::SetOperator::Except:
            return "EXCEPT";
        case ast::SetOperator::Intersect:
            return "INTERSECT";
    }
    return "";
}

}  // namespace

void Binder::settleNulls(std::vector<OutputColumn>& columns) {
    for (OutputColumn& column : columns) {
        if (column.type.isNull()) column.type = SqlType::of(TypeKind::Int);
    }
}

std::unique_ptr<BoundQuery> Binder::query(const ast::QueryExpression& query, Scope* outer) {
    auto result = std::make_unique<BoundQuery>();
    const std::size_t visible = commonTables_.size();
    if (query.maxRecursion) maxRecursion_ = *query.maxRecursion;
    commonTables(query.with, result->with);
    result->body = body(*query.body, outer, result->columns, *result, &query);
    settleNulls(result->columns);
    if (query.offset != nullptr) result->offset = rowLimit(*query.offset, nullptr, RowLimit::Offset);
    if (query.fetch != nullptr) result->limit = rowLimit(*query.fetch, nullptr, RowLimit::Fetch);
    if (outer != nullptr && !query.orderBy.empty() && result->limit == nullptr && result->offset == nullptr &&
        !query.forXml) {
        fail(1033,
             "The ORDER BY clause is invalid in views, inline functions, derived tables, subqueries, and common table "
             "expressions, unless TOP, OFFSET or FOR XML is also specified.",
             query.range);
    }
    commonTables_.resize(visible);
    if (query.forXml) return xmlOf(std::move(result), *query.forXml);
    return result;
}

std::unique_ptr<BoundBody> Binder::body(const ast::QueryBody& body, Scope* outer, std::vector<OutputColumn>& columns,
                                        BoundQuery& query, const ast::QueryExpression* whole) {
    if (body.kind == ast::QueryBodyKind::Select) {
        auto result = std::make_unique<BoundBody>();
        result->select = select(ast::as<ast::Select>(body), outer, columns, &query, whole);
        return result;
    }
    auto result = setOperation(ast::as<ast::SetOperation>(body), outer, columns);
    orderByColumns(*whole, columns, query);
    return result;
}

std::unique_ptr<BoundBody> Binder::part(const ast::QueryBody& part, Scope* outer, std::vector<OutputColumn>& columns) {
    if (part.kind == ast::QueryBodyKind::SetOperation)
        return setOperation(ast::as<ast::SetOperation>(part), outer, columns);
    auto result = std::make_unique<BoundBody>();
    result->select = select(ast::as<ast::Select>(part), outer, columns, nullptr, nullptr);
    return result;
}

void Binder::requireSameCount(const std::vector<OutputColumn>& left, const std::vector<OutputColumn>& right,
                              SourceRange range) const {
    if (left.size() == right.size()) return;
    fail(205,
         "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number of expressions in "
         "their target lists.",
         range);
}

std::unique_ptr<BoundBody> Binder::setOperation(const ast::SetOperation& operation, Scope* outer,
                                                std::vector<OutputColumn>& columns) {
    auto result = std::make_unique<BoundBody>();
    result->operation = nameOf(operation.op);
    std::vector<OutputColumn> right;
    result->left = part(*operation.left, outer, columns);
    result->right = part(*operation.right, outer, right);
    requireSameCount(columns, right, operation.range);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const SqlType common = commonType(columns[i].type, right[i].type);
        refuseClash(columns[i].type, common, operation.range);
        refuseClash(right[i].type, common, operation.range);
        columns[i].type = common;
        columns[i].nullable = columns[i].nullable || right[i].nullable;
        columns[i].base.reset();
    }
    convertColumns(*result->left, columns);
    convertColumns(*result->right, columns);
    return result;
}

void Binder::convertColumns(BoundBody& body, const std::vector<OutputColumn>& to) {
    if (body.select == nullptr) {
        convertColumns(*body.left, to);
        convertColumns(*body.right, to);
        return;
    }
    for (std::size_t i = 0; i < to.size(); ++i) {
        BoundPtr& item = body.select->items[i].expression;
        const bool texts = item->type.isText() && to[i].type.isText() && !to[i].type.isFixedText();
        if (!texts) item = cast(std::move(item), to[i].type);
    }
}

std::size_t Binder::outputPosition(const ast::Expression& expression, const std::vector<OutputColumn>& columns) {
    if (const std::optional<std::int64_t> position =
            expression.kind == ast::ExpressionKind::Literal ? fixedInteger(expression) : std::nullopt) {
        if (*position < 1 || *position > static_cast<std::int64_t>(columns.size())) {
            fail(108,
                 "The ORDER BY position number " + std::to_string(*position) +
                     " is out of range of the number of items in the select list.",
                 expression.range);
        }
        return static_cast<std::size_t>(*position);
    }
    if (expression.kind == ast::ExpressionKind::Literal || expression.kind == ast::ExpressionKind::Null)
        fail(408, "A constant expression was encountered in the ORDER BY list.", expression.range);
    if (expression.kind == ast::ExpressionKind::Variable) {
        fail(1008,
             "The SELECT item identified by the ORDER BY number contains a variable as part of the expression "
             "identifying a column position. Variables are only allowed when ordering by an expression referencing a "
             "column name.",
             expression.range);
    }
    const auto* column = ast::tryAs<ast::ColumnExpression>(&expression);
    if (column == nullptr || column->name.parts.size() != 1) return 0;
    std::size_t found = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!sameName(columns[i].name, column->name.last())) continue;
        if (found != 0) {
            fail(error::kAmbiguousColumn, "Ambiguous column name '" + column->name.last() + "'.", expression.range);
        }
        found = i + 1;
    }
    return found;
}

void Binder::orderByColumns(const ast::QueryExpression& whole, const std::vector<OutputColumn>& columns,
                            BoundQuery& query) {
    for (const ast::OrderItem& item : whole.orderBy) {
        BoundOrdering order;
        order.descending = item.descending;
        order.position = outputPosition(*item.expression, columns);
        if (order.position == 0) {
            fail(104,
                 "ORDER BY items must appear in the select list if the statement contains a UNION, INTERSECT or EXCEPT "
                 "operator.",
                 item.expression->range);
        }
        query.orderBy.push_back(std::move(order));
    }
}

}  // namespace basalt::embedded
