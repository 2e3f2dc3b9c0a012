// A good's prices and discounts by level, and the titles of all levels.
//
//   const TCostDiscount prices = levels.GetGoodCostDiscount(57);
//   prices.CostLevel_Sell_3                          // the sale price of price level 3
//   for (const CostDiscountAmount& each : costDiscountAmounts()) use(each.name, prices.*each.member);
//
// Prices are in the company's currency. Discounts are decimal numbers as well; the module keeps them and reckons
// nothing with them, so what they are of is for the host to say: the reference host takes them for percents, 0 to 100.
// Defaults are level numbers; 0 where the good names none.
#pragma once

#include <array>
#include <span>
#include <string>

#include "ado/decimal.h"

namespace basalt {

inline constexpr int kPriceLevels = 10;
inline constexpr int kDiscountLevels = 4;

struct TCostDiscount {
    Extended Discount_Sell_1 = 0;
    Extended Discount_Sell_2 = 0;
    Extended Discount_Sell_3 = 0;
    Extended Discount_Sell_4 = 0;
    Extended Discount_Buy_1 = 0;
    Extended Discount_Buy_2 = 0;
    Extended Discount_Buy_3 = 0;
    Extended Discount_Buy_4 = 0;
    int Default_Discount_Sell_Number = 0;
    int Default_Discount_Buy_Number = 0;
    Extended CostLevel_Sell_1 = 0;
    Extended CostLevel_Sell_2 = 0;
    Extended CostLevel_Sell_3 = 0;
    Extended CostLevel_Sell_4 = 0;
    Extended CostLevel_Sell_5 = 0;
    Extended CostLevel_Sell_6 = 0;
    Extended CostLevel_Sell_7 = 0;
    Extended CostLevel_Sell_8 = 0;
    Extended CostLevel_Sell_9 = 0;
    Extended CostLevel_Sell_10 = 0;
    Extended CostLevel_Buy_1 = 0;
    Extended CostLevel_Buy_2 = 0;
    Extended CostLevel_Buy_3 = 0;
    Extended CostLevel_Buy_4 = 0;
    Extended CostLevel_Buy_5 = 0;
    Extended CostLevel_Buy_6 = 0;
    Extended CostLevel_Buy_7 = 0;
    Extended CostLevel_Buy_8 = 0;
    Extended CostLevel_Buy_9 = 0;
    Extended CostLevel_Buy_10 = 0;
    int Default_CostLevel_Sell_Number = 0;
    int Default_CostLevel_Buy_Number = 0;
};

// A field of the record and the column of GoodCostDiscount that bears its name.
struct CostDiscountAmount {
    const char* name;
    Extended TCostDiscount::*member;
};
struct CostDiscountDefault {
    const char* name;
    int TCostDiscount::*member;
};

// In the record's order: four sale discounts, four purchase discounts, ten sale prices, ten purchase prices.
[[nodiscard]] std::span<const CostDiscountAmount> costDiscountAmounts();
// Sale and purchase discount, sale and purchase price.
[[nodiscard]] std::span<const CostDiscountDefault> costDiscountDefaults();

// Titles of the levels, each array from level 1. Both sets of discounts are titled by the same discount levels; the
// first is for sale, the second for purchase.
struct TCostDiscountTitle {
    std::array<std::string, kDiscountLevels> Discount_Sell;
    std::array<std::string, kDiscountLevels> Discount_Buy;
    std::array<std::string, kPriceLevels> CostLevel;
};

// The titles as they were last loaded (TCostLevel_DM::LoadCostDiscountTitles), for every screen of the process; empty
// before that.
extern TCostDiscountTitle GoodCostDiscountTitles;

}  // namespace basalt
