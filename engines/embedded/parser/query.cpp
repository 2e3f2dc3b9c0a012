#include "engines/embedded/parser/query.h"

#include <utility>

#include "engines/embedded/parser/expression.h"

namespace basalt::embedded {

using namespace ast;

namespace {

constexpr int kHighestMaxRecursion = 32767;

QueryBodyPtr parseBody(TokenCursor& cursor, QueryBodyPtr first);

// SELECT ..., or a body in parentheses.
QueryBodyPtr parseTerm(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    if (cursor.at(Keyword::Select)) return parseSelectBody(cursor);
    const std::uint32_t start = cursor.begin();
    cursor.expect(TokenKind::LeftParenthesis);
    QueryBodyPtr body = parseBody(cursor, nullptr);
    cursor.expect(TokenKind::RightParenthesis);
    body->range = cursor.from(start);
    return body;
}

QueryBodyPtr combine(TokenCursor& cursor, SetOperator op, QueryBodyPtr left, QueryBodyPtr right) {
    auto node = std::make_unique<SetOperation>();
    node->op = op;
    node->range = cursor.from(left->range.begin);
    node->left = std::move(left);
    node->right = std::move(right);
    return node;
}

// INTERSECT binds closer than the other two.
QueryBodyPtr parseIntersections(TokenCursor& cursor, QueryBodyPtr first) {
    QueryBodyPtr left = first ? std::move(first) : parseTerm(cursor);
    while (cursor.at(Keyword::Intersect)) {
        cursor.countTableOperator();
        cursor.next();
        left = combine(cursor, SetOperator::Intersect, std::move(left), parseTerm(cursor));
    }
    return left;
}

QueryBodyPtr parseBody(TokenCursor& cursor, QueryBodyPtr first) {
    QueryBodyPtr left = parseIntersections(cursor, std::move(first));
    while (cursor.atAnyOf({Keyword::Union, Keyword::Except})) {
        cursor.countTableOperator();
        SetOperator op = SetOperator::Except;
        if (cursor.accept(Keyword::Union)) {
            op = cursor.accept(Keyword::All) ? SetOperator::UnionAll : SetOperator::Union;
        } else {
            cursor.next();
        }
        left = combine(cursor, op, std::move(left), parseIntersections(cursor, nullptr));
    }
    return left;
}

ForXmlClause parseForXml(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    cursor.expect(Keyword::For);
    if (!cursor.at(Keyword::Xml)) cursor.unsupported("FOR", cursor.from(start));
    cursor.next();
    ForXmlClause clause;
    if (cursor.accept(Keyword::Raw)) {
        clause.mode = ForXmlClause::Mode::Raw;
    } else if (cursor.accept(Keyword::Auto)) {
        clause.mode = ForXmlClause::Mode::Auto;
    } else {
        cursor.expect(Keyword::Path);
        clause.mode = ForXmlClause::Mode::Path;
    }
    if (clause.mode != ForXmlClause::Mode::Auto && cursor.accept(TokenKind::LeftParenthesis)) {
        if (!cursor.atText()) cursor.failHere();
        clause.elementName = cursor.literal();
        cursor.literals().fix(*clause.elementName);
        cursor.expect(TokenKind::RightParenthesis);
    }
    if (cursor.at(TokenKind::Comma)) {
        cursor.next();
        if (!cursor.at(Keyword::Type)) cursor.unsupportedHere(cursor.spelling(cursor.peek()));
        cursor.next();
        clause.type = true;
    }
    clause.range = cursor.from(start);
    return clause;
}

void parseTail(TokenCursor& cursor, QueryExpression& query) {
    if (cursor.accept(Keyword::Order)) {
        cursor.expect(Keyword::By);
        query.orderBy = parseOrderItems(cursor);
        if (cursor.at(Keyword::Offset)) {
            cursor.next();
            query.offset = parseOperand(cursor);
            if (!cursor.accept(Keyword::Rows)) cursor.expect(Keyword::Row);
            if (cursor.accept(Keyword::Fetch)) {
                if (!cursor.accept(Keyword::Next)) cursor.expect(Keyword::First);
                query.fetch = parseOperand(cursor);
                if (!cursor.accept(Keyword::Rows)) cursor.expect(Keyword::Row);
                cursor.expect(Keyword::Only);
            }
        }
    }
    if (cursor.at(Keyword::For)) query.forXml = parseForXml(cursor);
    query.maxRecursion = parseQueryHints(cursor);
}

}  // namespace

bool atSetOperator(const TokenCursor& cursor) {
    return cursor.atAnyOf({Keyword::Union, Keyword::Except, Keyword::Intersect});
}

QueryPtr parseQuery(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    const std::uint32_t start = cursor.begin();
    auto query = std::make_unique<QueryExpression>();
    query->body = parseBody(cursor, nullptr);
    parseTail(cursor, *query);
    query->range = cursor.from(start);
    return query;
}

QueryPtr parseSubquery(TokenCursor& cursor) {
    cursor.expect(TokenKind::LeftParenthesis);
    QueryPtr query = parseQuery(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    return query;
}

QueryPtr continueQuery(TokenCursor& cursor, QueryPtr first) {
    // An operand of a set operation has no order of its own.
    if (!first->orderBy.empty() || first->forXml) cursor.failHere();
    const std::uint32_t start = first->range.begin;
    auto query = std::make_unique<QueryExpression>();
    query->body = parseBody(cursor, std::move(first->body));
    parseTail(cursor, *query);
    query->range = cursor.from(start);
    return query;
}

std::vector<CommonTableExpression> parseWith(TokenCursor& cursor) {
    std::vector<CommonTableExpression> list;
    if (!cursor.accept(Keyword::With)) return list;
    do {
        const std::uint32_t start = cursor.begin();
        CommonTableExpression item;
        item.name = cursor.name();
        if (cursor.at(TokenKind::LeftParenthesis)) item.columns = parseNameList(cursor);
        cursor.expect(Keyword::As);
        item.query = parseSubquery(cursor);
        item.range = cursor.from(start);
        list.push_back(std::move(item));
    } while (cursor.accept(TokenKind::Comma));
    return list;
}

std::vector<Identifier> parseNameList(TokenCursor& cursor) {
    std::vector<Identifier> names;
    cursor.expect(TokenKind::LeftParenthesis);
    do {
        names.push_back(cursor.name());
    } while (cursor.accept(TokenKind::Comma));
    cursor.expect(TokenKind::RightParenthesis);
    return names;
}

std::optional<int> parseQueryHints(TokenCursor& cursor) {
    std::optional<int> maxRecursion;
    if (!cursor.accept(Keyword::Option)) return maxRecursion;
    cursor.expect(TokenKind::LeftParenthesis);
    int open = 1;
    while (open > 0) {
        if (cursor.atEnd()) cursor.failHere();
        if (cursor.acceptWord("MAXRECURSION")) {
            const SourceRange place = cursor.peek().range;
            maxRecursion = cursor.fixedInteger();
            if (*maxRecursion > kHighestMaxRecursion) {
                cursor.fail(310,
                            "The value " + std::to_string(*maxRecursion) +
                                " specified for the MAXRECURSION option exceeds the allowed maximum of " +
                                std::to_string(kHighestMaxRecursion) + ".",
                            place);
            }
            continue;
        }
        const Token& token = cursor.next();
        if (token.kind == TokenKind::LeftParenthesis) ++open;
        if (token.kind == TokenKind::RightParenthesis) --open;
        if (token.kind == TokenKind::Literal) cursor.literals().fix(token.literal);
    }
    return maxRecursion;
}

}  // namespace basalt::embedded
