// One level on its way between editor and store.
#pragma once

#include <string>

namespace basalt {

struct TCostLevelMapper {
    int Code = 0;
    std::string Name;
    std::string Comment;
    int CostType = 0;
};

}  // namespace basalt
