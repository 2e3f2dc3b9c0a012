// basalt db create | deploy | check | backup | restore | dump | load: makes databases, looks after them and moves them.
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>

#include "ado/error.h"
#include "cli/commands.h"
#include "cli/workspace.h"
#include "cli/workstation.h"
#include "cli/wrong_usage.h"
#include "host/engines/database_files.h"
#include "host/engines/open_database.h"
#include "host/engines/restore_database.h"
#include "host/services/deploy.h"
#include "host/services/draft_file.h"
#include "host/services/lost_letters.h"
#include "host/services/path_text.h"
#include "host/transfer/database_dump.h"
#include "host/transfer/database_load.h"

namespace basalt::cli {

namespace {

namespace fs = std::filesystem;

// These commands work on the database as a whole, which a recording does not stand in for.
void refuseReplay(const CommonOptions& common) {
    if (common.replay.empty()) return;
    throw WrongUsage("--replay does not go with db; it goes with sql, call, batch and screen");
}

// What a command says to a database, and hears from it, written down where --record asks for it.
class RecordedSession {
public:
    RecordedSession(Session& session, const CommonOptions& common, const host::DatabaseUrl& url)
        : inner_(session), recording_(recorded(session, common, url, RunIdentity::ofThisRun())) {}

    [[nodiscard]] Session& used() { return recording_ ? *recording_ : inner_; }
    // An embedded database tells what it is made of by itself and not by statements.
    [[nodiscard]] DatabaseSchema schema() { return host::readSchema(inner_.engine() == "embedded" ? inner_ : used()); }

private:
    Session& inner_;
    std::unique_ptr<Session> recording_;
};

struct DatabaseCommandOptions {
    bool demo = false;
    std::string file;  // empty: the standard input or output
};

int create(const CommonOptions& common, bool demo) {
    const host::DatabaseUrl url = databaseOf(common);
    host::createDatabase(url, [&](Session& session) {
        RecordedSession recorded(session, common, url);
        host::deployDatabase(recorded.used(), {.demo = demo});
    });
    std::cout << "made " << url.display() << (demo ? " with demo data\n" : "\n");
    return 0;
}

// The embedded engine keeps every letter; a server, what its collation does.
std::string textProblem(Session& session) {
    const std::string letters = host::lostLetters(session);
    return letters.empty() ? std::string() : host::lostLettersWarning(letters);
}

int deploy(const CommonOptions& common, bool demo) {
    if (common.database.empty()) throw WrongUsage("db deploy changes a database; say which with --database URL");
    const host::DatabaseUrl url = databaseOf(common);
    const std::unique_ptr<Session> session = host::openOrCreateDatabase(url, openOptions());
    RecordedSession recorded(*session, common, url);
    for (const std::string& script : host::deployDatabase(recorded.used(), {.demo = demo}))
        std::cout << script << '\n';
    if (const std::string problem = textProblem(recorded.used()); !problem.empty())
        std::cerr << "warning: " << problem << '\n';
    std::cout << url.display() << " is up to date\n";
    return 0;
}

// What a server does not find out by itself.
int checkServer(const CommonOptions& common, const host::DatabaseUrl& url) {
    const std::unique_ptr<Session> session = host::openDatabase(url, openOptions());
    RecordedSession recorded(*session, common, url);
    requireDeployed(recorded.used(), url);
    if (const std::string problem = textProblem(recorded.used()); !problem.empty()) {
        std::cerr << problem << '\n';
        return 1;
    }
    std::cout << url.display() << " has the tables of this program and keeps every letter; damage is for the server "
              << "itself to look for: DBCC CHECKDB\n";
    return 0;
}

int check(const CommonOptions& common) {
    const host::DatabaseUrl url = databaseOf(common);
    if (url.engine == host::EngineKind::Odbc) return checkServer(common, url);
    const std::vector<std::string> problems = host::findDamage(url);
    for (const std::string& problem : problems)
        std::cerr << problem << '\n';
    if (!problems.empty()) return 1;
    const std::unique_ptr<Session> session = host::openDatabase(url);
    requireDeployed(RecordedSession(*session, common, url).used(), url);
    std::cout << url.display() << " is sound\n";
    return 0;
}

int backUp(const CommonOptions& common, const std::string& file) {
    const host::DatabaseUrl url = databaseOf(common);
    // The pages are copied without a statement, so that the recording holds none.
    if (!common.record.empty()) {
        const std::unique_ptr<Session> session = host::openDatabase(url);
        const RecordedSession recording(*session, common, url);
    }
    host::backUpDatabase(url, file);
    std::cout << "copied " << url.display() << " to " << file << '\n';
    return 0;
}

int restore(const CommonOptions& common, const std::string& file) {
    if (common.database.empty()) throw WrongUsage("db restore replaces a database; say which with --database URL");
    const host::DatabaseUrl url = databaseOf(common);
    // The file is moved without a statement, so that the recording holds none, and any session makes it. One that
    // cannot be written is told before anything is moved.
    if (!common.record.empty()) {
        const std::unique_ptr<Session> session = host::openDatabase(host::DatabaseUrl::parse("embedded::memory:"));
        const RecordedSession recording(*session, common, url);
    }
    const host::RestoredDatabase done = host::restoreDatabase(url, file);
    std::cout << "restored " << url.display() << " from " << file << '\n';
    if (!done.kept.empty()) std::cout << "the former file is " << host::textFromPath(done.kept) << '\n';
    return 0;
}

// Told before the work is done; a file that comes meanwhile is told at its end.
void requireNone(const std::string& file) {
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(host::pathFromText(file), ignored)))
        throw host::FileExists("there is a file at " + file + " already");
}

int dump(const CommonOptions& common, const std::string& file) {
    const host::DatabaseUrl url = databaseOf(common);
    if (!file.empty()) {
        host::requireOtherFile(url, file);
        requireNone(file);
    }
    const std::unique_ptr<Session> session = host::openDatabase(url, openOptions());
    RecordedSession recorded(*session, common, url);
    std::vector<host::BrokenView> broken;
    const auto dumpTo = [&](std::ostream& out) {
        broken = host::dumpDatabase(
            recorded.used(), [&recorded](Session&) { return recorded.schema(); }, out);
    };
    if (file.empty()) {
        dumpTo(std::cout);
    } else {
        const host::DraftFile draft(host::pathFromText(file));
        {
            std::ofstream out(draft.path(), std::ios::binary);
            if (!out) throw std::runtime_error("the file " + file + " cannot be written");
            dumpTo(out);
        }
        draft.takePlace();
    }
    for (const host::BrokenView& view : broken) {
        std::cerr << "basalt: the view " << view.name
                  << " is a comment in the dump, because it cannot be made again: " << view.reason << '\n';
    }
    return broken.empty() ? 0 : 1;
}

// A database that holds nothing yet, as a script that makes everything needs it.
void requireEmpty(const DatabaseSchema& schema, const host::DatabaseUrl& url) {
    if (schema.tables.empty() && schema.modules.empty()) return;
    throw UsageError(url.display() + " is not empty; load into a new database");
}

int load(const CommonOptions& common, const std::string& file) {
    const host::DatabaseUrl url = databaseOf(common);
    std::ifstream stream;
    if (!file.empty()) {
        stream.open(host::pathFromText(file), std::ios::binary);
        if (!stream) throw WrongUsage("the file " + file + " cannot be read");
    }
    std::istream& script = file.empty() ? std::cin : stream;
    std::size_t batches = 0;
    const auto fill = [&](Session& session, bool isNew) {
        RecordedSession recorded(session, common, url);
        if (!isNew) requireEmpty(recorded.schema(), url);
        batches = host::loadScript(recorded.used(), script, file);
    };
    std::error_code failure;
    if (url.engine == host::EngineKind::Embedded && !url.inMemory() &&
        !fs::exists(host::pathFromText(url.target), failure)) {
        host::createDatabase(url, [&fill](Session& session) { fill(session, true); });
    } else {
        fill(*host::openOrCreateDatabase(url, openOptions()), false);
    }
    std::cout << "loaded " << batches << " batches into " << url.display() << '\n';
    return 0;
}

}  // namespace

void addDatabaseCommand(Program& program) {
    CLI::App& group = *program.app.add_subcommand("db", "makes and looks after databases");
    group.fallthrough();
    group.require_subcommand(1);
    const auto options = std::make_shared<DatabaseCommandOptions>();
    const CommonOptions& common = program.options;

    const auto command = [&](const char* name, const char* description, auto run) -> CLI::App& {
        return program.command(group, name, description, [&common, options, run] {
            refuseReplay(common);
            return run(common, *options);
        });
    };
    using Options = DatabaseCommandOptions;
    CLI::App& createCommand = command("create", "makes the file of a new database",
                                      [](const auto& all, const Options& own) { return create(all, own.demo); });
    createCommand.add_flag("--demo", options->demo, "with demo data");
    CLI::App& deployCommand = command("deploy", "makes missing tables, procedures and functions in --database",
                                      [](const auto& all, const Options& own) { return deploy(all, own.demo); });
    deployCommand.add_flag("--demo", options->demo, "demo data too, into tables that are empty");
    (void)command("check", "looks for damage", [](const auto& all, const Options& /*own*/) { return check(all); });
    CLI::App& backUpCommand = command("backup", "copies the file while others work with it",
                                      [](const auto& all, const Options& own) { return backUp(all, own.file); });
    backUpCommand.add_option("FILE", options->file, "the copy; there must be none yet")->required();
    CLI::App& restoreCommand = command("restore", "puts a backup into the place of --database, whole or not at all",
                                       [](const auto& all, const Options& own) { return restore(all, own.file); });
    restoreCommand.add_option("BACKUP", options->file, "the copy that db backup made; it stays")->required();
    CLI::App& dumpCommand = command("dump", "writes everything down as T-SQL",
                                    [](const auto& all, const Options& own) { return dump(all, own.file); });
    dumpCommand.add_option("FILE", options->file,
                           "the dump; there must be none yet; the standard output when left out");
    CLI::App& loadCommand = command("load", "runs a dump in a new database, whole or not at all",
                                    [](const auto& all, const Options& own) { return load(all, own.file); });
    loadCommand.add_option("FILE", options->file, "the standard input when left out");
}

}  // namespace basalt::cli
