// Errors as people look them up: with SQL Server's number before the message.
//
//   catch (const DatabaseError& error) { throw numbered(error); }      // "error 208: Invalid object name 'x'."
#pragma once

#include <string>

#include "ado/error.h"

namespace basalt::host {

// As it is when it has no number.
[[nodiscard]] inline DatabaseError numbered(const DatabaseError& error) {
    if (error.nativeCode() == 0) return error;
    return {error.category(), error.sqlState(), error.nativeCode(),
            "error " + std::to_string(error.nativeCode()) + ": " + error.what(), error.statement()};
}

}  // namespace basalt::host
