// DBCC CHECKIDENT. The other checks are of files that this engine keeps in another way.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseCheckIdentity(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    if (!cursor.atWord("CHECKIDENT", 1)) cursor.unsupportedHere("DBCC");
    auto statement = std::make_unique<CheckIdentityStatement>();
    cursor.expect(Keyword::Dbcc);
    cursor.expectWord("CHECKIDENT");
    cursor.expect(TokenKind::LeftParenthesis);
    if (cursor.atName()) {
        statement->name = cursor.name();
    } else {
        statement->table = parseOperand(cursor);
    }
    if (cursor.accept(TokenKind::Comma)) {
        if (cursor.acceptWord("NORESEED")) {
            statement->action = CheckIdentityStatement::Action::Report;
        } else {
            cursor.expectWord("RESEED");
            if (cursor.accept(TokenKind::Comma)) {
                statement->action = CheckIdentityStatement::Action::Set;
                statement->value = parseOperand(cursor);
            }
        }
    }
    cursor.expect(TokenKind::RightParenthesis);
    if (cursor.accept(Keyword::With)) {
        cursor.expectWord("NO_INFOMSGS");
        statement->silent = true;
    }
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
