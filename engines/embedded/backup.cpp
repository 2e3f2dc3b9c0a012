#include "engines/embedded/backup.h"

#include <memory>

namespace basalt::embedded {

void backUpDatabase(SqliteDatabase& source, const std::string& path) {
    SqliteDatabase target(path, true, 0);
    struct Finish {
        void operator()(sqlite3_backup* backup) const { sqlite3_backup_finish(backup); }
    };
    std::unique_ptr<sqlite3_backup, Finish> backup(
        sqlite3_backup_init(target.handle(), "main", source.handle(), "main"));
    if (!backup) throw target.failure(sqlite3_errcode(target.handle()));
    // All pages in one step: one moment of the source. Its log lets others write meanwhile, where a copy in parts would
    // begin again after each of their commits.
    const int code = sqlite3_backup_step(backup.get(), -1);
    backup.reset();
    if (code != SQLITE_DONE) throw target.failure(code);
}

}  // namespace basalt::embedded
