#include "host/services/clock.h"

#include <chrono>
#include <ctime>

#include "host/services/platform/local_time.h"

namespace basalt::host {

CivilDateTime SystemClock::now() {
    const auto moment = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
    const std::tm local = platform::localTime(seconds);
    const auto fraction = moment - std::chrono::system_clock::from_time_t(seconds);
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(fraction).count();
    return {.year = local.tm_year + 1900,
            .month = local.tm_mon + 1,
            .day = local.tm_mday,
            .hour = local.tm_hour,
            .minute = local.tm_min,
            .second = local.tm_sec > 59 ? 59 : local.tm_sec,
            .nanosecond = static_cast<int>(milliseconds < 0 ? 0 : milliseconds) * 1'000'000};
}

}  // namespace basalt::host
