#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <system_error>
#include <utility>

#include "host/services/platform/file_hold.h"

namespace basalt::host::platform {

namespace {

// -1 unless the file is now held, and still in its place: who swept it away before held another one.
int holdOf(const std::filesystem::path& file, int flags) {
    const int descriptor = open(file.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, S_IRUSR | S_IWUSR);
    if (descriptor < 0) return -1;
    struct stat inHand {};
    struct stat inPlace {};
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &inHand) == 0 &&
        lstat(file.c_str(), &inPlace) == 0 && inHand.st_ino == inPlace.st_ino && inHand.st_dev == inPlace.st_dev)
        return descriptor;
    close(descriptor);
    return -1;
}

}  // namespace

FileHold FileHold::make(const std::filesystem::path& file) {
    return FileHold(holdOf(file, O_CREAT | O_EXCL));
}

FileHold FileHold::take(const std::filesystem::path& file) {
    return FileHold(holdOf(file, 0));
}

void FileHold::release() noexcept {
    if (held()) close(static_cast<int>(std::exchange(handle_, kNone)));
}

}  // namespace basalt::host::platform
