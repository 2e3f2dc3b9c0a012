#include <sys/stat.h>
#include <unistd.h>

#include "host/services/platform/file_owner.h"

namespace basalt::host::platform {

void handOnOwner(const std::filesystem::path& from, const std::filesystem::path& to) {
    struct stat former {};
    struct stat present {};
    if (stat(from.c_str(), &former) != 0 || stat(to.c_str(), &present) != 0) return;
    if (former.st_uid == present.st_uid && former.st_gid == present.st_gid) return;
    if (chown(to.c_str(), former.st_uid, former.st_gid) == 0) return;
    constexpr auto kSameUser = static_cast<uid_t>(-1);
    // What is refused stays.
    [[maybe_unused]] const int refused = chown(to.c_str(), kSameUser, former.st_gid);
}

}  // namespace basalt::host::platform
