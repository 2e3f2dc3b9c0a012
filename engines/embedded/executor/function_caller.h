// Runs the functions that users have written. Statements call them while SQLite works on a row; whoever knows variables
// and flow of control runs them.
#pragma once

#include <sqlite3.h>

#include <span>
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
};

}  // namespace basalt::embedded
