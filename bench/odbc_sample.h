// A file of SQLite, with a table of goods of 16 columns, for readers that go through an ODBC driver.
#pragma once

#include <filesystem>
#include <string>

namespace basalt::bench {

inline constexpr const char* kOdbcStatement = "select * from Goods";

class OdbcSample {
public:
    // std::runtime_error when SQLite's ODBC driver is not installed or the file cannot be made.
    explicit OdbcSample(int goods);
    ~OdbcSample();
    OdbcSample(const OdbcSample&) = delete;
    OdbcSample& operator=(const OdbcSample&) = delete;

    // For every reader the same.
    [[nodiscard]] const std::string& connectionString() const { return connectionString_; }

private:
    std::filesystem::path folder_;
    std::string connectionString_;
};

}  // namespace basalt::bench
