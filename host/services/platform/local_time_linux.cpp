#include "host/services/platform/local_time.h"

namespace basalt::host::platform {

std::tm localTime(std::time_t seconds) {
    std::tm local{};
    localtime_r(&seconds, &local);
    return local;
}

}  // namespace basalt::host::platform
