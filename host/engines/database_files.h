// The files of an embedded database, which nothing else may be written to.
//
//   requireOtherFile(DatabaseUrl::parse("embedded:shop.db"), "shop.db-wal");    // throws
#pragma once

#include <string>

#include "host/engines/database_url.h"

namespace basalt::host {

// UsageError when the file is the database's own or one of those that the engine keeps beside it, under whatever name
// or link; also when it is not there yet. Does nothing for a database that is no file.
void requireOtherFile(const DatabaseUrl& database, const std::string& file);

}  // namespace basalt::host
