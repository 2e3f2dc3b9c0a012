// What drivers and servers say about a call, and what kind of trouble it is.
//
//   if (rc == SQL_ERROR) throw errorOf(diagnosticsOf(SQL_HANDLE_STMT, statement), sql);
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ado/error.h"
#include "engines/odbc/odbc_api.h"
#include "engines/odbc/result_calls.h"

namespace basalt::odbc {

struct Diagnostic {
    std::string sqlState;
    int nativeCode = 0;
    std::string message;  // the server's words, without the "[vendor][component]" that drivers put before them

    // A warning, a PRINT or another message that ends nothing.
    [[nodiscard]] bool informs() const { return sqlState.starts_with("01") || sqlState == "00000"; }
    // One of these that is meant for the user, not a companion of something else.
    [[nodiscard]] bool isMessage() const;
};

// `get` is the function that takes the handle.
[[nodiscard]] std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT handleType, SQLHANDLE handle,
                                                    decltype(&::SQLGetDiagRecW) get = &::SQLGetDiagRecW);
[[nodiscard]] std::vector<Diagnostic> diagnosticsOf(const ResultHandle& results);

// The one place that knows error numbers. The server's number decides where it says more than the SQLSTATE.
[[nodiscard]] ErrorCategory categoryOf(std::string_view sqlState, int nativeCode);

// The first record that is an error; a general error when the driver says nothing.
[[nodiscard]] DatabaseError errorOf(const std::vector<Diagnostic>& records, std::string_view statement);

}  // namespace basalt::odbc
