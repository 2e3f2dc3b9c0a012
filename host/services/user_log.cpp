#include "host/services/user_log.h"

#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr std::size_t kTextLength = 500;
constexpr std::size_t kNameLength = 100;

// The longest beginning of whole characters that has at most `length` UTF-16 units.
std::string cut(const std::string& text, std::size_t length) {
    std::size_t units = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        units += bytes == 4 ? 2 : 1;
        if (units > length) return text.substr(0, at);
        at += bytes;
    }
    return text;
}

}  // namespace

void UserLog::add(const UserLogEntry& entry, DateTime moment) {
    execute(
        session_,
        "INSERT INTO dbo.HostUserLog (UserCode, UserName, WorkstationName, LogDate, LogTime, LoggedAt, SoftwarePart, "
        "Permission, [Text], [Description]) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {std::int64_t{entry.userCode}, cut(entry.userName, kNameLength), cut(entry.workstationName, kNameLength),
         entry.date, entry.time, moment, std::int64_t{entry.part}, std::int64_t{entry.permission},
         cut(entry.text, kTextLength), cut(entry.description, kTextLength)});
}

std::string_view UserLog::listStatement() {
    return "SELECT L.ID, L.LogDate, L.LogTime, L.UserName, L.WorkstationName, L.SoftwarePart, S.Title AS PartTitle, "
           "L.Permission, P.Title AS PermissionTitle, L.[Text], L.[Description], L.UserCode "
           "FROM dbo.HostUserLog AS L "
           "LEFT JOIN dbo.SoftwarePart AS S ON S.Code = L.SoftwarePart "
           "LEFT JOIN dbo.HostPermissionTypes AS P ON P.Code = L.Permission";
}

std::vector<UserLogEntry> UserLog::latest(int limit) {
    const std::string sql = "SELECT TOP " + std::to_string(limit < 0 ? 0 : limit) + " * FROM (" +
                            std::string(listStatement()) + ") AS T ORDER BY T.ID DESC";
    const RowSet rows = rowsOf(session_, sql);
    const auto text = [&](std::size_t column, std::size_t row) { return textAt(rows, column, row); };
    std::vector<UserLogEntry> entries;
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        entries.push_back({.id = integerAt(rows, 0, row),
                           .userCode = static_cast<int>(integerAt(rows, 11, row)),
                           .userName = text(3, row),
                           .workstationName = text(4, row),
                           .date = text(1, row),
                           .time = text(2, row),
                           .part = static_cast<int>(integerAt(rows, 5, row)),
                           .partTitle = text(6, row),
                           .permission = static_cast<int>(integerAt(rows, 7, row)),
                           .permissionTitle = text(8, row),
                           .text = text(9, row),
                           .description = text(10, row)});
    }
    return entries;
}

}  // namespace basalt::host
