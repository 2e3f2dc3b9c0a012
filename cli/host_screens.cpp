#include "cli/host_screens.h"

#include "host/counter/counter_entries.h"
#include "host/price_editor/price_editor.h"

namespace basalt::cli {

std::vector<EntryPoint> hostScreens() {
    return {host::priceEditorEntry(), host::counterEntry(), host::layoutsEntry()};
}

std::vector<EntryPoint> hostScreens(host::ReferenceHost& host, const Registry& registry,
                                    host::HostScreenServices& services) {
    return {host::priceEditorEntry(services.context(), registry), host::counterEntry(host, registry, services),
            host::layoutsEntry(host, registry, services)};
}

}  // namespace basalt::cli
