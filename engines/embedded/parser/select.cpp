// SELECT: items, TOP, INTO, WHERE, GROUP BY, HAVING.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"

namespace basalt::embedded {

using namespace ast;

namespace {

// The tokens of a name before .*; 0 when this is no T.*
std::size_t starQualifierTokens(const TokenCursor& cursor) {
    std::size_t ahead = 0;
    while (cursor.atName(ahead) || cursor.peek(ahead).kind == TokenKind::Point) {
        if (cursor.peek(ahead).kind == TokenKind::Point && cursor.peek(ahead + 1).kind == TokenKind::Star) return ahead;
        ++ahead;
    }
    return 0;
}

ObjectName parseStarQualifier(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ObjectName name;
    name.parts.push_back(cursor.name());
    while (cursor.at(TokenKind::Point) && cursor.peek(1).kind != TokenKind::Star) {
        if (name.parts.size() == 3) cursor.failHere();
        cursor.next();
        if (cursor.at(TokenKind::Point)) {
            name.parts.emplace_back();
        } else {
            name.parts.push_back(cursor.name());
        }
    }
    name.range = cursor.from(start);
    cursor.expect(TokenKind::Point);
    cursor.expect(TokenKind::Star);
    return name;
}

// A column's name may also be given as a text.
Identifier textAlias(TokenCursor& cursor) {
    const Token& token = cursor.peek();
    Identifier alias;
    alias.quoted = true;
    alias.range = token.range;
    alias.text = std::string(cursor.literals()[token.literal].text);
    cursor.literals().fix(token.literal);
    cursor.next();
    cursor.requireGoodName(alias);
    return alias;
}

Identifier parseColumnAlias(TokenCursor& cursor) {
    if (cursor.accept(Keyword::As)) return cursor.atText() ? textAlias(cursor) : cursor.name();
    if (cursor.atText()) return textAlias(cursor);
    // A name before a colon is the label of the next statement.
    if (cursor.atName() && cursor.peek(1).kind != TokenKind::Colon) return cursor.name();
    return {};
}

void parseGroupBy(TokenCursor& cursor, Select& select) {
    cursor.expect(Keyword::Group);
    cursor.expect(Keyword::By);
    if (cursor.at(Keyword::All)) cursor.unsupportedHere("GROUP BY ALL");
    for (const std::string_view word : {"ROLLUP", "CUBE", "GROUPING"}) {
        if (cursor.atWord(word) && cursor.peek(1).kind != TokenKind::Comma) {
            if (word != "GROUPING" ? cursor.peek(1).kind == TokenKind::LeftParenthesis : cursor.atWord("SETS", 1)) {
                cursor.unsupportedHere(word == "GROUPING" ? "GROUPING SETS" : word);
            }
        }
    }
    select.groupBy = parseExpressionList(cursor);
    if (cursor.at(Keyword::With) && (cursor.atWord("ROLLUP", 1) || cursor.atWord("CUBE", 1))) {
        cursor.unsupportedHere(cursor.atWord("CUBE", 1) ? "WITH CUBE" : "WITH ROLLUP");
    }
}

}  // namespace

std::optional<AssignmentOperator> acceptAssignment(TokenCursor& cursor) {
    AssignmentOperator op = AssignmentOperator::Set;
    switch (cursor.peek().kind) {
        case TokenKind::Equal:
            op = AssignmentOperator::Set;
            break;
        case TokenKind::PlusEqual:
            op = AssignmentOperator::Add;
            break;
        case TokenKind::MinusEqual:
            op = AssignmentOperator::Subtract;
            break;
        case TokenKind::StarEqual:
            op = AssignmentOperator::Multiply;
            break;
        case TokenKind::SlashEqual:
            op = AssignmentOperator::Divide;
            break;
        case TokenKind::PercentEqual:
            op = AssignmentOperator::Modulo;
            break;
        case TokenKind::AmpersandEqual:
            op = AssignmentOperator::BitAnd;
            break;
        case TokenKind::BarEqual:
            op = AssignmentOperator::BitOr;
            break;
        case TokenKind::CaretEqual:
            op = AssignmentOperator::BitXor;
            break;
        default:
            return std::nullopt;
    }
    cursor.next();
    return op;
}

std::optional<TopClause> parseTop(TokenCursor& cursor) {
    if (!cursor.at(Keyword::Top)) return std::nullopt;
    const std::uint32_t start = cursor.begin();
    cursor.next();
    TopClause top;
    if (cursor.accept(TokenKind::LeftParenthesis)) {
        top.count = parseExpression(cursor);
        cursor.expect(TokenKind::RightParenthesis);
    } else {
        // Without parentheses only a number may stand here, so that TOP 5 -1 is five rows of -1.
        if (cursor.at(TokenKind::Marker)) {
            auto marker = std::make_unique<ParameterMarker>();
            marker->range = cursor.next().range;
            marker->ordinal = cursor.nextMarker();
            top.count = std::move(marker);
        } else {
            if (!cursor.at(TokenKind::Literal) || cursor.atText()) cursor.failHere();
            auto number = std::make_unique<LiteralExpression>();
            number->range = cursor.peek().range;
            number->literal = cursor.literal();
            top.count = std::move(number);
        }
    }
    top.percent = cursor.accept(Keyword::Percent);
    if (cursor.at(Keyword::With) && cursor.keyword(1) == Keyword::Ties) {
        cursor.next();
        cursor.next();
        top.withTies = true;
    }
    top.range = cursor.from(start);
    return top;
}

SelectItem parseSelectItem(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    SelectItem item;
    if (cursor.accept(TokenKind::Star)) {
        item.kind = SelectItemKind::Star;
    } else if (starQualifierTokens(cursor) > 0) {
        item.kind = SelectItemKind::Star;
        item.qualifier = parseStarQualifier(cursor);
    } else if (cursor.at(TokenKind::Variable) && cursor.peek(1).kind >= TokenKind::PlusEqual &&
               cursor.peek(1).kind <= TokenKind::CaretEqual) {
        item.kind = SelectItemKind::Assignment;
        item.variable = cursor.variable();
        item.op = *acceptAssignment(cursor);
        item.expression = parseExpression(cursor);
    } else if (cursor.at(TokenKind::Variable) && cursor.peek(1).kind == TokenKind::Equal) {
        item.kind = SelectItemKind::Assignment;
        item.variable = cursor.variable();
        cursor.next();
        item.expression = parseExpression(cursor);
    } else if ((cursor.atName() || cursor.atText()) && cursor.peek(1).kind == TokenKind::Equal) {
        item.alias = cursor.atText() ? textAlias(cursor) : cursor.name();
        cursor.next();
        item.expression = parseExpression(cursor);
    } else {
        item.expression = parseExpression(cursor);
        item.alias = parseColumnAlias(cursor);
    }
    item.range = cursor.from(start);
    return item;
}

QueryBodyPtr parseSelectBody(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto select = std::make_unique<Select>();
    cursor.expect(Keyword::Select);
    select->distinct = cursor.accept(Keyword::Distinct);
    if (!select->distinct) cursor.accept(Keyword::All);
    select->top = parseTop(cursor);
    do {
        select->items.push_back(parseSelectItem(cursor));
    } while (cursor.accept(TokenKind::Comma));
    if (cursor.accept(Keyword::Into)) select->into = cursor.objectName();
    if (cursor.accept(Keyword::From)) select->from = parseFrom(cursor);
    if (cursor.accept(Keyword::Where)) select->where = parseCondition(cursor);
    if (cursor.at(Keyword::Group)) parseGroupBy(cursor, *select);
    if (cursor.accept(Keyword::Having)) select->having = parseCondition(cursor);
    select->range = cursor.from(start);
    return select;
}

}  // namespace basalt::embedded
