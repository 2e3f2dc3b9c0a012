// Reading through QtSql, by any of its drivers.
//
//   QtReader reader("QSQLITE", file, "QSQLITE_OPEN_READONLY");
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace basalt::bench {

class QtReader {
public:
    QtReader(const std::string& driver, const std::string& database, const std::string& options = {});
    ~QtReader();
    QtReader(const QtReader&) = delete;
    QtReader& operator=(const QtReader&) = delete;

    // The rows read; all values were held at once.
    [[nodiscard]] std::size_t readAll(const std::string& statement);

private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace basalt::bench
