// A good's prices and discounts, the titles of the levels, offers and the report's statement: every statement in full.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "ado/error.h"
#include "costlevel/costlevel_dm.h"
#include "package/services.h"
#include "tests/costlevel/level_rows.h"
#include "tests/costlevel/price_statements.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

const DatabaseError lostConnection(ErrorCategory::Connection, "08S01", 0, "the connection is lost");

// The row of a good: the columns that are named have these values (of nine decimals, or plain numbers of defaults), the
// others are null.
RowSet matrixRow(const std::map<std::string, std::optional<std::int64_t>>& values) {
    std::vector<ColumnInfo> columns{{.name = "GoodCode", .type = FieldType::Integer}};
    for (const CostDiscountAmount& amount : costDiscountAmounts())
        columns.push_back({.name = amount.name, .type = FieldType::Decimal, .precision = 23, .scale = 9});
    for (const CostDiscountDefault& level : costDiscountDefaults())
        columns.push_back({.name = level.name, .type = FieldType::Integer});
    RowSet rows(columns);
    rows.column(0).appendInt(57);
    for (std::size_t i = 1; i < columns.size(); ++i) {
        const auto found = values.find(columns[i].name);
        if (found == values.end() || !found->second) {
            rows.column(i).appendNull();
        } else if (columns[i].type == FieldType::Decimal) {
            rows.column(i).appendDecimal(Int128{*found->second});
        } else {
            rows.column(i).appendInt(*found->second);
        }
    }
    rows.finishRow();
    return rows;
}

RowSet noRow() {
    return RowSet({{.name = "GoodCode", .type = FieldType::Integer}});
}

class CostMatrix : public ::testing::Test {
protected:
    ScriptedSession script;
    FakeHost host{script};
    AttachedHost attached{host};
    TCostLevel_DM store;
};

// One good

TEST_F(CostMatrix, readsEveryFieldOfTheRow) {
    std::map<std::string, std::optional<std::int64_t>> values;
    const auto fill = [&](const char* column, int levels, std::int64_t first) {
        for (int level = 1; level <= levels; ++level)
            values[column + std::to_string(level)] = (first + level) * 1'000'000'000;
    };
    fill("Discount_Sell_", 4, 100);
    fill("Discount_Buy_", 4, 200);
    fill("CostLevel_Sell_", 10, 300);
    fill("CostLevel_Buy_", 10, 400);
    values["Default_Discount_Sell_Number"] = 1;
    values["Default_Discount_Buy_Number"] = 2;
    values["Default_CostLevel_Sell_Number"] = 3;
    values["Default_CostLevel_Buy_Number"] = 10;
    script.expect("select * from GoodCostDiscount Where GoodCode = 57 ", matrixRow(values));
    const TCostDiscount row = store.GetGoodCostDiscount(57);
    EXPECT_EQ(row.Discount_Sell_1, 101);
    EXPECT_EQ(row.Discount_Sell_2, 102);
    EXPECT_EQ(row.Discount_Sell_3, 103);
    EXPECT_EQ(row.Discount_Sell_4, 104);
    EXPECT_EQ(row.Discount_Buy_1, 201);
    EXPECT_EQ(row.Discount_Buy_2, 202);
    EXPECT_EQ(row.Discount_Buy_3, 203);
    EXPECT_EQ(row.Discount_Buy_4, 204);
    EXPECT_EQ(row.CostLevel_Sell_1, 301);
    EXPECT_EQ(row.CostLevel_Sell_2, 302);
    EXPECT_EQ(row.CostLevel_Sell_3, 303);
    EXPECT_EQ(row.CostLevel_Sell_4, 304);
    EXPECT_EQ(row.CostLevel_Sell_5, 305);
    EXPECT_EQ(row.CostLevel_Sell_6, 306);
    EXPECT_EQ(row.CostLevel_Sell_7, 307);
    EXPECT_EQ(row.CostLevel_Sell_8, 308);
    EXPECT_EQ(row.CostLevel_Sell_9, 309);
    EXPECT_EQ(row.CostLevel_Sell_10, 310);
    EXPECT_EQ(row.CostLevel_Buy_1, 401);
    EXPECT_EQ(row.CostLevel_Buy_2, 402);
    EXPECT_EQ(row.CostLevel_Buy_3, 403);
    EXPECT_EQ(row.CostLevel_Buy_4, 404);
    EXPECT_EQ(row.CostLevel_Buy_5, 405);
    EXPECT_EQ(row.CostLevel_Buy_6, 406);
    EXPECT_EQ(row.CostLevel_Buy_7, 407);
    EXPECT_EQ(row.CostLevel_Buy_8, 408);
    EXPECT_EQ(row.CostLevel_Buy_9, 409);
    EXPECT_EQ(row.CostLevel_Buy_10, 410);
    EXPECT_EQ(row.Default_Discount_Sell_Number, 1);
    EXPECT_EQ(row.Default_Discount_Buy_Number, 2);
    EXPECT_EQ(row.Default_CostLevel_Sell_Number, 3);
    EXPECT_EQ(row.Default_CostLevel_Buy_Number, 10);
    EXPECT_FALSE(store.Temp_Q7777UR.Active());
}

TEST_F(CostMatrix, goodWithoutARowIsAllZeros) {
    script.expect("select * from GoodCostDiscount Where GoodCode = 39 ", noRow());
    const TCostDiscount row = store.GetGoodCostDiscount(39);
    for (const CostDiscountAmount& amount : costDiscountAmounts())
        EXPECT_EQ(row.*amount.member, 0) << amount.name;
    for (const CostDiscountDefault& level : costDiscountDefaults())
        EXPECT_EQ(row.*level.member, 0) << level.name;
}

TEST_F(CostMatrix, nullCellsReadAsZero) {
    script.expect("select * from GoodCostDiscount Where GoodCode = 57 ",
                  matrixRow({{"CostLevel_Sell_2", 12'500'100'000'000}, {"CostLevel_Sell_3", -1}}));
    const TCostDiscount row = store.GetGoodCostDiscount(57);
    EXPECT_EQ(row.CostLevel_Sell_1, 0);
    EXPECT_EQ(row.CostLevel_Sell_2, 12500.1L);
    EXPECT_EQ(row.CostLevel_Sell_3, -0.000000001L);
    EXPECT_EQ(row.Discount_Buy_4, 0);
    EXPECT_EQ(row.Default_CostLevel_Sell_Number, 0);
}

TEST_F(CostMatrix, failedReadPasses) {
    script.expectError("select * from GoodCostDiscount Where GoodCode = -1 ", lostConnection);
    EXPECT_THROW((void)store.GetGoodCostDiscount(-1), DatabaseError);
    EXPECT_FALSE(store.Temp_Q7777UR.Active());
}

// Titles

class CostTitles : public CostMatrix {
protected:
    CostTitles() { GoodCostDiscountTitles = {}; }
    ~CostTitles() override { GoodCostDiscountTitles = {}; }
};

TEST_F(CostTitles, withoutLevelsAreGeneral) {
    script.expect("Select * From CostLevel", levelRows({}));
    store.LoadCostDiscountTitles();
    EXPECT_THAT(GoodCostDiscountTitles.CostLevel, Each("سطح قيمت ساير"));
    EXPECT_EQ(GoodCostDiscountTitles.CostLevel.size(), 10U);
    EXPECT_THAT(GoodCostDiscountTitles.Discount_Sell,
                ElementsAre("تخفيف نوع 1", "تخفيف نوع 2", "تخفيف نوع 3", "تخفيف نوع 4"));
    EXPECT_THAT(GoodCostDiscountTitles.Discount_Buy,
                ElementsAre("تخفيف نوع 1", "تخفيف نوع 2", "تخفيف نوع 3", "تخفيف نوع 4"));
}

TEST_F(CostTitles, areTheLevelsNames) {
    // The same codes with other kinds, a level beyond the last column, and level 0.
    script.expect("Select * From CostLevel", levelRows({{0, "همه", "", 1},
                                                        {1, "نقدی", "", 3},
                                                        {1, "تک‌فروشی", "", 1},
                                                        {10, "صادرات", "", 1},
                                                        {11, "یازدهم", "", 1},
                                                        {2, "قدیمی", "", 4},
                                                        {4, "فصلی", "", 3}}));
    store.LoadCostDiscountTitles();
    const TCostDiscountTitle& titles = GoodCostDiscountTitles;
    EXPECT_EQ(titles.CostLevel[0], "تک‌فروشی");
    EXPECT_EQ(titles.CostLevel[1], "سطح قيمت ساير");
    EXPECT_EQ(titles.CostLevel[9], "صادرات");
    EXPECT_THAT(titles.Discount_Sell, ElementsAre("نقدی", "تخفيف نوع 2", "تخفيف نوع 3", "فصلی"));
    EXPECT_THAT(titles.Discount_Buy, ElementsAre("نقدی", "تخفيف نوع 2", "تخفيف نوع 3", "فصلی"));
}

TEST_F(CostTitles, stayWhenTheyCannotBeRead) {
    GoodCostDiscountTitles.CostLevel[2] = "همکار";
    script.expectError("Select * From CostLevel", lostConnection);
    EXPECT_THROW(store.LoadCostDiscountTitles(), DatabaseError);
    EXPECT_EQ(GoodCostDiscountTitles.CostLevel[2], "همکار");
}

// Offers

struct Offer {
    const char* name;
    int kind;
    int good;
    int person;
    int currency;
    int direction;
    const char* statement;
};
void PrintTo(const Offer& offer, std::ostream* out) {
    *out << offer.name;
}

class CostOffers : public CostMatrix, public ::testing::WithParamInterface<Offer> {};

TEST_P(CostOffers, areAskedFor) {
    const Offer& offer = GetParam();
    script.expect(offer.statement, numberRow(1));
    store.OfferCost_GetAll(offer.kind, offer.good, offer.person, offer.currency, offer.direction);
    EXPECT_EQ(store.OfferCost_QUR.RecordCount(), 1);
    // Anew, closing what was open; a failure leaves it closed.
    script.expectError(offer.statement, lostConnection);
    EXPECT_THROW(store.OfferCost_GetAll(offer.kind, offer.good, offer.person, offer.currency, offer.direction),
                 DatabaseError);
    EXPECT_FALSE(store.OfferCost_QUR.Active());
}

INSTANTIATE_TEST_SUITE_P(
    Store, CostOffers,
    ::testing::Values(Offer{"purchase", 0, 57, 12, 3, 1, kPurchasePricesOf57},
                      Offer{"sale", 1, 57, 12, 3, 2, kSalePricesOf57},
                      Offer{"saleToAPerson", 2, 57, 12, 3, 2, "{call OfferSellCost(57,12)}"},
                      Offer{"purchaseFromAPerson", 3, 57, 12, 3, 1, "{call OfferBuyCost(57,12)}"},
                      Offer{"saleInACurrency", 4, 57, 12, 3, 1, "{call OfferSellCostCurr(57,12,3)}"},
                      Offer{"purchaseInACurrency", 4, 57, 12, 3, 0, "{call OfferBuyCostCurr(57,12,3)}"},
                      Offer{"anotherDirection", 4, 57, 0, -1, 2, "{call OfferBuyCostCurr(57,0,-1)}"}),
    [](const auto& row) { return row.param.name; });

TEST_F(CostMatrix, thereAreNoOtherOffers) {
    for (const int kind : {-1, 5})
        EXPECT_THROW(store.OfferCost_GetAll(kind, 57, 0, 0, 1), UsageError) << kind;
}

// Price lists

// A price list as a screen asks for it.
RowSet priceList(const std::vector<std::int64_t>& ids) {
    RowSet rows({{.name = "ID", .type = FieldType::Integer, .identity = true},
                 {.name = "Type", .type = FieldType::TinyInt},
                 {.name = "Status", .type = FieldType::Boolean},
                 {.name = "TypeCode", .type = FieldType::Integer},
                 {.name = "CostLevelCode", .type = FieldType::Integer},
                 {.name = "Cost", .type = FieldType::Decimal, .precision = 23, .scale = 9},
                 {.name = "Default", .type = FieldType::Boolean},
                 {.name = "title", .type = FieldType::Text},
                 {.name = "deftitle", .type = FieldType::Text}});
    for (const std::int64_t id : ids) {
        rows.column(0).appendInt(id);
        rows.column(1).appendInt(3);
        rows.column(2).appendInt(0);
        rows.column(3).appendInt(57);
        rows.column(4).appendInt(1);
        rows.column(5).appendDecimal(Int128{id} * 1'000'000'000);
        rows.column(6).appendInt(0);
        rows.column(7).appendText("همکار");
        rows.column(8).appendText("");
        rows.finishRow();
    }
    return rows;
}

TEST_F(CostMatrix, numbersThePriceList) {
    script.expect("select * from tmpcostlist", priceList({41, 17, 99}));
    EXPECT_EQ(store.SetCost_DS.DataSet(), &store.SetCost_QUR);
    store.SetCost_QUR.SQL = "select * from tmpcostlist";
    store.SetCost_QUR.Open();
    std::vector<int> numbers;
    for (; !store.SetCost_QUR.Eof(); store.SetCost_QUR.Next())
        numbers.push_back(store.SetCost_QUR.FieldByName("Row").AsInteger());
    EXPECT_THAT(numbers, ElementsAre(1, 2, 3));
    EXPECT_TRUE(store.SetCost_QUR.FieldByName("Row").Calculated());
}

TEST_F(CostMatrix, declaresTheFieldsOfThePriceList) {
    std::vector<std::string> declared;
    for (const FieldDeclaration& field : store.SetCost_QUR.declaredFields()) {
        std::string line = field.name + ' ' + std::to_string(static_cast<int>(field.type));
        if (field.size > 0) line += " of " + std::to_string(field.size);
        if (field.precision > 0) line += " " + std::to_string(field.precision) + "," + std::to_string(field.scale);
        declared.push_back(line + (field.readOnly ? " read only" : "") + (field.currency ? " currency" : ""));
    }
    const auto kind = [](FieldType type) { return ' ' + std::to_string(static_cast<int>(type)); };
    EXPECT_THAT(declared, ElementsAre("ID" + kind(FieldType::Integer) + " read only",
                                      "Type" + kind(FieldType::SmallInt), "Status" + kind(FieldType::Boolean),
                                      "TypeCode" + kind(FieldType::Integer), "CostLevelCode" + kind(FieldType::Integer),
                                      "Cost" + kind(FieldType::Decimal) + " 23,9 currency",
                                      "Default" + kind(FieldType::Boolean), "title" + kind(FieldType::Text) + " of 50",
                                      "deftitle" + kind(FieldType::Text) + " of 7 read only"));
    script.expect("select * from tmpcostlist", priceList({41}));
    TADOQuery& list = store.SetCost_QUR;
    list.SQL = "select * from tmpcostlist";
    list.Open();
    EXPECT_TRUE(list.FieldByName("Cost").Currency());
    EXPECT_FALSE(list.FieldByName("ID").Currency());
    EXPECT_TRUE(list.FieldByName("deftitle").ReadOnly());
    EXPECT_FALSE(list.FieldByName("title").ReadOnly());
    list.Edit();
    EXPECT_THROW(list.FieldByName("ID") = 5, UsageError);
    EXPECT_THROW(list.FieldByName("deftitle") = "پیش فرض", UsageError);
    EXPECT_THROW(list.FieldByName("title") = std::string(51, 'x'), DatabaseError);
    list.FieldByName("title") = std::string(50, 'x');
    list.FieldByName("Cost") = 12500.5;
    list.Cancel();
}

TEST_F(CostMatrix, refusesAPriceListOfOtherFields) {
    RowSet rows({{.name = "ID", .type = FieldType::Integer}, {.name = "Cost", .type = FieldType::Text}});
    script.expect("select * from tmpcostlist", std::move(rows));
    store.SetCost_QUR.SQL = "select * from tmpcostlist";
    EXPECT_THROW(store.SetCost_QUR.Open(), UsageError);
    EXPECT_FALSE(store.SetCost_QUR.Active());
}

// The report

TEST_F(CostMatrix, opensTheReport) {
    script.expect(kPriceReport, numberRow(1));
    EXPECT_EQ(store.CostReport_DS.DataSet(), &store.CostReport_QUR);
    store.CostReport_Get();
    EXPECT_TRUE(store.CostReport_QUR.Active());

    script.expectError(kPriceReport, lostConnection);
    EXPECT_THROW(store.CostReport_Get(), DatabaseError);
    EXPECT_FALSE(store.CostReport_QUR.Active());
}

TEST_F(CostMatrix, addsAColumnToTheReport) {
    script.expectChange("Alter Table CostReport Add F11 Decimal(23, 9) ", {}, -1);
    store.AddCostReportColumn(Value{std::int64_t{11}});
    script.expectChange("Alter Table CostReport Add F12 Decimal(23, 9) ", {}, -1);
    store.AddCostReportColumn(Value{*Decimal::parse("12")});
    script.expectError("Alter Table CostReport Add F3 Decimal(23, 9) ",
                       DatabaseError(ErrorCategory::Other, "42S21", 2705, "the column is there"));
    EXPECT_THROW(store.AddCostReportColumn(Value{std::string("3")}), DatabaseError);
}

}  // namespace
}  // namespace basalt
