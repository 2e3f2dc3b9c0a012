#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseCreateIndex(TokenCursor& cursor, std::uint32_t start) {
    auto statement = std::make_unique<CreateIndexStatement>();
    statement->unique = cursor.accept(Keyword::Unique);
    if (cursor.accept(Keyword::Clustered)) {
        statement->clustered = true;
    } else if (cursor.accept(Keyword::Nonclustered)) {
        statement->clustered = false;
    }
    cursor.expect(Keyword::Index);
    statement->name = cursor.name();
    cursor.expect(Keyword::On);
    statement->table = cursor.objectName();
    statement->columns = parseKeyColumns(cursor);
    if (cursor.accept(Keyword::Include)) statement->included = parseNameList(cursor);
    if (cursor.accept(Keyword::Where)) statement->where = parseCondition(cursor);
    skipStorageOptions(cursor);
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
