#include <windows.h>

#include <utility>

#include "host/services/platform/file_hold.h"

namespace basalt::host::platform {

namespace {

// A file that is open without sharing cannot be opened by anybody else; the system closes it when the program ends.
std::intptr_t holdOf(const std::filesystem::path& file, DWORD disposition) {
    const HANDLE handle = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, disposition,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    return handle == INVALID_HANDLE_VALUE ? -1 : reinterpret_cast<std::intptr_t>(handle);
}

}  // namespace

FileHold FileHold::make(const std::filesystem::path& file) {
    return FileHold(holdOf(file, CREATE_NEW));
}

FileHold FileHold::take(const std::filesystem::path& file) {
    return FileHold(holdOf(file, OPEN_EXISTING));
}

void FileHold::release() noexcept {
    if (held()) CloseHandle(reinterpret_cast<HANDLE>(std::exchange(handle_, kNone)));
}

}  // namespace basalt::host::platform
