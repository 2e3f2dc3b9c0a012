#include "engines/embedded/exclusive_hold.h"

#include "engines/embedded/open_database.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

namespace {

DatabaseError isOpen(const std::string& path) {
    return {
        ErrorCategory::Busy, "HYT00", 5061,
        "The database '" + path + "' is open in another program. Close every program that uses it, then try again."};
}

// Who works with a file by its log holds a lock on it all the time, so that nobody else can be there once the log is
// given up for the journal, in whose mode one transaction keeps everybody out.
void settle(SqliteDatabase& database) {
    addRuntime(database);
    database.execute("PRAGMA journal_mode = DELETE");
    database.execute("BEGIN EXCLUSIVE");
}

// The same lock on a file that SQLite does not read.
void lockUnread(SqliteDatabase& database, const std::string& path) {
    sqlite3_file* file = nullptr;
    int code = sqlite3_file_control(database.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    for (const int lock : {SQLITE_LOCK_SHARED, SQLITE_LOCK_EXCLUSIVE}) {
        if (code == SQLITE_OK) code = file->pMethods->xLock(file, lock);
    }
    if ((code & 0xFF) == SQLITE_BUSY) throw isOpen(path);
    if (code != SQLITE_OK) refuseReadOnly(path);
}

}  // namespace

ExclusiveHold::ExclusiveHold(const std::string& path) {
    requireWritable(path);
    database_ = std::make_unique<SqliteDatabase>(path, false, 0);
    try {
        settle(*database_);
        settled_ = true;
    } catch (const DatabaseError& error) {
        if (error.category() == ErrorCategory::Busy) throw isOpen(path);
        // One that has failed may still hold what it has read.
        database_ = nullptr;
        database_ = std::make_unique<SqliteDatabase>(path, false, 0);
        lockUnread(*database_, path);
    }
}

ExclusiveHold::~ExclusiveHold() = default;

}  // namespace basalt::embedded
