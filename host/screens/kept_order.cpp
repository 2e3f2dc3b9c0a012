#include "host/screens/kept_order.h"

#include <algorithm>

namespace basalt::host {

std::vector<int> keptOrder(const std::vector<int>& kept, int count) {
    std::vector<int> order;
    const auto placeOf = [&](int number) { return std::find(order.begin(), order.end(), number); };
    for (const int number : kept)
        if (number >= 0 && number < count && placeOf(number) == order.end()) order.push_back(number);
    for (int number = 0; number < count; ++number) {
        if (placeOf(number) != order.end()) continue;
        order.insert(number == 0 ? order.begin() : placeOf(number - 1) + 1, number);
    }
    return order;
}

}  // namespace basalt::host
