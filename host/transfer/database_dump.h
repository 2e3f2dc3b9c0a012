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
#include <string>
#include <vector>

#include "ado/schema.h"
#include "ado/session.h"

namespace basalt::host {

// How the engine of the session tells what the database is made of.
using SchemaReader = std::function<DatabaseSchema(Session& session)>;

// A view that cannot be read any more, because a table of it is gone: no engine would make it again.
struct BrokenView {
    std::string name;
    std::string reason;
};

// All of it is of one moment, the schema too (host/transfer/read_moment.h). The views that are written as comments,
// because nothing could make them again. DatabaseError as the session throws it, std::runtime_error when the stream
// cannot be written.
std::vector<BrokenView> dumpDatabase(Session& session, const SchemaReader& readSchema, std::ostream& out);

// What makes it again, without the rows.
void dumpDefinitions(const DatabaseSchema& schema, std::ostream& out);

}  // namespace basalt::host
