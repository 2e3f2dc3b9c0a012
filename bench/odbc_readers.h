// The ways to read through one ODBC driver that are compared. Each keeps a copy of every value.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace basalt::bench {

// ODBC's own calls: bind, fetch, copy.
class PlainOdbcReader {
public:
    explicit PlainOdbcReader(const std::string& connectionString);
    ~PlainOdbcReader();
    PlainOdbcReader(const PlainOdbcReader&) = delete;
    PlainOdbcReader& operator=(const PlainOdbcReader&) = delete;

    // The rows read.
    [[nodiscard]] std::size_t readAll(const std::string& statement);

private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

class SociOdbcReader {
public:
    explicit SociOdbcReader(const std::string& connectionString);
    ~SociOdbcReader();
    SociOdbcReader(const SociOdbcReader&) = delete;
    SociOdbcReader& operator=(const SociOdbcReader&) = delete;

    [[nodiscard]] std::size_t readAll(const std::string& statement);

private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace basalt::bench
