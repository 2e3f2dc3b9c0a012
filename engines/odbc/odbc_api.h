// The ODBC interface of this platform: unixODBC, or Windows' own.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

// UTF-16 in both; unixODBC must have been built with its usual two-byte SQLWCHAR.
static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

namespace basalt::odbc {

// The value of an attribute that is a number: ODBC takes it where it takes pointers.
inline SQLPOINTER attribute(SQLULEN value) {
    return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace basalt::odbc
