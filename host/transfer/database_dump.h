// Writes a whole database down as T-SQL that any of the engines can run.
//
//   dumpDatabase(session, schema, std::cout);
//
// Batches end with lines that say GO. Tables come in the order of their references, each followed by its indexes; views
// and functions behind what they read; then the rows, a table's rows behind those of the tables it refers to; last the
// procedures. Values are exact: numbers with all their digits, texts as Unicode, dates in the form that no setting
// changes. The same database always gives the same text.
#pragma once

#include <ostream>

#include "ado/schema.h"
#include "ado/session.h"

namespace basalt::host {

// Reads in one transaction, which it rolls back: all of it is of one moment. DatabaseError as the session throws it,
// std::runtime_error when the stream cannot be written.
void dumpDatabase(Session& session, const DatabaseSchema& schema, std::ostream& out);

// The same without the rows.
void dumpDefinitions(const DatabaseSchema& schema, std::ostream& out);

}  // namespace basalt::host
