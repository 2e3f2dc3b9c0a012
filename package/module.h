// How a host takes hold of the module.
//
// The module is a shared library. A host loads it, looks up the C symbol Basalt_Module, lends it a Host and may then
// call the entry points by their plain names and the functions of the registry:
//
//   auto get = reinterpret_cast<basalt::Module* (*)()>(library.resolve("Basalt_Module"));
//   basalt::Module& module = *get();
//   if (module.version() != basalt::kModuleVersion) ...   // headers of another build
//   module.attach(host);
//   ...
//   module.detach();
#pragma once

#include "package/host.h"
#include "package/registry.h"

namespace basalt {

// Changes whenever a header of this contract changes incompatibly.
inline constexpr int kModuleVersion = 8;

class Module {
public:
    virtual ~Module() = default;
    [[nodiscard]] virtual int version() const = 0;
    virtual void attach(Host& host) = 0;  // replaces the previous host
    virtual void detach() = 0;
    [[nodiscard]] virtual const Registry& registry() const = 0;
};

}  // namespace basalt
