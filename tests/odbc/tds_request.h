// Reads what a client sends in TDS 7.4, as far as the tests look at it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace basalt::odbc::test {

struct TdsParameter {
    std::string name;
    std::string type;   // "nvarchar(4000)", "bigint", "decimal(38,9)", ...
    std::string value;  // as text; "NULL" for null
    bool output = false;

    bool operator==(const TdsParameter&) const = default;
};

struct TdsRequest {
    enum Kind { Batch, Procedure };
    Kind kind = Batch;
    std::string text;  // the batch, or the procedure's name; "sp_executesql" by its number too
    std::vector<TdsParameter> parameters;
};

// std::runtime_error for what it cannot read.
[[nodiscard]] TdsRequest readBatch(std::string_view body);
[[nodiscard]] TdsRequest readProcedureCall(std::string_view body);

}  // namespace basalt::odbc::test
