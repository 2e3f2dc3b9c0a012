#include <dlfcn.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <system_error>

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

// The places where a program is looked for, each once, and the file there.
std::vector<fs::path> placesOf(const std::string& name, const std::vector<fs::path>& folders) {
    if (name.find('/') != std::string::npos) return {fs::path(name).parent_path()};
    std::vector<fs::path> places;
    const auto add = [&places](const fs::path& folder) {
        if (!folder.empty() && std::find(places.begin(), places.end(), folder) == places.end())
            places.push_back(folder);
    };
    for (const fs::path& folder : folders)
        add(folder);
    const char* path = std::getenv("PATH");
    std::istringstream search(path != nullptr ? path : "");
    for (std::string folder; std::getline(search, folder, ':');)
        add(folder);
    return places;
}

StartResult failed(const fs::path& file, int error) {
    return {.started = false, .reason = file.string() + ": " + std::generic_category().message(error)};
}

// The program's file; empty when there is none, and missing says why.
fs::path findProgram(const std::string& name, const std::vector<fs::path>& folders, StartResult& missing) {
    for (const fs::path& place : placesOf(name, folders)) {
        fs::path file = place / fs::path(name).filename();
        if (isProgram(file)) return file;
        std::error_code failure;
        if (missing.reason.empty() && fs::is_regular_file(file, failure)) missing = failed(file, EACCES);
        missing.searched.push_back(place.string());
    }
    if (!missing.reason.empty()) missing.searched.clear();
    return {};
}

// What this process has open is nobody else's: a started program that lives on would hold its files and sockets. They
// are closed when the program runs, so that until then a failure can be told.
void closeAtExec() {
    const auto first = static_cast<unsigned int>(STDERR_FILENO + 1);
    if (close_range(first, ~0U, CLOSE_RANGE_CLOEXEC) == 0) return;
    // An older kernel, perhaps without any limit worth the walk.
    const long most = std::min(sysconf(_SC_OPEN_MAX), 65536L);
    for (int each = STDERR_FILENO + 1; each < most; ++each)
        fcntl(each, F_SETFD, FD_CLOEXEC);
}

// Between fork and exec, where only calls that are safe in a signal handler may be made. What fails is written to
// `report`, which closes by itself when the program runs.
[[noreturn]] void become(const char* file, char* const* arguments, const char* directory, int report) {
    const auto fail = [report] {
        const int error = errno;
        // The parent waits at the other end; without it there is nobody to tell.
        [[maybe_unused]] const ssize_t written = write(report, &error, sizeof error);
        _exit(127);
    };
    setsid();
    const pid_t program = fork();
    if (program < 0) fail();
    if (program > 0) _exit(0);  // the program belongs to nobody and leaves no zombie
    const int nothing = open("/dev/null", O_RDWR);
    if (nothing >= 0) {
        dup2(nothing, STDIN_FILENO);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
    }
    closeAtExec();
    if (*directory == '\0' || chdir(directory) == 0) execv(file, arguments);
    fail();
    _exit(127);
}

// The error that the child reports; 0 when it has become the program.
int errorFrom(int pipe) {
    int error = 0;
    ssize_t got = 0;
    do {
        got = read(pipe, &error, sizeof error);
    } while (got < 0 && errno == EINTR);
    return got == static_cast<ssize_t>(sizeof error) ? error : 0;
}

// A pipe that no started program inherits. Its end to write to is none of the standard ones, which a child replaces.
bool openPipe(int& in, int& out) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    in = ends[0];
    out = fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(ends[1]);
    if (out >= 0) return true;
    close(in);
    return false;
}

// "ScaleAgent.dll" is "libScaleAgent.so".
std::string nameHere(const std::string& name) {
    const fs::path file(name);
    return file.extension() == ".dll" ? "lib" + file.stem().string() + ".so" : name;
}

}  // namespace

StartResult SystemPrograms::start(const ProgramStart& program) {
    StartResult missing;
    const fs::path found = findProgram(program.file, folders_, missing);
    if (found.empty()) return missing;
    const std::string file = found.string();
    std::string name = file;
    std::string parameters = program.parameters;
    char* arguments[] = {name.data(), parameters.empty() ? nullptr : parameters.data(), nullptr};
    int in = -1;
    int out = -1;
    if (!openPipe(in, out)) return failed(found, errno);
    const pid_t child = fork();
    if (child == 0) become(file.c_str(), arguments, program.directory.c_str(), out);
    int error = child < 0 ? errno : 0;
    close(out);
    if (child > 0) {
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
        error = errorFrom(in);
    }
    close(in);
    return error == 0 ? StartResult{.started = true} : failed(found, error);
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
