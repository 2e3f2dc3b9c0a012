#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseDelete(TokenCursor& cursor, With with) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<DeleteStatement>();
    statement->with = std::move(with);
    cursor.expect(Keyword::Delete);
    statement->top = parseTop(cursor);
    cursor.accept(Keyword::From);
    statement->target = parseTarget(cursor);
    statement->output = parseOutput(cursor);
    if (cursor.accept(Keyword::From)) statement->from = parseFrom(cursor);
    if (cursor.accept(Keyword::Where)) {
        if (cursor.at(Keyword::Current)) cursor.unsupportedHere("CURRENT OF");
        statement->where = parseCondition(cursor);
    }
    static_cast<void>(parseQueryHints(cursor));
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
