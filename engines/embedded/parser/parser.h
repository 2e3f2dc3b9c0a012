// From the text of a batch to its tree.
//
//   ast::Batch batch = parse("select Name from CostLevel where Code = 5");
//   as<ast::SelectStatement>(*batch.statements[0]).query->...
//
// Errors are DatabaseError with SQL Server's number and wording, and the place in the text:
//   Syntax  102 "Incorrect syntax near 'x'.", 156 "Incorrect syntax near the keyword 'x'.", 4145 where a condition is
//           expected, 40517 for a construct that this engine does not have
//   Limit   191 for a batch nested too deeply, 103 for a name that is too long, 10738 for too many rows in VALUES
#pragma once

#include <string_view>

#include "ado/error.h"
#include "engines/embedded/ast/batch.h"
#include "engines/embedded/lexer/lexer.h"

namespace basalt::embedded {

// Levels of parentheses, subqueries, blocks and the like inside each other.
inline constexpr int kDeepestNesting = 200;
// Operators in one expression, its subqueries included; joins and set operations in one statement. They are what makes
// a tree high, and a high tree takes stack in everything that walks it.
inline constexpr int kMostOperators = 1000;
// As in SQL Server.
inline constexpr int kMostValuesRows = 1000;
inline constexpr int kLongestName = 128;

// Parses what `lexer` has scanned. The tree has copies of everything, the lexer can go on to the next text.
[[nodiscard]] ast::Batch parse(const Lexer& lexer);
// Scans and parses. Throws what Lexer::scan throws too.
[[nodiscard]] ast::Batch parse(std::string_view sql);

}  // namespace basalt::embedded
