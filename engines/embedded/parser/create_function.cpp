#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void parseOptions(TokenCursor& cursor) {
    if (!cursor.accept(Keyword::With)) return;
    // SCHEMABINDING, ENCRYPTION, RETURNS NULL ON NULL INPUT, CALLED ON NULL INPUT
    do {
        if (cursor.atAnyOf({Keyword::Exec, Keyword::Execute})) cursor.unsupportedHere("EXECUTE AS");
        if (cursor.atWord("RETURNS")) cursor.unsupportedHere("RETURNS NULL ON NULL INPUT");
        if (cursor.acceptWord("CALLED")) {
            cursor.expect(Keyword::On);
            cursor.expect(Keyword::Null);
            cursor.expectWord("INPUT");
        } else {
            cursor.capitalWord();
        }
    } while (cursor.accept(TokenKind::Comma));
}

void parseBlockBody(TokenCursor& cursor, CreateFunctionStatement& function) {
    cursor.expect(Keyword::Begin);
    cursor.enterModule();
    function.body = parseStatements(cursor);
    if (function.body.empty()) cursor.failHere();
    cursor.expect(Keyword::End);
}

void parseInlineBody(TokenCursor& cursor, CreateFunctionStatement& function) {
    cursor.expect(Keyword::Return);
    const bool parenthesized = cursor.at(TokenKind::LeftParenthesis) &&
                               (cursor.keyword(1) == Keyword::With || cursor.keyword(1) == Keyword::Select);
    if (parenthesized) cursor.next();
    With with = parseWith(cursor);
    function.query = parseQuery(cursor);
    function.query->with = std::move(with);
    if (parenthesized) cursor.expect(TokenKind::RightParenthesis);
}

}  // namespace

StatementPtr parseCreateFunction(TokenCursor& cursor, DefinitionMode mode, std::uint32_t start) {
    auto function = std::make_unique<CreateFunctionStatement>();
    function->mode = mode;
    cursor.next();
    requireFirstStatement(cursor, start, "CREATE FUNCTION");
    function->name = cursor.objectName();
    cursor.expect(TokenKind::LeftParenthesis);
    function->parameters = parseParameters(cursor);
    cursor.expect(TokenKind::RightParenthesis);
    cursor.expect(Keyword::Returns);
    if (cursor.accept(Keyword::Table)) {
        function->returns = CreateFunctionStatement::Returns::InlineTable;
    } else if (cursor.at(TokenKind::Variable)) {
        function->returns = CreateFunctionStatement::Returns::TableVariable;
        function->variable = cursor.variable();
        cursor.expect(Keyword::Table);
        function->table = parseTableDefinition(cursor);
    } else {
        function->type = parseDataType(cursor);
    }
    parseOptions(cursor);
    cursor.accept(Keyword::As);
    if (function->returns == CreateFunctionStatement::Returns::InlineTable) {
        parseInlineBody(cursor, *function);
    } else {
        parseBlockBody(cursor, *function);
    }
    skipSemicolons(cursor);
    if (!cursor.atEnd()) cursor.failHere();
    return finish(cursor, std::move(function), start);
}

}  // namespace basalt::embedded
