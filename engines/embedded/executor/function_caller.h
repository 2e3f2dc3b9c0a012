// Runs the functions that users have written. Statements call them while SQLite works on a row; whoever knows variables
// and flow of control runs them.
#pragma once

#include <sqlite3.h>

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/value.h"

namespace basalt::embedded {

class FunctionCaller {
public:
    virtual ~FunctionCaller() = default;
    // `arguments` are stored forms of the parameters' types, one a parameter. The value is one of the function's type.
    // Errors are DatabaseError.
    [[nodiscard]] virtual Value callScalar(std::string_view name, std::span<sqlite3_value* const> arguments) = 0;
    // The rows of a function that fills a table variable, each with the table's columns.
    [[nodiscard]] virtual std::vector<std::vector<Value>> callTable(std::string_view name,
                                                                    std::span<sqlite3_value* const> arguments) = 0;
    // Makes what functions need that a statement calls, and those that they call in their turn: their table variables
    // are tables, and SQLite ends a running statement that reads on after a table was made. `texts` are of T-SQL, with
    // calls anywhere in them. True when something was made, which makes plans stale.
    [[nodiscard]] virtual bool makeReady(const std::set<std::string>& functions,
                                         std::span<const std::string> texts) = 0;
};

}  // namespace basalt::embedded
