// Expressions and conditions.
//
// Precedence, from the loosest: OR; AND; NOT; comparisons and the other predicates; + - & ^ |; unary + and -; * / %; ~.
// The unary minus binds looser than the multiplication after it, as on the server: -100/-100*10 is 0.
#pragma once

#include <string>
#include <vector>

#include "engines/embedded/ast/expression.h"
#include "engines/embedded/parser/token_cursor.h"

namespace basalt::embedded {

// A value: refuses conditions.
ast::ExpressionPtr parseExpression(TokenCursor& cursor);
// A value without predicates after it, so that `DEFAULT 0 NOT NULL` ends at NOT.
ast::ExpressionPtr parseOperand(TokenCursor& cursor);
// A value, or DEFAULT.
ast::ExpressionPtr parseExpressionOrDefault(TokenCursor& cursor);
// A condition: refuses values (4145).
ast::ExpressionPtr parseCondition(TokenCursor& cursor);
// One or more values with commas between them.
std::vector<ast::ExpressionPtr> parseExpressionList(TokenCursor& cursor);
// (value or DEFAULT, ...), the parentheses included.
std::vector<ast::ExpressionPtr> parseRow(TokenCursor& cursor);
// The items after ORDER BY. Positions in the select list become fixed literals.
std::vector<ast::OrderItem> parseOrderItems(TokenCursor& cursor);

// The arguments of a call, from behind the opening parenthesis to the closing one inclusive.
std::vector<ast::ExpressionPtr> parseArguments(TokenCursor& cursor);

ast::DataType parseDataType(TokenCursor& cursor);

// CASE and the functions with a grammar of their own; the cursor stands on the word.
ast::ExpressionPtr parseCase(TokenCursor& cursor);
ast::ExpressionPtr parseCast(TokenCursor& cursor);
ast::ExpressionPtr parseConvert(TokenCursor& cursor);
ast::ExpressionPtr parseIif(TokenCursor& cursor);
// name(...) with what may follow; the cursor stands on the parenthesis.
ast::ExpressionPtr parseFunctionCall(TokenCursor& cursor, ast::ObjectName name);

// Whether the token can begin a value.
bool atExpression(const TokenCursor& cursor);

}  // namespace basalt::embedded
