#include <dlfcn.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "host/services/system_programs.h"

namespace basalt::host {

namespace {

namespace fs = std::filesystem;

class LinuxLibrary final : public ProgramLibrary {
public:
    explicit LinuxLibrary(void* handle) : handle_(handle) {}
    ~LinuxLibrary() override { dlclose(handle_); }
    LinuxLibrary(const LinuxLibrary&) = delete;
    LinuxLibrary& operator=(const LinuxLibrary&) = delete;
    [[nodiscard]] void* find(const std::string& function) override { return dlsym(handle_, function.c_str()); }

private:
    void* handle_;
};

bool isProgram(const fs::path& file) {
    std::error_code failure;
    return fs::is_regular_file(file, failure) && access(file.c_str(), X_OK) == 0;
}

// Empty when there is no such program.
fs::path findProgram(const std::string& name, const std::vector<fs::path>& folders) {
    if (name.find('/') != std::string::npos) return isProgram(name) ? fs::path(name) : fs::path();
    for (const fs::path& folder : folders) {
        if (isProgram(folder / name)) return folder / name;
    }
    const char* path = std::getenv("PATH");
    std::istringstream search(path != nullptr ? path : "");
    for (std::string folder; std::getline(search, folder, ':');) {
        if (!folder.empty() && isProgram(fs::path(folder) / name)) return fs::path(folder) / name;
    }
    return {};
}

// Between fork and exec, where only calls that are safe in a signal handler may be made.
[[noreturn]] void become(const char* file, char* const* arguments, const char* directory) {
    setsid();
    if (fork() != 0) _exit(0);  // the program belongs to nobody and leaves no zombie
    const int nothing = open("/dev/null", O_RDWR);
    if (nothing >= 0) {
        dup2(nothing, STDIN_FILENO);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
    }
    if (*directory == '\0' || chdir(directory) == 0) execv(file, arguments);
    _exit(127);
}

// "ScaleAgent.dll" is "libScaleAgent.so".
std::string nameHere(const std::string& name) {
    const fs::path file(name);
    return file.extension() == ".dll" ? "lib" + file.stem().string() + ".so" : name;
}

}  // namespace

void SystemPrograms::start(const ProgramStart& program) {
    const std::string file = findProgram(program.file, folders_).string();
    if (file.empty()) return;
    std::string name = file;
    std::string parameters = program.parameters;
    char* arguments[] = {name.data(), parameters.empty() ? nullptr : parameters.data(), nullptr};
    const pid_t child = fork();
    if (child == 0) become(file.c_str(), arguments, program.directory.c_str());
    if (child > 0) {
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

std::unique_ptr<ProgramLibrary> SystemPrograms::load(const std::string& name) {
    const std::string here = nameHere(name);
    for (const fs::path& folder : folders_) {
        if (void* handle = dlopen((folder / here).c_str(), RTLD_NOW | RTLD_LOCAL))
            return std::make_unique<LinuxLibrary>(handle);
    }
    if (void* handle = dlopen(here.c_str(), RTLD_NOW | RTLD_LOCAL)) return std::make_unique<LinuxLibrary>(handle);
    return nullptr;
}

}  // namespace basalt::host
