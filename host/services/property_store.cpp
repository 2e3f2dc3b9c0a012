#include "host/services/property_store.h"

#include "host/services/sql_access.h"

namespace basalt::host {

std::optional<std::string> PropertyStore::get(int userCode, const std::string& name) {
    const RowSet rows = rowsOf(session_, "SELECT Value FROM dbo.HostProperties WHERE UserCode = ? AND Name = ?",
                               {std::int64_t{userCode}, name});
    if (rows.rowCount() == 0) return std::nullopt;
    return textAt(rows, 0, 0);
}

void PropertyStore::set(int userCode, const std::string& name, const std::string& value) {
    const std::int64_t user = userCode;
    updateOrInsert(session_, "UPDATE dbo.HostProperties SET Value = ? WHERE UserCode = ? AND Name = ?",
                   {value, user, name}, "INSERT INTO dbo.HostProperties (UserCode, Name, Value) VALUES (?, ?, ?)",
                   {user, name, value});
}

void PropertyStore::remove(int userCode, const std::string& name) {
    execute(session_, "DELETE FROM dbo.HostProperties WHERE UserCode = ? AND Name = ?", {std::int64_t{userCode}, name});
}

std::vector<std::string> PropertyStore::getList(int userCode, const std::string& name) {
    std::vector<std::string> values;
    const auto text = get(userCode, name);
    if (!text) return values;
    std::size_t at = 0;
    while (at < text->size()) {
        const std::size_t end = text->find('\n', at);
        values.push_back(text->substr(at, end == std::string::npos ? end : end - at));
        if (end == std::string::npos) break;
        at = end + 1;
    }
    return values;
}

void PropertyStore::setList(int userCode, const std::string& name, const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) {
        text += value;
        text += '\n';
    }
    set(userCode, name, text);
}

}  // namespace basalt::host
