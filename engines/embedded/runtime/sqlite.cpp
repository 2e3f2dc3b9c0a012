#include "engines/embedded/runtime/sqlite.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <thread>
#include <utility>

#include "ado/progress.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// The bit of SQLite's optimizations, which its header does not name.
constexpr unsigned kBloomFilters = 0x80000;

bool isThere(const std::string& path) {
    std::error_code failure;
    const auto status =
        std::filesystem::symlink_status(std::filesystem::path(std::u8string(path.begin(), path.end())), failure);
    return status.type() != std::filesystem::file_type::not_found;
}

// SQLite leaves the log of a file that has moved, and writes it over whatever comes into the place of that file. Giving
// up the log for the journal brings it into the file, wherever that is now, and removes it. Another session that has
// the file open keeps this one from it; the last one does it. Files of the place are nobody else's as long as no
// database is there.
void settleMoved(sqlite3* database) {
    // What these ask may be gone already.
    sqlite3_progress_handler(database, 0, nullptr, nullptr);
    sqlite3_busy_handler(database, nullptr, nullptr);
    sqlite3_commit_hook(database, nullptr, nullptr);
    if (sqlite3_get_autocommit(database) == 0) sqlite3_exec(database, "ROLLBACK", nullptr, nullptr, nullptr);
    // It fails at the end, where it would write the new mode into the file, which is then a sound one without a log.
    sqlite3_exec(database, "PRAGMA main.journal_mode = DELETE", nullptr, nullptr, nullptr);
}

}  // namespace

void SqliteStatement::bind(int index, std::string_view text) {
    sqlite3_bind_text64(handle(), index, text.data() == nullptr ? "" : text.data(), text.size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
}

void SqliteStatement::bindBytes(int index, const void* data, std::size_t size) {
    sqlite3_bind_blob64(handle(), index, size == 0 ? "" : data, size, SQLITE_TRANSIENT);
}

void SqliteStatement::bindDecimal(int index, Int128 coefficient) {
    const EncodedDecimal encoded = encodeDecimal(coefficient);
    bindBytes(index, encoded.bytes.data(), static_cast<std::size_t>(encoded.size));
}

void SqliteStatement::bindValue(int index, const Value& value) {
    struct Visitor {
        SqliteStatement& statement;
        int index;
        void operator()(Null) const { statement.bindNull(index); }
        void operator()(bool flag) const { statement.bind(index, std::int64_t{flag}); }
        void operator()(std::int64_t number) const { statement.bind(index, number); }
        void operator()(double number) const { statement.bind(index, number); }
        void operator()(const Decimal& number) const { statement.bindDecimal(index, number.coefficient()); }
        void operator()(const std::string& text) const { statement.bind(index, std::string_view(text)); }
        void operator()(const Bytes& bytes) const { statement.bindBytes(index, bytes.data(), bytes.size()); }
        void operator()(DateTime time) const { statement.bind(index, time.ticks); }
    };
    std::visit(Visitor{*this, index}, value);
}

bool SqliteStatement::step() {
    const int code = sqlite3_step(handle());
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    const DatabaseError error = database_->failure(code);
    sqlite3_reset(handle());
    throw error;
}

void SqliteStatement::run() {
    while (step()) {
    }
    reset();
}

HeldValue SqliteStatement::held(int column) const {
    HeldValue result(sqlite3_value_dup(sqlite3_column_value(handle(), column)));
    if (result == nullptr) throw database_->failure(SQLITE_NOMEM);
    return result;
}

std::string SqliteStatement::textAt(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle(), column));
    return text == nullptr ? std::string()
                           : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(handle(), column)));
}

SqliteDatabase::SqliteDatabase(const std::string& path, bool create, int lockTimeoutMs)
    : lockTimeoutMs_(lockTimeoutMs) {
    // One thread uses a session, so SQLite's own locks are left out.
    const int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE | (create ? SQLITE_OPEN_CREATE : 0);
    const int code = sqlite3_open_v2(path.c_str(), &database_, flags, nullptr);
    if (code != SQLITE_OK) {
        const std::string reason = database_ == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(database_);
        sqlite3_close(database_);
        database_ = nullptr;
        throw DatabaseError((code & 0xFF) == SQLITE_NOTADB ? ErrorCategory::Corrupt : ErrorCategory::Connection,
                            "08001", 0,
                            "The database file '" + path + "' cannot be opened (" + reason +
                                "). Check that its folder exists and that you may write to it.");
    }
    sqlite3_limit(database_, SQLITE_LIMIT_LENGTH, kLongestValue);
    // Its Bloom filters look at the bytes of texts: a join lost rows whose texts are equal but for case or blanks.
    sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, database_, kBloomFilters);
    sqlite3_busy_handler(database_, &SqliteDatabase::waitForLock, this);
    sqlite3_commit_hook(database_, &SqliteDatabase::refuseWhenMoved, this);
}

std::string SqliteDatabase::filename() const {
    const char* file = sqlite3_db_filename(database_, "main");
    return file == nullptr ? "" : file;
}

bool SqliteDatabase::hasMoved() const {
    int moved = 0;
    return sqlite3_file_control(database_, "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK && moved != 0;
}

DatabaseError SqliteDatabase::movedError() const {
    return {
        ErrorCategory::Connection, "08S01", error::kFileReplaced,
        "The database file '" + filename() +
            "' was removed or replaced while this program had it open; nothing of the request was kept. Close every "
            "program that uses it, then put the same file back, begin anew, or restore a backup: basalt db restore "
            "BACKUP --database \"embedded:" +
            filename() + "\" (before a backup is copied there by hand, '" + filename() + "-wal' and '" + filename() +
            "-shm' have to be removed)"};
}

void SqliteDatabase::requireInPlace() {
    if (hasMoved()) throw movedError();
}

// What it answers makes SQLite roll the transaction back. Nothing may fly through SQLite.
int SqliteDatabase::refuseWhenMoved(void* self) noexcept {
    auto& database = *static_cast<SqliteDatabase*>(self);
    try {
        // Temporary tables lose nothing.
        if (sqlite3_txn_state(database.database_, "main") != SQLITE_TXN_WRITE || !database.hasMoved()) return 0;
        database.functionError_ = database.movedError();
    } catch (...) {
        // SQLite's own error is told then.
    }
    return 1;
}

// Nothing may fly through SQLite.
int SqliteDatabase::waitForLock(void* self, int rounds) noexcept {
    try {
        return static_cast<SqliteDatabase*>(self)->waits(rounds) ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

bool SqliteDatabase::waits(int rounds) {
    using namespace std::chrono;
    const auto now = steady_clock::now();
    if (rounds == 0) {
        waitBegan_ = now;
        waitGivenUp_ = false;
    }
    const milliseconds left = milliseconds(lockTimeoutMs_) - duration_cast<milliseconds>(now - waitBegan_);
    if (left.count() <= 0) return false;
    if (goOn_ && !goOn_()) {
        waitGivenUp_ = true;
        return false;
    }
    // Short at first, because most locks are held for the time of one write.
    std::this_thread::sleep_for(std::min(left, milliseconds(std::min(1 + rounds * 2, 25))));
    return true;
}

SqliteDatabase::~SqliteDatabase() {
    if (hasMoved() && !isThere(filename())) settleMoved(database_);
    sqlite3_close_v2(database_);
}

SqliteStatement SqliteDatabase::prepare(std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(database_, sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                                        &statement, nullptr);
    if (code != SQLITE_OK) throw failure(code);
    return {*this, statement};
}

void SqliteDatabase::execute(const char* sql) {
    const int code = sqlite3_exec(database_, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) throw failure(code);
}

std::int64_t SqliteDatabase::integer(const char* sql) {
    SqliteStatement statement = prepare(sql);
    return statement.step() ? statement.integerAt(0) : 0;
}

namespace {

DatabaseError cancelled() {
    return {ErrorCategory::Other, kCancelledState, 0, "The request was given up."};
}

// What SQLite says when a statement is too large for it, or is one that it cannot do, in the server's numbers.
std::optional<DatabaseError> limitOf(const std::string& reason) {
    const auto limit = [&](int number, const std::string& message) {
        return DatabaseError(ErrorCategory::Limit, "54000", number, message);
    };
    if (reason.starts_with("too many columns"))
        return limit(1056,
                     "The number of elements in the select list exceeds the maximum allowed number of 2000 elements.");
    if (reason.starts_with("at most "))
        return limit(106, "Too many table names in the query. The maximum allowable is 64.");
    if (reason.starts_with("too many ") || reason.starts_with("Expression tree is too large") ||
        reason == "parser stack overflow") {
        return limit(8621, "The statement is too complex (" + reason + "). Break it up into smaller ones.");
    }
    if (reason.starts_with("non-deterministic functions prohibited")) {
        return DatabaseError(ErrorCategory::Syntax, "42000", 40517,
                             "A function that is not the same for the same values at all times is not supported in "
                             "computed columns and indexes of this database.");
    }
    return std::nullopt;
}

}  // namespace

DatabaseError tooLarge() {
    return {ErrorCategory::Limit, "54000", 8631,
            "A value or statement is too large: a value has " + std::to_string(kLongestValue) + " bytes at most."};
}

DatabaseError SqliteDatabase::failure(int resultCode) {
    if (functionError_) {
        DatabaseError error = *std::move(functionError_);
        functionError_.reset();
        return error;
    }
    const std::string reason = sqlite3_errmsg(database_);
    switch (resultCode & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            if (std::exchange(waitGivenUp_, false)) return cancelled();
            return sqlError(error::kLockTimeout,
                            "Lock request time out period exceeded. Another program is writing to the database; try "
                            "again in a moment.");
        case SQLITE_FULL:
            return DatabaseError(ErrorCategory::DiskFull, "HY000", 1105,
                                 "There is no room left to write to the database; nothing of the request was kept. "
                                 "Free some space on the disk and try again.");
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return DatabaseError(
                ErrorCategory::Corrupt, "HY000", 824,
                "The database file is damaged or is not a database (" + reason +
                    "). Restore it from a backup: basalt db restore BACKUP --database \"embedded:" + filename() + '"');
        case SQLITE_IOERR:
            if (resultCode == SQLITE_IOERR_WRITE || resultCode == SQLITE_IOERR_SHMSIZE ||
                resultCode == SQLITE_IOERR_FSYNC) {
                return DatabaseError(ErrorCategory::DiskFull, "HY000", 823,
                                     "The database file cannot be written (" + reason +
                                         "); nothing of the request was kept. Check the disk and its free space.");
            }
            return DatabaseError(ErrorCategory::Connection, "08S01", 823,
                                 "The database file cannot be read or written (" + reason +
                                     "). Check the disk or the network folder that holds it.");
        case SQLITE_CANTOPEN:
        case SQLITE_READONLY:
        case SQLITE_PERM:
        case SQLITE_AUTH:
            return DatabaseError(ErrorCategory::Connection, "08001", 3906,
                                 "The database cannot be written (" + reason +
                                     "). Check that you may write to its file and to its folder.");
        case SQLITE_INTERRUPT:
            return cancelled();
        case SQLITE_NOMEM:
            return DatabaseError(ErrorCategory::Limit, "HY001", 701, "There is not enough memory for this request.");
        case SQLITE_TOOBIG:
            return tooLarge();
        case SQLITE_ERROR:
            if (reason == "integer overflow") {
                return sqlError(error::kArithmeticOverflow,
                                "Arithmetic overflow error converting expression to data type bigint.");
            }
            if (const std::optional<DatabaseError> limit = limitOf(reason)) return *limit;
            return DatabaseError(ErrorCategory::Other, "HY000", 50000, reason);
        default:
            return DatabaseError(ErrorCategory::Other, "HY000", 50000, reason);
    }
}

}  // namespace basalt::embedded
