#include "host/services/category_tree.h"

#include <algorithm>
#include <utility>

namespace basalt::host {

CategoryTree::CategoryTree(std::vector<Category> categories) {
    for (Category& each : categories) {
        below_.emplace(each.parent, each.code);
        byCode_.insert_or_assign(each.code, std::move(each));
    }
}

const Category* CategoryTree::find(int code) const {
    const auto found = byCode_.find(code);
    return found == byCode_.end() ? nullptr : &found->second;
}

std::vector<const Category*> CategoryTree::below(int code) const {
    std::vector<const Category*> found;
    const auto [first, last] = below_.equal_range(code);
    for (auto each = first; each != last; ++each) {
        if (each->second != code) found.push_back(find(each->second));
    }
    return found;
}

std::vector<const Category*> CategoryTree::wayTo(int code) const {
    std::vector<const Category*> way;
    for (const Category* at = find(code); at && std::find(way.begin(), way.end(), at) == way.end();
         at = find(at->parent))
        way.push_back(at);
    std::reverse(way.begin(), way.end());
    return way;
}

}  // namespace basalt::host
