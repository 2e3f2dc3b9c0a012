// basalt-desktop: reads the options, makes the application and hands over to the desktop or the tour.
#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "host/desktop/application.h"
#include "host/desktop/desktop.h"
#include "host/desktop/tour.h"
#include "host/engines/tellable_words.h"
#include "host/module_loader/module_loader.h"
#include "host/module_loader/shared_library.h"
#include "host/screens/quiet_display.h"
#include "host/screens/theme.h"
#include "host/services/path_text.h"
#include "host/services/platform/display.h"
#include "host/services/platform/user_folders.h"

namespace {

struct Options {
    std::string database;
    std::string tour;
    bool checkDisplay = false;
};

basalt::host::DesktopOptions desktopOptions(const Options& options) {
    using basalt::host::DatabaseUrl;
    basalt::host::DesktopOptions desktop;
    // Who has none starts with the usual options and keeps nothing.
    desktop.userDataFolder = basalt::host::userDataFolderIfAny();
    desktop.programFolder = basalt::host::programFolder();
    desktop.createMissing = options.database.empty();
    desktop.database = options.database.empty() ? DatabaseUrl::defaultDatabase() : DatabaseUrl::parse(options.database);
    return desktop;
}

int run(int argc, char** argv, const Options& options) {
    if (!options.tour.empty()) {
        // Who asked for windows on a database may have got a tour because there is no display.
        if (!options.database.empty()) {
            std::cerr << "basalt-desktop: the tour makes a database of its own; the one of --database is left alone\n";
        }
        // Pictures do not need a display, and a display would let the user's own keys into the tour.
        basalt::host::useOffscreenDisplay();
    }
    const std::string problem = basalt::host::displayProblem(basalt::host::platformPlugins());
    const char* otherWay = options.tour.empty() ? "; --tour FOLDER takes a tour without one" : "";
    if (!problem.empty()) throw std::runtime_error(problem + otherWay);
    if (options.checkDisplay) return 0;
    const basalt::host::QuietDisplay quiet("basalt-desktop");
    basalt::host::Application application(argc, argv);
    basalt::host::applyTheme(application);
    basalt::Module& module = basalt::host::loadModule();
    if (!options.tour.empty()) return basalt::host::takeTour(module, basalt::host::pathFromText(options.tour));
    return basalt::host::Desktop(module, desktopOptions(options)).run();
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("The desktop of Basalt.", "basalt-desktop");
    Options options;
    app.set_version_flag("--version", std::string("basalt-desktop ") + BASALT_VERSION, "tells the version and ends");
    app.add_option("--database", options.database,
                   "embedded:PATH, embedded::memory: (new, with demo data) or odbc:CONNECTION STRING")
        ->type_name("URL");
    app.add_option("--tour", options.tour, "take a tour on a new database, without a display, and leave pictures")
        ->type_name("FOLDER");
    app.add_flag("--check-display", options.checkDisplay,
                 "only look whether windows can be shown here, and tell by the status");
    const std::vector<std::string> given(argv, argv + argc);
    const auto complain = [&](const std::string& text) {
        std::cerr << basalt::host::withoutConnectionStrings(text, given);
    };
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream complaint;
        const bool fine = app.exit(error, std::cout, complaint) == 0;
        complain(complaint.str());
        return fine ? 0 : 2;
    }
    try {
        return run(argc, argv, options);
    } catch (const basalt::UsageError& error) {
        complain(std::string("basalt-desktop: ") + error.what() + '\n');
        return 2;
    } catch (const std::exception& error) {
        complain(std::string("basalt-desktop: ") + error.what() + '\n');
        return 1;
    }
}
