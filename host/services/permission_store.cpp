#include "host/services/permission_store.h"

#include <algorithm>

#include "host/services/sql_access.h"
#include "package/part_title.h"

namespace basalt::host {

namespace {

// Empty when there is no row.
std::string titleOf(Session& session, std::string_view sql, int code) {
    const RowSet rows = rowsOf(session, sql, {std::int64_t{code}});
    return rows.rowCount() == 0 ? std::string() : textAt(rows, 0, 0);
}

std::string firstKnown(std::initializer_list<std::string> titles) {
    return *std::find_if(titles.begin(), titles.end() - 1, [](const std::string& title) { return !title.empty(); });
}

}  // namespace

bool PermissionStore::holds(int userCode, TSoftwarePart part, TPermission permission) {
    const RowSet rows =
        rowsOf(session_,
               "SELECT U.IsManager, "
               "(SELECT COUNT(*) FROM dbo.HostGroupPermissions AS G "
               "WHERE G.GroupCode = U.GroupCode AND G.SoftwarePart = ? AND G.Permission = ?) AS ByGroup, "
               "(SELECT MAX(CAST(P.Allowed AS int)) FROM dbo.HostUserPermissions AS P "
               "WHERE P.UserCode = U.Code AND P.SoftwarePart = ? AND P.Permission = ?) AS ByUser "
               "FROM dbo.HostUsers AS U WHERE U.Code = ? AND U.Enabled = 1",
               {std::int64_t{part}, std::int64_t{permission}, std::int64_t{part}, std::int64_t{permission},
                std::int64_t{userCode}});
    if (rows.rowCount() == 0) return false;
    if (integerAt(rows, 0, 0) != 0) return true;
    if (!rows.column(2).isNull(0)) return integerAt(rows, 2, 0) != 0;
    return integerAt(rows, 1, 0) != 0;
}

void PermissionStore::allow(int userCode, TSoftwarePart part, TPermission permission, bool allowed) {
    const std::int64_t user = userCode;
    const std::int64_t partCode = part;
    const std::int64_t permissionCode = permission;
    updateOrInsert(
        session_,
        "UPDATE dbo.HostUserPermissions SET Allowed = ? WHERE UserCode = ? AND SoftwarePart = ? AND Permission = ?",
        {allowed, user, partCode, permissionCode},
        "INSERT INTO dbo.HostUserPermissions (UserCode, SoftwarePart, Permission, Allowed) VALUES (?, ?, ?, ?)",
        {user, partCode, permissionCode, allowed});
}

void PermissionStore::clear(int userCode, TSoftwarePart part, TPermission permission) {
    execute(session_, "DELETE FROM dbo.HostUserPermissions WHERE UserCode = ? AND SoftwarePart = ? AND Permission = ?",
            {std::int64_t{userCode}, std::int64_t{part}, std::int64_t{permission}});
}

std::string PermissionStore::partTitle(TSoftwarePart part) {
    return firstKnown({titleOf(session_, "SELECT Title FROM dbo.SoftwarePart WHERE Code = ?", part), partCaption(part),
                       std::to_string(part)});
}

std::string PermissionStore::permissionTitle(TPermission permission) {
    return firstKnown({titleOf(session_, "SELECT Title FROM dbo.HostPermissionTypes WHERE Code = ?", permission),
                       std::to_string(permission)});
}

}  // namespace basalt::host
