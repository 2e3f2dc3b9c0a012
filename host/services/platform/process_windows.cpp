#include <windows.h>

#include <array>

#include "host/services/platform/process.h"

namespace basalt::host::platform {

std::string machineName() {
    std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
    DWORD size = static_cast<DWORD>(name.size());
    if (!GetComputerNameA(name.data(), &size)) return "localhost";
    return std::string(name.data(), size);
}

std::int64_t currentProcessId() {
    return static_cast<std::int64_t>(GetCurrentProcessId());
}

std::optional<std::string> processStart(std::int64_t id) {
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(id));
    if (!process) {
        if (GetLastError() == ERROR_INVALID_PARAMETER) return std::string();  // no process has this number
        return std::nullopt;
    }
    FILETIME created{}, ended{}, kernel{}, user{};
    DWORD status = 0;
    const bool known = GetProcessTimes(process, &created, &ended, &kernel, &user) != 0;
    const bool alive = GetExitCodeProcess(process, &status) && status == STILL_ACTIVE;
    CloseHandle(process);
    if (!alive) return std::string();
    if (!known) return std::nullopt;
    return std::to_string((static_cast<std::uint64_t>(created.dwHighDateTime) << 32) | created.dwLowDateTime);
}

}  // namespace basalt::host::platform
