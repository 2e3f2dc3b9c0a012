#include "host/services/process_identity.h"

#include "host/services/platform/process.h"

namespace basalt::host {

ProcessIdentity currentProcess() {
    const std::int64_t id = platform::currentProcessId();
    return {platform::machineName(), id, platform::processStart(id).value_or("")};
}

bool mayBeAlive(const ProcessIdentity& process) {
    if (process.machine != platform::machineName()) return true;
    const auto started = platform::processStart(process.id);
    return !started || (!started->empty() && *started == process.started);
}

}  // namespace basalt::host
