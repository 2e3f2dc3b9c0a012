#include "costlevel/goodcost_unt.h"

namespace basalt {

TCostDiscountTitle GoodCostDiscountTitles;

namespace {

constexpr CostDiscountAmount kAmounts[] = {
    {"Discount_Sell_1", &TCostDiscount::Discount_Sell_1},   {"Discount_Sell_2", &TCostDiscount::Discount_Sell_2},
    {"Discount_Sell_3", &TCostDiscount::Discount_Sell_3},   {"Discount_Sell_4", &TCostDiscount::Discount_Sell_4},
    {"Discount_Buy_1", &TCostDiscount::Discount_Buy_1},     {"Discount_Buy_2", &TCostDiscount::Discount_Buy_2},
    {"Discount_Buy_3", &TCostDiscount::Discount_Buy_3},     {"Discount_Buy_4", &TCostDiscount::Discount_Buy_4},
    {"CostLevel_Sell_1", &TCostDiscount::CostLevel_Sell_1}, {"CostLevel_Sell_2", &TCostDiscount::CostLevel_Sell_2},
    {"CostLevel_Sell_3", &TCostDiscount::CostLevel_Sell_3}, {"CostLevel_Sell_4", &TCostDiscount::CostLevel_Sell_4},
    {"CostLevel_Sell_5", &TCostDiscount::CostLevel_Sell_5}, {"CostLevel_Sell_6", &TCostDiscount::CostLevel_Sell_6},
    {"CostLevel_Sell_7", &TCostDiscount::CostLevel_Sell_7}, {"CostLevel_Sell_8", &TCostDiscount::CostLevel_Sell_8},
    {"CostLevel_Sell_9", &TCostDiscount::CostLevel_Sell_9}, {"CostLevel_Sell_10", &TCostDiscount::CostLevel_Sell_10},
    {"CostLevel_Buy_1", &TCostDiscount::CostLevel_Buy_1},   {"CostLevel_Buy_2", &TCostDiscount::CostLevel_Buy_2},
    {"CostLevel_Buy_3", &TCostDiscount::CostLevel_Buy_3},   {"CostLevel_Buy_4", &TCostDiscount::CostLevel_Buy_4},
    {"CostLevel_Buy_5", &TCostDiscount::CostLevel_Buy_5},   {"CostLevel_Buy_6", &TCostDiscount::CostLevel_Buy_6},
    {"CostLevel_Buy_7", &TCostDiscount::CostLevel_Buy_7},   {"CostLevel_Buy_8", &TCostDiscount::CostLevel_Buy_8},
    {"CostLevel_Buy_9", &TCostDiscount::CostLevel_Buy_9},   {"CostLevel_Buy_10", &TCostDiscount::CostLevel_Buy_10},
};

constexpr CostDiscountDefault kDefaults[] = {
    {"Default_Discount_Sell_Number", &TCostDiscount::Default_Discount_Sell_Number},
    {"Default_Discount_Buy_Number", &TCostDiscount::Default_Discount_Buy_Number},
    {"Default_CostLevel_Sell_Number", &TCostDiscount::Default_CostLevel_Sell_Number},
    {"Default_CostLevel_Buy_Number", &TCostDiscount::Default_CostLevel_Buy_Number},
};

}  // namespace

std::span<const CostDiscountAmount> costDiscountAmounts() {
    return kAmounts;
}

std::span<const CostDiscountDefault> costDiscountDefaults() {
    return kDefaults;
}

}  // namespace basalt
