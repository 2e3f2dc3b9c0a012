// What the registry lists of goods, scale barcodes and scales. The screen is listed by goods/getboxweight_frm.h.
#pragma once

namespace basalt {

class Registry;

void registerGoods(Registry& registry);

}  // namespace basalt
