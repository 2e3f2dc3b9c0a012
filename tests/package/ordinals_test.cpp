// The numbers of what the host, its tables and its user log share with the module.
#include <gtest/gtest.h>

#include "package/types.h"

namespace basalt {
namespace {

struct Ordinal {
    const char* name;
    int value;
    int number;
};

void PrintTo(const Ordinal& ordinal, std::ostream* out) {
    *out << ordinal.name;
}

class Ordinals : public ::testing::TestWithParam<Ordinal> {};

TEST_P(Ordinals, stay) {
    EXPECT_EQ(GetParam().value, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    Shared, Ordinals,
    ::testing::Values(
        // Modes of screens
        Ordinal{"fmBrowse", fmBrowse, 1}, Ordinal{"fmNew", fmNew, 2}, Ordinal{"fmEdit", fmEdit, 3},
        Ordinal{"fmSelect", fmSelect, 5},
        // Parts of the software
        Ordinal{"spPersons", spPersons, 101}, Ordinal{"spGoods", spGoods, 102},
        Ordinal{"spPriceLevels", spPriceLevels, 114}, Ordinal{"spSelectedLists", spSelectedLists, 126},
        Ordinal{"spTags", spTags, 127}, Ordinal{"spCategories", spCategories, 130},
        Ordinal{"spDiscountLevels", spDiscountLevels, 134}, Ordinal{"spPriceReport", spPriceReport, 519},
        // Permissions
        Ordinal{"prInsert", prInsert, 1}, Ordinal{"prEdit", prEdit, 2}, Ordinal{"prDelete", prDelete, 3},
        Ordinal{"prOpen", prOpen, 6}, Ordinal{"prEnable", prEnable, 1261},
        // Identities of screens' layouts
        Ordinal{"csPriceLevels", csPriceLevels, 14}, Ordinal{"csSelectedLists", csSelectedLists, 26},
        Ordinal{"csDiscountLevels", csDiscountLevels, 27}, Ordinal{"csTags", csTags, 31},
        Ordinal{"csCategories", csCategories, 101}, Ordinal{"csPriceReport", csPriceReport, 162},
        // Kinds of levels
        Ordinal{"ctPriceLevel", ctPriceLevel, 1}, Ordinal{"ctDiscountLevel", ctDiscountLevel, 3},
        // What modal screens and message boxes answer
        Ordinal{"mrNone", mrNone, 0}, Ordinal{"mrOk", mrOk, 1}, Ordinal{"mrCancel", mrCancel, 2},
        Ordinal{"mrYes", mrYes, 6}, Ordinal{"mrNo", mrNo, 7}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace basalt
