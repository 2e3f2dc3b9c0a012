// What the registry lists of the price and discount levels.
#pragma once

namespace basalt {

class Registry;

void registerCostLevel(Registry& registry);

}  // namespace basalt
