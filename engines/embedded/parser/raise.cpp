// PRINT, RAISERROR, THROW.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parsePrint(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<PrintStatement>();
    cursor.expect(Keyword::Print);
    statement->message = parseExpression(cursor);
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseRaisError(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<RaisErrorStatement>();
    cursor.expect(Keyword::Raiserror);
    cursor.expect(TokenKind::LeftParenthesis);
    statement->message = parseOperand(cursor);
    cursor.expect(TokenKind::Comma);
    statement->severity = parseOperand(cursor);
    cursor.expect(TokenKind::Comma);
    statement->state = parseOperand(cursor);
    while (cursor.accept(TokenKind::Comma))
        statement->arguments.push_back(parseOperand(cursor));
    cursor.expect(TokenKind::RightParenthesis);
    if (cursor.accept(Keyword::With)) {
        do {
            statement->options.push_back(cursor.capitalWord());
        } while (cursor.accept(TokenKind::Comma));
    }
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseThrow(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<ThrowStatement>();
    cursor.expect(Keyword::Throw);
    if (cursor.at(TokenKind::Literal) || cursor.at(TokenKind::Variable)) {
        statement->number = parseOperand(cursor);
        cursor.expect(TokenKind::Comma);
        statement->message = parseOperand(cursor);
        cursor.expect(TokenKind::Comma);
        statement->state = parseOperand(cursor);
    }
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
