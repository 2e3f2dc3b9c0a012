// Names of the indexes that stand beside unique ones and keep NULL single there: SQLite holds NULLs apart, SQL Server
// does not. Nobody is shown them.
#pragma once

#include <string>
#include <string_view>

namespace basalt::embedded {

// For an index or constraint as T-SQL knows it.
[[nodiscard]] std::string nullGuardName(std::string_view table, std::string_view index);
[[nodiscard]] bool isNullGuard(std::string_view stored);
// The index or constraint that a guard stands beside, as T-SQL knows it.
[[nodiscard]] std::string guardedIndex(std::string_view table, std::string_view guard);

}  // namespace basalt::embedded
