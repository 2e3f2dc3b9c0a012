// The options of this workstation, as the commands use them.
//
//   host::openDatabase(url, openOptions());
#pragma once

#include "host/engines/open_database.h"
#include "host/services/ini_options.h"

namespace basalt::cli {

// Read once. The usual ones for a user without a folder and where the file is damaged, which the standard error then
// tells.
[[nodiscard]] const host::WorkstationOptions& workstationOptions();

// How they say that databases are opened.
[[nodiscard]] host::OpenOptions openOptions();

}  // namespace basalt::cli
