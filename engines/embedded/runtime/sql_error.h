// Errors of the engine in SQL Server's numbers and wording.
//
//   throwSqlError(error::kDivideByZero, "Divide by zero error encountered.");
//
// The category and SQLSTATE follow from the number, so that every place that raises a number agrees on them.
#pragma once

#include <string>
#include <string_view>

#include "ado/error.h"

namespace basalt::embedded {

namespace error {
inline constexpr int kSyntax = 102;
inline constexpr int kSyntaxNearKeyword = 156;
inline constexpr int kAmbiguousColumn = 209;
inline constexpr int kInvalidColumn = 207;
inline constexpr int kInvalidObject = 208;
inline constexpr int kArithmeticOverflowForType = 220;
inline constexpr int kDateConversion = 241;
inline constexpr int kDateOutOfRange = 242;
inline constexpr int kConversionFailed = 245;
inline constexpr int kNullIntoColumn = 515;
inline constexpr int kConstraintConflict = 547;
inline constexpr int kIntegerOverflow = 248;
inline constexpr int kSubqueryManyRows = 512;
inline constexpr int kLockTimeout = 1222;
inline constexpr int kDuplicateInIndex = 2601;
inline constexpr int kDuplicateKey = 2627;
inline constexpr int kTruncation = 2628;
inline constexpr int kConvertingType = 8114;
inline constexpr int kArithmeticOverflow = 8115;
inline constexpr int kFileReplaced = 5173;  // of a Connection: the file of an open database is not the same any more
inline constexpr int kDivideByZero = 8134;
}  // namespace error

// The category that a SQL Server error number belongs to.
[[nodiscard]] ErrorCategory categoryOf(int number);
// The SQLSTATE that SQL Server's drivers give for the number.
[[nodiscard]] const char* sqlStateOf(int number);

[[nodiscard]] DatabaseError sqlError(int number, const std::string& message, std::string statement = {});
[[noreturn]] void throwSqlError(int number, const std::string& message);
// The same error with the statement that failed; an error that already names its statement stays as it is.
[[nodiscard]] DatabaseError withStatement(const DatabaseError& error, std::string_view statement);

}  // namespace basalt::embedded
