#include "host/engines/open_database.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "engines/embedded/embedded_session.h"
#include "engines/odbc/odbc_session.h"
#include "host/services/deploy.h"
#include "host/transfer/server_schema.h"

namespace basalt::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* memory = ":memory:";

fs::path pathOf(const std::string& text) {
    return fs::path(std::u8string(text.begin(), text.end()));
}

std::string textOf(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::unique_ptr<embedded::EmbeddedSession> openEmbedded(const std::string& path, bool create) {
    if (create && path != memory) {
        const fs::path folder = pathOf(path).parent_path();
        std::error_code failure;
        if (!folder.empty()) fs::create_directories(folder, failure);
        if (failure) {
            throw DatabaseError(ErrorCategory::Connection, "08001", 0,
                                "the folder " + textOf(folder) + " cannot be made: " + failure.message());
        }
    }
    return embedded::EmbeddedSession::open(path, {.createIfMissing = create});
}

std::unique_ptr<embedded::EmbeddedSession> openFile(const DatabaseUrl& url) {
    std::error_code failure;
    if (!fs::exists(pathOf(url.target), failure)) {
        throw MissingDatabase("there is no database at " + url.target +
                              "; make one with: basalt db create --demo --database \"" + url.display() + "\"");
    }
    return openEmbedded(url.target, false);
}

// The half-made file of a database and what the engine keeps beside it; gone at the end unless it became the database.
class DraftFile {
public:
    explicit DraftFile(fs::path path) : path_(std::move(path)) { remove(); }
    ~DraftFile() { remove(); }
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    [[nodiscard]] const fs::path& path() const { return path_; }
    // The file under its own name; the engine has let go of it. DatabaseError when that cannot be.
    void become(const fs::path& name) const {
        std::error_code failure;
        fs::rename(path_, name, failure);
        if (!failure) return;
        throw DatabaseError(ErrorCategory::Connection, "08001", 0,
                            textOf(name) + " cannot be made: " + failure.message());
    }

private:
    void remove() const {
        for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
            std::error_code ignored;
            fs::path file = path_;
            fs::remove(file += suffix, ignored);
        }
    }

    fs::path path_;
};

}  // namespace

std::unique_ptr<Session> openDatabase(const DatabaseUrl& url) {
    if (url.engine == EngineKind::Odbc) return odbc::OdbcSession::open(url.target);
    if (url.inMemory()) {
        std::unique_ptr<Session> session = openEmbedded(memory, true);
        deployDatabase(*session, {.demo = true});
        return session;
    }
    return openFile(url);
}

std::unique_ptr<Session> openOrCreateDatabase(const DatabaseUrl& url) {
    if (url.engine == EngineKind::Odbc) return odbc::OdbcSession::open(url.target);
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
    const fs::path path = pathOf(url.target);
    std::error_code failure;
    if (fs::exists(path, failure)) {
        throw UsageError("there is a file at " + url.target +
                         " already; db deploy brings an existing database up to date");
    }
    fs::path draftPath = path;
    const DraftFile draft(draftPath += ".new");
    fill(*openEmbedded(textOf(draft.path()), true));
    draft.become(path);
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
    const fs::path path = pathOf(file);
    std::error_code failure;
    if (fs::exists(path, failure)) throw UsageError("there is a file at " + file + " already");
    const std::unique_ptr<embedded::EmbeddedSession> source = openFile(url);
    fs::path draftPath = path;
    const DraftFile draft(draftPath += ".new");
    source->backUp(textOf(draft.path()));
    const std::vector<std::string> problems = openEmbedded(textOf(draft.path()), false)->integrityCheck();
    if (!problems.empty()) {
        throw DatabaseError(ErrorCategory::Corrupt, "HY000", 0, "the copy is not sound: " + problems.front());
    }
    draft.become(path);
}

DatabaseSchema readSchema(Session& session) {
    if (auto* own = dynamic_cast<embedded::EmbeddedSession*>(&session)) return own->schema();
    return readServerSchema(session);
}

}  // namespace basalt::host
