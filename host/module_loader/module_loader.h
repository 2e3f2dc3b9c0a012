// Takes hold of the module as a host application does: finds the shared library, loads it, checks its version.
//
//   basalt::Module& module = basalt::host::loadModule();
//   basalt::host::AttachedModule attached(module, host);     // lent to the module until the end of the scope
//   for (const FunctionEntry& f : module.registry().functions()) ...
#pragma once

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "package/module.h"

namespace basalt::host {

// The module is not there, cannot be loaded, or belongs to other headers. The message names the file and the reason.
class ModuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Where the module is looked for, in this order: beside the program, in ../lib, in the folder of an installation.
[[nodiscard]] std::vector<std::filesystem::path> moduleCandidates();

// Loads the first candidate that exists. The module stays loaded until the program ends.
[[nodiscard]] Module& loadModule();
// Loads that file.
[[nodiscard]] Module& loadModule(const std::filesystem::path& file);

// Lends a host to the module for a scope.
class AttachedModule {
public:
    AttachedModule(Module& module, Host& host) : module_(module) { module_.attach(host); }
    ~AttachedModule() { module_.detach(); }
    AttachedModule(const AttachedModule&) = delete;
    AttachedModule& operator=(const AttachedModule&) = delete;

private:
    Module& module_;
};

}  // namespace basalt::host
