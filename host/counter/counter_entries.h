// The counter and the layouts as entries of the reference host, next to those of the module: each in a window of its
// own.
//
//   const EntryPoint counter = counterEntry(host, module.registry(), screens);
//   FunctionCall call(state, {});
//   counter.run(call);                      // until the user closes it
#pragma once

#include "host/screens/screen_services_impl.h"
#include "package/registry.h"

namespace basalt::host {

// "Open_Counter" and "Open_BarcodeLayouts". Host, registry and screens are lent.
[[nodiscard]] EntryPoint counterEntry(ReferenceHost& host, const Registry& registry, HostScreenServices& screens);
[[nodiscard]] EntryPoint layoutsEntry(ReferenceHost& host, const Registry& registry, HostScreenServices& screens);
// The same to be listed; they cannot be run.
[[nodiscard]] EntryPoint counterEntry();
[[nodiscard]] EntryPoint layoutsEntry();

}  // namespace basalt::host
