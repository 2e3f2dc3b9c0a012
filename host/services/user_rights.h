// What one user may do, part by part, and giving and taking it.
//
//   UserRights rights(host);
//   const auto sheet = rights.read(2);
//   const RightsOutcome outcome = rights.write(*sheet, {{spPriceLevels, prEdit, true}});
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/services/reference_host.h"

namespace basalt::host {

struct UserRight {
    TSoftwarePart part = {};
    TPermission permission = {};
    bool byGroup = false;     // what the user's group may
    std::optional<bool> own;  // a rule for this user, which is stronger

    [[nodiscard]] bool held() const { return own.value_or(byGroup); }
    bool operator==(const UserRight&) const = default;
};

// The rights of a user as they were read.
struct RightsSheet {
    struct Title {
        int code = 0;
        std::string text;
    };

    UserListItem user;
    std::vector<Title> parts;        // by number
    std::vector<Title> permissions;  // seeing first, then by number
    // Those that can be given: the common permissions in every part, one of a single part there, and whatever the group
    // or the user has been given besides.
    std::vector<UserRight> rights;

    // Null when it cannot be given.
    [[nodiscard]] const UserRight* find(TSoftwarePart part, TPermission permission) const;
};

// What the user shall hold, or no longer hold.
struct RightChange {
    TSoftwarePart part = {};
    TPermission permission = {};
    bool held = false;
};

enum class RightsOutcome {
    Written,
    Changed,  // nothing is written: another client has meanwhile changed one of these rights, or made the user a
              // manager
    Gone,     // nothing is written: there is no such user any more
};

class UserRights {
public:
    explicit UserRights(ReferenceHost& host) : host_(host) {}

    // Nothing when there is no such user. A manager holds everything, whatever the sheet says.
    [[nodiscard]] std::optional<RightsSheet> read(int userCode);
    // Writes the changes and a log entry for each in one transaction, all or none. A right that the group gives as
    // wanted needs no rule of its own, and loses the one that it had. Each must still be as the sheet has it; others
    // are not looked at. UsageError for a manager's sheet, a right that is not in the sheet, or one that keepsAccess.
    [[nodiscard]] RightsOutcome write(const RightsSheet& before, const std::vector<RightChange>& changes);
    // Whether the signed-in user would lock himself out of giving rights if he lost this one. Nobody takes such a right
    // from himself, so that there is always somebody who can give it back.
    [[nodiscard]] bool keepsAccess(int userCode, TSoftwarePart part, TPermission permission);

private:
    void log(const RightsSheet& sheet, const RightChange& change);

    ReferenceHost& host_;
};

}  // namespace basalt::host
