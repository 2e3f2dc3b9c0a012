// A full check of a database file.
#pragma once

#include <string>
#include <vector>

#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// As EmbeddedSession::integrityCheck.
[[nodiscard]] std::vector<std::string> findProblems(SqliteDatabase& database);

}  // namespace basalt::embedded
