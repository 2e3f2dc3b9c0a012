// An order that somebody gave to what was there then, carried on to what is there now.
//
//   for (const int column : keptOrder({2, 0, 1}, 5)) show(column);    // 2 0 1 3 4
#pragma once

#include <vector>

namespace basalt::host {

// The numbers below `count`: those of `kept` in its order, and each of the others behind the one that precedes it by
// number, the first at the front. What is no such number, or stands in `kept` already, is passed over.
[[nodiscard]] std::vector<int> keptOrder(const std::vector<int>& kept, int count);

}  // namespace basalt::host
