#include "host/services/form_option_store.h"

#include "host/services/sql_access.h"

namespace basalt::host {

std::optional<std::string> FormOptionStore::load(int userCode, const std::string& key) {
    if (const auto found = unsaved_.find({userCode, key}); found != unsaved_.end()) return found->second;
    const RowSet rows = rowsOf(session_, "SELECT Options FROM dbo.HostFormOptions WHERE UserCode = ? AND ScreenKey = ?",
                               {std::int64_t{userCode}, key});
    if (rows.rowCount() == 0) return std::nullopt;
    return textAt(rows, 0, 0);
}

void FormOptionStore::save(int userCode, const std::string& key, const std::string& options) {
    const std::int64_t user = userCode;
    updateOrInsert(session_, "UPDATE dbo.HostFormOptions SET Options = ? WHERE UserCode = ? AND ScreenKey = ?",
                   {options, user, key},
                   "INSERT INTO dbo.HostFormOptions (UserCode, ScreenKey, Options) VALUES (?, ?, ?)",
                   {user, key, options});
    unsaved_.erase({userCode, key});
}

void FormOptionStore::saveSoon(int userCode, const std::string& key, const std::string& options) {
    unsaved_[{userCode, key}] = options;
    saveRest();
}

void FormOptionStore::saveRest() {
    if (unsaved_.empty()) return;
    const ShortWait wait(session_);
    while (!unsaved_.empty()) {
        // Out of the list before it is written, so that one that is refused is not tried for ever.
        auto next = unsaved_.extract(unsaved_.begin());
        try {
            save(next.key().first, next.key().second, next.mapped());
        } catch (const DatabaseError& error) {
            if (error.category() != ErrorCategory::Busy) throw;
            unsaved_.insert(std::move(next));
            return;
        }
    }
}

void FormOptionStore::remove(int userCode, const std::string& key) {
    unsaved_.erase({userCode, key});
    execute(session_, "DELETE FROM dbo.HostFormOptions WHERE UserCode = ? AND ScreenKey = ?",
            {std::int64_t{userCode}, key});
}

}  // namespace basalt::host
