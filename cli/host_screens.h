// The reference host's own screens, which "basalt screen" opens like those of the module.
//
//   for (const EntryPoint& entry : hostScreens()) ...            to be listed; they cannot be run
//   for (const EntryPoint& entry : hostScreens(host, registry, services)) screens.add(entry);
#pragma once

#include <vector>

#include "host/screens/screen_services_impl.h"
#include "package/registry.h"

namespace basalt::cli {

[[nodiscard]] std::vector<EntryPoint> hostScreens();
// Host, the module's registry and the services are lent.
[[nodiscard]] std::vector<EntryPoint> hostScreens(host::ReferenceHost& host, const Registry& registry,
                                                  host::HostScreenServices& services);

}  // namespace basalt::cli
