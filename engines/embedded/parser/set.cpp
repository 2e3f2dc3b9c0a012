// SET: variables and options.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

StatementPtr parseSetVariable(TokenCursor& cursor, std::uint32_t start) {
    auto statement = std::make_unique<SetVariableStatement>();
    statement->name = cursor.variable();
    const std::optional<AssignmentOperator> op = acceptAssignment(cursor);
    if (!op) cursor.failHere();
    if (cursor.at(Keyword::Cursor)) cursor.unsupportedHere("CURSOR");
    statement->op = *op;
    statement->value = parseExpression(cursor);
    return finish(cursor, std::move(statement), start);
}

void expectOnOff(TokenCursor& cursor, SetOptionStatement& statement) {
    if (cursor.accept(Keyword::On)) {
        statement.on = true;
    } else {
        cursor.expect(Keyword::Off);
        statement.on = false;
    }
}

void parseIsolationLevel(TokenCursor& cursor, SetOptionStatement& statement) {
    cursor.next();
    cursor.expect(Keyword::Isolation);
    cursor.expect(Keyword::Level);
    statement.options.emplace_back("TRANSACTION ISOLATION LEVEL");
    statement.word = cursor.capitalWord();
    if (statement.word == "READ" || statement.word == "REPEATABLE") statement.word += " " + cursor.capitalWord();
}

// What stands behind an option that is not just ON or OFF.
void parseOptionValue(TokenCursor& cursor, SetOptionStatement& statement) {
    if (cursor.atAnyOf({Keyword::On, Keyword::Off})) {
        expectOnOff(cursor, statement);
    } else if (cursor.at(TokenKind::Word)) {
        statement.word = cursor.capitalWord();
    } else if (atExpression(cursor)) {
        statement.value = parseOperand(cursor);
    } else {
        cursor.failHere();
    }
}

}  // namespace

StatementPtr parseSet(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    cursor.expect(Keyword::Set);
    if (cursor.at(TokenKind::Variable)) return parseSetVariable(cursor, start);
    auto statement = std::make_unique<SetOptionStatement>();
    if (cursor.at(Keyword::Transaction) || cursor.at(Keyword::Tran)) {
        parseIsolationLevel(cursor, *statement);
    } else if (cursor.accept(Keyword::IdentityInsert)) {
        statement->options.emplace_back("IDENTITY_INSERT");
        statement->table = cursor.objectName();
        expectOnOff(cursor, *statement);
    } else if (cursor.accept(Keyword::Statistics)) {
        std::string option = "STATISTICS " + cursor.capitalWord();
        statement->options.push_back(std::move(option));
        expectOnOff(cursor, *statement);
    } else {
        do {
            statement->options.push_back(cursor.capitalWord());
        } while (cursor.accept(TokenKind::Comma));
        if (statement->options.size() > 1) {
            expectOnOff(cursor, *statement);
        } else {
            parseOptionValue(cursor, *statement);
        }
    }
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
