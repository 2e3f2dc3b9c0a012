// From the tree back to T-SQL.
//
//   print(parse("select  a from t where x=1and y in(1)"))
//       "SELECT a FROM t WHERE x = 1 AND y IN (1);\n"
//
// The text parses to the same tree. Layout and comments of the original are gone; names and the letter case of names
// stay; what the parser reads and leaves out (planner hints, file groups) stays out.
#pragma once

#include <string>

#include "engines/embedded/ast/batch.h"
#include "engines/embedded/ast/expression.h"
#include "engines/embedded/ast/query.h"

namespace basalt::embedded {

enum class Parentheses : std::uint8_t {
    Needed,  // where the tree would read otherwise
    All,     // around every operation, which shows the tree as it is
};

[[nodiscard]] std::string print(const ast::Batch& batch, Parentheses parentheses = Parentheses::Needed);
// Parts of a batch, with the literals of the batch. Without semicolon and line break at the end.
[[nodiscard]] std::string print(const ast::Statement& statement, const LiteralTable& literals,
                                Parentheses parentheses = Parentheses::Needed);
[[nodiscard]] std::string print(const ast::Expression& expression, const LiteralTable& literals,
                                Parentheses parentheses = Parentheses::Needed);
[[nodiscard]] std::string print(const ast::QueryExpression& query, const LiteralTable& literals,
                                Parentheses parentheses = Parentheses::Needed);
// A literal as a constant of its type.
[[nodiscard]] std::string print(const Literal& literal);

}  // namespace basalt::embedded
