#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

ParameterDefinition parseParameter(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ParameterDefinition parameter;
    parameter.name = cursor.variable();
    cursor.accept(Keyword::As);
    parameter.type = parseDataType(cursor);
    if (cursor.at(Keyword::Varying)) cursor.unsupportedHere("VARYING");
    if (cursor.accept(Keyword::Null)) {
    } else if (cursor.at(Keyword::Not) && cursor.keyword(1) == Keyword::Null) {
        cursor.unsupportedHere("NOT NULL");
    }
    if (cursor.accept(TokenKind::Equal)) parameter.defaultValue = parseOperand(cursor);
    for (;;) {
        if (cursor.accept(Keyword::Output) || cursor.accept(Keyword::Out)) {
            parameter.output = true;
        } else if (cursor.accept(Keyword::Readonly)) {
            parameter.readOnly = true;
        } else {
            break;
        }
    }
    parameter.range = cursor.from(start);
    return parameter;
}

}  // namespace

std::vector<ParameterDefinition> parseParameters(TokenCursor& cursor) {
    std::vector<ParameterDefinition> parameters;
    if (!cursor.at(TokenKind::Variable)) return parameters;
    do {
        parameters.push_back(parseParameter(cursor));
    } while (cursor.accept(TokenKind::Comma));
    return parameters;
}

StatementPtr parseCreateProcedure(TokenCursor& cursor, DefinitionMode mode, std::uint32_t start) {
    auto statement = std::make_unique<CreateProcedureStatement>();
    statement->mode = mode;
    cursor.next();
    requireFirstStatement(cursor, start, "CREATE/ALTER PROCEDURE");
    statement->name = cursor.objectName();
    if (cursor.accept(TokenKind::LeftParenthesis)) {
        statement->parameters = parseParameters(cursor);
        cursor.expect(TokenKind::RightParenthesis);
    } else {
        statement->parameters = parseParameters(cursor);
    }
    if (cursor.accept(Keyword::With)) {
        // RECOMPILE and ENCRYPTION: plans are kept by use, texts are kept as they are.
        do {
            if (cursor.atAnyOf({Keyword::Exec, Keyword::Execute})) cursor.unsupportedHere("EXECUTE AS");
            cursor.capitalWord();
        } while (cursor.accept(TokenKind::Comma));
    }
    if (cursor.at(Keyword::For)) cursor.unsupportedHere("FOR REPLICATION");
    cursor.expect(Keyword::As);
    // The body goes to the end of the batch.
    cursor.enterModule();
    statement->body = parseStatements(cursor);
    if (!cursor.atEnd() || statement->body.empty()) cursor.failHere();
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
