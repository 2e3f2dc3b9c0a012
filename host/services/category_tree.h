// The categories as they lie below each other.
//
//   const CategoryTree tree(CategoryStore(session).all());
//   for (const Category* category : tree.below(0)) ...
//
// What a call gives points into the tree.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace basalt::host {

struct Category {
    int code = 0;
    std::string name;
    int parent = 0;  // 0 at the top
};

class CategoryTree {
public:
    CategoryTree() = default;
    explicit CategoryTree(std::vector<Category> categories);

    // Null when there is none.
    [[nodiscard]] const Category* find(int code) const;
    // In the order in which they were given.
    [[nodiscard]] std::vector<const Category*> below(int code) const;
    // From the top down to the category itself; empty when it is not there. It begins where the parent is not there,
    // and goes through a ring once.
    [[nodiscard]] std::vector<const Category*> wayTo(int code) const;

private:
    std::map<int, Category> byCode_;
    std::multimap<int, int> below_;  // codes by that of their parent
};

}  // namespace basalt::host
