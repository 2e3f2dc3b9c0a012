#include "engines/embedded/open_database.h"

#include <filesystem>

#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/catalog/text_search.h"
#include "engines/embedded/runtime/collation.h"
#include "engines/embedded/runtime/function_support.h"

namespace basalt::embedded {

namespace {

// How the engine keeps values and system tables; a file of a later number is not for this program. A file takes a
// higher number when it first holds what programs of the lower one do not know.
constexpr int kFormatVersion = 2;
constexpr const char* kFirstFormat = "1";

[[noreturn]] void refuseNewer(const std::string& path) {
    throw DatabaseError(
        ErrorCategory::Version, "HY000", 948,
        "The database '" + path +
            "' was made by a newer release of the program. Update this computer's program, then open it again.");
}

int number(const std::string& text) {
    return text.empty() ? 0 : std::stoi(text);
}

}  // namespace

void refuseReadOnly(const std::string& path) {
    throw DatabaseError(
        ErrorCategory::Connection, "08001", 3906,
        "The database file '" + path + "' cannot be written. Check that you may write to it and to its folder.");
}

// The system's interface asks the system.
void requireWritable(const std::string& path) {
    sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
    int there = 0;
    int writable = 1;
    if (system->xAccess(system, path.c_str(), SQLITE_ACCESS_EXISTS, &there) != SQLITE_OK || there == 0) return;
    if (system->xAccess(system, path.c_str(), SQLITE_ACCESS_READWRITE, &writable) == SQLITE_OK && writable == 0)
        refuseReadOnly(path);
}

std::unique_ptr<SqliteDatabase> openDatabase(const std::string& path, const EmbeddedOptions& options) {
    const bool inMemory = path == ":memory:";
    if (!inMemory && !options.createIfMissing) {
        std::error_code problem;
        if (!std::filesystem::exists(std::filesystem::path(std::u8string(path.begin(), path.end())), problem)) {
            throw DatabaseError(
                ErrorCategory::NotFound, "08001", 5120,
                "The database file '" + path + "' does not exist. Check the path, or create the database first.");
        }
    }
    if (!inMemory) requireWritable(path);
    auto database = std::make_unique<SqliteDatabase>(path, inMemory || options.createIfMissing, options.busyTimeoutMs);
    addRuntime(*database);
    if (options.longestValue < kLongestValue)
        sqlite3_limit(database->handle(), SQLITE_LIMIT_LENGTH, options.longestValue);
    // The first reading finds a file that is damaged or something else.
    const std::int64_t objects = database->integer("SELECT count(*) FROM sqlite_schema");
    if (!inMemory && sqlite3_db_readonly(database->handle(), "main") == 1) refuseReadOnly(path);
    Catalog catalog(*database);
    // A file of another program is told before anything is written into it.
    if (objects == 0 && !inMemory && !options.createIfMissing) {
        throw DatabaseError(ErrorCategory::Corrupt, "08001", 5171,
                            "The file '" + path + "' is empty. Check the path, or create the database first.");
    }
    if (objects != 0) {
        if (database->integer("SELECT count(*) FROM sqlite_schema WHERE name = 'basalt_property'") == 0) {
            throw DatabaseError(ErrorCategory::Corrupt, "08001", 5171,
                                "The file '" + path + "' is a database, but not one of this program. Check the path.");
        }
        if (number(catalog.property("format_version")) > kFormatVersion) refuseNewer(path);
        if (number(catalog.property(kSchemaVersionProperty)) > options.knownSchemaVersion) refuseNewer(path);
    }
    database->execute("PRAGMA journal_mode = WAL");
    // From here on nobody can put another file into its place unnoticed; it may have come while this one was waited
    // for.
    database->requireInPlace();
    database->execute("PRAGMA synchronous = FULL");
    database->execute("PRAGMA foreign_keys = ON");
    database->execute("PRAGMA temp_store = MEMORY");
    database->execute("PRAGMA cache_size = -32768");
    if (objects == 0) {
        database->execute("BEGIN IMMEDIATE");
        // Another program may have been first.
        Catalog::createSystemTables(*database, false);
        catalog.setProperty("format_version", kFirstFormat);
        catalog.setProperty("collation_version", collationVersion());
        database->execute("COMMIT");
    }
    if (catalog.property("collation_version") != collationVersion()) {
        // The order of texts has changed with the system's Unicode data: indexes built by the old order are wrong.
        database->execute("BEGIN IMMEDIATE");
        database->execute("REINDEX TSQL");
        refillTextSearch(*database, catalog);
        catalog.setProperty("collation_version", collationVersion());
        database->execute("COMMIT");
    }
    return database;
}

}  // namespace basalt::embedded
