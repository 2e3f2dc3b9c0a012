// One good's prices and discounts, read and written through the functions that the module exports.
//
//   PriceMatrix matrix(host, registry);
//   const GoodPrices before = matrix.read(57);
//   GoodPrices after = before;
//   after["CostLevel_Sell_3"] = *Decimal::parse("12500");
//   matrix.write(57, before, after);
//
// Values bear the names of their columns: CostLevel_Sell_1 to _10, CostLevel_Buy_1 to _10, Discount_Sell_1 to _4,
// Discount_Buy_1 to _4 and the four defaults (Default_CostLevel_Sell_Number and so on), which are level numbers, 0 for
// none. A price or discount that the good does not have is nothing here and null in the table; the module's own reading
// takes it for 0.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "host/services/reference_host.h"
#include "package/registry.h"

namespace basalt::host {

using GoodPrices = std::map<std::string, std::optional<Decimal>>;
// Titles of the levels: CostLevel_1 to _10, Discount_Sell_1 to _4, Discount_Buy_1 to _4.
using LevelTitles = std::map<std::string, std::string>;

class PriceMatrix {
public:
    // Both are lent. UsageError when the registry lacks the functions.
    PriceMatrix(ReferenceHost& host, const Registry& registry);

    // To the last digit that the table holds.
    [[nodiscard]] GoodPrices read(int goodCode);
    [[nodiscard]] LevelTitles titles();
    // The greatest price or discount that a column holds; the least one is its negative.
    [[nodiscard]] static Decimal greatest();
    // Whether a value of that name arrives in its column as it is. Prices go through the module, whose amounts have
    // fewer digits than the table's.
    [[nodiscard]] static bool isKept(const std::string& name, const Decimal& value);
    // Writes what differs between the two, all or nothing, with the good's row held from the comparison to the end, and
    // adds the good's row when it has none. DatabaseError (Conversion) when a new value would not be kept as it is;
    // DatabaseError (Conflict) when one of the values that are to change is not, or no longer, the one of `before`.
    void write(int goodCode, const GoodPrices& before, const GoodPrices& after);

private:
    [[nodiscard]] GoodPrices read(int goodCode, const char* lock);
    // Until the transaction ends no other client writes to the good's row, or adds it.
    [[nodiscard]] GoodPrices readAndHold(int goodCode);
    const FunctionEntry& function(const std::string& name) const;

    ReferenceHost& host_;
    const Registry& registry_;
    FunctionState state_;
};

}  // namespace basalt::host
