#include "cli/command_line.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/answer_words.h"
#include "cli/commands.h"
#include "cli/terminal.h"
#include "cli/workspace.h"
#include "cli/wrong_usage.h"
#include "host/engines/tellable_words.h"

namespace basalt::cli {

CLI::App& Program::command(CLI::App& parent, const std::string& name, const std::string& description,
                           std::function<int()> run) {
    CLI::App& added = *parent.add_subcommand(name, description);
    added.fallthrough();
    added.callback([this, run = std::move(run)] { chosen = run; });
    return added;
}

namespace {

// Whether the word behind that option is its value.
bool takesValue(const CLI::App& app, const std::string& option) {
    const CLI::Option* known = app.get_option_no_throw(option);
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (known != nullptr) break;
        known = command->get_option_no_throw(option);
    }
    return known != nullptr && known->get_items_expected_max() > 0;
}

// Behind "--" stand values that begin with a minus sign. The library gives them to a list of values only as long as the
// list is empty, so those behind other values are added here.
void parse(CLI::App& app, CommonOptions& options, int argc, char** argv) {
    char** const end = argv + argc;
    char** const dashes = std::find_if(argv, end, [](const char* word) { return std::string_view(word) == "--"; });
    if (dashes != end) {
        try {
            app.parse(static_cast<int>(dashes - argv), argv);
            const CLI::Option* list = app.get_subcommands().front()->get_option_no_throw("ARGUMENT");
            if (list != nullptr && list->count() > 0) {
                options.moreArguments.assign(dashes + 1, end);
                return;
            }
        } catch (const CLI::ParseError&) {
            // What is missing stands behind the dashes, or the whole is wrong.
        }
    }
    app.parse(argc, argv);
}

// What cannot be told wholly is a failure.
int told(int status) {
    if (std::cout.flush()) return status;
    std::cerr << "basalt: the output cannot be written; what is there of it is cut\n";
    return 1;
}

// Tells what is wrong, without the secrets that the words may hold.
using Complain = std::function<void(const std::string&)>;

// "help" and the words of a command, as others write "--help" behind it.
std::optional<int> help(CLI::App& app, int argc, char** argv, const Complain& complain) {
    if (argc < 2 || std::string_view(argv[1]) != "help") return std::nullopt;
    CLI::App* command = &app;
    std::string before;
    for (int i = 2; i < argc; ++i) {
        const std::vector<CLI::App*> named =
            command->get_subcommands([&](CLI::App* each) { return each->check_name(argv[i]); });
        if (!named.empty()) {
            before += (before.empty() ? "" : " ") + command->get_name();
            command = named.front();
            continue;
        }
        complain("basalt: there is no command " + std::string(argv[i]) + "; basalt --help lists them\n");
        return 2;
    }
    std::cout << command->help(before);
    return told(0);
}

}  // namespace

int runCommandLine(int argc, char** argv) {
    prepareTerminal();
    CommonOptions options;
    std::function<int()> chosen;
    CLI::App app("Calls the functions and opens the screens of the module Basalt_PKG, and looks after its database.",
                 "basalt");
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("basalt ") + BASALT_VERSION, "tells the version and ends");
    app.add_option("--database", options.database,
                   "embedded:PATH, embedded::memory: (new, with demo data) or odbc:CONNECTION STRING")
        ->type_name("URL")
        ->check([](const std::string& url) { return url.empty() ? "names no database" : std::string(); });
    app.add_option("--user", options.user, "code of the user who is signed in; 1 when left out")->type_name("CODE");
    CLI::Option* record =
        app.add_option("--record", options.record, "write what passes between program and database to a file")
            ->type_name("FILE");
    app.add_option("--replay", options.replay, "answer from such a file instead of a database")
        ->type_name("FILE")
        ->excludes(record);
    app.add_option("--set", options.settings,
                   "a company setting, for this run only; may be repeated; a wrong name lists the names")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();

    Program program{app, options, chosen};
    addDatabaseCommand(program);
    addSqlCommand(program);
    addFunctionsCommand(program);
    addCallCommand(program);
    addBatchCommand(program);
    addScreenCommand(program);

    const std::vector<std::string> given(argv + std::min(argc, 1), argv + argc);
    const Complain complain = [&](const std::string& text) {
        std::cerr << host::withoutConnectionStrings(text, given);
    };
    if (const std::optional<int> status = help(app, argc, argv, complain)) return *status;
    // Tells what the library has to say, and the status to end with.
    const auto answered = [&](const CLI::ParseError& error) {
        std::ostringstream complaint;
        const bool fine = app.exit(error, std::cout, complaint) == 0;
        complain(complaint.str());
        return fine ? told(0) : 2;
    };
    try {
        std::vector<std::string> words =
            withSingleAnswers(given, [&app](const std::string& word) { return takesValue(app, word); });
        words.insert(words.begin(), "basalt");
        std::vector<char*> pointers;
        for (std::string& word : words)
            pointers.push_back(word.data());
        parse(app, options, static_cast<int>(pointers.size()), pointers.data());
    } catch (const CLI::RequiredError& error) {
        const std::vector<std::string> words = app.remaining();
        if (!app.get_subcommands().empty() || words.empty()) return answered(error);
        complain("basalt: there is no command " + words.front() + "; basalt --help lists them\n");
        return 2;
    } catch (const CLI::ParseError& error) {
        return answered(error);
    }
    try {
        requireRightOptions(options);
        return told(chosen());
    } catch (const WrongUsage& error) {
        complain(std::string("basalt: ") + error.what() + '\n');
        return 2;
    } catch (const std::exception& error) {
        complain(std::string("basalt: ") + error.what() + '\n');
        return 1;
    }
}

}  // namespace basalt::cli
