// Processes of this machine, as the operating system knows them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace basalt::host::platform {

[[nodiscard]] std::string machineName();
[[nodiscard]] std::int64_t currentProcessId();
// A text that is the same as long as the process lives and differs from that of any later process with its number.
// Empty when there is no such process; nullopt when the system does not say.
[[nodiscard]] std::optional<std::string> processStart(std::int64_t id);

}  // namespace basalt::host::platform
