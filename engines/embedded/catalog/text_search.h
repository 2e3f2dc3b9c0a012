// Columns whose texts are kept in pieces (runtime/text_pieces.h), so that LIKE '%...%' need not read all of them.
//
// Which they are the schema says: text columns that an index has in its INCLUDE. Such a column is no key that one could
// seek; it stands there to be read through. The pieces are rows of an ordinary table, which triggers keep within the
// change that they follow from: what undoes the change undoes them.
#pragma once

#include <string>
#include <vector>

#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

// Makes the pieces of these columns, where they can be kept, and removes those of all others of the table. `table` is
// as it was read before.
void settleTextSearch(SqliteDatabase& database, const Table& table, const std::vector<std::string>& included);
// Before the table goes. Its triggers go with it.
void dropTextSearch(SqliteDatabase& database, const Table& table);
// Makes all pieces anew; for when characters fold in another way.
void refillTextSearch(SqliteDatabase& database, Catalog& catalog);
// Whether the pieces are those of the rows; a text for each column of which they are not.
void checkTextSearch(SqliteDatabase& database, Catalog& catalog, std::vector<std::string>& problems);

}  // namespace basalt::embedded
