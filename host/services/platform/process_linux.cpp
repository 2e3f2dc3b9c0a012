#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <optional>
#include <sstream>

#include "host/services/platform/process.h"

namespace basalt::host::platform {

namespace {

std::string readLine(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

std::string readLink(const char* path) {
    std::array<char, 256> target{};
    const ssize_t size = readlink(path, target.data(), target.size());
    return size <= 0 ? std::string() : std::string(target.data(), static_cast<std::size_t>(size));
}

// It differs from one start of the machine to the next.
std::string bootId() {
    return readLine("/proc/sys/kernel/random/boot_id");
}

// Which processes this one sees: those of another container have numbers of their own. "pid:[4026531836]" is told as
// its number.
std::string processNamespace() {
    const std::string link = readLink("/proc/self/ns/pid");
    const std::size_t begin = link.find('[');
    const std::size_t end = link.find(']');
    if (begin == std::string::npos || end == std::string::npos || end < begin) return {};
    return link.substr(begin + 1, end - begin - 1);
}

// False where /proc is that of other processes than those that this one's numbers mean.
bool procIsOurs() {
    return readLink("/proc/self") == std::to_string(getpid());
}

struct Status {
    bool ended = false;
    std::string start;  // in ticks since the machine started
};

// nullopt when it cannot be read.
std::optional<Status> statusOf(std::int64_t id) {
    // "number (name) state ..."; the name may hold anything, parentheses too. The start is the 20th word after it.
    const std::string line = readLine("/proc/" + std::to_string(id) + "/stat");
    const std::size_t end = line.rfind(')');
    if (end == std::string::npos) return std::nullopt;
    std::istringstream rest(line.substr(end + 1));
    std::string state;
    rest >> state;
    if (state == "Z" || state == "X") return Status{.ended = true, .start = {}};  // nobody has asked for its status yet
    std::string start;
    for (int i = 0; i < 19; ++i)
        rest >> start;
    if (!rest) return std::nullopt;
    return Status{.ended = false, .start = start};
}

}  // namespace

std::string machineName() {
    std::array<char, 256> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) return "localhost";
    return name.data();
}

std::string machineId() {
    for (const char* file : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
        std::string id = readLine(file);
        // "uninitialized" stands there until the first start of the machine has ended.
        if (id.size() == 32) return id;
    }
    // Then it is another machine after each start, and what it left behind before is nobody's to remove.
    return bootId();
}

std::int64_t currentProcessId() {
    return getpid();
}

std::string currentProcessMark() {
    const std::string boot = bootId();
    const std::string space = processNamespace();
    if (boot.empty() || space.empty() || !procIsOurs()) return {};
    const std::optional<Status> status = statusOf(getpid());
    return status ? boot + ":" + space + ":" + status->start : std::string();
}

bool hasEnded(std::int64_t id, const std::string& mark) {
    const std::string boot = bootId();
    const std::size_t bootEnd = mark.find(':');
    if (boot.empty() || bootEnd == std::string::npos) return false;
    if (mark.substr(0, bootEnd) != boot) return true;  // the machine has been started anew since
    const std::size_t spaceEnd = mark.find(':', bootEnd + 1);
    if (spaceEnd == std::string::npos) return false;
    if (mark.substr(bootEnd + 1, spaceEnd - bootEnd - 1) != processNamespace()) return false;
    if (kill(static_cast<pid_t>(id), 0) != 0 && errno == ESRCH) return true;
    if (!procIsOurs()) return false;
    const std::optional<Status> status = statusOf(id);
    return status && (status->ended || status->start != mark.substr(spaceEnd + 1));
}

}  // namespace basalt::host::platform
