// Which process this is, in a form by which another process of the machine can tell whether it still lives.
#pragma once

#include <cstdint>
#include <string>

namespace basalt::host {

struct ProcessIdentity {
    std::string machine = {};  // the machine's network name
    std::int64_t id = 0;       // the process number
    std::string started = {};  // when it started, so that a number given again is not taken for the same process
    bool operator==(const ProcessIdentity&) const = default;
};

[[nodiscard]] ProcessIdentity currentProcess();
// False only when the process of this machine is certainly gone; true for a process of another machine.
[[nodiscard]] bool mayBeAlive(const ProcessIdentity& process);

}  // namespace basalt::host
