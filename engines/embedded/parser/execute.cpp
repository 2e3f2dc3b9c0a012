// EXEC in all its forms, and the call escape {call p(...)}.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

// A procedure takes constants and variables, never whole expressions: EXEC p 1 + 1 is an error.
ExpressionPtr parseArgumentValue(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    if (cursor.at(TokenKind::Minus) || cursor.at(TokenKind::Plus)) {
        const bool minus = cursor.at(TokenKind::Minus);
        if (cursor.peek(1).kind != TokenKind::Literal) {
            cursor.next();
            cursor.failHere();
        }
        auto node = std::make_unique<UnaryExpression>();
        node->op = minus ? UnaryOperator::Minus : UnaryOperator::Plus;
        cursor.next();
        const std::uint32_t operandStart = cursor.begin();
        auto operand = std::make_unique<LiteralExpression>();
        operand->literal = cursor.literal();
        operand->range = cursor.from(operandStart);
        node->operand = std::move(operand);
        node->range = cursor.from(start);
        return node;
    }
    switch (cursor.peek().kind) {
        case TokenKind::Literal: {
            auto node = std::make_unique<LiteralExpression>();
            node->literal = cursor.literal();
            node->range = cursor.from(start);
            return node;
        }
        case TokenKind::Variable:
        case TokenKind::SystemVariable:
        case TokenKind::Marker: {
            ExpressionPtr node;
            if (cursor.at(TokenKind::Variable)) {
                auto variable = std::make_unique<VariableExpression>();
                variable->name = cursor.variable();
                node = std::move(variable);
            } else if (cursor.at(TokenKind::Marker)) {
                auto marker = std::make_unique<ParameterMarker>();
                cursor.next();
                marker->ordinal = cursor.nextMarker();
                node = std::move(marker);
            } else {
                if (cursor.peek().range.size() < 3) cursor.failHere();
                auto variable = std::make_unique<SystemVariableExpression>();
                variable->name = std::string(cursor.spelling(cursor.next()));
                for (char& c : variable->name) {
                    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
                }
                node = std::move(variable);
            }
            node->range = cursor.from(start);
            return node;
        }
        case TokenKind::Word:
        case TokenKind::QuotedName: {
            ExpressionPtr node;
            if (cursor.accept(Keyword::Null)) {
                node = std::make_unique<NullExpression>();
            } else if (cursor.accept(Keyword::Default)) {
                node = std::make_unique<DefaultExpression>();
            } else {
                // A bare word is its own text.
                auto column = std::make_unique<ColumnExpression>();
                column->name.parts.push_back(cursor.name());
                column->name.range = cursor.from(start);
                node = std::move(column);
            }
            node->range = cursor.from(start);
            return node;
        }
        default:
            cursor.failHere();
    }
}

ExecuteArgument parseArgument(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ExecuteArgument argument;
    if (cursor.at(TokenKind::Variable) && cursor.peek(1).kind == TokenKind::Equal) {
        argument.name = cursor.variable();
        cursor.next();
    }
    argument.value = parseArgumentValue(cursor);
    argument.output = cursor.accept(Keyword::Output) || cursor.accept(Keyword::Out);
    argument.range = cursor.from(start);
    return argument;
}

bool atArgument(const TokenCursor& cursor) {
    switch (cursor.peek().kind) {
        case TokenKind::Literal:
        case TokenKind::Variable:
        case TokenKind::SystemVariable:
        case TokenKind::Marker:
        case TokenKind::Minus:
        case TokenKind::Plus:
        case TokenKind::QuotedName:
            return true;
        case TokenKind::Word:
            if (cursor.atAnyOf({Keyword::Null, Keyword::Default})) return true;
            return cursor.atName() && cursor.peek(1).kind != TokenKind::Colon;
        default:
            return false;
    }
}

void parseArgumentList(TokenCursor& cursor, ExecuteStatement& statement) {
    if (!atArgument(cursor)) return;
    do {
        statement.arguments.push_back(parseArgument(cursor));
    } while (cursor.accept(TokenKind::Comma));
}

// EXEC (text)
void parseDynamic(TokenCursor& cursor, ExecuteStatement& statement) {
    cursor.expect(TokenKind::LeftParenthesis);
    statement.text = parseExpression(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    if (cursor.at(Keyword::As)) cursor.unsupportedHere("EXECUTE AS");
}

void skipRecompile(TokenCursor& cursor) {
    if (cursor.at(Keyword::With) && cursor.keyword(1) == Keyword::Recompile) {
        cursor.next();
        cursor.next();
    }
}

}  // namespace

StatementPtr parseExecute(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<ExecuteStatement>();
    cursor.next();
    if (cursor.at(Keyword::As)) cursor.unsupportedHere("EXECUTE AS");
    if (cursor.at(TokenKind::LeftParenthesis)) {
        parseDynamic(cursor, *statement);
        return finish(cursor, std::move(statement), start);
    }
    if (cursor.at(TokenKind::Variable) && cursor.peek(1).kind == TokenKind::Equal) {
        statement->returnVariable = cursor.variable();
        cursor.next();
    }
    if (cursor.at(TokenKind::Variable)) {
        statement->procedureVariable = cursor.variable();
    } else {
        statement->procedure = cursor.objectName();
    }
    // A semicolon ends the statement, unless the number of a procedure follows, which could begin none.
    if (cursor.at(TokenKind::Semicolon) && cursor.peek(1).kind == TokenKind::Literal)
        cursor.unsupportedHere("a numbered procedure");
    parseArgumentList(cursor, *statement);
    skipRecompile(cursor);
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseBareExecute(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<ExecuteStatement>();
    statement->procedure = cursor.objectName();
    parseArgumentList(cursor, *statement);
    skipRecompile(cursor);
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseCall(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<ExecuteStatement>();
    statement->call = true;
    cursor.expect(TokenKind::LeftBrace);
    if (cursor.accept(TokenKind::Marker)) {
        statement->returnMarker = cursor.nextMarker();
        cursor.expect(TokenKind::Equal);
    }
    cursor.expect(Keyword::Call);
    statement->procedure = cursor.objectName();
    if (cursor.accept(TokenKind::LeftParenthesis)) {
        if (!cursor.at(TokenKind::RightParenthesis)) {
            do {
                statement->arguments.push_back(parseArgument(cursor));
            } while (cursor.accept(TokenKind::Comma));
        }
        cursor.expect(TokenKind::RightParenthesis);
    }
    cursor.expect(TokenKind::RightBrace);
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
