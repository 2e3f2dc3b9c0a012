#include <gmock/gmock.h>

#include "tests/database/company.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OfferedPrices : public SmallCompany {};

TEST_F(OfferedPrices, aPersonWithoutAPriceListGetsTheGoodsOwnLevel) {
    EXPECT_THAT(rows("{call GetDefaultCostLevel(11,5,0)}"), ElementsAre("0|3|1000.000000000|1|5|خرده|3"));
    EXPECT_THAT(rows("GetDefaultCostLevel 11,5,1"), ElementsAre("0|3|550.500000000|2|5|عمده|3"));
}

TEST_F(OfferedPrices, aPersonsDefaultLevelComesFirst) {
    EXPECT_THAT(rows("{call GetDefaultCostLevel(10,5,0)}"), ElementsAre("1|3|800.000000000|3|10|همکار|1"));
}

TEST_F(OfferedPrices, aPersonsLevelIsForItsDirectionOnly) {
    EXPECT_THAT(rows("{call GetDefaultCostLevel(10,5,1)}"), ElementsAre("0|3|550.500000000|2|5|عمده|3"));
}

TEST_F(OfferedPrices, aLevelThatTheGoodHasNoPriceOfIsPassedOver) {
    EXPECT_THAT(rows("{call GetDefaultCostLevel(10,6,0)}"), ElementsAre("0|3|2000.000000000|1|6|خرده|3"));
}

TEST_F(OfferedPrices, aLevelThatIsNotThePersonsDefaultDoesNotCount) {
    execute(*session, "UPDATE dbo.costlist SET [Default] = 0");
    EXPECT_THAT(rows("{call GetDefaultCostLevel(10,5,0)}"), ElementsAre("0|3|1000.000000000|1|5|خرده|3"));
}

TEST_F(OfferedPrices, aGoodsPriceListIsNoPersons) {
    execute(*session, "UPDATE dbo.costlist SET [Type] = 3");
    EXPECT_THAT(rows("{call GetDefaultCostLevel(10,5,0)}"), ElementsAre("0|3|1000.000000000|1|5|خرده|3"));
}

TEST_F(OfferedPrices, aPriceThatIsMissingIsNull) {
    EXPECT_THAT(rows("{call GetDefaultCostLevel(11,6,1)}"), ElementsAre("0|3|NULL|1|6|خرده|3"));
}

TEST_F(OfferedPrices, aGoodWithoutPricesGivesNoRow) {
    EXPECT_THAT(rows("{call GetDefaultCostLevel(10,7,0)}"), IsEmpty());
    EXPECT_THAT(rows("{call GetDefaultCostLevel(10,99,0)}"), IsEmpty());
}

TEST_F(OfferedPrices, columnsHaveTheirNames) {
    const RowSet one = rowsOf(*session, "{call GetDefaultCostLevel(10,5,0)}");
    std::string names;
    for (std::size_t i = 0; i < one.columnCount(); ++i)
        names += one.column(i).info().name + " ";
    EXPECT_EQ(names, "ID1 Type Cost CostLevelCode TypeCode1 Title Type1 ");
    const RowSet list = rowsOf(*session, "{call OfferSellCost(5,10)}");
    names.clear();
    for (std::size_t i = 0; i < list.columnCount(); ++i)
        names += list.column(i).info().name + " ";
    EXPECT_EQ(names, "Code TypeCode Type Cost Name deftitle ");
}

TEST_F(OfferedPrices, theListHasEveryExistingLevelWithAPrice) {
    // Level 4 has a price but does not exist, level 0 is no level.
    EXPECT_THAT(
        rows("{call OfferSellCost(5,11)}"),
        ElementsAre("1|5|3|1000.000000000|خرده|پیش فرض", "2|5|3|900.000000000|عمده|", "3|5|3|800.000000000|همکار|"));
    EXPECT_THAT(rows("{call OfferBuyCost(5,11)}"),
                ElementsAre("1|5|3|600.000000000|خرده|", "2|5|3|550.500000000|عمده|پیش فرض"));
}

TEST_F(OfferedPrices, theListMarksThePersonsLevel) {
    EXPECT_THAT(
        rows("{call OfferSellCost(5,10)}"),
        ElementsAre("1|5|3|1000.000000000|خرده|", "2|5|3|900.000000000|عمده|", "3|5|3|800.000000000|همکار|پیش فرض"));
}

TEST_F(OfferedPrices, aCurrencyDividesAndRounds) {
    // 1000/300, 900/300, 800/300 and 600/300, 550.5/300
    EXPECT_THAT(rows("{call OfferSellCostCurr(5,10,2)}"),
                ElementsAre("1|5|3|3.330000000|خرده|", "2|5|3|3.000000000|عمده|", "3|5|3|2.670000000|همکار|پیش فرض"));
    EXPECT_THAT(rows("{call OfferBuyCostCurr(5,10,2)}"),
                ElementsAre("1|5|3|2.000000000|خرده|", "2|5|3|1.840000000|عمده|پیش فرض"));
}

TEST_F(OfferedPrices, theCurrencyOfTheBooksHasNoDecimals) {
    EXPECT_THAT(rows("{call OfferBuyCostCurr(5,11,1)}"),
                ElementsAre("1|5|3|600.000000000|خرده|", "2|5|3|551.000000000|عمده|پیش فرض"));
}

// A price may have one digit more once it is rounded, and many more in a currency that is worth less than that of the
// books. None of them takes the others with it.
TEST_F(OfferedPrices, pricesAtTheLimitsAreOfferedInACurrency) {
    session->run(
        "UPDATE GoodCostDiscount SET CostLevel_Sell_1 = 99999999999999.999999999, "
        "CostLevel_Sell_2 = -99999999999999.999999999, CostLevel_Sell_3 = 0.5, "
        "CostLevel_Buy_1 = -0.5, CostLevel_Buy_2 = 0.000000001 WHERE GoodCode = 5");
    session->run(
        "INSERT INTO Currencies (Code, Name, Rate, Decimals) VALUES (7, N'کوچک', 0.000000001, 9), "
        "(8, N'یک', 1, 8), (9, N'بزرگ', 99999999999999.999999999, 9)");
    EXPECT_THAT(rows("{call OfferSellCostCurr(5,11,1)}"),
                ElementsAre("1|5|3|100000000000000.000000000|خرده|پیش فرض", "2|5|3|-100000000000000.000000000|عمده|",
                            "3|5|3|1.000000000|همکار|"));
    EXPECT_THAT(rows("{call OfferBuyCostCurr(5,11,1)}"),
                ElementsAre("1|5|3|-1.000000000|خرده|", "2|5|3|0.000000000|عمده|پیش فرض"));
    EXPECT_THAT(rows("{call OfferSellCostCurr(5,11,7)}"),
                ElementsAre("1|5|3|99999999999999999999999.000000000|خرده|پیش فرض",
                            "2|5|3|-99999999999999999999999.000000000|عمده|", "3|5|3|500000000.000000000|همکار|"));
    EXPECT_THAT(rows("{call OfferBuyCostCurr(5,11,7)}"),
                ElementsAre("1|5|3|-500000000.000000000|خرده|", "2|5|3|1.000000000|عمده|پیش فرض"));
    EXPECT_THAT(rows("{call OfferSellCostCurr(5,11,8)}"),
                ElementsAre("1|5|3|100000000000000.000000000|خرده|پیش فرض", "2|5|3|-100000000000000.000000000|عمده|",
                            "3|5|3|0.500000000|همکار|"));
    EXPECT_THAT(rows("{call OfferSellCostCurr(5,11,9)}"),
                ElementsAre("1|5|3|1.000000000|خرده|پیش فرض", "2|5|3|-1.000000000|عمده|", "3|5|3|0.000000000|همکار|"));
    EXPECT_THAT(rows("{call OfferSellCost(5,11)}"),
                ElementsAre("1|5|3|99999999999999.999999999|خرده|پیش فرض", "2|5|3|-99999999999999.999999999|عمده|",
                            "3|5|3|0.500000000|همکار|"));
}

TEST_F(OfferedPrices, anUnknownCurrencyLeavesPricesAsTheyStand) {
    EXPECT_EQ(rows("{call OfferBuyCostCurr(5,11,0)}"), rows("{call OfferBuyCost(5,11)}"));
    EXPECT_EQ(rows("{call OfferSellCostCurr(5,11,99)}"), rows("{call OfferSellCost(5,11)}"));
}

TEST_F(OfferedPrices, aGoodWithoutPricesGivesAnEmptyList) {
    EXPECT_THAT(rows("{call OfferSellCost(7,10)}"), IsEmpty());
    EXPECT_THAT(rows("{call OfferBuyCost(6,10)}"), IsEmpty());
}

}  // namespace
}  // namespace basalt::host
