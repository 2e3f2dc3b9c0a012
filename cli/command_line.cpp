#include "cli/command_line.h"

#include <exception>
#include <iostream>

#include "cli/commands.h"
#include "cli/terminal.h"
#include "cli/wrong_usage.h"

namespace basalt::cli {

CLI::App& Program::command(CLI::App& parent, const std::string& name, const std::string& description,
                           std::function<int()> run) {
    CLI::App& added = *parent.add_subcommand(name, description);
    added.fallthrough();
    added.callback([this, run = std::move(run)] { chosen = run; });
    return added;
}

int runCommandLine(int argc, char** argv) {
    prepareTerminal();
    CommonOptions options;
    std::function<int()> chosen;
    CLI::App app("Calls the functions and opens the screens of the module Basalt_PKG, and looks after its database.",
                 "basalt");
    app.require_subcommand(1);
    app.add_option("--database", options.database,
                   "embedded:PATH, embedded::memory: (new, with demo data) or odbc:CONNECTION STRING")
        ->type_name("URL");
    app.add_option("--user", options.user, "code of the user who is signed in; 1 when left out")->type_name("CODE");
    app.add_option("--record", options.record, "write what passes between program and database to a file")
        ->type_name("FILE");
    app.add_option("--replay", options.replay, "answer from such a file instead of a database")->type_name("FILE");
    app.add_option("--set", options.settings, "a company setting, for this run only; may be repeated")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->take_all();

    Program program{app, options, chosen};
    addDatabaseCommand(program);
    addSqlCommand(program);
    addFunctionsCommand(program);
    addCallCommand(program);
    addBatchCommand(program);
    addScreenCommand(program);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    try {
        return chosen();
    } catch (const WrongUsage& error) {
        std::cerr << "basalt: " << error.what() << '\n';
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "basalt: " << error.what() << '\n';
        return 1;
    }
}

}  // namespace basalt::cli
