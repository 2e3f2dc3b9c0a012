#include "host/services/category_tree.h"

#include <gmock/gmock.h>

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<int> codes(const std::vector<const Category*>& categories) {
    std::vector<int> all;
    for (const Category* each : categories)
        all.push_back(each->code);
    return all;
}

TEST(CategoryTree, knowsWhatLiesBelowAndTheWayDown) {
    const CategoryTree tree({{1, "الف", 0}, {4, "آ", 1}, {2, "ب", 1}, {3, "پ", 2}});
    EXPECT_THAT(codes(tree.below(0)), ElementsAre(1));
    EXPECT_THAT(codes(tree.below(1)), ElementsAre(4, 2)) << "in the order in which they were given";
    EXPECT_THAT(codes(tree.below(3)), IsEmpty());
    EXPECT_THAT(codes(tree.wayTo(3)), ElementsAre(1, 2, 3));
    EXPECT_THAT(codes(tree.wayTo(0)), IsEmpty());
    EXPECT_THAT(codes(tree.wayTo(9)), IsEmpty());
    EXPECT_EQ(tree.find(2)->name, "ب");
    EXPECT_EQ(tree.find(9), nullptr);
}

TEST(CategoryTree, anEmptyOneHasNothing) {
    const CategoryTree tree;
    EXPECT_THAT(codes(tree.below(0)), IsEmpty());
    EXPECT_THAT(codes(tree.wayTo(1)), IsEmpty());
}

TEST(CategoryTree, aRingOrALostParentKeepsNobody) {
    const CategoryTree tree({{1, "الف", 2}, {2, "ب", 1}, {3, "پ", 3}, {4, "ت", 99}, {0, "صفر", 0}});
    EXPECT_THAT(codes(tree.wayTo(1)), ElementsAre(2, 1));
    EXPECT_THAT(codes(tree.wayTo(3)), ElementsAre(3));
    EXPECT_THAT(codes(tree.below(3)), IsEmpty());
    EXPECT_THAT(codes(tree.below(0)), IsEmpty());
    EXPECT_THAT(codes(tree.wayTo(4)), ElementsAre(4));
}

}  // namespace
}  // namespace basalt::host
