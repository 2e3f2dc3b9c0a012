// The users of one database, and signing in.
//
// A user without a password cannot sign in; the first one is chosen by whoever comes first.
// Passwords are kept as salted PBKDF2 hashes; nobody can read one back.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/session.h"
#include "package/types.h"

namespace basalt::host {

struct UserListItem {
    int code = 0;
    std::string userName = {};
    std::string fullName = {};
    bool manager = false;
    bool enabled = true;
    bool hasPassword = true;
};

class UserStore {
public:
    explicit UserStore(Session& session) : session_(session) {}

    // In the order of their codes, those who may no longer sign in included.
    [[nodiscard]] std::vector<UserListItem> list();
    [[nodiscard]] std::optional<TUserInfo> find(int userCode);
    // The user when name and password fit and the user may sign in; nothing says which of the three was wrong. Names
    // compare without case.
    [[nodiscard]] std::optional<TUserInfo> signIn(const std::string& userName, const std::string& password);
    // The password of a user who has none yet; false, and nothing is changed, when he has one. DatabaseError (NotFound)
    // when there is no such user.
    [[nodiscard]] bool chooseFirstPassword(const std::string& userName, const std::string& password);
    // DatabaseError (NotFound) when there is no such user.
    void changePassword(int userCode, const std::string& password);

private:
    Session& session_;
};

}  // namespace basalt::host
