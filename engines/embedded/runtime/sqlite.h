// The SQLite C API with owners: a connection, its prepared statements, and its failures as DatabaseError.
//
//   SqliteDatabase db("shop.db", {});
//   SqliteStatement s = db.prepare("select Code from CostLevel where Code = ?1");
//   s.bind(1, std::int64_t{5});
//   while (s.step()) use(sqlite3_column_int64(s.handle(), 0));
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ado/error.h"
#include "ado/value.h"
#include "engines/embedded/runtime/decimal_codec.h"

namespace basalt::embedded {

// Bytes of a text or binary value, and of a row. A few of them in one statement have to fit into memory.
inline constexpr int kLongestValue = 256 * 1024 * 1024;

// The error of what is longer.
[[nodiscard]] DatabaseError tooLarge();

class SqliteDatabase;

// A value that outlives its row.
struct FreeValue {
    void operator()(sqlite3_value* value) const { sqlite3_value_free(value); }
};
using HeldValue = std::unique_ptr<sqlite3_value, FreeValue>;

// A prepared statement. Reset before it is run again; bound values stay until they are bound anew.
class SqliteStatement {
public:
    SqliteStatement() = default;
    SqliteStatement(SqliteDatabase& database, sqlite3_stmt* statement) : database_(&database), statement_(statement) {}

    [[nodiscard]] sqlite3_stmt* handle() const { return statement_.get(); }
    [[nodiscard]] explicit operator bool() const { return statement_ != nullptr; }

    // Indexes count from 1. Texts and bytes are copied.
    void bindNull(int index) { sqlite3_bind_null(handle(), index); }
    void bind(int index, std::int64_t value) { sqlite3_bind_int64(handle(), index, value); }
    void bind(int index, double value) { sqlite3_bind_double(handle(), index, value); }
    void bind(int index, std::string_view text);
    void bindBytes(int index, const void* data, std::size_t size);
    void bindDecimal(int index, Int128 coefficient);
    void bindValue(int index, const Value& value);
    void bindHeld(int index, const HeldValue& value) { sqlite3_bind_value(handle(), index, value.get()); }

    // True when there is a row; resets itself when it fails.
    bool step();
    // Runs to the end and resets.
    void run();
    void reset() { sqlite3_reset(handle()); }

    [[nodiscard]] std::int64_t integerAt(int column) const { return sqlite3_column_int64(handle(), column); }
    [[nodiscard]] std::string textAt(int column) const;
    [[nodiscard]] HeldValue held(int column) const;
    [[nodiscard]] bool isNullAt(int column) const { return sqlite3_column_type(handle(), column) == SQLITE_NULL; }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    SqliteDatabase* database_ = nullptr;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

class SqliteDatabase {
public:
    // Opens a file that exists, or with `create` one that may not. Throws DatabaseError: NotFound, Connection, Corrupt.
    SqliteDatabase(const std::string& path, bool create, int lockTimeoutMs);
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;
    ~SqliteDatabase();

    [[nodiscard]] sqlite3* handle() const { return database_; }
    [[nodiscard]] SqliteStatement prepare(std::string_view sql);
    void execute(const char* sql);
    [[nodiscard]] std::int64_t integer(const char* sql);
    [[nodiscard]] bool inTransaction() const { return sqlite3_get_autocommit(database_) == 0; }

    // Fails (5173) when the file was removed or replaced since it was opened. Every commit asks this by itself: what is
    // written into a file without a name is gone at the end of the program. Does nothing for a database that is no
    // file, and where the system keeps a file that is open in its place.
    void requireInPlace();

    // How long a lock of another program is waited for from now on, in milliseconds.
    void setLockTimeout(int milliseconds) { lockTimeoutMs_ = milliseconds; }
    // Asked every few milliseconds of such a wait; it ends, and with it the request, when the answer is false.
    void onWait(std::function<bool()> goOn) { goOn_ = std::move(goOn); }

    // The DatabaseError that a result code means. An error that a function of ours raised while the statement ran is
    // that error itself.
    [[nodiscard]] DatabaseError failure(int resultCode);

    // A function of ours fails a statement through this: SQLite itself carries nothing but a text.
    void setFunctionError(const DatabaseError& error) { functionError_ = error; }

private:
    static int waitForLock(void* self, int rounds) noexcept;
    static int refuseWhenMoved(void* self) noexcept;
    [[nodiscard]] std::string filename() const;
    [[nodiscard]] bool hasMoved() const;
    [[nodiscard]] DatabaseError movedError() const;
    [[nodiscard]] bool waits(int rounds);

    sqlite3* database_ = nullptr;
    std::optional<DatabaseError> functionError_;
    int lockTimeoutMs_;
    std::chrono::steady_clock::time_point waitBegan_;
    std::function<bool()> goOn_;
    bool waitGivenUp_ = false;
};

}  // namespace basalt::embedded
