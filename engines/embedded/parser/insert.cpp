#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void parseValues(TokenCursor& cursor, InsertStatement& insert) {
    insert.source = InsertStatement::Source::Values;
    cursor.expect(Keyword::Values);
    do {
        if (insert.rows.size() == static_cast<std::size_t>(kMostValuesRows)) {
            cursor.failLimit(10738,
                             "The number of row value expressions in the INSERT statement exceeds the maximum allowed "
                             "number of 1000 row values.",
                             cursor.peek().range);
        }
        insert.rows.push_back(parseRow(cursor));
    } while (cursor.accept(TokenKind::Comma));
}

void parseSource(TokenCursor& cursor, InsertStatement& insert) {
    switch (cursor.keyword()) {
        case Keyword::Values:
            parseValues(cursor, insert);
            return;
        case Keyword::Default:
            cursor.next();
            cursor.expect(Keyword::Values);
            insert.source = InsertStatement::Source::DefaultValues;
            return;
        case Keyword::Exec:
        case Keyword::Execute: {
            insert.source = InsertStatement::Source::Execute;
            StatementPtr execute = parseExecute(cursor);
            insert.execute.reset(static_cast<ExecuteStatement*>(execute.release()));
            return;
        }
        default:
            insert.source = InsertStatement::Source::Query;
            insert.query = parseQuery(cursor);
            return;
    }
}

}  // namespace

StatementPtr parseInsert(TokenCursor& cursor, With with) {
    const std::uint32_t start = cursor.begin();
    auto insert = std::make_unique<InsertStatement>();
    insert->with = std::move(with);
    cursor.expect(Keyword::Insert);
    insert->top = parseTop(cursor);
    cursor.accept(Keyword::Into);
    insert->target = parseTarget(cursor);
    const bool queryFollows = cursor.keyword(1) == Keyword::Select || cursor.peek(1).kind == TokenKind::LeftParenthesis;
    if (cursor.at(TokenKind::LeftParenthesis) && !queryFollows) insert->columns = parseNameList(cursor);
    insert->output = parseOutput(cursor);
    parseSource(cursor, *insert);
    return finish(cursor, std::move(insert), start);
}

}  // namespace basalt::embedded
