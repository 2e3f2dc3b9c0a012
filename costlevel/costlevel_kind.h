// Which kind of level a software part stands for.
#pragma once

#include "package/types.h"

namespace basalt {

// Whatever is not the price levels' part serves the discount levels.
[[nodiscard]] constexpr TCostType costTypeOf(TSoftwarePart part) {
    return part == spPriceLevels ? ctPriceLevel : ctDiscountLevel;
}

}  // namespace basalt
