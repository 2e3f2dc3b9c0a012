// What a part of the application is called.
#pragma once

#include <string>

#include "package/types.h"

namespace basalt {

// As menus name its list; empty for a part that has no list here.
[[nodiscard]] std::string partCaption(TSoftwarePart part);
// The title of its list: the host's own, asked with ScalerQuery, and where the host has none, the caption. Errors of
// the host's query pass to the caller.
[[nodiscard]] std::string partTitle(TSoftwarePart part);

}  // namespace basalt
