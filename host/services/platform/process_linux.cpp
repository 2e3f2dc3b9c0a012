#include <unistd.h>

#include <array>
#include <fstream>
#include <iterator>
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

}  // namespace

std::string machineName() {
    std::array<char, 256> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) return "localhost";
    return name.data();
}

std::int64_t currentProcessId() {
    return getpid();
}

std::optional<std::string> processStart(std::int64_t id) {
    // "number (name) state ..."; the name may hold anything, parentheses too. The start, in ticks since the machine
    // started, is the 20th word after it.
    const std::string line = readLine("/proc/" + std::to_string(id) + "/stat");
    if (line.empty()) {
        if (readLine("/proc/self/stat").empty()) return std::nullopt;
        return std::string();
    }
    const std::size_t end = line.rfind(')');
    if (end == std::string::npos) return std::nullopt;
    std::istringstream rest(line.substr(end + 1));
    std::string state;
    rest >> state;
    if (state == "Z" || state == "X") return std::string();  // has ended, nobody has asked for its status yet
    std::string word;
    for (int i = 0; i < 19; ++i)
        rest >> word;
    if (!rest) return std::nullopt;
    return readLine("/proc/sys/kernel/random/boot_id") + ":" + word;
}

}  // namespace basalt::host::platform
