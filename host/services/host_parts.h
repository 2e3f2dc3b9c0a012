// Software parts of the host itself, beside those that it shares with the module (package/types.h).
#pragma once

#include "package/types.h"

namespace basalt::host {

inline constexpr auto hpSettings = static_cast<TSoftwarePart>(901);  // company settings and workstation options
inline constexpr auto hpUserLog = static_cast<TSoftwarePart>(902);   // the user activity log
inline constexpr auto hpUsers = static_cast<TSoftwarePart>(903);     // users and their permissions
inline constexpr auto hpConsole = static_cast<TSoftwarePart>(904);   // the function console
inline constexpr auto hpSales = static_cast<TSoftwarePart>(905);     // sales at the counter

}  // namespace basalt::host
