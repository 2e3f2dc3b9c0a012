// Points in time between ODBC and the data sets.
#pragma once

#include <string>

#include "ado/rowset.h"
#include "engines/odbc/odbc_api.h"

namespace basalt::odbc {

// True for a `datetime`: it counts in 300ths of a second and drivers differ in how much of the fraction they pass on.
// The server itself shows and compares milliseconds, and so its values are rounded to them.
[[nodiscard]] bool countsInMilliseconds(const ColumnInfo& column);

[[nodiscard]] DateTime fromTimestamp(const SQL_TIMESTAMP_STRUCT& stamp, bool roundToMilliseconds);
[[nodiscard]] SQL_TIMESTAMP_STRUCT toTimestamp(DateTime value);
// "2024-03-20T10:15:00.123", which every language setting of the server reads alike; seven digits only where three
// would lose something.
[[nodiscard]] std::string isoText(DateTime value);

}  // namespace basalt::odbc
