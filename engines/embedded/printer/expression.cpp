#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

using namespace ast;

namespace {

// How tightly an expression holds together; a looser one inside a tighter one takes parentheses. The same order as in
// the parser's comment.
enum class Level { Or, And, Not, Predicate, Additive, Sign, Multiplicative, Complement, Collate, Primary };

Level levelOf(const Expression& expression) {
    switch (expression.kind) {
        case ExpressionKind::Or:
            return Level::Or;
        case ExpressionKind::And:
            return Level::And;
        case ExpressionKind::Not:
            return Level::Not;
        case ExpressionKind::Comparison:
        case ExpressionKind::IsNull:
        case ExpressionKind::In:
        case ExpressionKind::Between:
        case ExpressionKind::Like:
        case ExpressionKind::Quantified:
            return Level::Predicate;
        case ExpressionKind::Binary:
            switch (as<BinaryExpression>(expression).op) {
                case BinaryOperator::Multiply:
                case BinaryOperator::Divide:
                case BinaryOperator::Modulo:
                    return Level::Multiplicative;
                default:
                    return Level::Additive;
            }
        case ExpressionKind::Unary:
            return as<UnaryExpression>(expression).op == UnaryOperator::BitwiseNot ? Level::Complement : Level::Sign;
        case ExpressionKind::Collate:
            return Level::Collate;
        default:
            return Level::Primary;
    }
}

void writeBare(Writer& writer, const Expression& expression);

void writeAt(Writer& writer, const Expression& expression, Level least) {
    const Level level = levelOf(expression);
    const bool parenthesize = level < least || (writer.all() && level != Level::Primary);
    if (parenthesize) writer << "(";
    writeBare(writer, expression);
    if (parenthesize) writer << ")";
}

std::string_view spellingOf(BinaryOperator op) {
    switch (op) {
        case BinaryOperator::Add:
            return " + ";
        case BinaryOperator::Subtract:
            return " - ";
        case BinaryOperator::Multiply:
            return " * ";
        case BinaryOperator::Divide:
            return " / ";
        case BinaryOperator::Modulo:
            return " % ";
        case BinaryOperator::BitAnd:
            return " & ";
        case BinaryOperator::BitOr:
            return " | ";
        case BinaryOperator::BitXor:
            return " ^ ";
    }
    return {};
}

std::string_view spellingOf(ComparisonOperator op) {
    switch (op) {
        case ComparisonOperator::Equal:
            return " = ";
        case ComparisonOperator::NotEqual:
            return " <> ";
        case ComparisonOperator::Less:
            return " < ";
        case ComparisonOperator::LessOrEqual:
            return " <= ";
        case ComparisonOperator::Greater:
            return " > ";
        case ComparisonOperator::GreaterOrEqual:
            return " >= ";
    }
    return {};
}

void writeBinary(Writer& writer, const BinaryExpression& node) {
    const bool tight = levelOf(node) == Level::Multiplicative;
    writeAt(writer, *node.left, tight ? Level::Multiplicative : Level::Additive);
    writer << spellingOf(node.op);
    // On the right of * even a sign takes parentheses: what comes after it would belong to its operand.
    writeAt(writer, *node.right, tight ? Level::Complement : Level::Sign);
}

void writeUnary(Writer& writer, const UnaryExpression& node) {
    switch (node.op) {
        case UnaryOperator::Plus:
            writer << "+";
            break;
        case UnaryOperator::Minus:
            writer << "-";
            break;
        case UnaryOperator::BitwiseNot:
            writer << "~";
            writeAt(writer, *node.operand, Level::Complement);
            return;
    }
    writeAt(writer, *node.operand, Level::Multiplicative);
}

void writeCase(Writer& writer, const CaseExpression& node) {
    writer << "CASE";
    if (node.input) {
        writer << " ";
        write(writer, *node.input);
    }
    for (const CaseExpression::When& when : node.whens) {
        writer << " WHEN ";
        write(writer, *when.when);
        writer << " THEN ";
        write(writer, *when.then);
    }
    if (node.otherwise) {
        writer << " ELSE ";
        write(writer, *node.otherwise);
    }
    writer << " END";
}

void write(Writer& writer, const FrameBound& bound) {
    if (bound.offset) {
        writeOperand(writer, *bound.offset);
        writer << " ";
    }
    switch (bound.kind) {
        case FrameBoundKind::UnboundedPreceding:
            writer << "UNBOUNDED PRECEDING";
            break;
        case FrameBoundKind::Preceding:
            writer << "PRECEDING";
            break;
        case FrameBoundKind::CurrentRow:
            writer << "CURRENT ROW";
            break;
        case FrameBoundKind::Following:
            writer << "FOLLOWING";
            break;
        case FrameBoundKind::UnboundedFollowing:
            writer << "UNBOUNDED FOLLOWING";
            break;
    }
}

void writeOrderBy(Writer& writer, const std::vector<OrderItem>& items) {
    writer << "ORDER BY ";
    writeList(writer, items, [&](const OrderItem& item) { write(writer, item); });
}

void write(Writer& writer, const OverClause& over) {
    writer << " OVER (";
    std::string_view blank;
    if (!over.partitionBy.empty()) {
        writer << "PARTITION BY ";
        writeExpressions(writer, over.partitionBy);
        blank = " ";
    }
    if (!over.orderBy.empty()) {
        writer << blank;
        writeOrderBy(writer, over.orderBy);
        blank = " ";
    }
    if (over.frame != FrameUnit::None) {
        writer << blank << (over.frame == FrameUnit::Rows ? "ROWS " : "RANGE ");
        if (over.frameEnd) {
            writer << "BETWEEN ";
            write(writer, over.frameStart);
            writer << " AND ";
            write(writer, *over.frameEnd);
        } else {
            write(writer, over.frameStart);
        }
    }
    writer << ")";
}

void writeFunction(Writer& writer, const FunctionExpression& node) {
    writeFunctionName(writer, node.name);
    if (node.noParentheses) return;
    writer << "(";
    if (node.star) writer << "*";
    if (node.distinct) writer << "DISTINCT ";
    writeExpressions(writer, node.arguments);
    writer << ")";
    if (!node.withinGroup.empty()) {
        writer << " WITHIN GROUP (";
        writeOrderBy(writer, node.withinGroup);
        writer << ")";
    }
    if (node.over) write(writer, *node.over);
}

void writeConvert(Writer& writer, const ConvertExpression& node) {
    writer << (node.tries ? "TRY_CONVERT(" : "CONVERT(");
    write(writer, node.type);
    writer << ", ";
    write(writer, *node.operand);
    if (node.style) {
        writer << ", ";
        write(writer, *node.style);
    }
    writer << ")";
}

void writeSubquery(Writer& writer, const QueryExpression& query) {
    writer << "(";
    write(writer, query);
    writer << ")";
}

void writeIn(Writer& writer, const InExpression& node) {
    writeOperand(writer, *node.operand);
    writer << (node.negated ? " NOT IN " : " IN ");
    if (node.query) {
        writeSubquery(writer, *node.query);
        return;
    }
    writer << "(";
    writeExpressions(writer, node.list);
    writer << ")";
}

void writeBare(Writer& writer, const Expression& expression) {
    switch (expression.kind) {
        case ExpressionKind::Literal:
            writer << print(writer.literals()[as<LiteralExpression>(expression).literal]);
            break;
        case ExpressionKind::Null:
            writer << "NULL";
            break;
        case ExpressionKind::Default:
            writer << "DEFAULT";
            break;
        case ExpressionKind::ParameterMarker:
            writer << "?";
            break;
        case ExpressionKind::Variable:
            writer << as<VariableExpression>(expression).name;
            break;
        case ExpressionKind::SystemVariable:
            writer << as<SystemVariableExpression>(expression).name;
            break;
        case ExpressionKind::Column:
            write(writer, as<ColumnExpression>(expression).name);
            break;
        case ExpressionKind::Unary:
            writeUnary(writer, as<UnaryExpression>(expression));
            break;
        case ExpressionKind::Binary:
            writeBinary(writer, as<BinaryExpression>(expression));
            break;
        case ExpressionKind::Case:
            writeCase(writer, as<CaseExpression>(expression));
            break;
        case ExpressionKind::Iif: {
            const auto& node = as<IifExpression>(expression);
            writer << "IIF(";
            write(writer, *node.condition);
            writer << ", ";
            write(writer, *node.then);
            writer << ", ";
            write(writer, *node.otherwise);
            writer << ")";
            break;
        }
        case ExpressionKind::Cast: {
            const auto& node = as<CastExpression>(expression);
            writer << (node.tries ? "TRY_CAST(" : "CAST(");
            write(writer, *node.operand);
            writer << " AS ";
            write(writer, node.type);
            writer << ")";
            break;
        }
        case ExpressionKind::Convert:
            writeConvert(writer, as<ConvertExpression>(expression));
            break;
        case ExpressionKind::Function:
            writeFunction(writer, as<FunctionExpression>(expression));
            break;
        case ExpressionKind::DatePart:
            writer << as<DatePartExpression>(expression).name;
            break;
        case ExpressionKind::Subquery:
            writeSubquery(writer, *as<SubqueryExpression>(expression).query);
            break;
        case ExpressionKind::XmlValue: {
            const auto& node = as<XmlValueExpression>(expression);
            write(writer, *node.operand);
            writer << ".value(" << print(writer.literals()[node.path]) << ", " << print(writer.literals()[node.type])
                   << ")";
            break;
        }
        case ExpressionKind::Collate: {
            const auto& node = as<CollateExpression>(expression);
            writeAt(writer, *node.operand, Level::Collate);
            writer << " COLLATE ";
            write(writer, node.collation);
            break;
        }
        case ExpressionKind::Comparison: {
            const auto& node = as<ComparisonExpression>(expression);
            writeOperand(writer, *node.left);
            writer << spellingOf(node.op);
            writeOperand(writer, *node.right);
            break;
        }
        case ExpressionKind::And: {
            const auto& node = as<AndExpression>(expression);
            writeAt(writer, *node.left, Level::And);
            writer << " AND ";
            writeAt(writer, *node.right, Level::Not);
            break;
        }
        case ExpressionKind::Or: {
            const auto& node = as<OrExpression>(expression);
            writeAt(writer, *node.left, Level::Or);
            writer << " OR ";
            writeAt(writer, *node.right, Level::And);
            break;
        }
        case ExpressionKind::Not:
            writer << "NOT ";
            writeAt(writer, *as<NotExpression>(expression).operand, Level::Not);
            break;
        case ExpressionKind::IsNull: {
            const auto& node = as<IsNullExpression>(expression);
            writeOperand(writer, *node.operand);
            writer << (node.negated ? " IS NOT NULL" : " IS NULL");
            break;
        }
        case ExpressionKind::In:
            writeIn(writer, as<InExpression>(expression));
            break;
        case ExpressionKind::Between: {
            const auto& node = as<BetweenExpression>(expression);
            writeOperand(writer, *node.operand);
            writer << (node.negated ? " NOT BETWEEN " : " BETWEEN ");
            writeOperand(writer, *node.low);
            writer << " AND ";
            writeOperand(writer, *node.high);
            break;
        }
        case ExpressionKind::Like: {
            const auto& node = as<LikeExpression>(expression);
            writeOperand(writer, *node.operand);
            writer << (node.negated ? " NOT LIKE " : " LIKE ");
            writeOperand(writer, *node.pattern);
            if (node.escape) {
                writer << " ESCAPE ";
                writeOperand(writer, *node.escape);
            }
            break;
        }
        case ExpressionKind::Exists:
            writer << "EXISTS ";
            writeSubquery(writer, *as<ExistsExpression>(expression).query);
            break;
        case ExpressionKind::Quantified: {
            const auto& node = as<QuantifiedExpression>(expression);
            writeOperand(writer, *node.operand);
            writer << spellingOf(node.op) << (node.all ? "ALL " : "ANY ");
            writeSubquery(writer, *node.query);
            break;
        }
    }
}

}  // namespace

void write(Writer& writer, const Expression& expression) {
    writeAt(writer, expression, Level::Or);
}
void writeOperand(Writer& writer, const Expression& expression) {
    writeAt(writer, expression, Level::Additive);
}

void writeExpressions(Writer& writer, const std::vector<ExpressionPtr>& list) {
    writeList(writer, list, [&](const ExpressionPtr& item) { write(writer, *item); });
}

void write(Writer& writer, const OrderItem& item) {
    write(writer, *item.expression);
    if (item.descending) writer << " DESC";
}

}  // namespace basalt::embedded
