// Particulars of goods, the two checks for negative stock and the pick lists: every statement and call in full.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "ado/error.h"
#include "goods/goodsinfo_unt.h"
#include "package/services.h"
#include "tests/goods/particulars.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"
#include "tests/support/tracing_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const DatabaseError lostConnection(ErrorCategory::Connection, "08S01", 0, "the connection is lost");

class GoodsInfo : public ::testing::Test {
protected:
    ScriptedSession script;
    TracingSession session{script, host.calls};
    FakeHost host{session};
    AttachedHost attached{host};
};

// Particulars

TEST_F(GoodsInfo, readsEveryParticularOfAGood) {
    script.setProcedure(particularsProcedure());
    script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("57"), false}},
                      withRows(particularRows({{number(57),
                                                text("برنج"),
                                                text("خوراکی"),
                                                text("م-۷"),
                                                text("برنج هاشمی"),
                                                *Decimal::parse("12.5"),
                                                number(1),
                                                number(2),
                                                text("کیلوگرم"),
                                                text("کیسه"),
                                                *Decimal::parse("3.25"),
                                                text("A-12"),
                                                0.1,
                                                *Decimal::parse("850000.1"),
                                                2.5,
                                                true,
                                                false,
                                                true,
                                                false,
                                                9.0,
                                                1.0,
                                                *Decimal::parse("990000")}})));
    TGoodInfoMapper info;
    EXPECT_TRUE(FillGoodInfo("57", info));
    EXPECT_EQ(host.DM().SharedProc.ProcedureName(), "GoodParticularInfo_SP");
    EXPECT_EQ(info._Code, 57);
    EXPECT_EQ(info._Name, "برنج");
    EXPECT_EQ(info._Kala_Type, "خوراکی");
    EXPECT_EQ(info._Kala_Index, "م-۷");
    EXPECT_EQ(info._Kala_Name, "برنج هاشمی");
    EXPECT_EQ(info._Mogodi, 12.5L);
    EXPECT_EQ(info._Unit, 1);
    EXPECT_EQ(info._Unit2, 2);
    EXPECT_EQ(info._UnitName, "کیلوگرم");
    EXPECT_EQ(info._UnitName2, "کیسه");
    EXPECT_EQ(info._MinAva, "3.25");
    EXPECT_EQ(info._Pos, "A-12");
    EXPECT_EQ(info._Meghdar_Formool, static_cast<Extended>(0.1));
    EXPECT_EQ(info._Gheymat_Miangin, 850000.1L);  // to the last digit of an extended real
    EXPECT_EQ(info._OffPercentSell, 2.5L);
    EXPECT_TRUE(info._TaxExempt);
    EXPECT_FALSE(info._ChargeExempt);
    EXPECT_TRUE(info._Tax_In_BuyCosts);
    EXPECT_FALSE(info._Tax_In_SellCosts);
    EXPECT_EQ(info._TaxPercent, 9.0L);
    EXPECT_EQ(info._ChargePercent, 1.0L);
    EXPECT_EQ(info._ConsumerPrice, 990000.0L);
}

TEST_F(GoodsInfo, nullsReadAsNothing) {
    script.setProcedure(particularsProcedure());
    script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("57"), false}},
                      withRows(particularRows({std::vector<Value>(22)})));
    TGoodInfoMapper info{._Code = 9, ._Name = "قبلی", ._Mogodi = 5, ._TaxExempt = true, ._ConsumerPrice = 7};
    EXPECT_TRUE(FillGoodInfo("57", info));
    EXPECT_EQ(info._Code, 0);
    EXPECT_EQ(info._Name, "");
    EXPECT_EQ(info._Mogodi, 0.0L);
    EXPECT_EQ(info._Meghdar_Formool, 0.0L);
    EXPECT_FALSE(info._TaxExempt);
    EXPECT_EQ(info._ConsumerPrice, 0.0L);
}

TEST_F(GoodsInfo, aGoodThatIsNotThereLeavesTheRecord) {
    script.setProcedure(particularsProcedure());
    script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("99"), false}}, withRows(particularRows({})));
    TGoodInfoMapper info{._Code = 9, ._Name = "قبلی"};
    EXPECT_FALSE(FillGoodInfo("99", info));
    EXPECT_EQ(info._Code, 9);
    EXPECT_EQ(info._Name, "قبلی");
}

TEST_F(GoodsInfo, aFailureLeavesTheRecord) {
    TGoodInfoMapper info{._Code = 9};
    EXPECT_THROW((void)FillGoodInfo("57", info), DatabaseError);  // there is no such procedure
    EXPECT_EQ(info._Code, 9);
}

TEST_F(GoodsInfo, theSharedComponentsAreLeftClosed) {
    script.setProcedure(particularsProcedure());
    script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("57"), false}},
                      withRows(particularRows({std::vector<Value>(22)})));
    TGoodInfoMapper info;
    EXPECT_TRUE(FillGoodInfo("57", info));
    EXPECT_FALSE(host.DM().SharedProc.Active());
    script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("57"), false}}, withRows(codeRows({57})));
    EXPECT_THROW((void)FillGoodInfo("57", info), UsageError);  // a procedure that lacks a column
    EXPECT_FALSE(host.DM().SharedProc.Active());

    script.expect("SELECT Code, Name FROM CostLevel WHERE CostType = 1 AND Code > 0 ORDER BY Code",
                  rows({{"Code", FieldType::Integer}, {"Name", FieldType::Text, 50}}, {{number(3), text("همکار")}}));
    TStrings items;
    Fill_SellCostLevel(items);
    EXPECT_FALSE(host.DM().SharedQuery.Active());
}

// The check by stored procedure

class StockByProcedure : public GoodsInfo {
protected:
    StockByProcedure() {
        const auto parameter = [](const char* name, FieldType type, ParameterDirection direction) {
            return ParameterInfo{.name = name,
                                 .direction = direction,
                                 .type = {.name = {}, .type = type, .size = type == FieldType::Text ? 4000 : 0},
                                 .hasDefault = false};
        };
        script.setProcedure(
            {.name = "CheckNegativeInventory_SP",
             .parameters = {parameter("@NegativeType", FieldType::TinyInt, ParameterDirection::Input),
                            parameter("@SelectQuery", FieldType::Text, ParameterDirection::Input),
                            parameter("@Date", FieldType::Text, ParameterDirection::Input),
                            parameter("@globalID", FieldType::Integer, ParameterDirection::Input),
                            parameter("@StoreTransition", FieldType::Boolean, ParameterDirection::Input),
                            parameter("@NegProductNames", FieldType::Text, ParameterDirection::InputOutput),
                            parameter("@NegProductCodes", FieldType::Text, ParameterDirection::InputOutput)}});
        strMinusGoodCodes = "قبلی";
    }

    // The procedure is called under the policy and returns this.
    void expectCheck(int policy, std::int64_t returnValue, const Value& names, const Value& codes) {
        host.settings.NegativeType = static_cast<std::uint8_t>(policy);
        CallResult result;
        result.returnValue = returnValue;
        result.outputs = {{"@NegProductNames", names, true}, {"@NegProductCodes", codes, true}};
        script.expectCall("CheckNegativeInventory_SP", arguments(policy), std::move(result));
    }
    static std::vector<Argument> arguments(int policy) {
        return {{"@NegativeType", number(policy), false},
                {"@SelectQuery", text("SELECT Code, Anbar, Mogodi FROM #Lines"), false},
                {"@Date", text("1405/08/30"), false},
                {"@globalID", number(1204), false},
                {"@StoreTransition", true, false},
                {"@NegProductNames", Null{}, true},
                {"@NegProductCodes", Null{}, true}};
    }
    static bool check() { return Check_TockMinus("SELECT Code, Anbar, Mogodi FROM #Lines", "1405/08/30", 1204, true); }
};

TEST_F(StockByProcedure, allowedStockIsNotLookedAt) {
    host.settings.NegativeType = 2;
    EXPECT_TRUE(check());
    EXPECT_THAT(host.calls, IsEmpty());
    EXPECT_EQ(strMinusGoodCodes, "قبلی");
}

TEST_F(StockByProcedure, enoughStockPasses) {
    for (const int policy : {0, 1}) {
        strMinusGoodCodes = "قبلی";
        expectCheck(policy, 0, Null{}, Null{});
        EXPECT_TRUE(check()) << policy;
        EXPECT_EQ(strMinusGoodCodes, "");
    }
}

TEST_F(StockByProcedure, forbiddenStockRefusesWithTheNames) {
    expectCheck(0, 1, text("برنج، شکر"), text("57,58"));
    host.expectMessage("ShowSmartMessage(error 30055, 'برنج، شکر')");
    EXPECT_FALSE(check());
    EXPECT_EQ(strMinusGoodCodes, "57,58");
}

TEST_F(StockByProcedure, warnedUserMayGoOn) {
    expectCheck(1, 1, text("برنج"), text("57"));
    host.expectMessage("ShowSmartMessage(confirmation 20091, 'برنج')", mrYes);
    EXPECT_TRUE(check());
    EXPECT_EQ(strMinusGoodCodes, "");
}

TEST_F(StockByProcedure, warnedUserMayStop) {
    expectCheck(1, 1, text("برنج"), text("57"));
    host.expectMessage("ShowSmartMessage(confirmation 20091, 'برنج')", mrNo);
    EXPECT_FALSE(check());
    EXPECT_EQ(strMinusGoodCodes, "57");
}

TEST_F(StockByProcedure, onlyYesGoesOn) {
    for (const int answer : {mrCancel, mrOk}) {
        expectCheck(1, 1, text("برنج"), text("57"));
        host.expectMessage("ShowSmartMessage(confirmation 20091, 'برنج')", answer);
        EXPECT_FALSE(check()) << answer;
        EXPECT_EQ(strMinusGoodCodes, "57");
    }
}

TEST_F(StockByProcedure, asksForTheNamesAndCodesWhateverTheServerTellsOfThem) {
    ProcedureInfo procedure = session.procedure("CheckNegativeInventory_SP");
    for (ParameterInfo& parameter : procedure.parameters)
        parameter.direction = ParameterDirection::Input;
    script.setProcedure(procedure);
    expectCheck(0, 1, text("برنج"), text("57"));
    host.expectMessage("ShowSmartMessage(error 30055, 'برنج')");
    EXPECT_FALSE(check());
}

TEST_F(StockByProcedure, aFailureLeavesTheCodesOfTheCheckBefore) {
    host.settings.NegativeType = 0;
    script.expectCallError("CheckNegativeInventory_SP", arguments(0), lostConnection);
    EXPECT_THROW((void)check(), DatabaseError);
    EXPECT_EQ(strMinusGoodCodes, "قبلی");
    expectCheck(0, 1, text("برنج"), text("57"));
    host.expectMessage("ShowSmartMessage(error 30055, 'برنج')");
    EXPECT_FALSE(check());
    EXPECT_EQ(strMinusGoodCodes, "57");
}

TEST_F(StockByProcedure, namesThatAreMissingAreNotShown) {
    expectCheck(0, 1, Null{}, Null{});
    host.expectMessage("ShowSmartMessage(error 30055)");
    EXPECT_FALSE(check());
    EXPECT_EQ(strMinusGoodCodes, "");
}

TEST_F(StockByProcedure, onlyTheLowByteOfTheReturnValueCounts) {
    expectCheck(0, 256, text("برنج"), text("57"));
    EXPECT_TRUE(check());
    expectCheck(0, -1, text("برنج"), text("57"));
    host.expectMessage("ShowSmartMessage(error 30055, 'برنج')");
    EXPECT_FALSE(check());
}

TEST_F(StockByProcedure, aPolicyOfAnotherHostLooksAndPasses) {
    expectCheck(3, 1, text("برنج"), text("57"));
    EXPECT_TRUE(check());
    EXPECT_EQ(strMinusGoodCodes, "");
}

TEST_F(StockByProcedure, leavesTheSharedProcedureAlone) {
    host.DM().SharedProc.ProcedureName("Another");
    expectCheck(0, 0, Null{}, Null{});
    EXPECT_TRUE(check());
    EXPECT_EQ(host.DM().SharedProc.ProcedureName(), "Another");
}

// The check by the ledger's rows

// The formatter would cut the statements to pieces.
// clang-format off
const char* const kStageOne = "select * from (SELECT 5 AS Code, 1 AS Anbar, -3 AS Mogodi ) as S join Kardex as k on k.kala = S.Code and (ISNULL(k.RemainInAnbar, 0) + S.mogodi) < 0  and (      (k.[Date] >= '1405/01/01' and k.[Date] < '1405/02/01')       or       (k.[Date] = '1405/02/01' and k.Global_ID < 12)      ) and S.Anbar = K.Anbar ";
const char* const kStageTwo = "select sq.Code, sq.Mogodi + ISNULL(K.Mogodi, 0) from  (SELECT 5 AS Code, 1 AS Anbar, -3 AS Mogodi) sq  LEFT JOIN (Select kala as code, Anbar, SUM(Tedad) as Mogodi from Kardex WHERE Date <= '1405/01/01' group by kala, Anbar) K ON sq.Code = K.Code AND sq.Anbar = K.Anbar WHERE (sq.mogodi + ISNULL(K.Mogodi, 0)) < 0";
const char* const kQuotedStageOne = "select * from (Q ) as S join Kardex as k on k.kala = S.Code and (ISNULL(k.RemainInAnbar, 0) + S.mogodi) < 0  and (      (k.[Date] >= '''' and k.[Date] < 'a''b')       or       (k.[Date] = 'a''b' and k.Global_ID < -1)      ) and S.Anbar = K.Anbar ";
const char* const kQuotedStageTwo = "select sq.Code, sq.Mogodi + ISNULL(K.Mogodi, 0) from  (Q) sq  LEFT JOIN (Select kala as code, Anbar, SUM(Tedad) as Mogodi from Kardex WHERE Date <= '''' group by kala, Anbar) K ON sq.Code = K.Code AND sq.Anbar = K.Anbar WHERE (sq.mogodi + ISNULL(K.Mogodi, 0)) < 0";
// clang-format on

class StockByLedger : public GoodsInfo {
protected:
    StockByLedger() {
        strMinusGoodCodes = "قبلی";
        host.settings.NegativeType = 0;
    }
    ~StockByLedger() override { EXPECT_EQ(strMinusGoodCodes, "قبلی"); }

    static bool check() {
        return Check_TockMinus("SELECT 5 AS Code, 1 AS Anbar, -3 AS Mogodi", "1405/01/01", "1405/02/01", 12);
    }
};

TEST_F(StockByLedger, allowedStockIsNotLookedAt) {
    host.settings.NegativeType = 2;
    EXPECT_TRUE(check());
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(StockByLedger, enoughStockPassesBothStages) {
    script.expect(kStageOne, codeRows({}));
    script.expect(kStageTwo, codeRows({}));
    EXPECT_TRUE(check());
    EXPECT_THAT(host.calls, ElementsAre(kStageOne, kStageTwo));
    EXPECT_FALSE(host.DM().SharedQuery.Active());
}

TEST_F(StockByLedger, severalMovementsRefuseLikeOne) {
    script.expect(kStageOne, codeRows({5, 6}));
    host.expectMessage("ShowSmartMessage(error 30055)");
    EXPECT_FALSE(check());
    script.expect(kStageOne, codeRows({}));
    script.expect(kStageTwo, codeRows({5, 6}));
    host.expectMessage("ShowSmartMessage(error 30055)");
    EXPECT_FALSE(check());
}

TEST_F(StockByLedger, aLaterMovementRefusesWithoutTheSecondStage) {
    script.expect(kStageOne, codeRows({5}));
    host.expectMessage("ShowSmartMessage(error 30055)");
    EXPECT_FALSE(check());
}

TEST_F(StockByLedger, anUncoveredLineRefuses) {
    script.expect(kStageOne, codeRows({}));
    script.expect(kStageTwo, codeRows({5}));
    host.expectMessage("ShowSmartMessage(error 30055)");
    EXPECT_FALSE(check());
}

TEST_F(StockByLedger, warnedUserDecides) {
    host.settings.NegativeType = 1;
    script.expect(kStageOne, codeRows({5}));
    host.expectMessage("ShowSmartMessage(confirmation 20091)", mrYes);
    EXPECT_TRUE(check());
    script.expect(kStageOne, codeRows({5}));
    host.expectMessage("ShowSmartMessage(confirmation 20091)", mrNo);
    EXPECT_FALSE(check());
    script.expect(kStageOne, codeRows({5}));
    host.expectMessage("ShowSmartMessage(confirmation 20091)", mrCancel);
    EXPECT_FALSE(check());
}

TEST_F(StockByLedger, datesAreQuoted) {
    script.expect(kQuotedStageOne, codeRows({}));
    script.expect(kQuotedStageTwo, codeRows({}));
    EXPECT_TRUE(Check_TockMinus("Q", "'", "a'b", -1));
}

TEST_F(StockByLedger, failuresPass) {
    script.expectError(kStageOne, lostConnection);
    EXPECT_THROW((void)check(), DatabaseError);
    script.expect(kStageOne, codeRows({}));
    script.expectError(kStageTwo, lostConnection);
    EXPECT_THROW((void)check(), DatabaseError);
}

// Pick lists

TEST_F(GoodsInfo, listsTheFinancialTypes) {
    TStrings items{{"قبلی", 7}};
    Fill_FinanceGoodTypes(items);
    // clang-format off
    EXPECT_THAT(items, ElementsAre(
        TStringItem{"انتخاب کنید ...", 0},
        TStringItem{"دارو", 1},
        TStringItem{"دخانیات", 2},
        TStringItem{"موبایل", 3},
        TStringItem{"لوازم خانگی  برقی", 4},
        TStringItem{"قطعات مصرفی و یدکی وسایل نقلیه", 5},
        TStringItem{"فرآورده ها و مشتقات نفتی و گازی و پتروشیمیای", 6},
        TStringItem{"طلا اعم از شمش، مسکوکات و مصنوعات زینتی", 7},
        TStringItem{"منسوجات و پوشاک", 8},
        TStringItem{"اسباب بازی", 9},
        TStringItem{"دام زنده، گوشت سفید و قرمز", 10},
        TStringItem{"محصولات اساسی کشاورزی", 11},
        TStringItem{"سایر کالاها", 12}));
    // clang-format on
    EXPECT_THAT(host.calls, IsEmpty());
}

const char* const kLevels = "SELECT Code, Name FROM CostLevel WHERE CostType = 1 AND Code > 0 ORDER BY Code";

RowSet levels(const std::vector<std::vector<Value>>& values) {
    return rows({{"Code", FieldType::Integer}, {"Name", FieldType::Text, 50}}, values);
}

TEST_F(GoodsInfo, listsTheSellingLevelsAfterTheDefault) {
    script.expect(kLevels, levels({{number(1), text("تک‌فروشی")}, {number(3), text("همکار")}}));
    TStrings items{{"قبلی", 7}};
    Fill_SellCostLevel(items);
    EXPECT_THAT(items,
                ElementsAre(TStringItem{"پيش فرض", 0}, TStringItem{"تک‌فروشی", 1}, TStringItem{"همکار", 3}));
}

TEST_F(GoodsInfo, withoutSellingLevelsTheDefaultRemains) {
    script.expect(kLevels, levels({}));
    TStrings items;
    Fill_SellCostLevel(items);
    EXPECT_THAT(items, ElementsAre(TStringItem{"پيش فرض", 0}));
}

TEST_F(GoodsInfo, splittingABarcodeAsksNothing) {
    SplitBarcode("28-12345", u'-');
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST(GoodsInfoUnit, forgetsWithItsHost) {
    ScriptedSession script;
    FakeHost host(script);
    {
        const AttachedHost attached(host);
        GoodInfoMapper._Name = "برنج";
        strMinusGoodCodes = "57";
    }
    EXPECT_EQ(GoodInfoMapper._Name, "");
    EXPECT_EQ(strMinusGoodCodes, "");
}

}  // namespace
}  // namespace basalt
