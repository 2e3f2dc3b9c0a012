// Keys and the indexes behind them, as the engine has them after the deployment.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::IsEmpty;

std::vector<TableSchema> deployedSchema() {
    const auto session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    deployDatabase(*session);
    return session->schema().tables;
}

// True when the first of the columns are those of the foreign key, in whatever order.
bool beginsWith(const std::vector<KeyColumnSchema>& columns, const std::vector<std::string>& key) {
    if (columns.size() < key.size()) return false;
    return std::all_of(
        columns.begin(), columns.begin() + static_cast<std::ptrdiff_t>(key.size()),
        [&](const KeyColumnSchema& column) { return std::find(key.begin(), key.end(), column.name) != key.end(); });
}

bool hasIndexFor(const TableSchema& table, const ForeignKeySchema& reference) {
    const auto leads = [&](const auto& each) { return beginsWith(each.columns, reference.columns); };
    return std::any_of(table.keys.begin(), table.keys.end(), leads) ||
           std::any_of(table.indexes.begin(), table.indexes.end(),
                       [&](const IndexSchema& index) { return index.condition.empty() && leads(index); });
}

// Otherwise the deletion of one unit reads all goods, that of a good all vouchers.
TEST(Keys, everyForeignKeyHasAnIndex) {
    std::vector<std::string> without;
    for (const TableSchema& table : deployedSchema()) {
        for (const ForeignKeySchema& reference : table.foreignKeys) {
            if (!hasIndexFor(table, reference)) without.push_back(table.name + ": " + reference.name);
        }
    }
    EXPECT_THAT(without, IsEmpty());
}

TEST(Keys, everyTableHasAPrimaryKey) {
    std::vector<std::string> without;
    for (const TableSchema& table : deployedSchema()) {
        if (table.keys.empty() || !table.keys.front().primary) without.push_back(table.name);
    }
    EXPECT_THAT(without, IsEmpty());
}

// Twice the same columns in the same order would be kept up to date for nothing.
TEST(Keys, noIndexRepeatsAnother) {
    std::vector<std::string> repeated;
    for (const TableSchema& table : deployedSchema()) {
        const auto names = [](const auto& each) {
            std::string text;
            for (const KeyColumnSchema& column : each.columns)
                text += column.name + (column.descending ? " DESC," : ",");
            return text;
        };
        std::vector<std::string> seen;
        for (const KeySchema& key : table.keys)
            seen.push_back(names(key));
        for (const IndexSchema& index : table.indexes) {
            const std::string columns = names(index);
            const bool known = std::find(seen.begin(), seen.end(), columns) != seen.end();
            // One that includes another column is read instead of the rows.
            if (known && index.included.empty()) repeated.push_back(table.name + ": " + index.name);
            seen.push_back(columns);
        }
    }
    EXPECT_THAT(repeated, IsEmpty());
}

}  // namespace
}  // namespace basalt::host
