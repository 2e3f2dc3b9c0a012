// A tour through the whole program: the desktop runs as for a user, driven by steps files, and leaves pictures.
#pragma once

#include <filesystem>

#include "package/module.h"

namespace basalt::host {

// Takes the tour on a new database with demo data, which is left in `folder` together with the pictures. Says on the
// standard output what it does; what went wrong stands on the standard error. Returns the exit status.
[[nodiscard]] int takeTour(Module& module, const std::filesystem::path& folder);

}  // namespace basalt::host
