#include <utility>

#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseCreateView(TokenCursor& cursor, DefinitionMode mode, std::uint32_t start) {
    auto statement = std::make_unique<CreateViewStatement>();
    statement->mode = mode;
    cursor.expect(Keyword::View);
    requireFirstStatement(cursor, start, "CREATE VIEW");
    statement->name = cursor.objectName();
    if (cursor.at(TokenKind::LeftParenthesis)) statement->columns = parseNameList(cursor);
    if (cursor.accept(Keyword::With)) {
        // SCHEMABINDING, ENCRYPTION, VIEW_METADATA
        do {
            cursor.capitalWord();
        } while (cursor.accept(TokenKind::Comma));
    }
    cursor.expect(Keyword::As);
    With with = parseWith(cursor);
    statement->query = parseQuery(cursor);
    statement->query->with = std::move(with);
    if (cursor.accept(Keyword::With)) {
        cursor.expect(Keyword::Check);
        cursor.expect(Keyword::Option);
        statement->checkOption = true;
    }
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
