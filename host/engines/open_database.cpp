#include "host/engines/open_database.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "ado/names.h"
#include "engines/embedded/embedded_session.h"
#include "engines/odbc/connection_string.h"
#include "engines/odbc/odbc_session.h"
#include "host/services/deploy.h"
#include "host/services/draft_file.h"
#include "host/services/path_text.h"
#include "host/services/platform/user_folders.h"
#include "host/transfer/server_schema.h"

namespace basalt::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* memory = ":memory:";

// A new file must not take up what a database that is gone has left beside its place: the engine would take it for the
// new one's own log. It may be all that is left of somebody's work, so it is not removed either. Where no log could
// have its name, no database could be opened.
void refuseRemains(const fs::path& path) {
    for (const char* suffix : {"-wal", "-journal"}) {
        fs::path remains = path;
        std::error_code failure;
        const bool found = fs::exists(remains += suffix, failure);
        if (failure == std::errc::filename_too_long)
            throw NoPlaceForDatabase(textFromPath(path) + " is too long a name for a database", failure);
        if (!found) continue;
        throw DatabaseRemains("the remains of a database that is gone are at " + textFromPath(remains) +
                              "; what was written into it last may be in them. Move them away, or remove them, first");
    }
}

// The folder that the file is to lie in. That of this user's data is made; another one that is not there is rather a
// name that was mistyped.
void requireFolder(const fs::path& file) {
    const fs::path folder = file.parent_path();
    std::error_code failure;
    if (folder.empty() || fs::is_directory(folder, failure)) return;
    const auto fail = [&](const std::string& what, const std::error_code& reason) {
        throw NoPlaceForDatabase("the folder " + textFromPath(folder) + what, reason);
    };
    if (folder != userDataFolderIfAny())
        fail(" does not exist; make it first", std::make_error_code(std::errc::no_such_file_or_directory));
    if (!fs::create_directories(folder, failure) && failure) fail(" cannot be made: " + failure.message(), failure);
}

std::unique_ptr<embedded::EmbeddedSession> openEmbedded(const std::string& path, bool create) {
    if (create && path != memory) {
        const fs::path file = pathFromText(path);
        std::error_code failure;
        if (!fs::exists(file, failure)) refuseRemains(file);
        requireFolder(file);
    }
    // The engine would read a name that begins so as an address; people mean the file.
    const bool likeAnAddress = path.rfind("file:", 0) == 0;
    return embedded::EmbeddedSession::open(likeAnAddress ? "./" + path : path, {.createIfMissing = create});
}

std::unique_ptr<embedded::EmbeddedSession> openFile(const DatabaseUrl& url) {
    std::error_code failure;
    if (!fs::exists(pathFromText(url.target), failure)) {
        throw MissingDatabase("there is no database at " + url.target +
                              "; make one with: basalt db create --demo --database \"" + url.display() + "\"");
    }
    return openEmbedded(url.target, false);
}

// Drivers say of a missing part only that they cannot connect.
void requireParts(const odbc::ConnectionString& text) {
    const auto fail = [](const std::string& what) {
        throw DatabaseError(ErrorCategory::Connection, "08001", 0, "the connection string " + what);
    };
    for (const char* key : {"Driver", "DSN", "Server", "Servername", "Database"}) {
        const auto value = text.value(key);
        if (value && value->empty()) fail(std::string("gives no value for ") + key);
    }
    if (text.value("DSN") || text.value("FILEDSN")) return;
    const auto driver = text.value("Driver");
    if (!driver) fail("names neither a Driver nor a DSN");
    const std::string folded = foldName(*driver);
    const bool sqlServer = folded.find(foldName("FreeTDS")) != std::string::npos ||
                           folded.find(foldName("tdsodbc")) != std::string::npos ||
                           folded.find(foldName("SQL Server")) != std::string::npos;
    const auto given = [&](const char* key) { return text.value(key).has_value(); };
    if (sqlServer && !given("Server") && !given("Servername") && !given("Address") && !given("Addr"))
        fail("names no Server");
}

std::unique_ptr<Session> openServer(const DatabaseUrl& url, OpenOptions options) {
    requireParts(odbc::ConnectionString(url.target));
    return odbc::OdbcSession::open(url.target, {.queryTimeoutSeconds = options.queryTimeoutSeconds});
}

// A database file that its maker closes when it is done.
template <typename Maker>
void makeWhole(const fs::path& place, const Maker& make) {
    try {
        const DraftFile draft(place);
        make(textFromPath(draft.path()));
        draft.takePlace();
    } catch (const DraftError& error) {
        throw NoPlaceForDatabase(error.what(), error.reason());
    }
}

}  // namespace

std::unique_ptr<Session> openDatabase(const DatabaseUrl& url, OpenOptions options) {
    if (url.engine == EngineKind::Odbc) return openServer(url, options);
    if (url.inMemory()) {
        std::unique_ptr<Session> session = openEmbedded(memory, true);
        deployDatabase(*session, {.demo = true});
        return session;
    }
    return openFile(url);
}

std::unique_ptr<Session> openOrCreateDatabase(const DatabaseUrl& url, OpenOptions options) {
    if (url.engine == EngineKind::Odbc) return openServer(url, options);
    return openEmbedded(url.target, true);
}

std::vector<std::string> findDamage(const DatabaseUrl& url) {
    if (url.engine == EngineKind::Odbc)
        throw UsageError("a database on a server is checked by the server: DBCC CHECKDB");
    if (url.inMemory()) return {};
    return openFile(url)->integrityCheck();
}

void createDatabase(const DatabaseUrl& url, const std::function<void(Session&)>& fill) {
    if (url.engine == EngineKind::Odbc) {
        throw UsageError("only an embedded database is a file to be made; db deploy fills one on a server");
    }
    if (url.inMemory()) throw UsageError("a database in memory is made whenever it is opened");
    const fs::path path = pathFromText(url.target);
    std::error_code failure;
    if (fs::exists(path, failure)) {
        throw FileExists("there is a file at " + url.target +
                         " already; db deploy brings an existing database up to date");
    }
    refuseRemains(path);
    requireFolder(path);
    makeWhole(path, [&](const std::string& draft) {
        const auto session = openEmbedded(draft, true);
        fill(*session);
        session->flush();
    });
}

void createDatabase(const DatabaseUrl& url, bool demo) {
    createDatabase(url, [demo](Session& session) { deployDatabase(session, {.demo = demo}); });
}

void backUpDatabase(const DatabaseUrl& url, const std::string& file) {
    if (url.engine == EngineKind::Odbc) {
        throw UsageError(
            "a database on a server is backed up by the server, which writes the file on its own computer: BACKUP "
            "DATABASE name TO DISK = 'path'");
    }
    if (url.inMemory()) throw UsageError("a database in memory is new whenever it is opened; there is nothing to keep");
    const fs::path path = pathFromText(file);
    std::error_code failure;
    if (fs::exists(path, failure)) throw FileExists("there is a file at " + file + " already");
    refuseRemains(path);
    const std::unique_ptr<embedded::EmbeddedSession> source = openFile(url);
    makeWhole(path, [&](const std::string& draft) {
        source->backUp(draft);
        const auto copy = openEmbedded(draft, false);
        const std::vector<std::string> problems = copy->integrityCheck();
        if (!problems.empty()) {
            throw DatabaseError(ErrorCategory::Corrupt, "HY000", 0, "the copy is not sound: " + problems.front());
        }
        copy->flush();
    });
}

DatabaseSchema readSchema(Session& session) {
    if (auto* own = dynamic_cast<embedded::EmbeddedSession*>(&session)) return own->schema();
    return readServerSchema(session);
}

}  // namespace basalt::host
