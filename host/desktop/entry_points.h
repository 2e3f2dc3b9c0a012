// The entry points that a menu offers, and running one.
#pragma once

#include <QString>
#include <vector>

#include "host/desktop/desktop_context.h"

namespace basalt::host {

// Those that need no argument and give no result; the others serve the host's own screens.
[[nodiscard]] std::vector<const EntryPoint*> menuEntries(const Registry& registry);
// Whether the signed-in user may open it now.
[[nodiscard]] bool mayOpen(const DesktopContext& context, const EntryPoint& entry);
// Opens it as the module's host does. Errors of its screens are shown; `origin` is the control that asked for it.
void openEntry(const DesktopContext& context, const EntryPoint& entry, QWidget* origin);

[[nodiscard]] inline QString entryTitle(const EntryPoint& entry) {
    return QString::fromStdString(entry.title);
}

}  // namespace basalt::host
