// What the registry lists of the price and discount levels, called by name as the command line calls it.
#include "costlevel/registration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ado/error.h"
#include "package/registry.h"
#include "package/services.h"
#include "tests/costlevel/level_rows.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"
#include "tests/support/signature.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;

class CostLevelRegistration : public ::testing::Test {
protected:
    CostLevelRegistration() { registerCostLevel(registry); }

    const FunctionEntry& function(const std::string& name, std::size_t overload = 0) {
        return *registry.find(name).at(overload);
    }

    Registry registry;
    ScriptedSession script;
    FakeHost host{script};
    AttachedHost attached{host};
    FunctionState state;
};

TEST_F(CostLevelRegistration, listsEveryOperationOfTheStore) {
    std::vector<std::string> signatures;
    for (const FunctionEntry& entry : registry.functions()) {
        EXPECT_EQ(entry.subsystem, "costlevel") << entry.name;
        EXPECT_FALSE(entry.summary.empty()) << entry.name;
        signatures.push_back(signature(entry));
    }
    EXPECT_THAT(
        signatures,
        ElementsAre(
            "CostLevel_GetAll(Filter text)", "CostLevel_GetByID(Code integer, CostType integer, out Mapper record)",
            "CostLevel_ExistName(Code integer, CostType integer, Name text) integer",
            "CostLevel_GetNewCode(Part integer, CostType integer) integer",
            "CostLevel_InsUpd(Mapper record, IsEdit flag)", "CostLevel_Delete(Code integer, CostType integer) flag",
            "CostLevel_Update(Kind integer, GoodCode integer, Level integer, Price amount)",
            "ClearCostList(TypeCode integer, ListType byte)", "ClearTempCostList(TypeCode integer, ListType byte)",
            "GetGoodCostDiscount(GoodCode integer) record", "LoadCostDiscountTitles(out GoodCostDiscountTitles record)",
            "OfferCost_GetAll(Kind integer, GoodCode integer, PerCode integer, "
            "CurrCode integer, Direction integer)",
            "CostReport_Get()", "AddCostReportColumn(V text)"));
}

TEST_F(CostLevelRegistration, readsALevelIntoItsRecord) {
    script.expect("SELECT * FROM CostLevel Where Code = 3 AND CostType = 1", levelRows({{3, "همکار", nullptr, 1}}));
    FunctionCall call(state, {{"Code", 3}, {"CostType", 1}});
    function("CostLevel_GetByID").run(call);
    ASSERT_EQ(call.outputs().size(), 1U);
    EXPECT_EQ(call.outputs()[0].first, "Mapper");
    EXPECT_EQ(call.outputs()[0].second.toJson(), R"({"Code":3,"Name":"همکار","Comment":"","CostType":1})");
}

TEST_F(CostLevelRegistration, storesLiveFromCallToCall) {
    script.expect("SELECT * FROM CostLevel Where Code = 3 AND CostType = 1", levelRows({}));
    FunctionCall open(state, {{"Code", 3}, {"CostType", 1}});
    function("CostLevel_GetByID").run(open);
    ASSERT_EQ(state.modules().size(), 1U);
    EXPECT_EQ(state.modules()[0]->name(), "TCostLevel_DM");
    EXPECT_TRUE(state.modules()[0]->queries()[1]->Active());

    FunctionCall edit(state,
                      {{"Mapper", Datum::record({{"Code", 3}, {"Name", "الف"}, {"CostType", 1}})}, {"IsEdit", true}});
    EXPECT_THROW(function("CostLevel_InsUpd").run(edit), UsageError);  // the opened query is empty
    EXPECT_EQ(state.modules().size(), 1U);
}

TEST_F(CostLevelRegistration, answersWhetherALevelWasDeleted) {
    host.expectMessage("DeleteDefault('سطح', 'حذف')");
    FunctionCall call(state, {{"Code", 1}, {"CostType", 1}});
    function("CostLevel_Delete").run(call);
    EXPECT_EQ(call.resultValue().toJson(), "false");
}

TEST_F(CostLevelRegistration, writesPricesExactly) {
    script.expectChange("update GoodCostDiscount Set CostLevel_Sell_3 = 12500.1 where GoodCode=57", {}, 1);
    FunctionCall call(state, {{"Kind", 1}, {"GoodCode", 57}, {"Level", 3}, {"Price", Datum::parseJson("12500.1")}});
    function("CostLevel_Update").run(call);
    EXPECT_TRUE(call.resultValue().isNull());
}

TEST_F(CostLevelRegistration, givesAGoodsPricesInTheRecordsOrder) {
    script.expect("select * from GoodCostDiscount Where GoodCode = 39 ", levelRows({}));
    FunctionCall call(state, {{"GoodCode", 39}});
    function("GetGoodCostDiscount").run(call);
    EXPECT_EQ(call.resultValue().toJson(),
              R"({"Discount_Sell_1":0,"Discount_Sell_2":0,"Discount_Sell_3":0,"Discount_Sell_4":0,)"
              R"("Discount_Buy_1":0,"Discount_Buy_2":0,"Discount_Buy_3":0,"Discount_Buy_4":0,)"
              R"("Default_Discount_Sell_Number":0,"Default_Discount_Buy_Number":0,)"
              R"("CostLevel_Sell_1":0,"CostLevel_Sell_2":0,"CostLevel_Sell_3":0,"CostLevel_Sell_4":0,)"
              R"("CostLevel_Sell_5":0,"CostLevel_Sell_6":0,"CostLevel_Sell_7":0,"CostLevel_Sell_8":0,)"
              R"("CostLevel_Sell_9":0,"CostLevel_Sell_10":0,)"
              R"("CostLevel_Buy_1":0,"CostLevel_Buy_2":0,"CostLevel_Buy_3":0,"CostLevel_Buy_4":0,)"
              R"("CostLevel_Buy_5":0,"CostLevel_Buy_6":0,"CostLevel_Buy_7":0,"CostLevel_Buy_8":0,)"
              R"("CostLevel_Buy_9":0,"CostLevel_Buy_10":0,)"
              R"("Default_CostLevel_Sell_Number":0,"Default_CostLevel_Buy_Number":0})");
}

TEST_F(CostLevelRegistration, givesTheTitlesOfEighteenLevels) {
    script.expect("Select * From CostLevel", levelRows({{10, "صادرات", nullptr, 1}}));
    FunctionCall call(state, {});
    function("LoadCostDiscountTitles").run(call);
    ASSERT_EQ(call.outputs().size(), 1U);
    const Datum& titles = call.outputs()[0].second;
    ASSERT_EQ(titles.asRecord().size(), 18U);
    EXPECT_EQ(titles["Discount_Sell_1"].asText(), "تخفيف نوع 1");
    EXPECT_EQ(titles["Discount_Buy_4"].asText(), "تخفيف نوع 4");
    EXPECT_EQ(titles["CostLevel_9"].asText(), "سطح قيمت ساير");
    EXPECT_EQ(titles["CostLevel_10"].asText(), "صادرات");
}

TEST_F(CostLevelRegistration, refusesAListTypeThatIsNoByte) {
    for (const char* name : {"ClearCostList", "ClearTempCostList"}) {
        for (const int type : {-1, 256}) {
            FunctionCall call(state, {{"TypeCode", 1}, {"ListType", type}});
            EXPECT_THROW(function(name).run(call), UsageError) << name << ' ' << type;
        }
    }
}

TEST_F(CostLevelRegistration, refusesARecordWithoutItsCodes) {
    for (const Datum& record : {Datum::record({{"Name", "الف"}, {"CostType", 1}}), Datum::record({{"Code", 3}}),
                                Datum("متن"), Datum::record({{"Code", std::int64_t{1} << 40}, {"CostType", 1}})}) {
        FunctionCall call(state, {{"Mapper", record}, {"IsEdit", false}});
        EXPECT_THROW(function("CostLevel_InsUpd").run(call), UsageError) << record.toJson();
    }
}

}  // namespace
}  // namespace basalt
