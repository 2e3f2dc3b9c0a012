// Persons and goods as a picker lists them: a code and a name.
#pragma once

#include <string>

#include "ado/session.h"
#include "package/types.h"

namespace basalt::host {

class EntityStore {
public:
    explicit EntityStore(Session& session) : session_(session) {}

    // Code and Name of the persons (part 101) or goods (102) that meet `condition` (T-SQL on these two names without
    // WHERE, empty for all), by code. UsageError for another part.
    [[nodiscard]] RowSet list(TSoftwarePart part, const std::string& condition);

private:
    Session& session_;
};

}  // namespace basalt::host
