// The user activity log: who did what, where and when.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ado/session.h"
#include "package/types.h"

namespace basalt::host {

struct UserLogEntry {
    std::int64_t id = 0;  // given by the database
    int userCode = 0;
    std::string userName = {};  // the full name
    std::string workstationName = {};
    std::string date = {};  // "1405/08/30"
    std::string time = {};  // "09:15:00"
    int part = 0;
    std::string partTitle = {};
    int permission = 0;
    std::string permissionTitle = {};
    std::string text = {};         // the record's code
    std::string description = {};  // may be empty
};

class UserLog {
public:
    explicit UserLog(Session& session) : session_(session) {}

    // Takes part in the transaction that is open, if any. Texts longer than their columns (500 characters) are cut.
    void add(const UserLogEntry& entry, DateTime moment);
    // The latest first; only those of one user when a code is given.
    [[nodiscard]] std::vector<UserLogEntry> latest(int limit, std::optional<int> userCode = std::nullopt);

    // A statement for a grid, at most `limit` entries, the latest first: ID, LogDate, LogTime, UserName,
    // WorkstationName, SoftwarePart, PartTitle, Permission, PermissionTitle, Text, Description, UserCode. Only entries
    // that meet all `conditions`, T-SQL on these names; an empty one narrows nothing.
    [[nodiscard]] static std::string listStatement(const std::vector<std::string>& conditions, int limit);

private:
    Session& session_;
};

}  // namespace basalt::host
