// Where in a statement an error is, for people: line, column, the line itself and a mark below the place.
//
//   throwSyntaxError(156, "Incorrect syntax near the keyword 'from'.", text, token.range);
//
//   what():  Incorrect syntax near the keyword 'from'.
//            Line 2, column 7:
//            where from = 1
//                  ^^^^
//
// The mark counts display columns, so that it stands below the right place after Persian, combined and wide characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ado/error.h"
#include "engines/embedded/lexer/source_range.h"

namespace basalt::embedded {

// Both count from 1; the column counts characters (code points).
struct SourcePosition {
    std::size_t line = 1;
    std::size_t column = 1;
};

[[nodiscard]] SourcePosition locate(std::string_view text, std::size_t offset);

// Columns that the text takes on a terminal with fixed width.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

// "Line l, column c:", the line and the mark, without a final line break. A long line is shown in part.
[[nodiscard]] std::string renderContext(std::string_view text, SourceRange range);

// A DatabaseError with SQLSTATE 42000, the SQL Server number, the message, the context below it, and the statement.
[[nodiscard]] DatabaseError statementError(ErrorCategory category, int number, const std::string& message,
                                           std::string_view text, SourceRange range);
[[noreturn]] void throwSyntaxError(int number, const std::string& message, std::string_view text, SourceRange range);
// What T-SQL has and this engine has not: `construct` is named as it is written, for instance "MERGE".
[[noreturn]] void throwUnsupported(const std::string& construct, std::string_view text, SourceRange range);

}  // namespace basalt::embedded
