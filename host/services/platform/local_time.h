// The calendar of this machine's time zone.
#pragma once

#include <ctime>

namespace basalt::host::platform {

[[nodiscard]] std::tm localTime(std::time_t seconds);

}  // namespace basalt::host::platform
