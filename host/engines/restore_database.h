// Puts a backup into the place of an embedded database.
//
//   const RestoredDatabase done = restoreDatabase(DatabaseUrl::parse("embedded:shop.db"), "monday.db");
//   if (!done.kept.empty()) std::cout << "the former one is " << done.kept;
//
// Copying the file by hand is not enough: the log (-wal) that a killed program leaves beside a database belongs to the
// old file, and the engine would write its pages over those of the copy.
//
// The order, in which a kill leaves the old or the new database whole at every moment:
//   1. The backup is copied beside the database, in a folder of its own, and checked there.
//   2. The old file is taken for oneself alone, and what its log holds is brought into it; the log is gone then. The
//   old
//      database is its file.
//   3. The old file gets a second name.
//   4. The copy is renamed over the old file: the new database is that file, and nothing lies beside it.
// A file so damaged that its log cannot be brought into it gets a second name together with its log and journal in step
// 3, where it can still be looked at, and these are removed from beside it before step 4. Killed between the two, the
// damaged database is whole under its second name.
#pragma once

#include <filesystem>
#include <string>

#include "host/engines/database_url.h"

namespace basalt::host {

struct RestoredDatabase {
    std::filesystem::path kept;  // the former file; empty when there was none
};

// Nothing is changed when it throws: UsageError for a database that is no file, or a backup that is the database
// itself; MissingDatabase when there is no backup; DatabaseError when the backup is not a sound database of this
// program (Corrupt), or one of a newer program (Version), when others have the database open (Busy), or when the file
// cannot be written (Connection, NoPlaceForDatabase).
[[nodiscard]] RestoredDatabase restoreDatabase(const DatabaseUrl& url, const std::string& backup);

}  // namespace basalt::host
