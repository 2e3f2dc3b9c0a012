#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseDeclare(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<DeclareStatement>();
    cursor.expect(Keyword::Declare);
    do {
        const std::uint32_t itemStart = cursor.begin();
        if (cursor.atName()) cursor.unsupportedHere("CURSOR");
        DeclareStatement::Variable variable;
        variable.name = cursor.variable();
        cursor.accept(Keyword::As);
        if (cursor.accept(Keyword::Table)) {
            variable.table = parseTableDefinition(cursor);
        } else {
            variable.type = parseDataType(cursor);
            if (cursor.accept(TokenKind::Equal)) variable.initial = parseExpression(cursor);
        }
        variable.range = cursor.from(itemStart);
        statement->variables.push_back(std::move(variable));
    } while (cursor.accept(TokenKind::Comma));
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
