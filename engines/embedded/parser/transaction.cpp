// BEGIN TRANSACTION, COMMIT, ROLLBACK, SAVE TRANSACTION.
#include <utility>

#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseTransaction(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<TransactionStatement>();
    const Keyword verb = cursor.keyword();
    cursor.next();
    statement->action = verb == Keyword::Begin    ? TransactionStatement::Action::Begin
                        : verb == Keyword::Commit ? TransactionStatement::Action::Commit
                        : verb == Keyword::Save   ? TransactionStatement::Action::Save
                                                  : TransactionStatement::Action::Rollback;
    const bool named = cursor.accept(Keyword::Tran) || cursor.accept(Keyword::Transaction);
    if (!named) {
        if (verb == Keyword::Begin || verb == Keyword::Save) cursor.failHere();
        cursor.accept(Keyword::Work);
        return finish(cursor, std::move(statement), start);
    }
    if (cursor.at(TokenKind::Variable)) {
        statement->variable = cursor.variable();
    } else if (cursor.atName() && cursor.peek(1).kind != TokenKind::Colon) {
        statement->name = cursor.name();
    } else if (verb == Keyword::Save) {
        cursor.failHere();
    }
    if (verb == Keyword::Begin && cursor.at(Keyword::With)) cursor.unsupportedHere("WITH MARK");
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
