#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <array>

#include "host/module_loader/shared_library.h"

namespace basalt::host {

void* loadLibrary(const std::filesystem::path& file, std::string& error) {
    // The module's own folder is searched for what it needs, never the current one.
    HMODULE library = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library) error = "Windows error " + std::to_string(GetLastError());
    return library;
}

void* findSymbol(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

std::string libraryFileName(const std::string& name) {
    return name + ".dll";
}

std::filesystem::path programFolder() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return std::filesystem::path(path.data(), path.data() + length).parent_path();
}

}  // namespace basalt::host
