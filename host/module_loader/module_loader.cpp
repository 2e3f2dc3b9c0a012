#include "host/module_loader/module_loader.h"

#include <string>

#include "host/module_loader/shared_library.h"
#include "host/services/path_text.h"

namespace basalt::host {

namespace fs = std::filesystem;

std::vector<fs::path> moduleCandidates() {
    const fs::path folder = programFolder();
    const std::string name = libraryFileName("Basalt_PKG");
    std::vector<fs::path> files{folder / name, (folder / ".." / "lib" / name).lexically_normal(),
                                (folder / BASALT_LIBRARY_FOLDER / name).lexically_normal()};
    // The system's folder for libraries is often that of the build.
    if (files.back() == files[1]) files.pop_back();
    return files;
}

Module& loadModule() {
    std::string tried;
    for (const fs::path& file : moduleCandidates()) {
        std::error_code failure;
        if (fs::exists(file, failure)) return loadModule(file);
        tried += "\n  " + textFromPath(file);
    }
    throw ModuleError("the module Basalt_PKG is not installed; it was looked for as" + tried);
}

Module& loadModule(const fs::path& file) {
    std::string reason;
    void* library = loadLibrary(file, reason);
    if (!library) throw ModuleError("the module cannot be loaded: " + reason);
    auto* moduleOf = reinterpret_cast<Module* (*)()>(findSymbol(library, "Basalt_Module"));
    if (!moduleOf) throw ModuleError(textFromPath(file) + " is not the module: it exports no Basalt_Module");
    Module& module = *moduleOf();
    if (module.version() != kModuleVersion) {
        throw ModuleError(textFromPath(file) + " is version " + std::to_string(module.version()) +
                          " of the module; this program needs version " + std::to_string(kModuleVersion));
    }
    return module;
}

}  // namespace basalt::host
