#include "host/services/unit_formula.h"

#include <gtest/gtest.h>

#include <string>

namespace basalt::host {
namespace {

TEST(UnitFormula, calculatesWithTheQuantity) {
    EXPECT_EQ(evaluateUnitFormula("X*12", 3), 36);
    EXPECT_EQ(evaluateUnitFormula(" x / 4 ", 3), 0.75);
    EXPECT_EQ(evaluateUnitFormula("(X + 0.5) * 2 - 1", 1), 2);
    EXPECT_EQ(evaluateUnitFormula("-X--2", 1), 1);
    EXPECT_EQ(evaluateUnitFormula("8-4-2", 0), 2);
    EXPECT_EQ(evaluateUnitFormula("2+3*4", 0), 14);
}

TEST(UnitFormula, refusesWhatItCannotCalculate) {
    for (const char* text :
         {"", " ", "X*", "*X", "(X", "X)", "X X", "Y*2", "2X", "1..2", "1e5", "X/0", "nan", "X;X", "ایکس"}) {
        EXPECT_EQ(evaluateUnitFormula(text, 1), std::nullopt) << text;
    }
}

TEST(UnitFormula, nestingHasALimit) {
    const auto nested = [](std::size_t depth) { return std::string(depth, '(') + "X" + std::string(depth, ')'); };
    EXPECT_EQ(evaluateUnitFormula(nested(50), 1), 1);
    EXPECT_EQ(evaluateUnitFormula(nested(100'000), 1), std::nullopt);
}

}  // namespace
}  // namespace basalt::host
