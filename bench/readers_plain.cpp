#include <sqlite3.h>

#include <stdexcept>

#include "bench/readers.h"

namespace basalt::bench {

namespace {

class Statement {
public:
    Statement(sqlite3* database, const std::string& text) {
        if (sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size()), &handle_, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database));
        }
    }
    ~Statement() { sqlite3_finalize(handle_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    [[nodiscard]] sqlite3_stmt* get() const { return handle_; }

private:
    sqlite3_stmt* handle_ = nullptr;
};

std::string textOf(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

std::string blobOf(sqlite3_stmt* statement, int column) {
    const auto* data = static_cast<const char*>(sqlite3_column_blob(statement, column));
    return {data, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

void take(sqlite3_stmt* statement, int i, PlainColumn& column) {
    const int type = sqlite3_column_type(statement, i);
    column.nulls.push_back(type == SQLITE_NULL);
    switch (column.kind) {
        case PlainColumn::Integers:
            column.integers.push_back(sqlite3_column_int64(statement, i));
            break;
        case PlainColumn::Reals:
            column.reals.push_back(sqlite3_column_double(statement, i));
            break;
        case PlainColumn::Texts:
            if (type == SQLITE_NULL) {
                column.texts.emplace_back();
            } else {
                column.texts.push_back(type == SQLITE_BLOB ? blobOf(statement, i) : textOf(statement, i));
            }
            break;
    }
}

}  // namespace

PlainReader::PlainReader(const std::string& file) {
    if (sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database_));
    }
}

PlainReader::~PlainReader() {
    sqlite3_close(database_);
}

std::vector<PlainColumn> PlainReader::readAll(const std::string& text) {
    const Statement statement(database_, text);
    const int count = sqlite3_column_count(statement.get());
    std::vector<PlainColumn> columns(static_cast<std::size_t>(count));
    bool first = true;
    while (sqlite3_step(statement.get()) == SQLITE_ROW) {
        for (int i = 0; i < count; ++i) {
            PlainColumn& column = columns[static_cast<std::size_t>(i)];
            if (first) {
                // The declared types say little here; the first row has no null in a column that is not a text.
                const int type = sqlite3_column_type(statement.get(), i);
                column.kind = type == SQLITE_INTEGER ? PlainColumn::Integers
                              : type == SQLITE_FLOAT ? PlainColumn::Reals
                                                     : PlainColumn::Texts;
            }
            take(statement.get(), i, column);
        }
        first = false;
    }
    return columns;
}

std::size_t PlainReader::readOne(const std::string& text) {
    const Statement statement(database_, text);
    if (sqlite3_step(statement.get()) != SQLITE_ROW) throw std::runtime_error("no row: " + text);
    const auto code = static_cast<std::size_t>(sqlite3_column_int64(statement.get(), 0));
    return code + textOf(statement.get(), 2).size() + textOf(statement.get(), 3).size();
}

}  // namespace basalt::bench
