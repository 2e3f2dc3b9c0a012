#include "host/services/user_store.h"

#include "host/services/password.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

TUserInfo userAt(const RowSet& rows, std::size_t row) {
    return {.Code = static_cast<int>(integerAt(rows, 0, row)),
            .UserName = textAt(rows, 1, row),
            .FullName = textAt(rows, 2, row),
            .IsManager = integerAt(rows, 3, row) != 0};
}

}  // namespace

std::vector<UserListItem> UserStore::list() {
    const RowSet rows = rowsOf(
        session_, "SELECT Code, UserName, FullName, IsManager, Enabled, PasswordHash FROM dbo.HostUsers ORDER BY Code");
    std::vector<UserListItem> users;
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        const TUserInfo user = userAt(rows, row);
        users.push_back({user.Code, user.UserName, user.FullName, user.IsManager, integerAt(rows, 4, row) != 0,
                         !textAt(rows, 5, row).empty()});
    }
    return users;
}

std::optional<TUserInfo> UserStore::find(int userCode) {
    const RowSet rows = rowsOf(session_, "SELECT Code, UserName, FullName, IsManager FROM dbo.HostUsers WHERE Code = ?",
                               {std::int64_t{userCode}});
    if (rows.rowCount() == 0) return std::nullopt;
    return userAt(rows, 0);
}

std::optional<TUserInfo> UserStore::signIn(const std::string& userName, const std::string& password) {
    const RowSet rows = rowsOf(session_,
                               "SELECT Code, UserName, FullName, IsManager, PasswordHash, Enabled FROM dbo.HostUsers "
                               "WHERE UserName = ?",
                               {userName});
    if (rows.rowCount() == 0) {
        // As long as a wrong password takes, so that the time tells nobody which names there are.
        static_cast<void>(hashPassword(password));
        return std::nullopt;
    }
    if (!verifyPassword(password, textAt(rows, 4, 0)) || integerAt(rows, 5, 0) == 0) return std::nullopt;
    return userAt(rows, 0);
}

bool UserStore::chooseFirstPassword(const std::string& userName, const std::string& password) {
    if (execute(session_, "UPDATE dbo.HostUsers SET PasswordHash = ? WHERE UserName = ? AND PasswordHash = N''",
                {hashPassword(password), userName}) > 0)
        return true;
    if (rowsOf(session_, "SELECT Code FROM dbo.HostUsers WHERE UserName = ?", {userName}).rowCount() > 0) return false;
    throw DatabaseError(ErrorCategory::NotFound, "02000", 0, "There is no user " + userName);
}

void UserStore::changePassword(int userCode, const std::string& password) {
    if (execute(session_, "UPDATE dbo.HostUsers SET PasswordHash = ? WHERE Code = ?",
                {hashPassword(password), std::int64_t{userCode}}) == 0) {
        throw DatabaseError(ErrorCategory::NotFound, "02000", 0, "There is no user " + std::to_string(userCode));
    }
}

}  // namespace basalt::host
