// The run of the desktop, from opening the database to closing the window.
//
//   Desktop desktop(loadModule(), {.database = DatabaseUrl::defaultDatabase(), .createMissing = true});
//   return desktop.run();
#pragma once

#include <filesystem>

#include "host/engines/database_url.h"
#include "host/services/reference_host.h"
#include "package/module.h"
#include "package/screens/screen_services.h"

namespace basalt::host {

struct DesktopOptions {
    DatabaseUrl database;
    bool createMissing = false;  // a missing file becomes a database with demo data
    std::filesystem::path userDataFolder = {};
    std::filesystem::path programFolder = {};  // where programs that the module starts are looked for first
    bool persistOptions = true;
};

class Desktop {
public:
    Desktop(Module& module, DesktopOptions options) : module_(module), options_(std::move(options)) {}

    // Returns when the user has left: 0, or 1 when there was no database to work with. Errors that end the run are
    // shown to the user first.
    [[nodiscard]] int run();

private:
    void work(ReferenceHost& host, const QString& notice);
    [[nodiscard]] static bool signIn(ReferenceHost& host, const QString& notice);

    Module& module_;
    DesktopOptions options_;
};

}  // namespace basalt::host
