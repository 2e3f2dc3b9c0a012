#include "host/services/form_option_store.h"

#include "host/services/sql_access.h"

namespace basalt::host {

std::optional<std::string> FormOptionStore::load(int userCode, const std::string& key) {
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
}

void FormOptionStore::remove(int userCode, const std::string& key) {
    execute(session_, "DELETE FROM dbo.HostFormOptions WHERE UserCode = ? AND ScreenKey = ?",
            {std::int64_t{userCode}, key});
}

}  // namespace basalt::host
