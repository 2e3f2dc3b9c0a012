// How the parts of the module appear in menus: Persian titles and icons. A subsystem or part without an entry here
// still appears, under its own name and with a plain icon.
#pragma once

#include <QString>
#include <string>

#include "host/desktop/line_icon.h"
#include "package/registry.h"
#include "package/types.h"

namespace basalt::host {

// `subsystem` is the folder's name as in the registry.
[[nodiscard]] QString subsystemTitle(const std::string& subsystem);
// What the entry point is for, in a few words; its subsystem's title where there are none.
[[nodiscard]] QString entryHint(const EntryPoint& entry);
[[nodiscard]] LineIcon partIcon(TSoftwarePart part);

}  // namespace basalt::host
