#include "host/transfer/row_order.h"

#include <gmock/gmock.h>

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

TableSchema tree() {
    TableSchema table;
    table.name = "Tree";
    table.foreignKeys.push_back({"FK_Tree", {"Parent"}, "tree", {"ID"}});
    return table;
}

// Pairs of a row's key and its parent's, 0 for none.
RowSet rows(const std::vector<std::pair<int, int>>& pairs) {
    RowSet set({{.name = "ID", .type = FieldType::Integer}, {.name = "Parent", .type = FieldType::Integer}});
    for (const auto& [id, parent] : pairs) {
        set.column(0).appendInt(id);
        if (parent == 0) {
            set.column(1).appendNull();
        } else {
            set.column(1).appendInt(parent);
        }
        set.finishRow();
    }
    return set;
}

TEST(RowOrder, parentsComeFirst) {
    EXPECT_THAT(rowOrder(tree(), rows({{1, 3}, {2, 0}, {3, 4}, {4, 0}})), ElementsAre(3U, 2U, 0U, 1U));
}

TEST(RowOrder, rowsThatReferToThemselvesOrInACircleAreAllThere) {
    EXPECT_THAT(rowOrder(tree(), rows({{1, 1}, {2, 3}, {3, 2}})), ElementsAre(0U, 2U, 1U));
}

TEST(RowOrder, withoutReferencesItStaysAsItWas) {
    TableSchema table = tree();
    table.foreignKeys[0].referencedTable = "Other";
    EXPECT_THAT(rowOrder(table, rows({{1, 3}, {3, 0}})), ElementsAre(0U, 1U));
}

TEST(RowOrder, aLongChainNeedsNoDepth) {
    std::vector<std::pair<int, int>> chain;
    constexpr int length = 100'000;
    for (int i = 1; i <= length; ++i)
        chain.emplace_back(i, i == length ? 0 : i + 1);
    const std::vector<std::size_t> order = rowOrder(tree(), rows(chain));
    ASSERT_EQ(order.size(), chain.size());
    EXPECT_EQ(order.front(), chain.size() - 1);
    EXPECT_EQ(order.back(), 0U);
}

}  // namespace
}  // namespace basalt::host
