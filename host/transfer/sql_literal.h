// One value as T-SQL text that means the same value on every engine.
//
//   sqlLiteral(Value(std::string("عمده")), "nvarchar(50)")      N'عمده'
//   sqlLiteral(Value(Decimal::parse("12500.5").value()), "decimal(23,9)")      12500.5
#pragma once

#include <string>
#include <string_view>

#include "ado/value.h"

namespace basalt::host {

// `type` is the column's type as T-SQL writes it. Line breaks and other control characters are written by their
// numbers, so that the text survives editors and tools that split scripts by lines.
[[nodiscard]] std::string sqlLiteral(const Value& value, std::string_view type);

}  // namespace basalt::host
