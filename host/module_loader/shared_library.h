// The one place where the program asks the operating system for a shared library and for its own whereabouts.
#pragma once

#include <filesystem>
#include <string>

namespace basalt::host {

// Loads the library and leaves it loaded until the program ends: objects made by its code may outlive any handle.
// Null when it cannot be loaded; `error` then holds the system's own words.
[[nodiscard]] void* loadLibrary(const std::filesystem::path& file, std::string& error);
// The address of an exported symbol; null when the library has none of that name.
[[nodiscard]] void* findSymbol(void* library, const char* name);
// The file name that a library of that name has here: "libBasalt_PKG.so", "Basalt_PKG.dll".
[[nodiscard]] std::string libraryFileName(const std::string& name);
// The folder that holds the running program; empty when the system does not tell.
[[nodiscard]] std::filesystem::path programFolder();

}  // namespace basalt::host
