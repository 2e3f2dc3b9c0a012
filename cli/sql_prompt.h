// basalt sql at a terminal.
#pragma once

#include "ado/session.h"
#include "cli/sql_console.h"

namespace basalt::cli {

// Asks for statements until the person leaves. Errors are told and the prompt goes on; a transaction that is still open
// at the end is rolled back, with a word about it.
void promptForStatements(Session& session, SqlConsole& console);

}  // namespace basalt::cli
