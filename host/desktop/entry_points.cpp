#include "host/desktop/entry_points.h"

namespace basalt::host {

std::vector<const EntryPoint*> menuEntries(const Registry& registry) {
    std::vector<const EntryPoint*> entries;
    for (const EntryPoint& entry : registry.entryPoints())
        if (entry.parameters.empty() && entry.result.empty()) entries.push_back(&entry);
    return entries;
}

bool mayOpen(const DesktopContext& context, const EntryPoint& entry) {
    return context.host.permissions().holds(context.host.UserInfo().Code, entry.part, entry.permission);
}

void openEntry(const DesktopContext& context, const EntryPoint& entry, QWidget* origin) {
    context.handlers.guarded(origin, [&entry] {
        FunctionState state;
        FunctionCall call(state, {});
        entry.run(call);
    });
}

}  // namespace basalt::host
