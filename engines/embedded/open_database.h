// Opens a database file, prepares the connection, and makes sure that it is a database of this engine.
#pragma once

#include <memory>
#include <string>

#include "engines/embedded/embedded_session.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// Throws as EmbeddedSession::open says.
[[nodiscard]] std::unique_ptr<SqliteDatabase> openDatabase(const std::string& path, const EmbeddedOptions& options);

// The error (3906) of a file that this user may not write.
[[noreturn]] void refuseReadOnly(const std::string& path);
// Throws it. Asked before SQLite opens a file that is there: it makes its own files beside one that can only be read
// too, and those of a user who may not write to the database keep the others from writing.
void requireWritable(const std::string& path);

inline constexpr const char* kSchemaVersionProperty = "schema_version";

}  // namespace basalt::embedded
