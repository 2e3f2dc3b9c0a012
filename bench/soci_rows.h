// Reading rows through SOCI, by any of its backends.
#pragma once

#include <soci/soci.h>

#include <cstddef>
#include <string>

namespace basalt::bench {

// The rows read; all values were held at once.
[[nodiscard]] std::size_t readRows(soci::session& session, const std::string& statement);

}  // namespace basalt::bench
