// Opens a database by its URL.
//
//   std::unique_ptr<Session> session = openDatabase(DatabaseUrl::parse("embedded::memory:"));
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "ado/schema.h"
#include "ado/session.h"
#include "host/engines/database_url.h"
#include "host/services/draft_file.h"

namespace basalt::host {

// The file of an embedded database is not there. The message says how to make one.
class MissingDatabase : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// No file is there, but what a database that is gone has left beside its place is: what was written into it last may be
// in that. The message names it.
class DatabaseRemains : public UsageError {
public:
    using UsageError::UsageError;
};

// The operating system has no place for the file of a database, for the reason given.
class NoPlaceForDatabase : public DatabaseError {
public:
    NoPlaceForDatabase(const std::string& message, const std::error_code& reason)
        : DatabaseError(ErrorCategory::Connection, "08001", 0, message), reason_(reason) {}

    [[nodiscard]] const std::error_code& reason() const noexcept { return reason_; }

private:
    std::error_code reason_;
};

// How the databases of this workstation are opened, as its options say (host/services/ini_options.h).
struct OpenOptions {
    int queryTimeoutSeconds = 0;  // of a statement on a server; 0: it may take as long as it takes
};

// An existing database. One in memory is new and holds the demo data. MissingDatabase, or DatabaseError when it cannot
// be opened or reached, is damaged, or was made by a newer program.
[[nodiscard]] std::unique_ptr<Session> openDatabase(const DatabaseUrl& url, OpenOptions options = {});

// The same for a database that is to be deployed: a missing file is made and nothing is put into it; DatabaseRemains
// when it cannot be. Its folder must be there, but for that of this user's own data, which is made too. A database on a
// server must be there.
[[nodiscard]] std::unique_ptr<Session> openOrCreateDatabase(const DatabaseUrl& url, OpenOptions options = {});

// What a full check of an embedded database finds, in words; empty when it is sound. UsageError for a database on a
// server, which has means of its own.
[[nodiscard]] std::vector<std::string> findDamage(const DatabaseUrl& url);

// Makes the file of a new embedded database, whole or not at all. FileExists or DatabaseRemains when its place is
// taken, NoPlaceForDatabase when it cannot be written, UsageError for a database that is no file; its folder must be
// there as for openOrCreateDatabase.
void createDatabase(const DatabaseUrl& url, bool demo);
// The same with contents of the caller's.
void createDatabase(const DatabaseUrl& url, const std::function<void(Session&)>& fill);

// Copies an embedded database into a new file, whole or not at all, while others work with it, and looks whether the
// copy is sound. FileExists or DatabaseRemains when the place is taken, UsageError for a database on a server, which
// makes its own backups; NoPlaceForDatabase when the copy cannot be written, DatabaseError when it is not sound.
void backUpDatabase(const DatabaseUrl& url, const std::string& file);

// What the database of an open session is made of. The session is one of openDatabase's itself, not wrapped.
[[nodiscard]] DatabaseSchema readSchema(Session& session);

}  // namespace basalt::host
