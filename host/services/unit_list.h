// The units of goods, by name.
//
//   for (const Unit& unit : unitList(session)) ...
#pragma once

#include <string>
#include <vector>

#include "ado/session.h"

namespace basalt::host {

struct Unit {
    int code = 0;
    std::string name = {};
};

[[nodiscard]] std::vector<Unit> unitList(Session& session);

}  // namespace basalt::host
