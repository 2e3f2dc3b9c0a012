#include "host/engines/restore_database.h"

#include <array>
#include <optional>
#include <system_error>
#include <vector>

#include "engines/embedded/embedded_session.h"
#include "engines/embedded/exclusive_hold.h"
#include "host/engines/database_files.h"
#include "host/engines/open_database.h"
#include "host/services/deploy.h"
#include "host/services/draft_file.h"
#include "host/services/path_text.h"

namespace basalt::host {

namespace fs = std::filesystem;

namespace {

// What may hold a part of the contents, and what holds none.
constexpr std::array kLogs = {"-wal", "-journal"};
constexpr const char* kIndexOfLog = "-shm";

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

fs::path beside(fs::path path, const std::string& suffix) {
    return path += suffix;
}

// Where links lead: the engine keeps its log there.
fs::path resolved(const std::string& path) {
    std::error_code failure;
    const fs::path asked = pathFromText(path);
    fs::path found = fs::weakly_canonical(fs::absolute(asked, failure), failure);
    return failure ? asked : found;
}

// A backup with a log is a database at work, or one that was copied by hand: a copy of the two files may be of two
// moments.
void requireAlone(const fs::path& backup, const std::string& name) {
    if (!isThere(backup)) throw MissingDatabase("there is no backup at " + name);
    for (const char* suffix : kLogs) {
        if (!isThere(beside(backup, suffix))) continue;
        throw UsageError(
            "there is " + name + suffix + " beside " + name +
            ": it is open, or was left by a program that died. Make a backup of it first: basalt db backup "
            "COPY --database \"embedded:" +
            name + '"');
    }
}

[[noreturn]] void refuse(const std::string& backup, const std::string& what) {
    throw DatabaseError(ErrorCategory::Corrupt, "HY000", 0, "the backup " + backup + what);
}

// The engine's number of a damaged file.
constexpr int kDamaged = 824;

// The message of an error names the copy, which nobody knows, and of a damaged file that a backup is to be restored.
DatabaseError aboutBackup(const DatabaseError& error, const std::string& copy, const std::string& backup) {
    if (error.nativeCode() == kDamaged) {
        return {error.category(), error.sqlState(), kDamaged,
                "the backup " + backup + " is damaged or is not a database. Nothing was restored; take another backup"};
    }
    std::string message = error.what();
    for (std::size_t at = 0; (at = message.find(copy, at)) != std::string::npos; at += backup.size())
        message.replace(at, copy.size(), backup);
    return {error.category(), error.sqlState(), error.nativeCode(), message, error.statement()};
}

void requireSound(const std::string& copy, const std::string& backup) {
    try {
        const auto session = embedded::EmbeddedSession::open(copy);
        const std::vector<std::string> problems = session->integrityCheck();
        if (!problems.empty()) refuse(backup, " is not sound: " + problems.front());
        if (schemaState(*session) == SchemaState::Missing) refuse(backup, " has not the tables of this program");
        session->flush();
    } catch (const DatabaseError& error) {
        throw aboutBackup(error, copy, backup);
    }
}

// A name that nothing has yet, nor anything beside it.
fs::path nameForFormer(const fs::path& place) {
    for (int number = 1;; ++number) {
        fs::path name = beside(place, number == 1 ? ".before-restore" : ".before-restore-" + std::to_string(number));
        bool taken = isThere(name);
        for (const char* suffix : kLogs)
            taken = taken || isThere(beside(name, suffix));
        if (!taken) return name;
    }
}

void giveSecondName(const fs::path& file, const fs::path& name) {
    std::error_code failure;
    fs::create_hard_link(file, name, failure);
    if (!failure) return;
    // Some file systems know no second names.
    failure.clear();
    fs::copy_file(file, name, failure);
    if (!failure) return;
    std::error_code ignored;
    fs::remove(name, ignored);
    throw NoPlaceForDatabase(textFromPath(name) + " cannot be made: " + failure.message(), failure);
}

// Logs are nobody's own but the database's, so that they go under its second name.
void moveLogsAway(const fs::path& place, const fs::path& kept) {
    for (const char* suffix : kLogs) {
        if (isThere(beside(place, suffix))) giveSecondName(beside(place, suffix), beside(kept, suffix));
    }
    for (const char* suffix : {kLogs[0], kLogs[1], kIndexOfLog}) {
        std::error_code failure;
        fs::remove(beside(place, suffix), failure);
        if (failure) {
            throw NoPlaceForDatabase(textFromPath(place) + suffix + " cannot be removed: " + failure.message(),
                                     failure);
        }
    }
}

}  // namespace

RestoredDatabase restoreDatabase(const DatabaseUrl& url, const std::string& backup) {
    if (url.engine == EngineKind::Odbc)
        throw UsageError("a database on a server is restored by the server: RESTORE DATABASE name FROM DISK = 'path'");
    if (url.inMemory()) throw UsageError("a database in memory is gone with its program; there is nothing to restore");
    requireOtherFile(url, backup);
    const fs::path source = resolved(backup);
    requireAlone(source, backup);
    const fs::path place = resolved(url.target);
    RestoredDatabase done;
    try {
        const DraftFile draft(place);
        std::error_code failure;
        fs::copy_file(source, draft.path(), failure);
        if (failure) throw NoPlaceForDatabase(backup + " cannot be copied: " + failure.message(), failure);
        // The backup may be one that nobody is meant to write.
        fs::permissions(draft.path(), fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add, failure);
        requireSound(textFromPath(draft.path()), backup);
        const bool replaces = isThere(place);
        std::optional<embedded::ExclusiveHold> old;
        if (replaces) old.emplace(textFromPath(place));
        const fs::path kept = nameForFormer(place);
        if (replaces) giveSecondName(place, kept);
        if (!replaces || !old->settled()) moveLogsAway(place, kept);
        if (!replaces) {
            draft.takePlace();
            return done;
        }
        try {
            draft.replace();
        } catch (const DraftError&) {
            if (old->settled()) fs::remove(kept, failure);
            throw;
        }
        done.kept = kept;
    } catch (const DraftError& error) {
        throw NoPlaceForDatabase(error.what(), error.reason());
    }
    return done;
}

}  // namespace basalt::host
