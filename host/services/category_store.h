// The categories of goods and persons, for pickers. Read only.
#pragma once

#include <string>
#include <vector>

#include "ado/session.h"
#include "host/services/category_tree.h"

namespace basalt::host {

class CategoryStore {
public:
    explicit CategoryStore(Session& session) : session_(session) {}

    // All of them by name.
    [[nodiscard]] std::vector<Category> all();
    // Those that meet `condition` (T-SQL on id and name, without WHERE): at most `limit`, the shortest names first.
    [[nodiscard]] std::vector<Category> some(const std::string& condition, int limit);

private:
    Session& session_;
};

}  // namespace basalt::host
