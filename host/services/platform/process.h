// Processes of this machine, as the operating system knows them.
#pragma once

#include <cstdint>
#include <string>

namespace basalt::host::platform {

[[nodiscard]] std::string machineName();
// What no other machine has, also one of the same name; empty when the system does not say.
[[nodiscard]] std::string machineId();
[[nodiscard]] std::int64_t currentProcessId();
// A text that is the same as long as this process lives and differs from that of any other process of the machine with
// its number, be it a later one or one in another container. Empty when the system does not say.
[[nodiscard]] std::string currentProcessMark();
// True only when the process of this machine with this number and mark is certainly gone.
[[nodiscard]] bool hasEnded(std::int64_t id, const std::string& mark);

}  // namespace basalt::host::platform
