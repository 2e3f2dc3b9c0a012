// Opens a database file, prepares the connection, and makes sure that it is a database of this engine.
#pragma once

#include <memory>
#include <string>

#include "engines/embedded/embedded_session.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// Throws as EmbeddedSession::open says.
[[nodiscard]] std::unique_ptr<SqliteDatabase> openDatabase(const std::string& path, const EmbeddedOptions& options);

inline constexpr const char* kSchemaVersionProperty = "schema_version";

}  // namespace basalt::embedded
