// One connection to a server: connects, executes, drains, and knows when it is lost.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ado/session.h"
#include "engines/odbc/connection_string.h"
#include "engines/odbc/driver_traits.h"
#include "engines/odbc/handle.h"
#include "engines/odbc/odbc_session.h"
#include "engines/odbc/parameters.h"

namespace basalt::odbc {

class Connection {
public:
    // Connects. DatabaseError (Connection) without any password of the text.
    Connection(const ConnectionString& text, const OdbcOptions& options);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Executes one batch and reads all that comes of it, so that the connection is free afterwards, also after a
    // failure. Throws the first error of the batch, also one that comes after rows. After so many seconds it is given
    // up, 0 for never; without a number it is left to the driver.
    BatchResult execute(std::string_view sql, Parameters& parameters, std::optional<int> timeLimit);

    // What the driver knows by now; asks nothing of the server.
    [[nodiscard]] bool isDead() const;
    [[nodiscard]] const DriverTraits& traits() const { return traits_; }

    // By what the rest of a batch is read whose execution failed: of some drivers past the manager.
    [[nodiscard]] ResultHandle behindFailure(const ResultHandle& results) const;

private:
    EnvironmentHandle environment_;
    ConnectionHandle connection_;
    DriverTraits traits_;
};

}  // namespace basalt::odbc
