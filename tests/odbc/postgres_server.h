// A PostgreSQL server of a test's own, in a scratch folder, reached through a socket in that folder.
#pragma once

#include <filesystem>
#include <string>

#include "tests/support/temp_folder.h"

namespace basalt::odbc::test {

class PostgresServer {
public:
    PostgresServer();
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    // Why it does not run; empty when it does.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    // "SERVER=...;..." without a driver.
    [[nodiscard]] std::string connectionPart() const;

private:
    [[nodiscard]] bool run(const std::string& program, const std::string& arguments) const;

    basalt::test::TempFolder folder_;
    std::filesystem::path programs_;
    std::string problem_;
    bool started_ = false;
};

}  // namespace basalt::odbc::test
