// Whom a file belongs to.
//
//   handOnOwner("shop.db", "shop.new");   // before shop.new takes the place of shop.db
#pragma once

#include <filesystem>

namespace basalt::host::platform {

// Gives `to` the owner and the group of `from`. Systems allow that to the administrator alone, and to others at most
// the group; what they do not allow stays as it is.
void handOnOwner(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace basalt::host::platform
