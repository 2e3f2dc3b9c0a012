// Writes a whole database down as T-SQL that any of the engines can run.
//
//   dumpDatabase(session, readSchema, std::cout);
//
// Batches end with lines that say GO. Tables come in the order of their references, each followed by its indexes; views
// and functions behind what they read; then the rows, a table's rows behind those of the tables it refers to; last the
// procedures. Values are exact: numbers with all their digits, texts as Unicode, dates in the form that no setting
// changes. The same database always gives the same text.
#pragma once

#include <functional>
#include <ostream>

#include "ado/schema.h"
#include "ado/session.h"

namespace basalt::host {

// How the engine of the session tells what the database is made of.
using SchemaReader = std::function<DatabaseSchema(Session& session)>;

// All of it is of one moment, the schema too (host/transfer/read_moment.h). DatabaseError as the session throws it,
// std::runtime_error when the stream cannot be written.
void dumpDatabase(Session& session, const SchemaReader& readSchema, std::ostream& out);

// What makes it again, without the rows.
void dumpDefinitions(const DatabaseSchema& schema, std::ostream& out);

}  // namespace basalt::host
