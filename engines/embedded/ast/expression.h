// Expressions and conditions of the tree.
//
//   if (e.kind == ExpressionKind::Binary) { const auto& b = as<BinaryExpression>(e); visit(*b.left); ... }
//
// Every node keeps its place in the text of its batch. Parentheses leave no node; the printer puts them back where the
// tree needs them. A literal is an index into Batch::literals. Conditions (isCondition) stand only where T-SQL wants a
// condition: WHERE, ON, HAVING, IF, WHILE, CHECK, CASE WHEN and IIF; the parser sees to that.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engines/embedded/ast/data_type.h"
#include "engines/embedded/ast/name.h"
#include "engines/embedded/lexer/literal.h"
#include "engines/embedded/lexer/source_range.h"

namespace basalt::embedded::ast {

struct QueryExpression;  // ast/query.h

enum class ExpressionKind : std::uint8_t {
    // Values
    Literal,
    Null,
    Default,
    ParameterMarker,
    Variable,
    SystemVariable,
    Column,
    Unary,
    Binary,
    Case,
    Iif,
    Cast,
    Convert,
    Function,
    DatePart,
    Subquery,
    XmlValue,
    Collate,
    // Conditions
    Comparison,
    And,
    Or,
    Not,
    IsNull,
    In,
    Between,
    Like,
    Exists,
    Quantified,
};

[[nodiscard]] constexpr bool isCondition(ExpressionKind kind) {
    return kind >= ExpressionKind::Comparison;
}

struct Expression {
    const ExpressionKind kind;
    SourceRange range;

    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;
    virtual ~Expression() = default;

protected:
    explicit Expression(ExpressionKind k) : kind(k) {}
};

using ExpressionPtr = std::unique_ptr<Expression>;
using QueryPtr = std::unique_ptr<QueryExpression>;

// Gives a concrete node its kind.
template <ExpressionKind Kind>
struct ExpressionOf : Expression {
    static constexpr ExpressionKind kKind = Kind;
    ExpressionOf() : Expression(Kind) {}
};

// The node as what its kind says it is.
template <typename Node>
[[nodiscard]] const Node& as(const Expression& expression) {
    return static_cast<const Node&>(expression);
}
// The node when it is of that kind, otherwise null. Null in, null out.
template <typename Node>
[[nodiscard]] const Node* tryAs(const Expression* expression) {
    return expression && expression->kind == Node::kKind ? static_cast<const Node*>(expression) : nullptr;
}

struct LiteralExpression : ExpressionOf<ExpressionKind::Literal> {
    LiteralIndex literal = 0;
};

struct NullExpression : ExpressionOf<ExpressionKind::Null> {};

// DEFAULT in VALUES, SET and procedure arguments.
struct DefaultExpression : ExpressionOf<ExpressionKind::Default> {};

// `?`, counted from 0 through the whole batch.
struct ParameterMarker : ExpressionOf<ExpressionKind::ParameterMarker> {
    std::uint32_t ordinal = 0;
};

struct VariableExpression : ExpressionOf<ExpressionKind::Variable> {
    std::string name;  // with the leading @, as written
};

struct SystemVariableExpression : ExpressionOf<ExpressionKind::SystemVariable> {
    std::string name;  // with the leading @@, in capitals: "@@ROWCOUNT"
};

// A column, with up to three qualifiers: Code, T.Code, dbo.T.Code. inserted.x and deleted.x are columns too.
struct ColumnExpression : ExpressionOf<ExpressionKind::Column> {
    ObjectName name;
};

enum class UnaryOperator : std::uint8_t { Plus, Minus, BitwiseNot };

struct UnaryExpression : ExpressionOf<ExpressionKind::Unary> {
    UnaryOperator op = UnaryOperator::Plus;
    ExpressionPtr operand;
};

enum class BinaryOperator : std::uint8_t { Add, Subtract, Multiply, Divide, Modulo, BitAnd, BitOr, BitXor };

struct BinaryExpression : ExpressionOf<ExpressionKind::Binary> {
    BinaryOperator op = BinaryOperator::Add;
    SourceRange operatorRange;
    ExpressionPtr left, right;
};

struct CaseExpression : ExpressionOf<ExpressionKind::Case> {
    struct When {
        ExpressionPtr when;  // a condition, or with `input` a value to compare with it
        ExpressionPtr then;
    };
    ExpressionPtr input;  // null for the searched form
    std::vector<When> whens;
    ExpressionPtr otherwise;  // null when there is no ELSE
};

struct IifExpression : ExpressionOf<ExpressionKind::Iif> {
    ExpressionPtr condition, then, otherwise;
};

// CAST(x AS type), TRY_CAST
struct CastExpression : ExpressionOf<ExpressionKind::Cast> {
    bool tries = false;
    ExpressionPtr operand;
    DataType type;
};

// CONVERT(type, x[, style]), TRY_CONVERT
struct ConvertExpression : ExpressionOf<ExpressionKind::Convert> {
    bool tries = false;
    DataType type;
    ExpressionPtr operand;
    ExpressionPtr style;  // null when there is none
};

struct OrderItem {
    ExpressionPtr expression;
    bool descending = false;
};

enum class FrameUnit : std::uint8_t { None, Rows, Range };
enum class FrameBoundKind : std::uint8_t { UnboundedPreceding, Preceding, CurrentRow, Following, UnboundedFollowing };

struct FrameBound {
    FrameBoundKind kind = FrameBoundKind::UnboundedPreceding;
    ExpressionPtr offset;  // Preceding, Following
};

struct OverClause {
    std::vector<ExpressionPtr> partitionBy;
    std::vector<OrderItem> orderBy;
    FrameUnit frame = FrameUnit::None;
    FrameBound frameStart;
    std::unique_ptr<FrameBound> frameEnd;  // null without BETWEEN
    SourceRange range;
};

// Every call by name: built-in scalar functions, aggregates, ranking functions, dbo.userFunction(...).
struct FunctionExpression : ExpressionOf<ExpressionKind::Function> {
    ObjectName name;
    std::vector<ExpressionPtr> arguments;
    bool star = false;           // COUNT(*)
    bool distinct = false;       // COUNT(DISTINCT x)
    bool noParentheses = false;  // CURRENT_TIMESTAMP, USER, ...
    std::vector<OrderItem> withinGroup;
    std::unique_ptr<OverClause> over;
};

// The first argument of DATEADD, DATEDIFF, DATENAME and DATEPART.
struct DatePartExpression : ExpressionOf<ExpressionKind::DatePart> {
    std::string name;  // in lower case, as written: "day", "dd"
};

struct SubqueryExpression : ExpressionOf<ExpressionKind::Subquery> {
    QueryPtr query;
    SubqueryExpression();
    ~SubqueryExpression() override;
};

// (SELECT ... FOR XML PATH(''), TYPE).value('.', 'nvarchar(max)')
struct XmlValueExpression : ExpressionOf<ExpressionKind::XmlValue> {
    ExpressionPtr operand;  // a Subquery
    LiteralIndex path = 0;
    LiteralIndex type = 0;
};

struct CollateExpression : ExpressionOf<ExpressionKind::Collate> {
    ExpressionPtr operand;
    Identifier collation;
};

enum class ComparisonOperator : std::uint8_t { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual };

struct ComparisonExpression : ExpressionOf<ExpressionKind::Comparison> {
    ComparisonOperator op = ComparisonOperator::Equal;  // !< is GreaterOrEqual, !> is LessOrEqual
    SourceRange operatorRange;
    ExpressionPtr left, right;
};

struct AndExpression : ExpressionOf<ExpressionKind::And> {
    ExpressionPtr left, right;
};

struct OrExpression : ExpressionOf<ExpressionKind::Or> {
    ExpressionPtr left, right;
};

struct NotExpression : ExpressionOf<ExpressionKind::Not> {
    ExpressionPtr operand;
};

struct IsNullExpression : ExpressionOf<ExpressionKind::IsNull> {
    ExpressionPtr operand;
    bool negated = false;
};

// x [NOT] IN (list) or x [NOT] IN (query)
struct InExpression : ExpressionOf<ExpressionKind::In> {
    ExpressionPtr operand;
    bool negated = false;
    std::vector<ExpressionPtr> list;  // empty when there is a query
    QueryPtr query;
    InExpression();
    ~InExpression() override;
};

struct BetweenExpression : ExpressionOf<ExpressionKind::Between> {
    ExpressionPtr operand, low, high;
    bool negated = false;
};

struct LikeExpression : ExpressionOf<ExpressionKind::Like> {
    ExpressionPtr operand, pattern;
    ExpressionPtr escape;  // null when there is none
    bool negated = false;
};

struct ExistsExpression : ExpressionOf<ExpressionKind::Exists> {
    QueryPtr query;
    ExistsExpression();
    ~ExistsExpression() override;
};

// x op ALL (query), x op ANY (query); SOME is ANY
struct QuantifiedExpression : ExpressionOf<ExpressionKind::Quantified> {
    ExpressionPtr operand;
    ComparisonOperator op = ComparisonOperator::Equal;
    bool all = false;
    QueryPtr query;
    QuantifiedExpression();
    ~QuantifiedExpression() override;
};

}  // namespace basalt::embedded::ast
