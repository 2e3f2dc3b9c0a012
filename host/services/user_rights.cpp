#include "host/services/user_rights.h"

#include <algorithm>

#include "ado/error.h"
#include "host/services/host_parts.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

// Permissions from here on belong to one part alone and bear its number before their own.
constexpr int kFirstOfOnePart = 10;

bool belongsTo(int part, int permission) {
    return permission < kFirstOfOnePart || permission / kFirstOfOnePart == part;
}

std::vector<RightsSheet::Title> titlesOf(Session& session, std::string_view sql) {
    const RowSet rows = rowsOf(session, sql);
    std::vector<RightsSheet::Title> titles;
    for (std::size_t row = 0; row < rows.rowCount(); ++row)
        titles.push_back({static_cast<int>(integerAt(rows, 0, row)), textAt(rows, 1, row)});
    return titles;
}

const std::string& titleOf(const std::vector<RightsSheet::Title>& titles, int code) {
    return std::find_if(titles.begin(), titles.end(), [code](const auto& each) { return each.code == code; })->text;
}

}  // namespace

const UserRight* RightsSheet::find(TSoftwarePart part, TPermission permission) const {
    const auto found = std::find_if(rights.begin(), rights.end(), [&](const UserRight& each) {
        return each.part == part && each.permission == permission;
    });
    return found == rights.end() ? nullptr : &*found;
}

std::optional<RightsSheet> UserRights::read(int userCode) {
    Session& session = host_.session();
    RightsSheet sheet;
    const std::vector<UserListItem> users = host_.users().list();
    const auto user = std::find_if(users.begin(), users.end(), [&](const auto& each) { return each.code == userCode; });
    if (user == users.end()) return std::nullopt;
    sheet.user = *user;
    sheet.parts = titlesOf(session, "SELECT Code, Title FROM dbo.SoftwarePart ORDER BY Code");
    sheet.permissions = titlesOf(session, "SELECT Code, Title FROM dbo.HostPermissionTypes ORDER BY Code");
    std::stable_partition(sheet.permissions.begin(), sheet.permissions.end(),
                          [](const auto& each) { return each.code == prOpen; });

    const RowSet byGroup = rowsOf(session,
                                  "SELECT G.SoftwarePart, G.Permission FROM dbo.HostGroupPermissions AS G "
                                  "INNER JOIN dbo.HostUsers AS U ON U.GroupCode = G.GroupCode WHERE U.Code = ?",
                                  {std::int64_t{userCode}});
    const RowSet own =
        rowsOf(session, "SELECT SoftwarePart, Permission, Allowed FROM dbo.HostUserPermissions WHERE UserCode = ?",
               {std::int64_t{userCode}});
    // The row of a right; its end when there is none.
    const auto rowOf = [](const RowSet& rows, int part, int permission) {
        std::size_t row = 0;
        while (row < rows.rowCount() && (integerAt(rows, 0, row) != part || integerAt(rows, 1, row) != permission))
            ++row;
        return row;
    };
    for (const auto& part : sheet.parts) {
        for (const auto& permission : sheet.permissions) {
            UserRight right{.part = static_cast<TSoftwarePart>(part.code),
                            .permission = static_cast<TPermission>(permission.code),
                            .byGroup = rowOf(byGroup, part.code, permission.code) < byGroup.rowCount(),
                            .own = {}};
            const std::size_t rule = rowOf(own, part.code, permission.code);
            if (rule < own.rowCount()) right.own = integerAt(own, 2, rule) != 0;
            if (right.byGroup || right.own || belongsTo(part.code, permission.code)) sheet.rights.push_back(right);
        }
    }
    return sheet;
}

RightsOutcome UserRights::write(const RightsSheet& before, const std::vector<RightChange>& changes) {
    const int user = before.user.code;
    if (before.user.manager) throw UsageError("user " + std::to_string(user) + " is a manager and holds every right");
    for (const RightChange& change : changes) {
        if (!before.find(change.part, change.permission))
            throw UsageError("part " + std::to_string(change.part) + " knows no permission " +
                             std::to_string(change.permission));
        if (!change.held && keepsAccess(user, change.part, change.permission))
            throw UsageError("nobody takes from himself the right to give rights");
    }
    HostTransaction transaction(host_.session());
    // Who changes rights of this user waits here for whoever does so already.
    execute(host_.session(), "SELECT Code FROM dbo.HostUsers WITH (UPDLOCK, HOLDLOCK) WHERE Code = ?",
            {std::int64_t{user}});
    const auto now = read(user);
    if (!now) return RightsOutcome::Gone;
    if (now->user.manager) return RightsOutcome::Changed;
    for (const RightChange& change : changes) {
        const UserRight* right = now->find(change.part, change.permission);
        if (!right || *right != *before.find(change.part, change.permission)) return RightsOutcome::Changed;
    }
    for (const RightChange& change : changes) {
        const UserRight& right = *now->find(change.part, change.permission);
        if (right.held() == change.held) continue;
        if (right.byGroup == change.held) {
            host_.permissions().clear(user, change.part, change.permission);
        } else {
            host_.permissions().allow(user, change.part, change.permission, change.held);
        }
        log(*now, change);
    }
    transaction.commit();
    return RightsOutcome::Written;
}

bool UserRights::keepsAccess(int userCode, TSoftwarePart part, TPermission permission) {
    return userCode == host_.UserInfo().Code && part == hpUsers && (permission == prOpen || permission == prEdit);
}

// One entry for each, so that the log can be searched for a part and no text is cut.
void UserRights::log(const RightsSheet& sheet, const RightChange& change) {
    host_.SetUserEvent(hpUsers, prEdit,
                       sheet.user.fullName + ": «" + titleOf(sheet.permissions, change.permission) + "» در «" +
                           titleOf(sheet.parts, change.part) + (change.held ? "» داده شد" : "» گرفته شد"),
                       true, true);
}

}  // namespace basalt::host
