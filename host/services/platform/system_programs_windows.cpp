#include <windows.h>

// Needs the one above.
#include <shellapi.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <system_error>

#include "host/services/system_programs.h"

namespace basalt::host {

namespace {

namespace fs = std::filesystem;

class WindowsLibrary final : public ProgramLibrary {
public:
    explicit WindowsLibrary(HMODULE handle) : handle_(handle) {}
    ~WindowsLibrary() override { FreeLibrary(handle_); }
    WindowsLibrary(const WindowsLibrary&) = delete;
    WindowsLibrary& operator=(const WindowsLibrary&) = delete;
    [[nodiscard]] void* find(const std::string& function) override {
        return reinterpret_cast<void*>(GetProcAddress(handle_, function.c_str()));
    }

private:
    HMODULE handle_;
};

std::wstring wide(const std::string& text) {
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring units(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), units.data(), size);
    return units;
}

std::string narrow(const std::wstring& units) {
    const int count = static_cast<int>(units.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, units.data(), count, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, units.data(), count, text.data(), size, nullptr, nullptr);
    return text;
}

// The given folders and those of the search path, each once.
std::vector<std::string> placesOf(const std::vector<fs::path>& folders) {
    std::vector<std::string> places;
    const auto add = [&places](const std::wstring& folder) {
        std::string place = narrow(folder);
        if (!place.empty() && std::find(places.begin(), places.end(), place) == places.end())
            places.push_back(std::move(place));
    };
    for (const fs::path& folder : folders)
        add(folder.wstring());
    const wchar_t* path = _wgetenv(L"PATH");
    std::wistringstream search(path != nullptr ? path : L"");
    for (std::wstring folder; std::getline(search, folder, L';');)
        add(folder);
    return places;
}

}  // namespace

StartResult SystemPrograms::start(const ProgramStart& program) {
    std::wstring file = wide(program.file);
    for (const fs::path& folder : folders_) {
        std::error_code failure;
        if (fs::is_regular_file(folder / file, failure)) {
            file = (folder / file).wstring();
            break;
        }
    }
    const std::wstring directory = wide(program.directory);
    // A number above 32 is success; there is no window behind it.
    const auto answer = reinterpret_cast<INT_PTR>(
        ShellExecuteW(nullptr, wide(program.verb).c_str(), file.c_str(), wide(program.parameters).c_str(),
                      directory.empty() ? nullptr : directory.c_str(), program.show));
    if (answer > 32) return {.started = true};
    if (answer == ERROR_FILE_NOT_FOUND || answer == ERROR_PATH_NOT_FOUND)
        return {.started = false, .searched = placesOf(folders_)};
    return {.started = false, .reason = narrow(file) + ": " + std::system_category().message(static_cast<int>(answer))};
}

std::unique_ptr<ProgramLibrary> SystemPrograms::load(const std::string& name) {
    for (const fs::path& folder : folders_) {
        if (HMODULE handle = LoadLibraryW((folder / wide(name)).c_str()))
            return std::make_unique<WindowsLibrary>(handle);
    }
    if (HMODULE handle = LoadLibraryW(wide(name).c_str())) return std::make_unique<WindowsLibrary>(handle);
    return nullptr;
}

}  // namespace basalt::host
