// An online copy of a database.
#pragma once

#include <string>

#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// As EmbeddedSession::backUp.
void backUpDatabase(SqliteDatabase& source, const std::string& path);

}  // namespace basalt::embedded
