// Whole queries: common tables, set operations, ORDER BY, OFFSET and FETCH, and the SELECT statement.
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

// The alias under which the source names the common table; empty when it does not.
std::string aliasOf(const BoundSource* source, const std::string& table) {
    if (source == nullptr) return {};
    if (source->kind == SourceKind::CommonTable && source->table == table) return source->alias;
    std::string found = aliasOf(source->left.get(), table);
    return found.empty() ? aliasOf(source->right.get(), table) : found;
}

void appendToAll(BoundBody& body, std::int64_t number) {
    if (body.select != nullptr) {
        body.select->items.push_back({boundInteger(number), {}});
        return;
    }
    appendToAll(*body.left, number);
    appendToAll(*body.right, number);
}

// A column of nothing but untyped NULLs is an int.
void settleNulls(std::vector<OutputColumn>& columns) {
    for (OutputColumn& column : columns) {
        if (column.type.isNull()) column.type = SqlType::of(TypeKind::Int);
    }
}

}  // namespace

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
    auto result = std::make_unique<BoundBody>();
    if (body.kind == ast::QueryBodyKind::Select) {
        result->select = select(ast::as<ast::Select>(body), outer, columns, &query, whole);
        return result;
    }
    result = setOperation(ast::as<ast::SetOperation>(body), outer, columns);
    orderByColumns(*whole, columns, query);
    return result;
}

std::unique_ptr<BoundBody> Binder::setOperation(const ast::SetOperation& operation, Scope* outer,
                                                std::vector<OutputColumn>& columns) {
    const auto side = [&](const ast::QueryBody& part, std::vector<OutputColumn>& shown) {
        if (part.kind == ast::QueryBodyKind::SetOperation) {
            return setOperation(ast::as<ast::SetOperation>(part), outer, shown);
        }
        auto result = std::make_unique<BoundBody>();
        result->select = select(ast::as<ast::Select>(part), outer, shown, nullptr, nullptr);
        return result;
    };
    auto result = std::make_unique<BoundBody>();
    result->operation = nameOf(operation.op);
    std::vector<OutputColumn> right;
    result->left = side(*operation.left, columns);
    result->right = side(*operation.right, right);
    if (columns.size() != right.size()) {
        fail(205,
             "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number of "
             "expressions in "
             "their target lists.",
             operation.range);
    }
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

void Binder::boundRecursion(BoundCommonTable& table) const {
    BoundBody& body = *table.query->body;
    if (body.right->select == nullptr || maxRecursion_ == 0) return;
    const std::string alias = aliasOf(body.right->select->from.get(), table.name);
    if (alias.empty()) return;
    auto depth = std::make_unique<BoundExpression>();
    depth->kind = BoundKind::Column;
    depth->type = SqlType::of(TypeKind::Int);
    depth->table = alias;
    depth->name = "c" + std::to_string(table.query->columns.size() + 1);
    const SqlType type = depth->type;
    appendToAll(*body.left, 0);
    body.right->select->items.push_back(
        {boundCall("t_depth", type, std::move(depth), boundInteger(maxRecursion_)), {}});
    table.query->columns.push_back({{}, type, false, {}});
}

void Binder::commonTables(const std::vector<ast::CommonTableExpression>& with, std::vector<BoundCommonTable>& into) {
    for (const ast::CommonTableExpression& table : with) {
        const std::string sqlName = "w" + std::to_string(++aliases());
        const auto columnsOf = [&](const std::vector<OutputColumn>& outputs) {
            if (!table.columns.empty() && table.columns.size() != outputs.size()) {
                fail(table.columns.size() > outputs.size() ? 8158 : 8159,
                     "'" + table.name.text +
                         "' has a different number of columns than were specified in the column list.",
                     table.range);
            }
            std::vector<SourceColumn> columns;
            for (std::size_t i = 0; i < outputs.size(); ++i) {
                SourceColumn column{outputs[i], "c" + std::to_string(i + 1)};
                if (!table.columns.empty()) column.shown.name = table.columns[i].text;
                if (column.shown.name.empty()) {
                    fail(8155,
                         "No column name was specified for column " + std::to_string(i + 1) + " of '" +
                             table.name.text + "'.",
                         table.range);
                }
                for (const SourceColumn& other : columns) {
                    if (!sameName(other.shown.name, column.shown.name)) continue;
                    fail(8156,
                         "The column '" + column.shown.name + "' was specified multiple times for '" + table.name.text +
                             "'.",
                         table.range);
                }
                columns.push_back(std::move(column));
            }
            return columns;
        };
        if (std::any_of(with.data(), &table, [&](const ast::CommonTableExpression& other) {
                return sameName(other.name.text, table.name.text);
            })) {
            fail(239, "Duplicate common table expression name '" + table.name.text + "' was specified.", table.range);
        }
        BoundCommonTable bound;
        bound.name = sqlName;
        const auto* operation = table.query->body->kind == ast::QueryBodyKind::SetOperation
                                    ? &ast::as<ast::SetOperation>(*table.query->body)
                                    : nullptr;
        if (operation != nullptr && operation->op == ast::SetOperator::UnionAll) {
            // The part behind UNION ALL may name the table itself; the part before it settles the columns.
            bound.query = std::make_unique<BoundQuery>();
            Scope none(nullptr);
            bound.query->body = std::make_unique<BoundBody>();
            BoundBody& body = *bound.query->body;
            body.operation = "UNION ALL";
            std::vector<OutputColumn> columns;
            if (operation->left->kind == ast::QueryBodyKind::Select) {
                body.left = std::make_unique<BoundBody>();
                body.left->select = select(ast::as<ast::Select>(*operation->left), &none, columns, nullptr, nullptr);
            } else {
                body.left = setOperation(ast::as<ast::SetOperation>(*operation->left), &none, columns);
            }
            commonTables_.push_back({table.name.text, sqlName, columnsOf(columns)});
            std::vector<OutputColumn> right;
            if (operation->right->kind == ast::QueryBodyKind::Select) {
                body.right = std::make_unique<BoundBody>();
                body.right->select = select(ast::as<ast::Select>(*operation->right), &none, right, nullptr, nullptr);
            } else {
                body.right = setOperation(ast::as<ast::SetOperation>(*operation->right), &none, right);
            }
            if (columns.size() != right.size()) {
                fail(205,
                     "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number of "
                     "expressions in their target lists.",
                     operation->range);
            }
            if (body.right->select != nullptr && !aliasOf(body.right->select->from.get(), sqlName).empty()) {
                for (std::size_t i = 0; i < columns.size(); ++i) {
                    const SqlType& anchor = columns[i].type;
                    if (anchor == right[i].type || anchor.isNull() || right[i].type.isNull()) continue;
                    const std::string shown = table.columns.empty() ? columns[i].name : table.columns[i].text;
                    fail(240,
                         "Types don't match between the anchor and the recursive part in column \"" + shown +
                             "\" of recursive query \"" + table.name.text + "\".",
                         operation->range);
                }
            }
            for (std::size_t i = 0; i < columns.size(); ++i) {
                columns[i].type = commonType(columns[i].type, right[i].type);
                columns[i].nullable = columns[i].nullable || right[i].nullable;
                columns[i].base.reset();
            }
            convertColumns(*body.left, columns);
            convertColumns(*body.right, columns);
            settleNulls(columns);
            commonTables_.back().columns = columnsOf(columns);
            bound.query->columns = std::move(columns);
            boundRecursion(bound);
        } else {
            Scope none(nullptr);
            bound.query = query(*table.query, &none);
            commonTables_.push_back({table.name.text, sqlName, columnsOf(bound.query->columns)});
        }
        into.push_back(std::move(bound));
    }
}

}  // namespace basalt::embedded
