#include <utility>

#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

StatementPtr parseSelect(TokenCursor& cursor, With with) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<SelectStatement>();
    statement->query = parseQuery(cursor);
    statement->query->with = std::move(with);
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
