#include "host/services/user_log.h"

#include "host/services/cut_text.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr std::size_t kTextLength = 500;
constexpr std::size_t kNameLength = 100;

}  // namespace

void UserLog::add(const UserLogEntry& entry, DateTime moment) {
    execute(
        session_,
        "INSERT INTO dbo.HostUserLog (UserCode, UserName, WorkstationName, LogDate, LogTime, LoggedAt, SoftwarePart, "
        "Permission, [Text], [Description]) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {std::int64_t{entry.userCode}, cutText(entry.userName, kNameLength),
         cutText(entry.workstationName, kNameLength), entry.date, entry.time, moment, std::int64_t{entry.part},
         std::int64_t{entry.permission}, cutText(entry.text, kTextLength), cutText(entry.description, kTextLength)});
}

std::string UserLog::listStatement(const std::vector<std::string>& conditions, int limit) {
    std::string where;
    for (const std::string& condition : conditions) {
        if (!condition.empty()) where += (where.empty() ? " WHERE (" : " AND (") + condition + ")";
    }
    return "SELECT TOP " + std::to_string(limit < 0 ? 0 : limit) +
           " * FROM (SELECT L.ID, L.LogDate, L.LogTime, L.UserName, L.WorkstationName, L.SoftwarePart, S.Title AS "
           "PartTitle, L.Permission, P.Title AS PermissionTitle, L.[Text], L.[Description], L.UserCode "
           "FROM dbo.HostUserLog AS L "
           "LEFT JOIN dbo.SoftwarePart AS S ON S.Code = L.SoftwarePart "
           "LEFT JOIN dbo.HostPermissionTypes AS P ON P.Code = L.Permission) AS T" +
           where + " ORDER BY ID DESC";
}

std::vector<UserLogEntry> UserLog::latest(int limit, std::optional<int> userCode) {
    const std::string sql = listStatement({userCode ? "UserCode = " + std::to_string(*userCode) : ""}, limit);
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
