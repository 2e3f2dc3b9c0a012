// basalt db create | deploy | check: makes databases, brings them up to date, and looks whether they are sound.
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/workspace.h"
#include "host/engines/open_database.h"
#include "host/services/deploy.h"

namespace basalt::cli {

namespace {

int create(const CommonOptions& common, bool demo) {
    const host::DatabaseUrl url = databaseOf(common);
    host::createDatabase(url, demo);
    std::cout << "made " << url.display() << (demo ? " with demo data\n" : "\n");
    return 0;
}

int deploy(const CommonOptions& common, bool demo) {
    const host::DatabaseUrl url = databaseOf(common);
    const std::unique_ptr<Session> session = host::openOrCreateDatabase(url);
    for (const std::string& script : host::deployDatabase(*session, {.demo = demo}))
        std::cout << script << '\n';
    std::cout << url.display() << " is up to date\n";
    return 0;
}

int check(const CommonOptions& common) {
    const host::DatabaseUrl url = databaseOf(common);
    const std::vector<std::string> problems = host::findDamage(url);
    for (const std::string& problem : problems)
        std::cerr << problem << '\n';
    if (!problems.empty()) return 1;
    requireDeployed(*host::openDatabase(url), url);
    std::cout << url.display() << " is sound\n";
    return 0;
}

}  // namespace

void addDatabaseCommand(Program& program) {
    CLI::App& group = *program.app.add_subcommand("db", "makes and looks after databases");
    group.fallthrough();
    group.require_subcommand(1);
    const auto demo = std::make_shared<bool>(false);
    const CommonOptions& common = program.options;

    CLI::App& createCommand = program.command(group, "create", "makes the file of a new database",
                                              [&common, demo] { return create(common, *demo); });
    createCommand.add_flag("--demo", *demo, "with demo data");
    CLI::App& deployCommand = program.command(group, "deploy", "makes missing tables, procedures and functions",
                                              [&common, demo] { return deploy(common, *demo); });
    deployCommand.add_flag("--demo", *demo, "demo data too, into tables that are empty");
    (void)program.command(group, "check", "looks for damage", [&common] { return check(common); });
}

}  // namespace basalt::cli
