#include "engines/embedded/parser/expression.h"

#include <utility>

#include "engines/embedded/ast/query.h"
#include "engines/embedded/parser/query.h"

namespace basalt::embedded {

using namespace ast;

namespace {

ExpressionPtr parseOr(TokenCursor& cursor);
ExpressionPtr parseAdditive(TokenCursor& cursor);
ExpressionPtr parseMultiplicative(TokenCursor& cursor);

template <typename Node>
std::unique_ptr<Node> make(SourceRange range) {
    auto node = std::make_unique<Node>();
    node->range = range;
    return node;
}

void requireValue(TokenCursor& cursor, const Expression& expression) {
    if (isCondition(expression.kind)) cursor.failHere();
}

void requireCondition(TokenCursor& cursor, const Expression& expression) {
    if (isCondition(expression.kind)) return;
    const std::string_view near = cursor.spelling(cursor.peek());
    const std::string_view shown =
        near.empty() ? cursor.text().substr(expression.range.begin, expression.range.size()) : near;
    cursor.fail(4145,
                "An expression of non-boolean type specified in a context where a condition is expected, near '" +
                    std::string(shown) + "'.",
                near.empty() ? expression.range : cursor.peek().range);
}

// ---- Names, literals, parentheses

// Both are part of the statement's shape.
LiteralIndex parseXmlText(TokenCursor& cursor) {
    if (!cursor.atText()) cursor.failHere();
    const LiteralIndex text = cursor.literal();
    cursor.literals().fix(text);
    return text;
}

// .value('path', 'type') behind the XML of a query
ExpressionPtr parseXmlValue(TokenCursor& cursor, ExpressionPtr operand, std::uint32_t start) {
    auto node = std::make_unique<XmlValueExpression>();
    node->operand = std::move(operand);
    cursor.expect(TokenKind::Point);
    cursor.expectWord("VALUE");
    cursor.expect(TokenKind::LeftParenthesis);
    node->path = parseXmlText(cursor);
    cursor.expect(TokenKind::Comma);
    node->type = parseXmlText(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    node->range = cursor.from(start);
    return node;
}

ExpressionPtr parseParenthesized(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    cursor.expect(TokenKind::LeftParenthesis);
    if (cursor.at(Keyword::Select)) {
        auto node = std::make_unique<SubqueryExpression>();
        node->query = parseQuery(cursor);
        cursor.expect(TokenKind::RightParenthesis);
        node->range = cursor.from(start);
        const bool isXml = node->query->forXml && node->query->forXml->type;
        if (isXml && cursor.at(TokenKind::Point)) return parseXmlValue(cursor, std::move(node), start);
        return node;
    }
    ExpressionPtr inner = parseOr(cursor);
    // ((select ...) union (select ...)): what looked like a value in parentheses was the first operand.
    if (inner->kind == ExpressionKind::Subquery && atSetOperator(cursor)) {
        auto& subquery = static_cast<SubqueryExpression&>(*inner);
        subquery.query = continueQuery(cursor, std::move(subquery.query));
    }
    cursor.expect(TokenKind::RightParenthesis);
    inner->range = cursor.from(start);
    return inner;
}

// CURRENT_TIMESTAMP and its like: functions that stand without parentheses.
ExpressionPtr parseNiladic(TokenCursor& cursor) {
    const Token& token = cursor.next();
    auto node = make<FunctionExpression>(token.range);
    Identifier name;
    name.text = std::string(cursor.spelling(token));
    name.range = token.range;
    node->name.range = token.range;
    node->name.parts.push_back(std::move(name));
    node->noParentheses = true;
    return node;
}

// LEFT(...), COALESCE(...): functions whose names are reserved words.
ExpressionPtr parseReservedFunction(TokenCursor& cursor) {
    if (cursor.peek(1).kind != TokenKind::LeftParenthesis) cursor.failHere();
    const Token& token = cursor.next();
    ObjectName name;
    Identifier identifier;
    identifier.text = std::string(cursor.spelling(token));
    identifier.range = token.range;
    name.range = token.range;
    name.parts.push_back(std::move(identifier));
    return parseFunctionCall(cursor, std::move(name));
}

ExpressionPtr parseNamed(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ObjectName name = cursor.objectName();
    if (cursor.at(TokenKind::LeftParenthesis)) return parseFunctionCall(cursor, std::move(name));
    auto node = make<ColumnExpression>(cursor.from(start));
    node->name = std::move(name);
    return node;
}

ExpressionPtr parseExists(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    cursor.expect(Keyword::Exists);
    auto node = std::make_unique<ExistsExpression>();
    node->query = parseSubquery(cursor);
    node->range = cursor.from(start);
    return node;
}

ExpressionPtr parseWord(TokenCursor& cursor) {
    const Token& token = cursor.peek();
    const bool call = cursor.peek(1).kind == TokenKind::LeftParenthesis;
    switch (cursor.keyword()) {
        case Keyword::Null:
            return make<NullExpression>(cursor.next().range);
        case Keyword::Case:
            return parseCase(cursor);
        case Keyword::Exists:
            return parseExists(cursor);
        case Keyword::Convert:
        case Keyword::TryConvert:
            return parseConvert(cursor);
        case Keyword::Cast:
        case Keyword::TryCast:
            return call ? parseCast(cursor) : parseNamed(cursor);
        case Keyword::Iif:
            return call ? parseIif(cursor) : parseNamed(cursor);
        case Keyword::Coalesce:
        case Keyword::Nullif:
        case Keyword::Left:
        case Keyword::Right:
            return parseReservedFunction(cursor);
        case Keyword::CurrentTimestamp:
        case Keyword::CurrentUser:
        case Keyword::SessionUser:
        case Keyword::SystemUser:
        case Keyword::User:
            return parseNiladic(cursor);
        case Keyword::Contains:
        case Keyword::Freetext:
        case Keyword::Tsequal:
            if (call) cursor.unsupportedHere(cursor.spelling(token));
            break;
        case Keyword::Next:
            if (cursor.keyword(1) == Keyword::None && cursor.atWord("VALUE", 1))
                cursor.unsupportedHere("NEXT VALUE FOR");
            break;
        default:
            break;
    }
    return parseNamed(cursor);
}

ExpressionPtr parsePrimary(TokenCursor& cursor) {
    const Token& token = cursor.peek();
    switch (token.kind) {
        case TokenKind::Literal: {
            auto node = make<LiteralExpression>(token.range);
            node->literal = cursor.literal();
            return node;
        }
        case TokenKind::Marker: {
            auto node = make<ParameterMarker>(cursor.next().range);
            node->ordinal = cursor.nextMarker();
            return node;
        }
        case TokenKind::Variable: {
            auto node = make<VariableExpression>(token.range);
            node->name = cursor.variable();
            return node;
        }
        case TokenKind::SystemVariable: {
            if (token.range.size() < 3) cursor.failHere();
            auto node = make<SystemVariableExpression>(cursor.next().range);
            node->name = std::string(cursor.spelling(token));
            for (char& c : node->name) {
                if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
            }
            return node;
        }
        case TokenKind::LeftParenthesis:
            return parseParenthesized(cursor);
        case TokenKind::LeftBrace:
            cursor.unsupportedHere("{");
        case TokenKind::Word:
            if (cursor.at(Keyword::Identity) && cursor.peek(1).kind == TokenKind::LeftParenthesis)
                cursor.unsupportedHere("IDENTITY() in SELECT ... INTO");
            return parseWord(cursor);
        case TokenKind::QuotedName:
            return parseNamed(cursor);
        default:
            cursor.failHere();
    }
}

ExpressionPtr parseCollated(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    const std::uint32_t start = cursor.begin();
    ExpressionPtr operand = parsePrimary(cursor);
    while (cursor.at(Keyword::Collate)) {
        requireValue(cursor, *operand);
        cursor.countOperator();
        cursor.next();
        auto node = std::make_unique<CollateExpression>();
        node->operand = std::move(operand);
        node->collation = cursor.name();
        node->range = cursor.from(start);
        operand = std::move(node);
    }
    return operand;
}

// ---- Arithmetic

ExpressionPtr parseUnary(TokenCursor& cursor) {
    UnaryOperator op = UnaryOperator::Plus;
    switch (cursor.peek().kind) {
        case TokenKind::Plus:
            op = UnaryOperator::Plus;
            break;
        case TokenKind::Minus:
            op = UnaryOperator::Minus;
            break;
        case TokenKind::Tilde:
            op = UnaryOperator::BitwiseNot;
            break;
        default:
            return parseCollated(cursor);
    }
    const Nesting nesting(cursor);
    const std::uint32_t start = cursor.begin();
    cursor.countOperator();
    cursor.next();
    auto node = std::make_unique<UnaryExpression>();
    node->op = op;
    node->operand = op == UnaryOperator::BitwiseNot ? parseUnary(cursor) : parseMultiplicative(cursor);
    requireValue(cursor, *node->operand);
    node->range = cursor.from(start);
    return node;
}

bool multiplicative(TokenKind kind, BinaryOperator& op) {
    switch (kind) {
        case TokenKind::Star:
            op = BinaryOperator::Multiply;
            return true;
        case TokenKind::Slash:
            op = BinaryOperator::Divide;
            return true;
        case TokenKind::Percent:
            op = BinaryOperator::Modulo;
            return true;
        default:
            return false;
    }
}

bool additive(TokenKind kind, BinaryOperator& op) {
    switch (kind) {
        case TokenKind::Plus:
            op = BinaryOperator::Add;
            return true;
        case TokenKind::Minus:
            op = BinaryOperator::Subtract;
            return true;
        case TokenKind::Ampersand:
            op = BinaryOperator::BitAnd;
            return true;
        case TokenKind::Bar:
            op = BinaryOperator::BitOr;
            return true;
        case TokenKind::Caret:
            op = BinaryOperator::BitXor;
            return true;
        default:
            return false;
    }
}

template <bool (*IsOperator)(TokenKind, BinaryOperator&), ExpressionPtr (*ParseOperand)(TokenCursor&)>
ExpressionPtr parseChain(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ExpressionPtr left = ParseOperand(cursor);
    BinaryOperator op = BinaryOperator::Add;
    while (IsOperator(cursor.peek().kind, op)) {
        requireValue(cursor, *left);
        cursor.countOperator();
        auto node = std::make_unique<BinaryExpression>();
        node->op = op;
        node->operatorRange = cursor.next().range;
        node->left = std::move(left);
        node->right = ParseOperand(cursor);
        requireValue(cursor, *node->right);
        node->range = cursor.from(start);
        left = std::move(node);
    }
    return left;
}

ExpressionPtr parseMultiplicative(TokenCursor& cursor) {
    return parseChain<multiplicative, parseUnary>(cursor);
}
ExpressionPtr parseAdditive(TokenCursor& cursor) {
    return parseChain<additive, parseMultiplicative>(cursor);
}

// ---- Predicates

// Also the two-token spellings with a blank between them (> =).
bool acceptComparison(TokenCursor& cursor, ComparisonOperator& op, SourceRange& range) {
    const std::uint32_t start = cursor.begin();
    switch (cursor.peek().kind) {
        case TokenKind::Equal:
            op = ComparisonOperator::Equal;
            break;
        case TokenKind::NotEqual:
            op = ComparisonOperator::NotEqual;
            break;
        case TokenKind::LessOrEqual:
            op = ComparisonOperator::LessOrEqual;
            break;
        case TokenKind::GreaterOrEqual:
            op = ComparisonOperator::GreaterOrEqual;
            break;
        case TokenKind::Less:
            op = ComparisonOperator::Less;
            if (cursor.peek(1).kind == TokenKind::Equal) op = ComparisonOperator::LessOrEqual;
            if (cursor.peek(1).kind == TokenKind::Greater) op = ComparisonOperator::NotEqual;
            if (op != ComparisonOperator::Less) cursor.next();
            break;
        case TokenKind::Greater:
            op = ComparisonOperator::Greater;
            if (cursor.peek(1).kind == TokenKind::Equal) {
                op = ComparisonOperator::GreaterOrEqual;
                cursor.next();
            }
            break;
        default:
            return false;
    }
    cursor.next();
    range = cursor.from(start);
    return true;
}

ExpressionPtr parseComparisonTail(TokenCursor& cursor, ExpressionPtr left, ComparisonOperator op, SourceRange opRange) {
    if (cursor.atAnyOf({Keyword::All, Keyword::Any, Keyword::Some})) {
        auto node = std::make_unique<QuantifiedExpression>();
        node->op = op;
        node->all = cursor.at(Keyword::All);
        cursor.next();
        node->operand = std::move(left);
        node->query = parseSubquery(cursor);
        return node;
    }
    auto node = std::make_unique<ComparisonExpression>();
    node->op = op;
    node->operatorRange = opRange;
    node->left = std::move(left);
    node->right = parseAdditive(cursor);
    requireValue(cursor, *node->right);
    return node;
}

ExpressionPtr parseIn(TokenCursor& cursor, ExpressionPtr operand, bool negated) {
    auto node = std::make_unique<InExpression>();
    node->operand = std::move(operand);
    node->negated = negated;
    if (cursor.at(TokenKind::LeftParenthesis) && cursor.keyword(1) == Keyword::Select) {
        node->query = parseSubquery(cursor);
    } else {
        cursor.expect(TokenKind::LeftParenthesis);
        node->list = parseExpressionList(cursor);
        cursor.expect(TokenKind::RightParenthesis);
    }
    return node;
}

ExpressionPtr parseBetween(TokenCursor& cursor, ExpressionPtr operand, bool negated) {
    auto node = std::make_unique<BetweenExpression>();
    node->operand = std::move(operand);
    node->negated = negated;
    node->low = parseOperand(cursor);
    cursor.expect(Keyword::And);
    node->high = parseOperand(cursor);
    return node;
}

ExpressionPtr parseLike(TokenCursor& cursor, ExpressionPtr operand, bool negated) {
    auto node = std::make_unique<LikeExpression>();
    node->operand = std::move(operand);
    node->negated = negated;
    node->pattern = parseOperand(cursor);
    if (cursor.accept(Keyword::Escape)) node->escape = parseOperand(cursor);
    return node;
}

ExpressionPtr parsePredicate(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ExpressionPtr left = parseAdditive(cursor);
    ExpressionPtr node;
    ComparisonOperator op = ComparisonOperator::Equal;
    SourceRange opRange;
    const Token& before = cursor.peek();
    if (acceptComparison(cursor, op, opRange)) {
        if (isCondition(left->kind)) cursor.failNear(before);
        node = parseComparisonTail(cursor, std::move(left), op, opRange);
    } else if (cursor.at(Keyword::Is)) {
        requireValue(cursor, *left);
        cursor.next();
        auto isNull = std::make_unique<IsNullExpression>();
        isNull->negated = cursor.accept(Keyword::Not);
        cursor.expect(Keyword::Null);
        isNull->operand = std::move(left);
        node = std::move(isNull);
    } else {
        const bool negated = cursor.at(Keyword::Not);
        const Keyword word = cursor.keyword(negated ? 1 : 0);
        if (word != Keyword::In && word != Keyword::Between && word != Keyword::Like) return left;
        requireValue(cursor, *left);
        if (negated) cursor.next();
        cursor.next();
        node = word == Keyword::In        ? parseIn(cursor, std::move(left), negated)
               : word == Keyword::Between ? parseBetween(cursor, std::move(left), negated)
                                          : parseLike(cursor, std::move(left), negated);
    }
    node->range = cursor.from(start);
    return node;
}

// ---- NOT, AND, OR

ExpressionPtr parseNot(TokenCursor& cursor) {
    if (!cursor.at(Keyword::Not)) return parsePredicate(cursor);
    const Nesting nesting(cursor);
    const std::uint32_t start = cursor.begin();
    cursor.countOperator();
    cursor.next();
    auto node = std::make_unique<NotExpression>();
    node->operand = parseNot(cursor);
    requireCondition(cursor, *node->operand);
    node->range = cursor.from(start);
    return node;
}

template <typename Node, Keyword Word, ExpressionPtr (*ParseOperand)(TokenCursor&)>
ExpressionPtr parseLogical(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ExpressionPtr left = ParseOperand(cursor);
    while (cursor.at(Word)) {
        requireCondition(cursor, *left);
        cursor.countOperator();
        cursor.next();
        auto node = std::make_unique<Node>();
        node->left = std::move(left);
        node->right = ParseOperand(cursor);
        requireCondition(cursor, *node->right);
        node->range = cursor.from(start);
        left = std::move(node);
    }
    return left;
}

ExpressionPtr parseAnd(TokenCursor& cursor) {
    return parseLogical<AndExpression, Keyword::And, parseNot>(cursor);
}
ExpressionPtr parseOr(TokenCursor& cursor) {
    return parseLogical<OrExpression, Keyword::Or, parseAnd>(cursor);
}

}  // namespace

ExpressionPtr parseExpression(TokenCursor& cursor) {
    return parseOperand(cursor);
}

ExpressionPtr parseOperand(TokenCursor& cursor) {
    const ExpressionScope scope(cursor);
    ExpressionPtr expression = parseAdditive(cursor);
    // (a = 1) where a value is expected: the mark belongs below the comparison, not behind it.
    if (const auto* comparison = tryAs<ComparisonExpression>(expression.get())) {
        cursor.failAt(comparison->operatorRange.begin);
    }
    requireValue(cursor, *expression);
    return expression;
}

ExpressionPtr parseExpressionOrDefault(TokenCursor& cursor) {
    if (cursor.at(Keyword::Default)) return make<DefaultExpression>(cursor.next().range);
    return parseExpression(cursor);
}

ExpressionPtr parseCondition(TokenCursor& cursor) {
    const ExpressionScope scope(cursor);
    ExpressionPtr expression = parseOr(cursor);
    requireCondition(cursor, *expression);
    return expression;
}

std::vector<ExpressionPtr> parseExpressionList(TokenCursor& cursor) {
    std::vector<ExpressionPtr> list;
    do {
        list.push_back(parseExpression(cursor));
    } while (cursor.accept(TokenKind::Comma));
    return list;
}

std::vector<ExpressionPtr> parseRow(TokenCursor& cursor) {
    cursor.expect(TokenKind::LeftParenthesis);
    std::vector<ExpressionPtr> row;
    do {
        row.push_back(parseExpressionOrDefault(cursor));
    } while (cursor.accept(TokenKind::Comma));
    cursor.expect(TokenKind::RightParenthesis);
    return row;
}

std::vector<OrderItem> parseOrderItems(TokenCursor& cursor) {
    std::vector<OrderItem> items;
    do {
        OrderItem item;
        item.expression = parseExpression(cursor);
        if (const auto* position = tryAs<LiteralExpression>(item.expression.get()))
            cursor.literals().fix(position->literal);
        if (cursor.accept(Keyword::Desc)) {
            item.descending = true;
        } else {
            cursor.accept(Keyword::Asc);
        }
        items.push_back(std::move(item));
    } while (cursor.accept(TokenKind::Comma));
    return items;
}

bool atExpression(const TokenCursor& cursor) {
    switch (cursor.peek().kind) {
        case TokenKind::Literal:
        case TokenKind::Marker:
        case TokenKind::Variable:
        case TokenKind::SystemVariable:
        case TokenKind::LeftParenthesis:
        case TokenKind::Plus:
        case TokenKind::Minus:
        case TokenKind::Tilde:
        case TokenKind::QuotedName:
            return true;
        case TokenKind::Word:
            return !isReserved(cursor.keyword()) ||
                   cursor.atAnyOf({Keyword::Null, Keyword::Case, Keyword::Convert, Keyword::TryConvert,
                                   Keyword::Coalesce, Keyword::Nullif, Keyword::Left, Keyword::Right,
                                   Keyword::CurrentTimestamp, Keyword::CurrentUser, Keyword::SessionUser,
                                   Keyword::SystemUser, Keyword::User});
        default:
            return false;
    }
}

}  // namespace basalt::embedded
