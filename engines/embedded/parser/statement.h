// One function a statement. Each begins with the cursor on the statement's first word and ends behind its last token.
#pragma once

#include "engines/embedded/ast/control_statement.h"
#include "engines/embedded/ast/data_statement.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/ast/statement.h"
#include "engines/embedded/parser/token_cursor.h"

namespace basalt::embedded {

// Any statement, without the semicolon after it.
ast::StatementPtr parseStatement(TokenCursor& cursor);
// Statements up to a word that ends the list (END) or the end of the text, with their semicolons.
ast::Statements parseStatements(TokenCursor& cursor);
void skipSemicolons(TokenCursor& cursor);

using With = std::vector<ast::CommonTableExpression>;
ast::StatementPtr parseSelect(TokenCursor& cursor, With with);
ast::StatementPtr parseInsert(TokenCursor& cursor, With with);
ast::StatementPtr parseUpdate(TokenCursor& cursor, With with);
ast::StatementPtr parseDelete(TokenCursor& cursor, With with);
ast::StatementPtr parseCheckIdentity(TokenCursor& cursor);
ast::StatementPtr parseTruncate(TokenCursor& cursor);

ast::StatementPtr parseCreate(TokenCursor& cursor);
ast::StatementPtr parseAlter(TokenCursor& cursor);
ast::StatementPtr parseDrop(TokenCursor& cursor);
// Behind CREATE or ALTER; `start` is where that word stood.
ast::StatementPtr parseCreateTable(TokenCursor& cursor, std::uint32_t start);
ast::StatementPtr parseAlterTable(TokenCursor& cursor, std::uint32_t start);
ast::StatementPtr parseCreateIndex(TokenCursor& cursor, std::uint32_t start);
ast::StatementPtr parseCreateView(TokenCursor& cursor, ast::DefinitionMode mode, std::uint32_t start);
ast::StatementPtr parseCreateProcedure(TokenCursor& cursor, ast::DefinitionMode mode, std::uint32_t start);
ast::StatementPtr parseCreateFunction(TokenCursor& cursor, ast::DefinitionMode mode, std::uint32_t start);

ast::StatementPtr parseDeclare(TokenCursor& cursor);
ast::StatementPtr parseSet(TokenCursor& cursor);
ast::StatementPtr parseIf(TokenCursor& cursor);
ast::StatementPtr parseWhile(TokenCursor& cursor);
ast::StatementPtr parseBegin(TokenCursor& cursor);
ast::StatementPtr parseReturn(TokenCursor& cursor);
ast::StatementPtr parseGoto(TokenCursor& cursor);
ast::StatementPtr parseLabel(TokenCursor& cursor);
ast::StatementPtr parsePrint(TokenCursor& cursor);
ast::StatementPtr parseRaisError(TokenCursor& cursor);
ast::StatementPtr parseThrow(TokenCursor& cursor);
ast::StatementPtr parseExecute(TokenCursor& cursor);
ast::StatementPtr parseCall(TokenCursor& cursor);
// A procedure's name as the first word of a batch, without EXEC.
ast::StatementPtr parseBareExecute(TokenCursor& cursor);
// COMMIT, ROLLBACK, SAVE, and BEGIN TRANSACTION with the cursor on BEGIN.
ast::StatementPtr parseTransaction(TokenCursor& cursor);

// ---- Parts that several statements share

// The table that INSERT, UPDATE or DELETE writes to, with its hints.
ast::TableTarget parseTarget(TokenCursor& cursor);
// OUTPUT, when it is there.
std::optional<ast::OutputClause> parseOutput(TokenCursor& cursor);
// (columns and constraints), the parentheses included.
ast::TableDefinition parseTableDefinition(TokenCursor& cursor);
// One column or one constraint of a table, added to the definition.
void parseTableElement(TokenCursor& cursor, ast::TableDefinition& definition);
// name type [collation] [NULL | NOT NULL] ...
ast::ColumnDefinition parseColumnDefinition(TokenCursor& cursor);
// (a, b DESC), the parentheses included.
std::vector<ast::KeyColumn> parseKeyColumns(TokenCursor& cursor);
// WITH (...) and ON [PRIMARY] behind keys, indexes and tables: where and how pages are laid out is SQLite's business.
void skipStorageOptions(TokenCursor& cursor);
// The parameters of a procedure or function, up to but without the closing parenthesis or the word that follows.
std::vector<ast::ParameterDefinition> parseParameters(TokenCursor& cursor);
// CREATE and ALTER of a view, procedure or function stand alone in their batch (111).
void requireFirstStatement(TokenCursor& cursor, std::uint32_t start, std::string_view construct);

// Finishes a node: its range goes from `start` to the last token.
template <typename Node>
std::unique_ptr<Node> finish(TokenCursor& cursor, std::unique_ptr<Node> node, std::uint32_t start) {
    node->range = cursor.from(start);
    return node;
}

}  // namespace basalt::embedded
