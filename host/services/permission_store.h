// Who may do what: a manager everything, others what their group may, changed by rules of their own.
//
//   permissions.holds(user, spPriceLevels, prEdit)
//   permissions.allow(2, spPriceLevels, prEdit, true);
#pragma once

#include <string>

#include "ado/session.h"
#include "package/types.h"

namespace basalt::host {

class PermissionStore {
public:
    explicit PermissionStore(Session& session) : session_(session) {}

    // Read anew each time, so that a change made at another workstation holds at once. False for a user who does not
    // exist or may not sign in.
    [[nodiscard]] bool holds(int userCode, TSoftwarePart part, TPermission permission);
    // A rule for one user, stronger than the group's.
    void allow(int userCode, TSoftwarePart part, TPermission permission, bool allowed);
    // Back to what the group may.
    void clear(int userCode, TSoftwarePart part, TPermission permission);

    // Persian titles for messages and the log. Of a part without one its caption in menus, else the number as text.
    [[nodiscard]] std::string partTitle(TSoftwarePart part);
    [[nodiscard]] std::string permissionTitle(TPermission permission);

private:
    Session& session_;
};

}  // namespace basalt::host
