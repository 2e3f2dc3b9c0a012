// The functions of ODBC that read what an execution brings: the driver manager's, or those of the driver itself.
//
// unixODBC takes an execution that fails for one that brings nothing: SQLMoreResults then says so without asking the
// driver, which still has the results of the batch's other statements, and would cancel them when the statement is
// freed. Asked itself, the driver delivers them.
#pragma once

#include <optional>

#include "engines/odbc/odbc_api.h"

namespace basalt::odbc {

struct ResultCalls {
    decltype(&::SQLMoreResults) moreResults = &::SQLMoreResults;
    decltype(&::SQLNumResultCols) columnCount = &::SQLNumResultCols;
    decltype(&::SQLRowCount) rowCount = &::SQLRowCount;
    decltype(&::SQLDescribeColW) describeColumn = &::SQLDescribeColW;
    decltype(&::SQLColAttributeW) columnAttribute = &::SQLColAttributeW;
    decltype(&::SQLBindCol) bindColumn = &::SQLBindCol;
    decltype(&::SQLFetch) fetch = &::SQLFetch;
    decltype(&::SQLGetData) getData = &::SQLGetData;
    decltype(&::SQLGetDiagRecW) diagnostic = &::SQLGetDiagRecW;
    decltype(&::SQLFreeStmt) freeStatement = &::SQLFreeStmt;
    decltype(&::SQLSetStmtAttr) setAttribute = &::SQLSetStmtAttr;

    // Those of the driver behind the connection, for handles of its own (SQL_DRIVER_HSTMT); none where the system does
    // not say where it has loaded the driver, or the driver lacks one of them.
    [[nodiscard]] static std::optional<ResultCalls> ofDriver(SQLHDBC connection);
};

// A statement with the functions that take its handle.
struct ResultHandle {
    SQLHSTMT statement = SQL_NULL_HANDLE;
    ResultCalls calls = {};
};

}  // namespace basalt::odbc
