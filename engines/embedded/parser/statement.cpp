#include "engines/embedded/parser/statement.h"

#include <utility>

#include "engines/embedded/parser/parser.h"
#include "engines/embedded/parser/query.h"

namespace basalt::embedded {

using namespace ast;

namespace {

// WITH ... SELECT, INSERT, UPDATE or DELETE
StatementPtr parseWithStatement(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    With with = parseWith(cursor);
    StatementPtr statement;
    switch (cursor.keyword()) {
        case Keyword::Insert:
            statement = parseInsert(cursor, std::move(with));
            break;
        case Keyword::Update:
            statement = parseUpdate(cursor, std::move(with));
            break;
        case Keyword::Delete:
            statement = parseDelete(cursor, std::move(with));
            break;
        case Keyword::Merge:
            cursor.unsupportedHere("MERGE");
        default:
            statement = parseSelect(cursor, std::move(with));
            break;
    }
    return finish(cursor, std::move(statement), start);
}

template <typename Node>
StatementPtr parseLoneWord(TokenCursor& cursor) {
    auto node = std::make_unique<Node>();
    node->range = cursor.next().range;
    return node;
}

// A word that begins a statement of T-SQL which this engine does not have.
bool beginsUnsupported(Keyword word) {
    switch (word) {
        case Keyword::Backup:
        case Keyword::Bulk:
        case Keyword::Checkpoint:
        case Keyword::Close:
        case Keyword::Deallocate:
        case Keyword::Deny:
        case Keyword::Dump:
        case Keyword::Fetch:
        case Keyword::Grant:
        case Keyword::Kill:
        case Keyword::Load:
        case Keyword::Merge:
        case Keyword::Open:
        case Keyword::Readtext:
        case Keyword::Reconfigure:
        case Keyword::Restore:
        case Keyword::Revert:
        case Keyword::Revoke:
        case Keyword::Setuser:
        case Keyword::Shutdown:
        case Keyword::Updatetext:
        case Keyword::Use:
        case Keyword::Waitfor:
        case Keyword::Writetext:
            return true;
        default:
            return false;
    }
}

StatementPtr parseByName(TokenCursor& cursor) {
    if (cursor.at(TokenKind::LeftBrace)) return parseCall(cursor);
    if (cursor.at(TokenKind::LeftParenthesis)) return parseSelect(cursor, {});
    if (cursor.atName() && cursor.peek(1).kind == TokenKind::Colon) return parseLabel(cursor);
    if (cursor.atName() && cursor.isFirst()) return parseBareExecute(cursor);
    if (beginsUnsupported(cursor.keyword())) cursor.unsupportedHere(spelling(cursor.keyword()));
    cursor.failHere();
}

void requireLoop(const TokenCursor& cursor, int number, const std::string& word) {
    if (cursor.inLoop()) return;
    cursor.fail(number, "Cannot use a " + word + " statement outside the scope of a WHILE statement.",
                cursor.peek().range);
}

}  // namespace

void skipSemicolons(TokenCursor& cursor) {
    while (cursor.accept(TokenKind::Semicolon)) {
    }
}

StatementPtr parseStatement(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    const StatementScope scope(cursor);
    switch (cursor.keyword()) {
        case Keyword::Select:
            return parseSelect(cursor, {});
        case Keyword::With:
            return parseWithStatement(cursor);
        case Keyword::Insert:
            return parseInsert(cursor, {});
        case Keyword::Update:
            return parseUpdate(cursor, {});
        case Keyword::Delete:
            return parseDelete(cursor, {});
        case Keyword::Dbcc:
            return parseCheckIdentity(cursor);
        case Keyword::Truncate:
            return parseTruncate(cursor);
        case Keyword::Create:
            return parseCreate(cursor);
        case Keyword::Alter:
            return parseAlter(cursor);
        case Keyword::Drop:
            return parseDrop(cursor);
        case Keyword::Declare:
            return parseDeclare(cursor);
        case Keyword::Set:
            return parseSet(cursor);
        case Keyword::If:
            return parseIf(cursor);
        case Keyword::While:
            return parseWhile(cursor);
        case Keyword::Begin:
            return parseBegin(cursor);
        case Keyword::Break:
            requireLoop(cursor, 135, "BREAK");
            return parseLoneWord<BreakStatement>(cursor);
        case Keyword::Continue:
            requireLoop(cursor, 136, "CONTINUE");
            return parseLoneWord<ContinueStatement>(cursor);
        case Keyword::Return:
            return parseReturn(cursor);
        case Keyword::Goto:
            return parseGoto(cursor);
        case Keyword::Print:
            return parsePrint(cursor);
        case Keyword::Raiserror:
            return parseRaisError(cursor);
        case Keyword::Throw:
            if (cursor.peek(1).kind == TokenKind::Colon) return parseLabel(cursor);
            return parseThrow(cursor);
        case Keyword::Exec:
        case Keyword::Execute:
            return parseExecute(cursor);
        case Keyword::Commit:
        case Keyword::Rollback:
        case Keyword::Save:
            return parseTransaction(cursor);
        default:
            return parseByName(cursor);
    }
}

Statements parseStatements(TokenCursor& cursor) {
    Statements statements;
    skipSemicolons(cursor);
    bool ended = true;
    while (!cursor.atEnd() && !cursor.at(Keyword::End)) {
        if (!ended && cursor.at(Keyword::With)) {
            cursor.fail(319,
                        "Incorrect syntax near the keyword 'with'. If this statement is a common table expression, an "
                        "xmlnamespaces clause or a change tracking context clause, the previous statement must be "
                        "terminated with a semicolon.",
                        cursor.peek().range);
        }
        statements.push_back(parseStatement(cursor));
        ended = cursor.at(TokenKind::Semicolon) || statements.back()->kind == StatementKind::Label;
        skipSemicolons(cursor);
    }
    return statements;
}

void requireFirstStatement(TokenCursor& cursor, std::uint32_t start, std::string_view construct) {
    // Nothing but comments, blanks and semicolons may come before it.
    std::size_t position = 0;
    const std::string_view before = cursor.text().substr(0, start);
    Lexer lexer;
    lexer.scan(before);
    while (lexer.tokens()[position].kind == TokenKind::Semicolon)
        ++position;
    if (lexer.tokens()[position].kind == TokenKind::End) return;
    cursor.fail(111, "'" + std::string(construct) + "' must be the first statement in a query batch.",
                {start, cursor.from(start).end});
}

Batch parse(const Lexer& lexer) {
    Batch batch;
    batch.text = std::string(lexer.text());
    batch.literals = LiteralTable(lexer.literals());
    TokenCursor cursor(lexer, batch.literals);
    batch.statements = parseStatements(cursor);
    if (!cursor.atEnd()) cursor.failHere();
    batch.parameterMarkers = cursor.markers();
    return batch;
}

Batch parse(std::string_view sql) {
    Lexer lexer;
    lexer.scan(sql);
    return parse(lexer);
}

}  // namespace basalt::embedded
