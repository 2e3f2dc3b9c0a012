#include <utility>

#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseTruncate(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<TruncateStatement>();
    cursor.expect(Keyword::Truncate);
    cursor.expect(Keyword::Table);
    statement->table = cursor.objectName();
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
