// Calls of functions, and the functions with a grammar of their own.
#include <utility>

#include "engines/embedded/ast/query.h"
#include "engines/embedded/parser/expression.h"

namespace basalt::embedded {

using namespace ast;

namespace {

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

bool takesDatePart(const ObjectName& name) {
    if (name.parts.size() != 1 || name.parts.front().quoted) return false;
    const std::string folded = lowerCase(name.last());
    return folded == "dateadd" || folded == "datediff" || folded == "datediff_big" || folded == "datename" ||
           folded == "datepart";
}

ExpressionPtr parseDatePart(TokenCursor& cursor) {
    const Identifier name = cursor.name();
    auto node = std::make_unique<DatePartExpression>();
    node->name = lowerCase(name.text);
    node->range = name.range;
    return node;
}

FrameBound parseFrameBound(TokenCursor& cursor) {
    FrameBound bound;
    if (cursor.accept(Keyword::Unbounded)) {
        if (cursor.accept(Keyword::Preceding)) {
            bound.kind = FrameBoundKind::UnboundedPreceding;
        } else {
            cursor.expect(Keyword::Following);
            bound.kind = FrameBoundKind::UnboundedFollowing;
        }
    } else if (cursor.accept(Keyword::Current)) {
        cursor.expect(Keyword::Row);
        bound.kind = FrameBoundKind::CurrentRow;
    } else {
        bound.offset = parseOperand(cursor);
        if (cursor.accept(Keyword::Preceding)) {
            bound.kind = FrameBoundKind::Preceding;
        } else {
            cursor.expect(Keyword::Following);
            bound.kind = FrameBoundKind::Following;
        }
    }
    return bound;
}

std::unique_ptr<OverClause> parseOver(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto over = std::make_unique<OverClause>();
    cursor.expect(Keyword::Over);
    cursor.expect(TokenKind::LeftParenthesis);
    if (cursor.accept(Keyword::Partition)) {
        cursor.expect(Keyword::By);
        over->partitionBy = parseExpressionList(cursor);
    }
    if (cursor.accept(Keyword::Order)) {
        cursor.expect(Keyword::By);
        over->orderBy = parseOrderItems(cursor);
    }
    if (cursor.atAnyOf({Keyword::Rows, Keyword::Range})) {
        over->frame = cursor.at(Keyword::Rows) ? FrameUnit::Rows : FrameUnit::Range;
        cursor.next();
        if (cursor.accept(Keyword::Between)) {
            over->frameStart = parseFrameBound(cursor);
            cursor.expect(Keyword::And);
            over->frameEnd = std::make_unique<FrameBound>(parseFrameBound(cursor));
        } else {
            over->frameStart = parseFrameBound(cursor);
        }
    }
    cursor.expect(TokenKind::RightParenthesis);
    over->range = cursor.from(start);
    return over;
}

}  // namespace

std::vector<ExpressionPtr> parseArguments(TokenCursor& cursor) {
    std::vector<ExpressionPtr> arguments;
    if (!cursor.at(TokenKind::RightParenthesis)) arguments = parseExpressionList(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    return arguments;
}

ExpressionPtr parseFunctionCall(TokenCursor& cursor, ObjectName name) {
    const std::uint32_t start = name.range.begin;
    auto node = std::make_unique<FunctionExpression>();
    cursor.expect(TokenKind::LeftParenthesis);
    if (cursor.at(TokenKind::Star)) {
        cursor.next();
        node->star = true;
        cursor.expect(TokenKind::RightParenthesis);
    } else if (takesDatePart(name) && cursor.at(TokenKind::Word) && cursor.atName() &&
               cursor.peek(1).kind == TokenKind::Comma) {
        node->arguments.push_back(parseDatePart(cursor));
        cursor.expect(TokenKind::Comma);
        for (ExpressionPtr& argument : parseArguments(cursor))
            node->arguments.push_back(std::move(argument));
    } else {
        node->distinct = cursor.accept(Keyword::Distinct);
        if (!node->distinct) cursor.accept(Keyword::All);
        // User functions take DEFAULT for an argument.
        if (!cursor.at(TokenKind::RightParenthesis)) {
            do {
                node->arguments.push_back(parseExpressionOrDefault(cursor));
            } while (cursor.accept(TokenKind::Comma));
        }
        cursor.expect(TokenKind::RightParenthesis);
    }
    node->name = std::move(name);
    if (cursor.at(Keyword::Within) && cursor.keyword(1) == Keyword::Group) {
        cursor.next();
        cursor.next();
        cursor.expect(TokenKind::LeftParenthesis);
        cursor.expect(Keyword::Order);
        cursor.expect(Keyword::By);
        node->withinGroup = parseOrderItems(cursor);
        cursor.expect(TokenKind::RightParenthesis);
    }
    if (cursor.at(Keyword::Over)) node->over = parseOver(cursor);
    node->range = cursor.from(start);
    return node;
}

ExpressionPtr parseCase(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto node = std::make_unique<CaseExpression>();
    cursor.expect(Keyword::Case);
    if (!cursor.at(Keyword::When)) node->input = parseExpression(cursor);
    if (!cursor.at(Keyword::When)) cursor.failHere();
    while (cursor.accept(Keyword::When)) {
        CaseExpression::When when;
        when.when = node->input ? parseExpression(cursor) : parseCondition(cursor);
        cursor.expect(Keyword::Then);
        when.then = parseExpression(cursor);
        node->whens.push_back(std::move(when));
    }
    if (cursor.accept(Keyword::Else)) node->otherwise = parseExpression(cursor);
    cursor.expect(Keyword::End);
    node->range = cursor.from(start);
    return node;
}

ExpressionPtr parseCast(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto node = std::make_unique<CastExpression>();
    node->tries = cursor.at(Keyword::TryCast);
    cursor.next();
    cursor.expect(TokenKind::LeftParenthesis);
    node->operand = parseExpression(cursor);
    cursor.expect(Keyword::As);
    node->type = parseDataType(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    node->range = cursor.from(start);
    return node;
}

ExpressionPtr parseConvert(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto node = std::make_unique<ConvertExpression>();
    node->tries = cursor.at(Keyword::TryConvert);
    cursor.next();
    cursor.expect(TokenKind::LeftParenthesis);
    node->type = parseDataType(cursor);
    cursor.expect(TokenKind::Comma);
    node->operand = parseExpression(cursor);
    if (cursor.accept(TokenKind::Comma)) node->style = parseExpression(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    node->range = cursor.from(start);
    return node;
}

ExpressionPtr parseIif(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto node = std::make_unique<IifExpression>();
    cursor.next();
    cursor.expect(TokenKind::LeftParenthesis);
    node->condition = parseCondition(cursor);
    cursor.expect(TokenKind::Comma);
    node->then = parseExpression(cursor);
    cursor.expect(TokenKind::Comma);
    node->otherwise = parseExpression(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    node->range = cursor.from(start);
    return node;
}

}  // namespace basalt::embedded
