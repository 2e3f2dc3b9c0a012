#include <shellapi.h>
#include <windows.h>

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

}  // namespace

void SystemPrograms::start(const ProgramStart& program) {
    std::wstring file = wide(program.file);
    for (const fs::path& folder : folders_) {
        std::error_code failure;
        if (fs::is_regular_file(folder / file, failure)) {
            file = (folder / file).wstring();
            break;
        }
    }
    const std::wstring directory = wide(program.directory);
    ShellExecuteW(nullptr, wide(program.verb).c_str(), file.c_str(), wide(program.parameters).c_str(),
                  directory.empty() ? nullptr : directory.c_str(), program.show);
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
