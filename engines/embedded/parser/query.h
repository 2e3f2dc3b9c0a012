// Queries and what they are made of.
#pragma once

#include <optional>
#include <vector>

#include "engines/embedded/ast/query.h"
#include "engines/embedded/parser/token_cursor.h"

namespace basalt::embedded {

// SELECT ... with set operations, ORDER BY and the rest; without WITH.
ast::QueryPtr parseQuery(TokenCursor& cursor);
// The same in parentheses.
ast::QueryPtr parseSubquery(TokenCursor& cursor);
// UNION, EXCEPT or INTERSECT.
bool atSetOperator(const TokenCursor& cursor);
// Goes on behind a parenthesised query that turned out to be the first operand of a set operation.
ast::QueryPtr continueQuery(TokenCursor& cursor, ast::QueryPtr first);

// The cursor stands on SELECT.
ast::QueryBodyPtr parseSelectBody(TokenCursor& cursor);
// One item of a select list or of OUTPUT.
ast::SelectItem parseSelectItem(TokenCursor& cursor);
// The sources after FROM.
std::vector<ast::TableSourcePtr> parseFrom(TokenCursor& cursor);
// WITH (NOLOCK, ...), in capitals.
std::vector<std::string> parseTableHints(TokenCursor& cursor);
// TOP, when it is there.
std::optional<ast::TopClause> parseTop(TokenCursor& cursor);
// WITH name (columns) AS (query), ...; nothing when the cursor does not stand on WITH.
std::vector<ast::CommonTableExpression> parseWith(TokenCursor& cursor);
// (a, b, c), the parentheses included.
std::vector<ast::Identifier> parseNameList(TokenCursor& cursor);
// OPTION (...): hints for a planner that this engine does not have; read and left out.
// Reads OPTION (...): the number of MAXRECURSION, when it is there. Other hints are for a planner that is not here.
std::optional<int> parseQueryHints(TokenCursor& cursor);
// =, +=, -= and so on, when one is there.
std::optional<ast::AssignmentOperator> acceptAssignment(TokenCursor& cursor);
// The name after an expression or a table, when there is one, with or without AS.
ast::Identifier parseTableAlias(TokenCursor& cursor);

}  // namespace basalt::embedded
