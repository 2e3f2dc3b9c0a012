// Queries: SELECT, set operations, and what may stand around them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engines/embedded/ast/expression.h"
#include "engines/embedded/ast/table_source.h"

namespace basalt::embedded::ast {

enum class AssignmentOperator : std::uint8_t { Set, Add, Subtract, Multiply, Divide, Modulo, BitAnd, BitOr, BitXor };

enum class SelectItemKind : std::uint8_t { Expression, Star, Assignment };

// expression [AS] alias, alias = expression, *, T.*, @v = expression
struct SelectItem {
    SelectItemKind kind = SelectItemKind::Expression;
    ExpressionPtr expression;  // Expression, Assignment
    Identifier alias;          // Expression; empty when there is none
    ObjectName qualifier;      // Star; empty for the plain *
    std::string variable;      // Assignment, with the leading @
    AssignmentOperator op = AssignmentOperator::Set;
    SourceRange range;
};

struct TopClause {
    ExpressionPtr count;
    bool percent = false;
    bool withTies = false;
    SourceRange range;
};

enum class QueryBodyKind : std::uint8_t { Select, SetOperation };

struct QueryBody {
    const QueryBodyKind kind;
    SourceRange range;

    QueryBody(const QueryBody&) = delete;
    QueryBody& operator=(const QueryBody&) = delete;
    virtual ~QueryBody() = default;

protected:
    explicit QueryBody(QueryBodyKind k) : kind(k) {}
};

using QueryBodyPtr = std::unique_ptr<QueryBody>;

template <QueryBodyKind Kind>
struct QueryBodyOf : QueryBody {
    static constexpr QueryBodyKind kKind = Kind;
    QueryBodyOf() : QueryBody(Kind) {}
};

template <typename Node>
[[nodiscard]] const Node& as(const QueryBody& body) {
    return static_cast<const Node&>(body);
}

struct Select : QueryBodyOf<QueryBodyKind::Select> {
    bool distinct = false;
    std::optional<TopClause> top;
    std::vector<SelectItem> items;
    ObjectName into;                   // SELECT ... INTO t; empty when there is none
    std::vector<TableSourcePtr> from;  // the comma-separated sources
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
};

enum class SetOperator : std::uint8_t { Union, UnionAll, Except, Intersect };

struct SetOperation : QueryBodyOf<QueryBodyKind::SetOperation> {
    SetOperator op = SetOperator::Union;
    QueryBodyPtr left, right;
};

struct CommonTableExpression {
    Identifier name;
    std::vector<Identifier> columns;
    QueryPtr query;
    SourceRange range;
};

// FOR XML PATH('name'), the customary way to join texts of several rows
struct ForXmlClause {
    enum class Mode : std::uint8_t { Raw, Auto, Path };
    Mode mode = Mode::Path;
    std::optional<LiteralIndex> elementName;  // absent: "row"
    bool type = false;                        // , TYPE
    SourceRange range;
};

struct QueryExpression {
    std::vector<CommonTableExpression> with;  // statements only, never in subqueries
    QueryBodyPtr body;
    std::vector<OrderItem> orderBy;
    ExpressionPtr offset;  // OFFSET n ROWS
    ExpressionPtr fetch;   // FETCH NEXT n ROWS ONLY
    std::optional<ForXmlClause> forXml;
    std::optional<int> maxRecursion;  // OPTION (MAXRECURSION n); 0: without end
    SourceRange range;
};

// Sees through the shape of a body: the leftmost SELECT, whose items name the columns.
[[nodiscard]] const Select& firstSelect(const QueryBody& body);

}  // namespace basalt::embedded::ast
