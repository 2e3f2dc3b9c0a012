// Scale barcodes taken apart: statements in full, every kind of layout, and what is left in the unit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "ado/error.h"
#include "goods/barcode_extractor_unt.h"
#include "goods/barcode_unt.h"
#include "package/services.h"
#include "tests/goods/layouts.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"
#include "tests/support/tracing_session.h"

namespace basalt {
namespace {

namespace state = Barcode_extractor_unt;

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const DatabaseError lostConnection(ErrorCategory::Connection, "08S01", 0, "the connection is lost");

class Barcodes : public ::testing::Test {
protected:
    ScriptedSession script;
    TracingSession session{script, host.calls};
    FakeHost host{session};
    AttachedHost attached{host};
    TBarCodeFormulType kind = bftTotalPrice;

    // The layouts that the server finds for this barcode.
    void expectLayouts(const std::string& barcode, const std::vector<Layout>& layouts) {
        script.expect("SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = " + std::to_string(utf16Length(barcode)) +
                          " AND SUBSTRING('" + barcode + "' , ConstantStart, ConstantCount) = ConstantCode  ",
                      layoutRows(layouts));
    }
    void expectPrice(const char* statement, const Value& cost) {
        script.expect(statement, rows({{"Cost", FieldType::Decimal}}, {{cost}}));
    }
    bool scan(const std::string& barcode, TBarCodeUseType useType = butNew, Extended total = 0) {
        return FillGoodInfFromBarcode(useType, kind, barcode, "12", "ignored", total);
    }
};

// The store

TEST_F(Barcodes, storeIsMadeAtFirstUseAndShared) {
    EXPECT_EQ(_BarCode_DM, nullptr);
    T_BarCode_DM& store = sharedBarCodes();
    EXPECT_EQ(_BarCode_DM.get(), &store);
    EXPECT_EQ(&sharedBarCodes(), &store);
    EXPECT_EQ(store.name(), "T_BarCode_DM");
    EXPECT_EQ(store.Temp_QRY.Connection(), &host.DM().ADOConnection1);
    EXPECT_EQ(store.BarCodeFormul_QRY.Connection(), &host.DM().ADOConnection1);
    EXPECT_EQ(store.spTemp_PRC.Connection(), &host.DM().ADOConnection1);
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(Barcodes, voucherProcedureHasItsParameters) {
    TADOStoredProc& proc = sharedBarCodes().spTemp_PRC;
    EXPECT_EQ(proc.ProcedureName(), "AutoVoucherFirstPriodGoods;1");
    std::vector<std::string> parameters;
    for (int i = 0; i < proc.Parameters().Count(); ++i) {
        const ParameterInfo& info = proc.Parameters().Items(i).info();
        const char* const type = info.type.type == FieldType::Integer   ? "int"
                                 : info.type.type == FieldType::TinyInt ? "word"
                                 : info.type.type == FieldType::Text    ? "string"
                                                                        : "another";
        parameters.push_back(info.name + ' ' + type + ' ' + std::to_string(info.type.size) +
                             (info.type.nullable ? " nullable" : "") +
                             (info.direction == ParameterDirection::Input         ? ""
                              : info.direction == ParameterDirection::ReturnValue ? " returned"
                                                                                  : " output"));
    }
    EXPECT_THAT(parameters,
                ElementsAre("@RETURN_VALUE int 0 returned", "@SaveType word 0 nullable", "@SanadCode int 0",
                            "@SanadDate string 10", "@FromDate string 10 nullable", "@ToDate string 10 nullable",
                            "@FromCode int 0", "@ToCode int 0", "@Codes string 8000 nullable"));
}

TEST_F(Barcodes, layoutsAreAskedForByLengthAndPrefix) {
    script.expect(
        "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('2800057012505' , "
        "ConstantStart, ConstantCount) = ConstantCode  ",
        layoutRows({{}, {}}));
    sharedBarCodes().BarCodeFormul_Get(13, "2800057012505");
    EXPECT_EQ(sharedBarCodes().BarCodeFormul_QRY.RecordCount(), 2);

    script.expect(
        "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 3 AND SUBSTRING('1''2' , ConstantStart, "
        "ConstantCount) = ConstantCode  ",
        layoutRows({}));
    sharedBarCodes().BarCodeFormul_Get(3, "1'2");
}

TEST_F(Barcodes, layoutsMayTakeAsLongAsTheyTake) {
    expectLayouts("2800057012505", {});
    sharedBarCodes().BarCodeFormul_Get(13, "2800057012505");
    script.expect("Select Code From goodInf Where Code=57", rows({{"Code", FieldType::Integer}}, {}));
    EXPECT_TRUE(sharedBarCodes().GoodInF_Valid_Code("57"));
    EXPECT_THAT(script.timeLimits, ElementsAre(0, std::nullopt));
}

TEST_F(Barcodes, goodsAreFoundByScaleCode) {
    int good = 9;
    script.expect("SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!00042!%' ORDER BY Code DESC", codeRows({57}));
    EXPECT_FALSE(sharedBarCodes().GetCodeFromGoodInf(true, "00042", good));
    EXPECT_EQ(good, 57);
    script.expect("SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!00042!%' ORDER BY Code DESC", codeRows({}));
    EXPECT_TRUE(sharedBarCodes().GetCodeFromGoodInf(true, "00042", good));
    EXPECT_EQ(good, 0);
}

TEST_F(Barcodes, goodsAreFoundByCode) {
    int good = 9;
    script.expect("Select Code From goodInf Where Code=00042", codeRows({42}));
    EXPECT_FALSE(sharedBarCodes().GetCodeFromGoodInf(false, "00042", good));
    EXPECT_EQ(good, 42);
    script.expect("Select Code From goodInf Where Code=00042", codeRows({}));
    EXPECT_TRUE(sharedBarCodes().GetCodeFromGoodInf(false, "00042", good));
    EXPECT_EQ(good, 0);
    script.expectError("Select Code From goodInf Where Code=", lostConnection);
    good = 9;
    EXPECT_THROW((void)sharedBarCodes().GetCodeFromGoodInf(false, "", good), DatabaseError);
    EXPECT_EQ(good, 9);
}

TEST_F(Barcodes, aCodeIsValidWhenItIsTaken) {
    EXPECT_FALSE(sharedBarCodes().GoodInF_Valid_Code(""));
    EXPECT_FALSE(sharedBarCodes().GoodInF_Valid_Code("  "));
    EXPECT_THAT(host.calls, IsEmpty());
    script.expect("Select Code From goodInf Where Code= 42 ", codeRows({42}));
    EXPECT_FALSE(sharedBarCodes().GoodInF_Valid_Code(" 42 "));
    script.expect("Select Code From goodInf Where Code=42", codeRows({}));
    EXPECT_TRUE(sharedBarCodes().GoodInF_Valid_Code("42"));
}

TEST_F(Barcodes, aCodeWithoutGoodIsToldOnRequest) {
    const char* const statement = "SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!7!%' ORDER BY Code DESC";
    script.expect(statement, codeRows({57}));
    EXPECT_EQ(GetBarcode_Code("7", true, true), 57);
    script.expect(statement, codeRows({}));
    EXPECT_EQ(GetBarcode_Code("7", true, false), 0);
    script.expect(statement, codeRows({}));
    host.expectMessage("ShowSmartMessage(notification 10152)");
    EXPECT_EQ(GetBarcode_Code("7", true, true), 0);
    EXPECT_EQ(host.lastMessage.displayMilliseconds, 3000);
    EXPECT_EQ(host.lastMessage.control, nullptr);
    EXPECT_EQ(host.lastMessage.form, nullptr);
}

// No layout

TEST_F(Barcodes, aBarcodeWithoutLayoutChangesOnlyThePerson) {
    state::Fi = "1";
    state::Weight = "2";
    state::BalanceNum = "3";
    state::GoodCode = text("4");
    state::BarCodePriceSum = 5;
    expectLayouts("2800057012505", {});
    EXPECT_FALSE(scan("2800057012505"));
    EXPECT_EQ(kind, bftNone);
    EXPECT_EQ(state::Percode, text("12"));
    EXPECT_EQ(state::Fi, "1");
    EXPECT_EQ(state::Weight, "2");
    EXPECT_EQ(state::BalanceNum, "3");
    EXPECT_EQ(state::GoodCode, text("4"));
    EXPECT_EQ(state::BarCodePriceSum, 5.0L);
}

TEST_F(Barcodes, theServersAnswerIsCheckedAgain) {
    expectLayouts("2800057012505", {{.DigitCount = 12}});
    EXPECT_FALSE(scan("2800057012505"));
    expectLayouts("2800057012505", {{.ConstantCode = "29"}});
    EXPECT_FALSE(scan("2800057012505"));
    // A server takes these for the same.
    expectLayouts("ab00057012505", {{.ConstantCode = "AB"}});
    EXPECT_FALSE(scan("ab00057012505"));
    expectLayouts("2800057012505", {{.ConstantCode = "28 "}});
    EXPECT_FALSE(scan("2800057012505"));
    EXPECT_EQ(kind, bftNone);
    EXPECT_EQ(state::Weight, "");
}

TEST_F(Barcodes, onlyTheFirstLayoutIsLookedAt) {
    expectLayouts("2800057012505", {{.DigitCount = 12}, {.PriceStart = 8, .PriceCount = 5}});
    EXPECT_FALSE(scan("2800057012505"));
}

TEST_F(Barcodes, emptyBarcodeIsAskedForToo) {
    expectLayouts("", {});
    EXPECT_FALSE(scan("   "));
}

TEST_F(Barcodes, failureToReadLayoutsPassesAndLeavesTheKind) {
    script.expectError(
        "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 1 AND SUBSTRING('7' , ConstantStart, "
        "ConstantCount) = ConstantCode  ",
        lostConnection);
    EXPECT_THROW((void)scan("7"), DatabaseError);
    EXPECT_EQ(kind, bftTotalPrice);
    EXPECT_EQ(state::Percode, text("12"));
}

// Goods

TEST_F(Barcodes, goodAndWeightWithTheDefaultPrice) {
    expectLayouts("2800057012505", {{}});
    expectPrice("{call GetDefaultCostLevel(12,00057,0)}", *Decimal::parse("12500.5"));
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(kind, bftAmount);
    EXPECT_EQ(state::GoodCode, text("00057"));
    EXPECT_EQ(state::Weight, "1.25");
    EXPECT_EQ(state::BalanceNum, "-1");
    EXPECT_EQ(state::Fi, "12500.5");

    std::string price;
    std::string weight;
    std::string balance;
    Value good;
    Extended sum = 7;
    Get_Barcode_Data(price, weight, balance, good, sum);
    EXPECT_EQ(price, "12500.5");
    EXPECT_EQ(weight, "1.25");
    EXPECT_EQ(balance, "-1");
    EXPECT_EQ(good, text("00057"));
    EXPECT_EQ(sum, 0.0L);
}

TEST_F(Barcodes, blanksAroundDoNotCount) {
    expectLayouts("2800057012505", {{.PriceStart = 8, .PriceCount = 5}});
    EXPECT_TRUE(scan("  2800057012505 "));
    EXPECT_EQ(state::Weight, "1.25");
}

TEST_F(Barcodes, missingDefaultPriceIsZero) {
    expectLayouts("2800057012505", {{}});
    expectPrice("{call GetDefaultCostLevel(12,00057,0)}", Null{});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::Fi, "0");
    expectLayouts("2800057012505", {{}});
    script.expect("{call GetDefaultCostLevel(12,00057,0)}", rows({{"Cost", FieldType::Decimal}}, {}));
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::Fi, "0");
}

TEST_F(Barcodes, priceOfTheBarcodeIsTakenAsItStands) {
    expectLayouts("2800057001250", {{.AmountCount = 0, .PriceStart = 8, .PriceCount = 6}});
    EXPECT_TRUE(scan("2800057001250"));
    EXPECT_EQ(state::Fi, "001250");
    EXPECT_EQ(state::Weight, "1");
}

TEST_F(Barcodes, anyDivisorAboveZeroIsAThousand) {
    for (const int divide : {1, 5, 1000}) {
        expectLayouts("2800057012505", {{.AmountDivide = divide, .PriceStart = 8, .PriceCount = 5}});
        EXPECT_TRUE(scan("2800057012505"));
        EXPECT_EQ(state::Weight, "1.25") << divide;
    }
    for (const int divide : {0, -1}) {
        expectLayouts("2800057012505", {{.AmountDivide = divide, .PriceStart = 8, .PriceCount = 5}});
        EXPECT_TRUE(scan("2800057012505"));
        EXPECT_EQ(state::Weight, "01250") << divide;
    }
}

TEST_F(Barcodes, scaleNumberIsCutOnlyWhenItIsAStore) {
    expectLayouts("2800057012505", {{.BalanceNoStart = 3, .BalanceNoCount = 2, .PriceStart = 8, .PriceCount = 5}});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::BalanceNum, "-1");
    expectLayouts(
        "2800057012505",
        {{.BalanceNoStart = 6, .BalanceNoCount = 2, .BalanceNoAsStore = true, .PriceStart = 8, .PriceCount = 5}});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::BalanceNum, "57");
    expectLayouts("2800057012505", {{.BalanceNoStart = 6, .BalanceNoAsStore = true, .PriceStart = 8, .PriceCount = 5}});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::BalanceNum, "-1");
}

TEST_F(Barcodes, countsBelowZeroAreNoFields) {
    expectLayouts("2800057012505", {{.ItemConstantCode = -105,
                                     .AmountCount = -1,
                                     .BalanceNoStart = 3,
                                     .BalanceNoCount = -1,
                                     .BalanceNoAsStore = true,
                                     .PriceStart = 8,
                                     .PriceCount = -1}});
    expectPrice("{call GetDefaultCostLevel(12,00057,0)}", number(7));
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::GoodCode, text("00057"));
    EXPECT_EQ(state::Weight, "1");
    EXPECT_EQ(state::BalanceNum, "-1");
    EXPECT_EQ(state::Fi, "7");
}

TEST_F(Barcodes, everyBarcodeOfALayoutMayMeanOneGood) {
    expectLayouts("2800057012505", {{.ItemConstantCode = 105, .ItemCodeType = 2}});
    expectPrice("{call GetDefaultCostLevel(12,105,0)}", number(1));
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::GoodCode, text("105"));
}

TEST_F(Barcodes, scaleCodesLeadToTheGood) {
    expectLayouts("2800042012505", {{.ItemCodeType = 2, .PriceStart = 8, .PriceCount = 5}});
    script.expect("SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!00042!%' ORDER BY Code DESC", codeRows({57}));
    EXPECT_TRUE(scan("2800042012505"));
    EXPECT_EQ(state::GoodCode, text("57"));

    host.settings.FindGoodByScaleCode = false;
    expectLayouts("2800042012505", {{.ItemCodeType = 0, .PriceStart = 8, .PriceCount = 5}});
    script.expect("Select Code From goodInf Where Code=00042", codeRows({42}));
    EXPECT_TRUE(scan("2800042012505"));
    EXPECT_EQ(state::GoodCode, text("42"));
}

TEST_F(Barcodes, aGoodThatIsNotFoundIsToldAndGoesOn) {
    expectLayouts("2800042012505", {{.ItemCodeType = 2}});
    script.expect("SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!00042!%' ORDER BY Code DESC", codeRows({}));
    host.expectMessage("ShowSmartMessage(notification 10152)");
    expectPrice("{call GetDefaultCostLevel(12,0,0)}", Null{});
    EXPECT_TRUE(scan("2800042012505"));
    EXPECT_EQ(kind, bftAmount);
    EXPECT_EQ(state::GoodCode, text("0"));
    EXPECT_EQ(state::Weight, "1.25");

    script.expect("Select Code From goodInf Where Code=0", codeRows({}));
    EXPECT_EQ(GetGoodInFromBarCode(), 2);
}

TEST_F(Barcodes, theGoodOfTheLastScanExistsOrNot) {
    EXPECT_EQ(GetGoodInFromBarCode(), 1);  // nothing scanned yet
    state::GoodCode = text("00057");
    script.expect("Select Code From goodInf Where Code=00057", codeRows({57}));
    EXPECT_EQ(GetGoodInFromBarCode(), 1);
    script.expect("Select Code From goodInf Where Code=00057", codeRows({}));
    EXPECT_EQ(GetGoodInFromBarCode(), 2);
}

struct Outside {
    const char* name;
    Layout layout;
    const char* good;
    const char* weight;
    const char* balance;
    const char* price;
};
void PrintTo(const Outside& row, std::ostream* out) {
    *out << row.name;
}

class FieldsOutside : public Barcodes, public ::testing::WithParamInterface<Outside> {};

TEST_P(FieldsOutside, areShorterOrEmpty) {
    Layout layout = GetParam().layout;
    layout.AmountDivide = 0;
    layout.BalanceNoAsStore = true;
    expectLayouts("2800057012505", {layout});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(state::GoodCode, text(GetParam().good));
    EXPECT_EQ(state::Weight, GetParam().weight);
    EXPECT_EQ(state::BalanceNum, GetParam().balance);
    EXPECT_EQ(state::Fi, GetParam().price);
}

INSTANTIATE_TEST_SUITE_P(Layouts, FieldsOutside,
                         ::testing::Values(Outside{"beyondTheEnd",
                                                   {.ItemCodeStart = 11,
                                                    .ItemCodeCount = 9,
                                                    .AmountStart = 12,
                                                    .AmountCount = 9,
                                                    .BalanceNoStart = 13,
                                                    .BalanceNoCount = 9,
                                                    .PriceStart = 10,
                                                    .PriceCount = 99},
                                                   "505",
                                                   "05",
                                                   "5",
                                                   "2505"},
                                           Outside{"behindTheEnd",
                                                   {.ItemCodeStart = 14,
                                                    .ItemCodeCount = 5,
                                                    .AmountStart = 14,
                                                    .AmountCount = 1,
                                                    .BalanceNoStart = 99,
                                                    .BalanceNoCount = 2,
                                                    .PriceStart = 2147483647,
                                                    .PriceCount = 2147483647},
                                                   "",
                                                   "",
                                                   "",
                                                   ""},
                                           Outside{"beforeTheBegin",
                                                   {.ItemCodeStart = 0,
                                                    .ItemCodeCount = 3,
                                                    .AmountStart = -1,
                                                    .AmountCount = 3,
                                                    .BalanceNoStart = -5,
                                                    .BalanceNoCount = 2,
                                                    .PriceStart = -2147483647,
                                                    .PriceCount = 5},
                                                   "28",
                                                   "2",
                                                   "",
                                                   ""}),
                         [](const auto& row) { return row.param.name; });

TEST_F(Barcodes, charactersAreCountedAndNotBytes) {
    script.expect(
        "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('کد۰۰۵۷۰۱۲۵۰۰۵' , "
        "ConstantStart, ConstantCount) = ConstantCode  ",
        layoutRows({{.ConstantCode = "کد", .PriceStart = 12, .PriceCount = 2}}));
    EXPECT_TRUE(scan("کد۰۰۵۷۰۱۲۵۰۰۵"));
    EXPECT_EQ(state::GoodCode, text("۰۰۵۷۰"));
    EXPECT_EQ(state::Weight, "12.5");
    EXPECT_EQ(state::Fi, "۰۵");
}

// Public layouts of in-store EAN-13: a prefix of 20 to 29, five digits of the item, five of weight or price, the check
// digit. All digits of the number are positions, the check digit included.
struct Ean {
    const char* name;
    const char* barcode;
    bool price;
    bool checked;  // a price check digit stands between item and price
    const char* good;
    const char* value;
};
void PrintTo(const Ean& row, std::ostream* out) {
    *out << row.name;
}

class InStoreNumbers : public Barcodes, public ::testing::WithParamInterface<Ean> {
protected:
    static int checkDigit(const std::string& twelve) {
        int sum = 0;
        for (std::size_t i = 0; i < 12; ++i)
            sum += (twelve[i] - '0') * (i % 2 == 0 ? 1 : 3);
        return (10 - sum % 10) % 10;
    }
};

TEST_P(InStoreNumbers, areTakenApart) {
    const Ean& row = GetParam();
    const std::string barcode = row.barcode;
    ASSERT_EQ(barcode.back() - '0', checkDigit(barcode)) << "not a number of the standard";
    Layout layout{.ConstantCode = barcode.substr(0, 2), .ItemCodeCount = row.checked ? 4 : 5};
    if (row.price) {
        layout.AmountCount = 0;
        layout.PriceStart = 8;
        layout.PriceCount = 5;
    }
    expectLayouts(barcode, {layout});
    if (!row.price)
        expectPrice(("{call GetDefaultCostLevel(12," + std::string(row.good) + ",0)}").c_str(), number(1000));
    EXPECT_TRUE(scan(barcode));
    EXPECT_EQ(state::GoodCode, text(row.good));
    EXPECT_EQ(row.price ? state::Fi : state::Weight, row.value);
}

INSTANTIATE_TEST_SUITE_P(Ean13, InStoreNumbers,
                         ::testing::Values(Ean{"weight20", "2012345012349", false, false, "12345", "1.234"},
                                           Ean{"price21", "2112345067896", true, false, "12345", "06789"},
                                           Ean{"checkedPrice22", "2212340012348", true, true, "1234", "01234"},
                                           Ean{"weight23", "2300001000015", false, false, "00001", "0.001"},
                                           Ean{"price24", "2499999999996", true, false, "99999", "99999"},
                                           Ean{"weight25", "2500000000003", false, false, "00000", "0"},
                                           Ean{"price26", "2654321100000", true, false, "54321", "10000"},
                                           Ean{"weight27", "2700057999996", false, false, "00057", "99.999"},
                                           Ean{"weight28", "2800057012500", false, false, "00057", "1.25"},
                                           Ean{"checkedPrice29", "2943218098767", true, true, "4321", "09876"}),
                         [](const auto& row) { return row.param.name; });

TEST_F(Barcodes, aDefaultPriceThatCannotBeReadLeavesTheRestOfTheScan) {
    state::Fi = "1";
    state::BarCodePriceSum = 5;
    expectLayouts("2800057012505", {{.BalanceNoStart = 6, .BalanceNoCount = 2, .BalanceNoAsStore = true}});
    script.expectError("{call GetDefaultCostLevel(12,00057,0)}", lostConnection);
    EXPECT_THROW((void)scan("2800057012505"), DatabaseError);
    EXPECT_EQ(kind, bftNone);
    EXPECT_EQ(state::Percode, text("12"));
    EXPECT_EQ(state::GoodCode, text("00057"));
    EXPECT_EQ(state::Weight, "1.25");
    EXPECT_EQ(state::BalanceNum, "57");
    EXPECT_EQ(state::Fi, "1");
    EXPECT_EQ(state::BarCodePriceSum, 5.0L);
}

// Prices alone

TEST_F(Barcodes, pricesAreSummed) {
    const Layout price{.ConstantCode = "29", .BarCodeType = 3, .PriceStart = 3, .PriceCount = 10};
    state::Fi = "1";
    state::Weight = "2";
    state::BalanceNum = "3";
    state::GoodCode = text("4");
    expectLayouts("2900000125005", {price});
    EXPECT_TRUE(scan("2900000125005", butNew));
    EXPECT_EQ(kind, bftConstPrice);
    EXPECT_EQ(state::BarCodePriceSum, 12500.0L);
    expectLayouts("2900000125005", {price});
    EXPECT_TRUE(scan("2900000125005", butNone));
    EXPECT_EQ(state::BarCodePriceSum, 12500.0L);
    expectLayouts("2900000000505", {price});
    EXPECT_TRUE(scan("2900000000505", butNew));
    EXPECT_EQ(state::BarCodePriceSum, 12550.0L);
    expectLayouts("2900000125005", {price});
    EXPECT_TRUE(scan("2900000125005", butDelete));
    EXPECT_EQ(state::BarCodePriceSum, 50.0L);
    expectLayouts("2900000125005", {price});
    EXPECT_TRUE(scan("2900000125005", butDelete));
    EXPECT_EQ(state::BarCodePriceSum, -12450.0L);
    EXPECT_EQ(state::Fi, "1");
    EXPECT_EQ(state::Weight, "2");
    EXPECT_EQ(state::BalanceNum, "3");
    EXPECT_EQ(state::GoodCode, text("4"));
}

// Totals

class Totals : public Barcodes {
protected:
    bool scanTotal(const std::string& barcode, Extended total) {
        expectLayouts(barcode, {{.DigitCount = static_cast<int>(barcode.size()),
                                 .ConstantCode = barcode.substr(0, 2),
                                 .BarCodeType = 2,
                                 .PriceStart = 3,
                                 .PriceCount = static_cast<int>(barcode.size()) - 3}});
        return scan(barcode, butNew, total);
    }
    static constexpr const char* kDiffers = "ShowFlashMessage('جمع مبلغ فاکتور با مبلغ بارکد  وارده برابر نمي باشد.')";
};

TEST_F(Totals, equalTotalCallsTheHandler) {
    int calls = 0;
    state::After_Equal_Total_Price = [&calls] { ++calls; };
    EXPECT_TRUE(scanTotal("2500000125005", 12500));
    EXPECT_EQ(kind, bftTotalPrice);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(state::BarCodePriceSum, 0.0L);
    EXPECT_EQ(state::Fi, "");
}

TEST_F(Totals, aHandlerMayTakeItselfAway) {
    std::string heard;
    const std::string words = "long enough to stand behind the handler, not in it";
    state::After_Equal_Total_Price = [&heard, words] {
        state::After_Equal_Total_Price = {};
        heard = words;
    };
    EXPECT_TRUE(scanTotal("2500000125005", 12500));
    EXPECT_EQ(heard, words);
    EXPECT_TRUE(scanTotal("2500000125005", 12500));
}

TEST_F(Totals, equalTotalWithoutHandlerIsSilent) {
    EXPECT_TRUE(scanTotal("2500000125005", 12500));
    EXPECT_EQ(kind, bftTotalPrice);
}

TEST_F(Totals, anotherTotalIsTold) {
    int calls = 0;
    state::After_Equal_Total_Price = [&calls] { ++calls; };
    host.expectMessage(kDiffers);
    EXPECT_TRUE(scanTotal("2500000125005", 12499));
    EXPECT_EQ(kind, bftTotalPrice);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(host.lastMessage.displayMilliseconds, 2000);
}

TEST_F(Totals, totalsCompareToTheLastDigit) {
    // Beyond what a double tells apart.
    int calls = 0;
    state::After_Equal_Total_Price = [&calls] { ++calls; };
    EXPECT_TRUE(scanTotal("2590071992547409930", 9007199254740993.0L));
    EXPECT_EQ(calls, 1);
    host.expectMessage(kDiffers);
    EXPECT_TRUE(scanTotal("2590071992547409930", 9007199254740992.0L));
    EXPECT_TRUE(scanTotal("250000001250.250", 1250.25L));
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(scanTotal("250000000000.10", 0.1L));
    EXPECT_EQ(calls, 3);
    host.expectMessage(kDiffers);
    EXPECT_TRUE(scanTotal("250000000000.10", static_cast<Extended>(0.1)));
}

TEST_F(Barcodes, kindsOfOtherProgramsAreKept) {
    expectLayouts("2800057012505", {{.BarCodeType = 7}});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(kind, 7);
    expectLayouts("2800057012505", {{.BarCodeType = 258}});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(kind, bftTotalPrice);  // as a byte
    expectLayouts("2800057012505", {{.BarCodeType = 0}});
    EXPECT_TRUE(scan("2800057012505"));
    EXPECT_EQ(kind, bftNone);
    EXPECT_EQ(state::Weight, "");
}

// Numbers that are none

template <class Action>
std::string conversionError(Action action) {
    try {
        action();
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Conversion);
        return error.what();
    }
    return "nothing was raised";
}

TEST_F(Barcodes, anAmountThatIsNoNumberIsAnError) {
    state::Fi = "1";
    state::BalanceNum = "3";
    expectLayouts("28000570x2505", {{}});
    EXPECT_EQ(conversionError([&] { (void)scan("28000570x2505"); }),
              "barcode 28000570x2505, field Amount: '0x250' is not a number");
    EXPECT_EQ(kind, bftNone);
    EXPECT_EQ(state::GoodCode, text("00057"));
    EXPECT_EQ(state::Weight, "0x250");
    EXPECT_EQ(state::BalanceNum, "3");
    EXPECT_EQ(state::Fi, "1");
}

TEST_F(Barcodes, aPriceThatIsNoNumberIsAnError) {
    state::BarCodePriceSum = 5;
    for (const int barCodeType : {2, 3}) {
        expectLayouts("29000001250x5",
                      {{.ConstantCode = "29", .BarCodeType = barCodeType, .PriceStart = 3, .PriceCount = 10}});
        EXPECT_EQ(conversionError([&] { (void)scan("29000001250x5"); }),
                  "barcode 29000001250x5, field Price: '000001250x' is not a number");
        EXPECT_EQ(kind, bftNone);
        EXPECT_EQ(state::BarCodePriceSum, 5.0L);
    }
    expectLayouts("29000001250x5", {{.ConstantCode = "29", .BarCodeType = 3, .PriceStart = 30, .PriceCount = 10}});
    EXPECT_THAT(conversionError([&] { (void)scan("29000001250x5"); }), HasSubstr("field Price: ''"));
}

TEST_F(Barcodes, unitIsEmptyAgainWithAnotherHost) {
    (void)sharedBarCodes();
    state::Fi = "1";
    state::GoodCode = text("4");
    state::BarCodePriceSum = 5;
    state::After_Equal_Total_Price = [] {};
    ScriptedSession otherScript;
    FakeHost other(otherScript);
    {
        const AttachedHost otherAttached(other);
        EXPECT_EQ(_BarCode_DM, nullptr);
        EXPECT_EQ(state::Fi, "");
        EXPECT_EQ(state::GoodCode, Value{});
        EXPECT_EQ(state::Percode, Value{});
        EXPECT_EQ(state::BarCodePriceSum, 0.0L);
        EXPECT_FALSE(state::After_Equal_Total_Price);
        EXPECT_EQ(sharedBarCodes().Temp_QRY.Connection(), &other.DM().ADOConnection1);
    }
    EXPECT_EQ(sharedBarCodes().Temp_QRY.Connection(), &host.DM().ADOConnection1);
}

}  // namespace
}  // namespace basalt
