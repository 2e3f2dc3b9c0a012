// A good's matrix, read and written through the module's functions on the demo company's database.
#include "host/price_editor/price_matrix.h"

#include <gmock/gmock.h>

#include "ado/error.h"
#include "costlevel/registration.h"
#include "host/services/sql_access.h"
#include "package/services.h"
#include "tests/host_services/demo_database.h"
#include "tests/support/tracing_session.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

class Matrix : public DemoDatabaseTest {
protected:
    Matrix() { host.signInAs(1); }
    static Registry registered() {
        Registry made;
        registerCostLevel(made);
        return made;
    }
    [[nodiscard]] std::string stored(const std::string& column, int good) {
        return linesOf(*session, "SELECT " + column + " FROM GoodCostDiscount WHERE GoodCode = " + std::to_string(good))
            .at(0);
    }
    static Decimal number(const char* text) { return *Decimal::parse(text); }

    ReferenceHost host{*session, workstation("prices")};
    AttachedHost attached{host};
    Registry registry = registered();
    PriceMatrix matrix{host, registry};
};

TEST_F(Matrix, readsAllOfAGood) {
    const GoodPrices prices = matrix.read(57);
    EXPECT_EQ(prices.size(), 32U);
    EXPECT_EQ(prices.at("CostLevel_Sell_1"), number("298500"));
    EXPECT_EQ(prices.at("Discount_Sell_3"), number("7.5"));
    EXPECT_EQ(prices.at("CostLevel_Buy_8"), std::nullopt);
    EXPECT_EQ(stored("CostLevel_Buy_8", 57), "NULL");
    for (const auto& [name, value] : matrix.read(39)) {
        if (name.starts_with("Default_")) {
            EXPECT_EQ(value, Decimal()) << name;
        } else {
            EXPECT_EQ(value, std::nullopt) << name;
        }
    }
    EXPECT_EQ(matrix.titles().at("CostLevel_3"), "همکار");
}

TEST_F(Matrix, writesWhatChanged) {
    const GoodPrices before = matrix.read(57);
    GoodPrices after = before;
    after["CostLevel_Sell_3"] = number("12500.5");
    after["Discount_Buy_4"] = number("2.25");
    after["Default_CostLevel_Sell_Number"] = number("3");
    matrix.write(57, before, after);
    EXPECT_EQ(matrix.read(57), after);
    // A cell that nobody touched stays null.
    EXPECT_EQ(stored("CostLevel_Buy_8", 57), "NULL");
}

TEST_F(Matrix, readsToTheLastDigit) {
    execute(*session,
            "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = 12345678901234.123456789, "
            "CostLevel_Buy_2 = -99999999999999.999999999, Discount_Sell_1 = 99999999999999.999999999 "
            "WHERE GoodCode = 57");
    const GoodPrices prices = matrix.read(57);
    EXPECT_EQ(prices.at("CostLevel_Sell_3"), number("12345678901234.123456789"));
    EXPECT_EQ(prices.at("CostLevel_Buy_2"), number("-99999999999999.999999999"));
    EXPECT_EQ(prices.at("Discount_Sell_1"), number("99999999999999.999999999"));
    // Another value of the good is written beside them, and they stay.
    GoodPrices after = prices;
    after["Discount_Sell_2"] = number("12.123456789");
    matrix.write(57, prices, after);
    EXPECT_EQ(matrix.read(57), after);
}

TEST_F(Matrix, knowsWhatIsKeptAsItIs) {
    for (const char* kept : {"0", "-1", "12500.5", "99999999999999", "-99999999999999", "1234567890.123456789",
                             "0.000000001", "1.50000000000000000000"})
        EXPECT_TRUE(PriceMatrix::isKept("CostLevel_Sell_3", number(kept))) << kept;
    for (const char* lost : {"12345678901234.123456789", "100000000000000", "-100000000000000", "0.0000000001",
                             "99999999999999.999999999"}) {
        EXPECT_FALSE(PriceMatrix::isKept("CostLevel_Sell_3", number(lost))) << lost;
        const GoodPrices before = matrix.read(57);
        GoodPrices after = before;
        after["CostLevel_Sell_3"] = number(lost);
        EXPECT_THROW(matrix.write(57, before, after), DatabaseError) << lost;
        EXPECT_EQ(matrix.read(57), before) << lost;
    }
    // Discounts do not go through the module.
    EXPECT_TRUE(PriceMatrix::isKept("Discount_Buy_4", number("12345678901234.123456789")));
    EXPECT_FALSE(PriceMatrix::isKept("Discount_Buy_4", number("0.0000000001")));
}

TEST_F(Matrix, takesAPriceAway) {
    const GoodPrices before = matrix.read(57);
    GoodPrices after = before;
    after["CostLevel_Sell_1"].reset();
    after["Discount_Sell_3"].reset();
    after["CostLevel_Buy_8"] = Decimal();
    matrix.write(57, before, after);
    EXPECT_EQ(stored("CostLevel_Sell_1", 57), "NULL");
    EXPECT_EQ(stored("Discount_Sell_3", 57), "NULL");
    EXPECT_EQ(stored("CostLevel_Buy_8", 57), "0.000000000");
    EXPECT_EQ(matrix.read(57), after);
}

TEST_F(Matrix, addsTheRowOfAGoodWithoutPrices) {
    const GoodPrices before = matrix.read(39);
    matrix.write(39, before, before);
    EXPECT_THAT(linesOf(*session, "SELECT COUNT(*) FROM GoodCostDiscount WHERE GoodCode = 39"), ElementsAre("0"));
    GoodPrices after = before;
    after["CostLevel_Buy_10"] = number("-1");
    matrix.write(39, before, after);
    EXPECT_EQ(matrix.read(39), after);
}

TEST_F(Matrix, refusesToOverwriteAnotherUsersChange) {
    const GoodPrices before = matrix.read(57);
    execute(*session, "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = 7 WHERE GoodCode = 57");
    GoodPrices after = before;
    after["CostLevel_Buy_1"] = number("5");
    after["CostLevel_Sell_3"] = number("12500.5");
    try {
        matrix.write(57, before, after);
        FAIL() << "the change of the other user was overwritten";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Conflict);
    }
    EXPECT_EQ(matrix.read(57).at("CostLevel_Sell_3"), number("7"));
    EXPECT_EQ(matrix.read(57).at("CostLevel_Buy_1"), before.at("CostLevel_Buy_1"));
    // A change of a cell that is not written stays, and is no obstacle.
    after["CostLevel_Sell_3"] = before.at("CostLevel_Sell_3");
    matrix.write(57, before, after);
    EXPECT_EQ(matrix.read(57).at("CostLevel_Sell_3"), number("7"));
    EXPECT_EQ(matrix.read(57).at("CostLevel_Buy_1"), number("5"));
}

// What another client commits between the comparison and the update would be lost, so nobody can.
TEST(MatrixWrite, holdsTheRowFromTheComparisonToTheEnd) {
    const auto database = openDatabase(":memory:");
    deployDatabase(*database, {.demo = true});
    std::vector<std::string> trace;
    TracingSession session(*database, trace);
    ReferenceHost host(session, workstation("prices"));
    const AttachedHost attached(host);
    host.signInAs(1);
    Registry registry;
    registerCostLevel(registry);
    PriceMatrix matrix(host, registry);
    const GoodPrices before = matrix.read(57);
    GoodPrices after = before;
    after["CostLevel_Sell_3"] = *Decimal::parse("12500.5");
    after["Discount_Buy_4"] = *Decimal::parse("2.25");
    trace.clear();
    matrix.write(57, before, after);
    EXPECT_THAT(
        trace,
        ElementsAre("begin", "SELECT * FROM dbo.GoodCostDiscount WITH (UPDLOCK, HOLDLOCK) WHERE GoodCode = ? | 57",
                    "select * from GoodCostDiscount Where GoodCode = 57 ",
                    "INSERT INTO dbo.GoodCostDiscount (GoodCode) SELECT ? WHERE NOT EXISTS "
                    "(SELECT 1 FROM dbo.GoodCostDiscount WHERE GoodCode = ?) | 57 | 57",
                    "update GoodCostDiscount Set CostLevel_Sell_3 = 12500.5 where GoodCode=57",
                    "UPDATE dbo.GoodCostDiscount SET [Discount_Buy_4] = ? WHERE GoodCode = ? | 2.25 | 57", "commit"));
    // Looking holds nothing.
    trace.clear();
    (void)matrix.read(57);
    EXPECT_THAT(trace, ElementsAre("SELECT * FROM dbo.GoodCostDiscount WHERE GoodCode = ? | 57",
                                   "select * from GoodCostDiscount Where GoodCode = 57 "));
}

TEST_F(Matrix, aPriceBeyondTheColumnLeavesNothingWritten) {
    const GoodPrices before = matrix.read(57);
    GoodPrices after = before;
    after["CostLevel_Buy_1"] = number("5");
    after["CostLevel_Sell_3"] = number("100000000000000");  // fifteen digits, the column holds fourteen
    EXPECT_THROW(matrix.write(57, before, after), DatabaseError);
    EXPECT_EQ(matrix.read(57), before);
}

TEST_F(Matrix, needsTheModulesFunctions) {
    const Registry empty;
    EXPECT_THROW(PriceMatrix(host, empty), UsageError);
}

// The offers and the matrix on a database of its own

TEST_F(Matrix, listsOffersOfTheLevelsThatExist) {
    execute(*session, "DELETE FROM costlist");
    execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code > 4");
    FunctionState state;
    FunctionCall call(state, {{"Kind", 0}, {"GoodCode", 57}, {"PerCode", 0}, {"CurrCode", 0}, {"Direction", 0}});
    registry.find("OfferCost_GetAll").front()->run(call);
    EXPECT_EQ(matrix.titles().at("CostLevel_7"), "سطح قيمت ساير");
    const TDataSet* offers = nullptr;
    for (const TADOQuery* query : state.modules().at(0)->queries())
        if (query->Name() == "OfferCost_QUR") offers = query;
    ASSERT_NE(offers, nullptr);
    ASSERT_EQ(offers->RecordCount(), 4);
    std::vector<std::string> lines;
    for (int row = 0; row < 4; ++row) {
        std::string line;
        for (int field = 0; field < 6; ++field)
            line += (field > 0 ? "|" : "") + offers->textAt(row, field);
        lines.push_back(line);
    }
    EXPECT_THAT(lines, ::testing::UnorderedElementsAre("1|57|3|230000|تک‌فروشی|پیش فرض",
                                                       "2|57|3|226500|عمده‌فروشی|", "3|57|3|225500|همکار|",
                                                       "4|57|3|223000|نمایندگی|"));
}

}  // namespace
}  // namespace basalt::host
