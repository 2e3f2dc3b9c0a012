// Runs a script of T-SQL, for instance a dump, whole or not at all.
//
//   std::ifstream script("shop.sql", std::ios::binary);
//   loadScript(session, script);
#pragma once

#include <cstddef>
#include <istream>
#include <string>

#include "ado/session.h"

namespace basalt::host {

// All batches in one transaction; the number of them. After a failure nothing of it is in the database: DatabaseError
// that names the script, when it has a name, and the batch by its first line, UsageError when the script ended the
// transaction itself, or has left one open.
std::size_t loadScript(Session& session, std::istream& script, const std::string& name = {});

}  // namespace basalt::host
