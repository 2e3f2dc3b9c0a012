#include <windows.h>

#include <array>
#include <optional>

#include "host/services/platform/process.h"

namespace basalt::host::platform {

namespace {

std::optional<std::string> startOf(HANDLE process) {
    FILETIME created{}, ended{}, kernel{}, user{};
    if (!GetProcessTimes(process, &created, &ended, &kernel, &user)) return std::nullopt;
    return std::to_string((static_cast<std::uint64_t>(created.dwHighDateTime) << 32) | created.dwLowDateTime);
}

}  // namespace

std::string machineName() {
    std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
    DWORD size = static_cast<DWORD>(name.size());
    if (!GetComputerNameA(name.data(), &size)) return "localhost";
    return std::string(name.data(), size);
}

// It is made when Windows is installed.
std::string machineId() {
    std::array<char, 64> id{};
    DWORD size = static_cast<DWORD>(id.size());
    const LSTATUS status = RegGetValueA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Cryptography", "MachineGuid",
                                        RRF_RT_REG_SZ | RRF_SUBKEY_WOW6464KEY, nullptr, id.data(), &size);
    return status == ERROR_SUCCESS ? std::string(id.data()) : std::string();
}

std::int64_t currentProcessId() {
    return static_cast<std::int64_t>(GetCurrentProcessId());
}

std::string currentProcessMark() {
    return startOf(GetCurrentProcess()).value_or("");
}

bool hasEnded(std::int64_t id, const std::string& mark) {
    if (mark.empty()) return false;
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(id));
    if (!process) return GetLastError() == ERROR_INVALID_PARAMETER;  // no process has this number
    DWORD status = 0;
    const bool ended = GetExitCodeProcess(process, &status) && status != STILL_ACTIVE;
    const std::optional<std::string> start = startOf(process);
    CloseHandle(process);
    return ended || (start && *start != mark);
}

}  // namespace basalt::host::platform
