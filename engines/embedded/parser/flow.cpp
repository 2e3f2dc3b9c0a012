// IF, WHILE, BEGIN ... END, TRY ... CATCH, RETURN, GOTO.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void expectTry(TokenCursor& cursor, Keyword part) {
    cursor.expect(Keyword::End);
    cursor.expect(part);
}

StatementPtr parseTryCatch(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<TryCatchStatement>();
    cursor.expect(Keyword::Begin);
    cursor.expect(Keyword::Try);
    statement->tries = parseStatements(cursor);
    expectTry(cursor, Keyword::Try);
    skipSemicolons(cursor);
    cursor.expect(Keyword::Begin);
    cursor.expect(Keyword::Catch);
    statement->catches = parseStatements(cursor);
    expectTry(cursor, Keyword::Catch);
    return finish(cursor, std::move(statement), start);
}

}  // namespace

StatementPtr parseIf(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<IfStatement>();
    cursor.expect(Keyword::If);
    statement->condition = parseCondition(cursor);
    statement->then = parseStatement(cursor);
    // ELSE may come behind a semicolon; without ELSE the semicolon ends the IF.
    std::size_t ahead = 0;
    while (cursor.peek(ahead).kind == TokenKind::Semicolon)
        ++ahead;
    if (cursor.keyword(ahead) == Keyword::Else) {
        skipSemicolons(cursor);
        cursor.next();
        statement->otherwise = parseStatement(cursor);
    }
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseWhile(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<WhileStatement>();
    cursor.expect(Keyword::While);
    statement->condition = parseCondition(cursor);
    const LoopScope loop(cursor);
    statement->body = parseStatement(cursor);
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseBegin(TokenCursor& cursor) {
    switch (cursor.keyword(1)) {
        case Keyword::Try:
            return parseTryCatch(cursor);
        case Keyword::Tran:
        case Keyword::Transaction:
            return parseTransaction(cursor);
        case Keyword::Distributed:
            cursor.unsupportedHere("BEGIN DISTRIBUTED TRANSACTION");
        default:
            break;
    }
    const std::uint32_t start = cursor.begin();
    auto block = std::make_unique<BlockStatement>();
    cursor.expect(Keyword::Begin);
    block->statements = parseStatements(cursor);
    if (block->statements.empty()) cursor.failHere();
    cursor.expect(Keyword::End);
    return finish(cursor, std::move(block), start);
}

StatementPtr parseReturn(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<ReturnStatement>();
    cursor.expect(Keyword::Return);
    const bool labelFollows = cursor.atName() && cursor.peek(1).kind == TokenKind::Colon;
    if (atExpression(cursor) && !labelFollows) {
        statement->value = parseExpression(cursor);
        if (!cursor.inModule()) {
            cursor.fail(178, "A RETURN statement with a return value cannot be used in this context.",
                        cursor.from(start));
        }
    }
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseGoto(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<GotoStatement>();
    cursor.expect(Keyword::Goto);
    statement->label = cursor.name();
    return finish(cursor, std::move(statement), start);
}

StatementPtr parseLabel(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<LabelStatement>();
    statement->label = cursor.name();
    cursor.expect(TokenKind::Colon);
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
