// The items of a combo box: texts, each with the number that stands behind it.
//
//   TStrings items;
//   Fill_SellCostLevel(items);
//   const int level = items.at(chosen).Object;
#pragma once

#include <string>
#include <vector>

namespace basalt {

struct TStringItem {
    std::string Text;
    int Object = 0;
    bool operator==(const TStringItem&) const = default;
};
using TStrings = std::vector<TStringItem>;

}  // namespace basalt
