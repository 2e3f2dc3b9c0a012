// Errors that the program raised itself, with RAISERROR or THROW, and those raised again: what DatabaseError does not
// carry.
#pragma once

#include <string>

#include "ado/error.h"
#include "engines/embedded/executor/environment.h"

namespace basalt::embedded {

// The line of an error before the statement that it came from is known.
inline constexpr int kNowhere = 0;

class RaisedError : public DatabaseError {
public:
    // `ends`: whether the batch ends with it even outside of TRY, as it does for THROW and does not for RAISERROR.
    RaisedError(ErrorCategory category, std::string sqlState, const CaughtError& error, bool ends)
        : DatabaseError(category, std::move(sqlState), error.number, error.message), error_(error), ends_(ends) {}

    // `first` again, which CATCH knows as `error`.
    RaisedError(const DatabaseError& first, const std::string& message, const CaughtError& error, bool ends)
        : DatabaseError(first.category(), first.sqlState(), first.nativeCode(), message), error_(error), ends_(ends) {}

    [[nodiscard]] const CaughtError& error() const { return error_; }
    [[nodiscard]] bool ends() const { return ends_; }

private:
    CaughtError error_;
    bool ends_;
};

}  // namespace basalt::embedded
