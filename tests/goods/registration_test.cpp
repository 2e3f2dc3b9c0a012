// What the registry lists of goods, called by name as the command line calls it.
#include "goods/registration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ado/error.h"
#include "goods/barcode_extractor_unt.h"
#include "goods/goodsinfo_unt.h"
#include "package/registry.h"
#include "package/services.h"
#include "tests/goods/layouts.h"
#include "tests/goods/particulars.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"
#include "tests/support/signature.h"

namespace basalt {
namespace {

namespace state = Barcode_extractor_unt;

using ::testing::ElementsAre;

class GoodsRegistration : public ::testing::Test {
protected:
    GoodsRegistration() { registerGoods(registry); }

    FunctionCall call(const std::string& name, std::map<std::string, Datum, std::less<>> arguments,
                      std::size_t overload = 0) {
        FunctionCall made(functions, std::move(arguments));
        registry.find(name).at(overload)->run(made);
        return made;
    }

    // A barcode whose total is the invoice's.
    void scanTotal() {
        script.expect(
            "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('2500000125005' , "
            "ConstantStart, ConstantCount) = ConstantCode  ",
            layoutRows({{.ConstantCode = "25", .BarCodeType = 2, .PriceStart = 3, .PriceCount = 10}}));
        const FunctionCall scan = call(
            "FillGoodInfFromBarcode",
            {{"UseType", 0}, {"Barcode", "2500000125005"}, {"PerCode", ""}, {"ItemCode", ""}, {"TotalPrice", 12500}});
        EXPECT_EQ(scan.outputs()[0].second, Datum(2));
    }

    Registry registry;
    ScriptedSession script;
    FakeHost host{script};
    AttachedHost attached{host};
    FunctionState functions;
};

TEST_F(GoodsRegistration, listsEveryFunction) {
    std::vector<std::string> signatures;
    for (const FunctionEntry& entry : registry.functions()) {
        EXPECT_EQ(entry.subsystem, "goods") << entry.name;
        EXPECT_FALSE(entry.summary.empty()) << entry.name;
        signatures.push_back(signature(entry));
    }
    EXPECT_THAT(
        signatures,
        ElementsAre(
            "FillGoodInfo(GoodCode text, out Info record) flag",
            "Check_TockMinus(SelectQuery text, Date text, GlobalID integer, StoreTransition flag) flag",
            "Check_TockMinus(SelectQuery text, FromDate text, ToDate text, GlobalID integer) flag",
            "strMinusGoodCodes() text", "strMinusGoodCodes(Value text)", "GoodInfoMapper() record",
            "GoodInfoMapper(Value record)", "Fill_FinanceGoodTypes(out Items list)",
            "Fill_SellCostLevel(out Items list)", "SplitBarcode(Barcode text, Separator text)",
            "FillGoodInfFromBarcode(UseType integer, out FormulType integer, Barcode text, PerCode text, "
            "ItemCode text, TotalPrice amount) flag",
            "GetBarcode_Code(Code text, ByAbbName flag, ShowMessage flag) integer",
            "Get_Barcode_Data(out Fi text, out Weight text, out BalanceNum text, out GoodCode text, out PriceSum "
            "amount)",
            "GetGoodInFromBarCode() integer", "Fi() text", "Fi(Value text)", "Weight() text", "Weight(Value text)",
            "BalanceNum() text", "BalanceNum(Value text)", "GoodCode() text", "GoodCode(Value text)", "Percode() text",
            "Percode(Value text)", "BarCodePriceSum() amount", "BarCodePriceSum(Value amount)",
            "After_Equal_Total_Price(Assigned flag) integer", "After_Equal_Total_Price() event",
            "After_Equal_Total_Price(Value event)", "BarCodeFormul_Get(DigitCount integer, Barcode text)",
            "GetCodeFromGoodInf(ByAbbName flag, Code text, out GoodCode integer) flag",
            "GoodInF_Valid_Code(Code text) flag", "GoodInf_SendToScale(Codes text, ScaleType integer)",
            "GoodInfo_ScaleAgent(GoodCode integer, Name1 text, Name2 text, Price integer, ItemType integer, "
            "AlterPrice integer, Barcode text, ItemCode integer, Section integer, PLU text, ScaleIP integer) "
            "integer"));
}

TEST_F(GoodsRegistration, aScanLeavesWhatItFound) {
    script.expect(
        "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('2800057012505' , "
        "ConstantStart, ConstantCount) = ConstantCode  ",
        layoutRows({{.PriceStart = 8, .PriceCount = 5}}));
    const FunctionCall scan =
        call("FillGoodInfFromBarcode",
             {{"UseType", 1}, {"Barcode", "2800057012505"}, {"PerCode", "12"}, {"ItemCode", ""}, {"TotalPrice", 0}});
    EXPECT_EQ(scan.resultValue(), Datum(true));
    ASSERT_EQ(scan.outputs().size(), 1U);
    EXPECT_EQ(scan.outputs()[0].second, Datum(1));
    (void)call("BarCodePriceSum", {{"Value", Datum(12.5L)}}, 1);
    const FunctionCall data = call("Get_Barcode_Data", {});
    EXPECT_EQ(Datum::record(data.outputs()).toJson(),
              R"({"Fi":"01250","Weight":"1.25","BalanceNum":"-1","GoodCode":"00057","PriceSum":12.5})");
    EXPECT_EQ(call("Percode", {}).resultValue(), Datum("12"));
}

TEST_F(GoodsRegistration, beforeAScanThereIsNothing) {
    const FunctionCall data = call("Get_Barcode_Data", {});
    EXPECT_EQ(Datum::record(data.outputs()).toJson(),
              R"({"Fi":"","Weight":"","BalanceNum":"","GoodCode":null,"PriceSum":0})");
    EXPECT_TRUE(call("Percode", {}).resultValue().isNull());
}

TEST_F(GoodsRegistration, everyVariableIsReadAndSetByItsName) {
    for (const char* name : {"Fi", "Weight", "BalanceNum", "GoodCode", "Percode", "strMinusGoodCodes"}) {
        (void)call(name, {{"Value", "007"}}, 1);
        EXPECT_EQ(call(name, {}).resultValue(), Datum("007")) << name;
    }
    (void)call("BarCodePriceSum", {{"Value", Datum(12.5L)}}, 1);
    EXPECT_EQ(call("BarCodePriceSum", {}).resultValue(), Datum(12.5L));
    EXPECT_EQ(state::Fi, "007");
    EXPECT_EQ(state::GoodCode, text("007"));
    EXPECT_EQ(strMinusGoodCodes, "007");
    EXPECT_EQ(Datum::record(call("Get_Barcode_Data", {}).outputs()).toJson(),
              R"({"Fi":"007","Weight":"007","BalanceNum":"007","GoodCode":"007","PriceSum":12.5})");
    (void)call("GoodCode", {{"Value", Datum()}}, 1);
    EXPECT_TRUE(call("GoodCode", {}).resultValue().isNull());
}

TEST_F(GoodsRegistration, particularsAreSetAsARecord) {
    GoodInfoMapper._Pos = "A-12";
    (void)call("GoodInfoMapper",
               {{"Value", Datum::parseJson(R"({"Code":57,"name":"برنج","Mogodi":12.5,"TaxExempt":true})")}}, 1);
    EXPECT_EQ(GoodInfoMapper._Code, 57);
    EXPECT_EQ(GoodInfoMapper._Name, "برنج");
    EXPECT_EQ(GoodInfoMapper._Mogodi, 12.5L);
    EXPECT_TRUE(GoodInfoMapper._TaxExempt);
    EXPECT_EQ(GoodInfoMapper._Pos, "");
    EXPECT_EQ(call("GoodInfoMapper", {}).resultValue().toJson(),
              R"({"Code":57,"Name":"برنج","Kala_Type":"","Kala_Index":"","Kala_Name":"","Mogodi":12.5,"Unit":0,)"
              R"("Unit2":0,"UnitName":"","UnitName2":"","MinAva":"","Pos":"","Meghdar_Formool":0,)"
              R"("Gheymat_Miangin":0,"OffPercentSell":0,"TaxExempt":true,"ChargeExempt":false,)"
              R"("Tax_In_BuyCosts":false,"Tax_In_SellCosts":false,"TaxPercent":0,"ChargePercent":0,)"
              R"("ConsumerPrice":0})");
    for (const char* wrong : {R"({"Colour":1})", R"({"Code":"x"})", R"({"Code":2147483648})", R"({"TaxExempt":7})"}) {
        EXPECT_THROW((void)call("GoodInfoMapper", {{"Value", Datum::parseJson(wrong)}}, 1), UsageError) << wrong;
        EXPECT_EQ(GoodInfoMapper._Code, 57) << wrong;
    }
}

TEST_F(GoodsRegistration, aUseThatIsNoneIsRefused) {
    EXPECT_THROW((void)call("FillGoodInfFromBarcode",
                            {{"UseType", 3}, {"Barcode", "1"}, {"PerCode", ""}, {"ItemCode", ""}, {"TotalPrice", 0}}),
                 UsageError);
}

TEST_F(GoodsRegistration, equalTotalsAreCounted) {
    EXPECT_EQ(call("After_Equal_Total_Price", {{"Assigned", true}}).resultValue(), Datum(0));
    scanTotal();
    scanTotal();
    EXPECT_EQ(call("After_Equal_Total_Price", {{"Assigned", false}}).resultValue(), Datum(2));
    scanTotal();
    EXPECT_EQ(call("After_Equal_Total_Price", {{"Assigned", false}}).resultValue(), Datum(0));
}

TEST_F(GoodsRegistration, theHandlerOfEqualTotalsIsReadAndSetByItsName) {
    EXPECT_TRUE(call("After_Equal_Total_Price", {}, 1).resultValue().isNull());
    int equal = 0;
    (void)call("After_Equal_Total_Price", {{"Value", Datum::event([&equal] { ++equal; })}}, 2);
    scanTotal();
    EXPECT_EQ(equal, 1);
    const Datum handler = call("After_Equal_Total_Price", {}, 1).resultValue();
    ASSERT_TRUE(handler.isEvent());
    (void)call("After_Equal_Total_Price", {{"Value", Datum()}}, 2);
    EXPECT_FALSE(state::After_Equal_Total_Price);
    scanTotal();
    EXPECT_EQ(equal, 1);
    (void)call("After_Equal_Total_Price", {{"Value", handler}}, 2);
    scanTotal();
    EXPECT_EQ(equal, 2);
    EXPECT_THROW((void)call("After_Equal_Total_Price", {{"Value", true}}, 2), UsageError);
    EXPECT_TRUE(state::After_Equal_Total_Price);
}

TEST_F(GoodsRegistration, listsComeAsRecords) {
    script.expect("SELECT Code, Name FROM CostLevel WHERE CostType = 1 AND Code > 0 ORDER BY Code",
                  rows({{"Code", FieldType::Integer}, {"Name", FieldType::Text, 50}}, {{number(3), text("همکار")}}));
    const FunctionCall list = call("Fill_SellCostLevel", {});
    ASSERT_EQ(list.outputs().size(), 1U);
    EXPECT_EQ(list.outputs()[0].second.asList().at(1).toJson(), R"({"Text":"همکار","Object":3})");
}

TEST_F(GoodsRegistration, readingAGoodLeavesTheSharedParticulars) {
    GoodInfoMapper = {._Code = 12, ._Name = "چای"};
    std::vector<Value> rice(22);
    rice[0] = number(57);
    rice[1] = text("برنج");
    script.setProcedure(particularsProcedure());
    script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("57"), false}}, withRows(particularRows({rice})));
    const FunctionCall read = call("FillGoodInfo", {{"GoodCode", 57}});
    EXPECT_EQ(read.resultValue(), Datum(true));
    ASSERT_EQ(read.outputs().size(), 1U);
    const Datum& info = read.outputs()[0].second;
    EXPECT_EQ(info["Name"], Datum("برنج"));
    EXPECT_EQ(GoodInfoMapper._Code, 12);
    EXPECT_EQ(GoodInfoMapper._Name, "چای");
    (void)call("GoodInfoMapper", {{"Value", info}}, 1);
    EXPECT_EQ(GoodInfoMapper._Name, "برنج");
}

TEST_F(GoodsRegistration, aMissingGoodHasNoParticulars) {
    GoodInfoMapper = {._Code = 12};
    script.setProcedure(particularsProcedure());
    script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("99"), false}}, withRows(particularRows({})));
    const FunctionCall missing = call("FillGoodInfo", {{"GoodCode", 99}});
    EXPECT_EQ(missing.resultValue(), Datum(false));
    EXPECT_TRUE(missing.outputs().empty());
    EXPECT_EQ(GoodInfoMapper._Code, 12);
}

TEST_F(GoodsRegistration, bothStockChecksAreThere) {
    host.settings.NegativeType = 2;
    EXPECT_EQ(call("Check_TockMinus",
                   {{"SelectQuery", "Q"}, {"Date", "1405/01/01"}, {"GlobalID", 1}, {"StoreTransition", false}}, 0)
                  .resultValue(),
              Datum(true));
    EXPECT_EQ(call("Check_TockMinus",
                   {{"SelectQuery", "Q"}, {"FromDate", "1405/01/01"}, {"ToDate", "1405/01/02"}, {"GlobalID", 1}}, 1)
                  .resultValue(),
              Datum(true));
}

TEST_F(GoodsRegistration, scaleAgentIsAskedThroughTheHost) {
    host.expectMessage("ShowMessage('\"ScaleAgent.dll\" DLL File not found / not loaded')");
    const FunctionCall agent = call("GoodInfo_ScaleAgent", {{"GoodCode", 1},
                                                            {"Name1", "الف"},
                                                            {"Name2", ""},
                                                            {"Price", 2},
                                                            {"ItemType", 0},
                                                            {"AlterPrice", 0},
                                                            {"Barcode", ""},
                                                            {"ItemCode", 1},
                                                            {"Section", 1},
                                                            {"PLU", "4"},
                                                            {"ScaleIP", 1}});
    EXPECT_EQ(agent.resultValue(), Datum(0));
}

}  // namespace
}  // namespace basalt
