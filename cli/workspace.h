// What the commands stand on: the database, the host over it and the module, as the common options want them.
//
//   Workspace workspace(options);
//   FunctionCaller caller(workspace.module().registry(), workspace.host());
//   ...
//   workspace.finish();
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ado/schema.h"
#include "ado/session.h"
#include "cli/options.h"
#include "cli/run_identity.h"
#include "host/engines/database_url.h"
#include "host/module_loader/module_loader.h"
#include "host/services/reference_host.h"

namespace basalt {
class ReplaySession;
}

namespace basalt::cli {

// The database that the options name, this user's own when they name none. WrongUsage for a URL that is none.
[[nodiscard]] host::DatabaseUrl databaseOf(const CommonOptions& options);

// WrongUsage for a database URL that is none and for a setting that there is not or that does not take the value.
// Nothing is opened.
void requireRightOptions(const CommonOptions& options);

// DatabaseError that tells what to do when the database is not the reference database of this program.
void requireDeployed(Session& session, const host::DatabaseUrl& url);

// The session with all that passes through it written to the file of --record; null when the options name none. Errors
// as RecordingSession's, and UsageError for a file of the database itself.
[[nodiscard]] std::unique_ptr<Session> recorded(Session& session, const CommonOptions& options,
                                                const host::DatabaseUrl& url, const RunIdentity& identity);

// Any: as it is. Deployed: only a database with the tables that the host and the module work on, and what killed
// clients of this machine held there is freed.
enum class DatabaseNeed { Any, Deployed };

// An open database, recorded or replayed as the options want.
class Database {
public:
    Database(const CommonOptions& options, DatabaseNeed need);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    [[nodiscard]] Session& session() { return *used_; }
    // A sentence when the database was made by a newer program, which whoever works on it should know; else empty.
    [[nodiscard]] std::string newerWarning();
    // What the database is made of; UsageError when replaying, as there is none then.
    [[nodiscard]] DatabaseSchema schema() const;
    // When and as whom the host is to act: now and this process, or as recorded, so that a replay sends what was
    // recorded.
    [[nodiscard]] const RunIdentity& identity() const { return identity_; }
    // At the end of a run that went well: UsageError when the replayed file holds more than was asked for.
    void finish();

private:
    RunIdentity identity_;
    std::unique_ptr<Session> database_;  // null when replaying
    std::unique_ptr<Session> wrapper_;   // null when neither recording nor replaying
    ReplaySession* replay_ = nullptr;
    Session* used_ = nullptr;
};

class Workspace {
public:
    // The user is signed in and the settings of the options are set.
    explicit Workspace(const CommonOptions& options);
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    [[nodiscard]] host::ReferenceHost& host() { return *host_; }
    [[nodiscard]] Module& module() { return module_; }
    // At the end of a run that went well: lets go of host and module, and then as Database::finish.
    void finish();

private:
    Module& module_;
    Database database_;
    host::FixedClock clock_;
    std::optional<host::ReferenceHost> host_;
    std::optional<host::AttachedModule> attached_;
};

}  // namespace basalt::cli
