// Small values that a screen wants to find again: the history of an edit box, the last choice. A name and a text a
// user.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/session.h"

namespace basalt::host {

class PropertyStore {
public:
    explicit PropertyStore(Session& session) : session_(session) {}

    // Names are at most 200 characters, by habit "Screen.Control".
    [[nodiscard]] std::optional<std::string> get(int userCode, const std::string& name);
    void set(int userCode, const std::string& name, const std::string& value);
    void remove(int userCode, const std::string& name);
    // Lists, one line each.
    [[nodiscard]] std::vector<std::string> getList(int userCode, const std::string& name);
    void setList(int userCode, const std::string& name, const std::vector<std::string>& values);

private:
    Session& session_;
};

}  // namespace basalt::host
