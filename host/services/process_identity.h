// Which process this is, in a form by which another process of the machine can tell whether it still lives.
#pragma once

#include <cstdint>
#include <string>

namespace basalt::host {

struct ProcessIdentity {
    std::string machine = {};  // as machineMark
    std::int64_t id = 0;       // the process number
    // Since when and among which processes of the machine, so that a number given again, or given in another container
    // as well, is not taken for the same process. Empty when the system does not say.
    std::string started = {};
    bool operator==(const ProcessIdentity&) const = default;
};

// A machine among others, perhaps of the same name: the name, "#", and 32 digits of a hash of the id, which is nobody
// else's business. At most 100 characters, as its column holds; a longer name is cut. Without an id the name alone.
[[nodiscard]] std::string machineMark(const std::string& name, const std::string& id);

[[nodiscard]] ProcessIdentity currentProcess();
// False only when the process is one of this machine and certainly gone; true for a process of another machine or
// container.
[[nodiscard]] bool mayBeAlive(const ProcessIdentity& process);

}  // namespace basalt::host
