#include "cli/workspace.h"

#include "ado/recording_session.h"
#include "ado/replay_session.h"
#include "cli/wrong_usage.h"
#include "host/engines/database_files.h"
#include "host/engines/open_database.h"
#include "host/module_loader/shared_library.h"
#include "host/services/deploy.h"
#include "host/services/path_text.h"
#include "host/services/platform/user_folders.h"
#include "host/services/settings_store.h"

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
        result.userDataFolder = host::userDataFolder();
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
    (void)databaseOf(options);
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
        state == host::SchemaState::Missing ? " holds none of the tables" : " was made by an older program";
    // The connection string may be secret.
    const std::string place = url.engine == host::EngineKind::Embedded ? url.display() : "odbc:...";
    throw DatabaseError(
        ErrorCategory::NotFound, "42S02", 208,
        url.display() + what + "; bring it up to date with: basalt db deploy --database \"" + place + '"');
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
    database_ = host::openDatabase(url);
    if (need == DatabaseNeed::Deployed) requireDeployed(*database_, url);
    if (!options.record.empty()) {
        host::requireOtherFile(url, options.record);
        wrapper_ =
            std::make_unique<RecordingSession>(*database_, host::pathFromText(options.record), identity_.toJson());
    }
    used_ = wrapper_ ? wrapper_.get() : database_.get();
}

Database::~Database() = default;

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
