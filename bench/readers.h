// The ways to read the sample database that are compared. Each reads the same rows and keeps a copy of every value in
// memory, as the data set does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/qt_reader.h"

// SOCI wraps SQLite's header into a namespace of its own, so that it cannot be included here.
struct sqlite3;

namespace basalt::bench {

// A column as one would keep it without a data set: a vector of what SQLite gives.
struct PlainColumn {
    enum Kind { Integers, Reals, Texts } kind = Integers;
    std::vector<std::int64_t> integers;
    std::vector<double> reals;
    std::vector<std::string> texts;  // of blobs too
    std::vector<bool> nulls;
};

// The C API: prepare, step, take the columns, finalize.
class PlainReader {
public:
    explicit PlainReader(const std::string& file);
    ~PlainReader();
    PlainReader(const PlainReader&) = delete;
    PlainReader& operator=(const PlainReader&) = delete;

    [[nodiscard]] std::vector<PlainColumn> readAll(const std::string& statement);
    // One row of a number and a text; what was read is summed up, so that nothing can be left out.
    [[nodiscard]] std::size_t readOne(const std::string& statement);

private:
    sqlite3* database_ = nullptr;
};

class SociReader {
public:
    explicit SociReader(const std::string& file);
    ~SociReader();
    SociReader(const SociReader&) = delete;
    SociReader& operator=(const SociReader&) = delete;

    [[nodiscard]] std::size_t readAll(const std::string& statement);

private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace basalt::bench
