// Rows that nobody has ordered come in the order of their table's key, as they lie; that is what a user of a list takes
// for its order.
//
// SQLite may read a table that is stored by its key through another index and look up every row from there: it takes a
// condition of a join for one that the index alone could answer, and the look-ups for saved. That costs more, and rows
// come in the order of that index.
#pragma once

#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// `writer` has written the query; where SQLite would read it so, writes it anew with the tables read by their keys.
// Queries that sort or group are left alone, for an index may serve that. Throws as preparing the text does.
void keepKeyOrder(SqliteDatabase& database, const BoundQuery& query, SqlWriter& writer);

}  // namespace basalt::embedded
