#include <dlfcn.h>

#include "host/module_loader/shared_library.h"

namespace basalt::host {

void* loadLibrary(const std::filesystem::path& file, std::string& error) {
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library) {
        const char* reason = dlerror();
        error = reason ? reason : "the library cannot be loaded";
    }
    return library;
}

void* findSymbol(void* library, const char* name) {
    return dlsym(library, name);
}

std::string libraryFileName(const std::string& name) {
    return "lib" + name + ".so";
}

std::filesystem::path programFolder() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure).parent_path();
}

}  // namespace basalt::host
