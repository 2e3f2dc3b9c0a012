// Values between SQLite and the engine: how each T-SQL type is kept in a cell (see runtime/decimal_codec.h for
// decimals).
#pragma once

#include <sqlite3.h>

#include "ado/value.h"
#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

// The value of a cell or function argument that holds the type.
[[nodiscard]] Value readValue(sqlite3_value* cell, const SqlType& type);
// Gives a function's result. The value must be one of the type that the binder announced.
void returnValue(sqlite3_context* context, const Value& value);
void returnDecimal(sqlite3_context* context, Int128 coefficient);

}  // namespace basalt::embedded
