// Rows that nobody has ordered come in the order of their table's key, as they lie; that is what a user of a list takes
// for its order.
//
// SQLite may read a table that is stored by its key through another index and look up every row from there: it takes a
// condition of a join for one that the index alone could answer, and the look-ups for saved. That costs more, and rows
// come in the order of that index.
#pragma once

#include <functional>

#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// `writer` has written the statement; where SQLite would read its tables so, `write` writes it anew with the tables
// read by their keys. Queries that sort or group are left alone, for an index may serve that. Whether it has; such a
// text is good for nothing once the indexes that it names are gone. Throws as preparing the text does.
bool keepKeyOrder(SqliteDatabase& database, SqlWriter& writer, const std::function<void(SqlWriter&)>& write);

}  // namespace basalt::embedded
