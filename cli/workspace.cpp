#include "cli/workspace.h"

#include "ado/recording_session.h"
#include "ado/replay_session.h"
#include "cli/workstation.h"
#include "cli/wrong_usage.h"
#include "host/engines/database_files.h"
#include "host/engines/open_database.h"
#include "host/module_loader/shared_library.h"
#include "host/services/deploy.h"
#include "host/services/path_text.h"
#include "host/services/platform/user_folders.h"
#include "host/services/settings_store.h"
#include "host/services/workstations.h"

namespace basalt::cli {

namespace {

host::HostOptions hostOptions(const CommonOptions& options, const RunIdentity& identity) {
    host::HostOptions result{.workstationName = {},
                             .userDataFolder = {},
                             .persistOptions = false,
                             .programFolder = host::programFolder(),
                             .process = identity.process};
    if (options.record.empty() && options.replay.empty()) {
        result.persistOptions = true;
        result.userDataFolder = host::userDataFolderIfAny();
    } else {
        result.workstationName = identity.workstationName;
    }
    return result;
}

template <typename Assign>
void assignSetting(const std::string& setting, const Assign& assign) {
    const std::size_t equals = setting.find('=');
    if (equals == std::string::npos) throw WrongUsage("--set takes NAME=VALUE, not \"" + setting + "\"");
    try {
        assign(setting.substr(0, equals), setting.substr(equals + 1));
    } catch (const UsageError& error) {
        throw WrongUsage(std::string("--set ") + setting + ": " + error.what());
    }
}

// Of a database that says no version: tables made by hand may want their last step only.
std::string whatIsMissing(Session& session) {
    constexpr std::size_t shown = 5;
    const auto [missing, all] = host::missingObjects(session);
    if (all) return " holds none of the tables";
    if (missing.empty()) {
        return " has all tables, functions and procedures, but HostSchemaVersion is empty: the last step of a "
               "deployment by hand has been left out";
    }
    std::string names;
    for (std::size_t i = 0; i < missing.size() && i < shown; ++i)
        names += (i > 0 ? ", " : " lacks ") + missing[i];
    if (missing.size() > shown) names += " and " + std::to_string(missing.size() - shown) + " more";
    return names;
}

}  // namespace

host::DatabaseUrl databaseOf(const CommonOptions& options) {
    if (options.database.empty()) return host::DatabaseUrl::defaultDatabase();
    try {
        return host::DatabaseUrl::parse(options.database);
    } catch (const UsageError& error) {
        throw WrongUsage(error.what());
    }
}

void requireRightOptions(const CommonOptions& options) {
    // This user's own is looked for by the commands that need it.
    if (!options.database.empty()) (void)databaseOf(options);
    TSettingRecord record;
    for (const std::string& setting : options.settings) {
        assignSetting(setting, [&record](const std::string& name, const std::string& value) {
            host::SettingsStore::assign(record, name, value);
        });
    }
}

void requireDeployed(Session& session, const host::DatabaseUrl& url) {
    const host::SchemaState state = host::schemaState(session);
    if (state == host::SchemaState::Current) return;
    const std::string what =
        state == host::SchemaState::Missing ? whatIsMissing(session) : std::string(" was made by an older program");
    // The connection string may be secret.
    const std::string place = url.engine == host::EngineKind::Embedded ? url.display() : "odbc:...";
    throw DatabaseError(
        ErrorCategory::NotFound, "42S02", 208,
        url.display() + what + "; bring it up to date with: basalt db deploy --database \"" + place + '"');
}

std::unique_ptr<Session> recorded(Session& session, const CommonOptions& options, const host::DatabaseUrl& url,
                                  const RunIdentity& identity) {
    if (options.record.empty()) return nullptr;
    host::requireOtherFile(url, options.record);
    return std::make_unique<RecordingSession>(session, host::pathFromText(options.record), identity.toJson());
}

Database::Database(const CommonOptions& options, DatabaseNeed need) : identity_(RunIdentity::ofThisRun()) {
    if (!options.replay.empty()) {
        auto replay = std::make_unique<ReplaySession>(host::pathFromText(options.replay));
        replay_ = replay.get();
        if (!replay->note().empty()) identity_ = RunIdentity::fromJson(replay->note());
        wrapper_ = std::move(replay);
        used_ = wrapper_.get();
        return;
    }
    const host::DatabaseUrl url = databaseOf(options);
    database_ = host::openDatabase(url, openOptions());
    if (need == DatabaseNeed::Deployed) {
        requireDeployed(*database_, url);
        // Before anything is recorded: a replay has no clients to look after.
        host::Workstations(*database_).removeKilledIfPossible(identity_.process.machine);
    }
    wrapper_ = recorded(*database_, options, url, identity_);
    used_ = wrapper_ ? wrapper_.get() : database_.get();
}

Database::~Database() = default;

std::string Database::newerWarning() {
    if (!database_) return {};
    try {
        static_cast<void>(host::schemaState(*database_));
    } catch (const DatabaseError& error) {
        // A database of any other kind, or one that is busy, is for the statements to find out about.
        if (error.category() == ErrorCategory::Version)
            return std::string(error.what()) + ". Statements may find it other than this program says";
    }
    return {};
}

DatabaseSchema Database::schema() const {
    if (!database_) throw UsageError("a recording does not hold what the database is made of");
    return host::readSchema(*database_);
}

void Database::finish() {
    if (replay_ && !replay_->finished()) {
        throw UsageError("the recorded run asked the database for more:\n" + replay_->leftover());
    }
}

Workspace::Workspace(const CommonOptions& options)
    : module_(host::loadModule()), database_(options, DatabaseNeed::Deployed), clock_(database_.identity().moment) {
    host_.emplace(database_.session(), hostOptions(options, database_.identity()));
    if (!options.record.empty() || !options.replay.empty()) host_->setClock(clock_);
    if (options.replay.empty()) host_->DM().ADOConnection1.ConnectionString = databaseOf(options).connectionString();
    host_->signInAs(options.user);
    for (const std::string& setting : options.settings)
        assignSetting(setting,
                      [this](const std::string& name, const std::string& value) { host_->setSetting(name, value); });
    attached_.emplace(module_, *host_);
    host_->setExports(&module_.registry());
}

void Workspace::finish() {
    attached_.reset();
    host_.reset();
    database_.finish();
}

}  // namespace basalt::cli
