// The types of columns and parameters: as ODBC describes a result, and as SQL Server's catalog does.
#pragma once

#include <string>

#include "ado/rowset.h"
#include "engines/odbc/odbc_api.h"

namespace basalt::odbc {

// The longest bounded text or binary value of SQL Server, in bytes; what may be longer is read in pieces.
inline constexpr SQLULEN kLongestBounded = 8000;

// Sets type, size, precision, scale and fixedLength from SQLDescribeCol's answer.
void describeFromOdbc(ColumnInfo& column, SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits);

// The same, and typeName, from a row of sys.columns or sys.parameters: lengths in bytes, -1 for max.
struct CatalogType {
    std::string name;
    int maxLength = 0;
    int precision = 0;
    int scale = 0;
};
void describeFromCatalog(ColumnInfo& column, const CatalogType& type);

// The type as a declaration of T-SQL writes it: "nvarchar(50)", "decimal(18, 3)", "int".
[[nodiscard]] std::string declaredType(const ColumnInfo& column);

}  // namespace basalt::odbc
