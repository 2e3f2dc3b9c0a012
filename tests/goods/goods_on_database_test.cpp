// Stock checks, scans and scales on the small company's database: what the statements find there, through the module.
#include <gmock/gmock.h>

#include "goods/barcode_extractor_unt.h"
#include "goods/goodsinfo_unt.h"
#include "goods/scale_unt.h"
#include "package/services.h"
#include "tests/database/company.h"
#include "tests/support/fake_host.h"

namespace basalt::host {
namespace {

namespace state = Barcode_extractor_unt;

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GoodsOnDatabase : public SmallCompany {
protected:
    GoodsOnDatabase() { fake.settings.NegativeType = 0; }

    FakeHost fake{*session};
    AttachedHost attached{fake};
};

// Good 5 in store 1: the ledger's rows are of day 10, with what remained after each. Its sum up to day 9 is 100.
class LedgerCheck : public GoodsOnDatabase {
protected:
    LedgerCheck() {
        ledger(5, 1, "1405/01/01", 1, 100, "100");
        ledger(6, 1, "1405/01/01", 2, 100, "100");
    }

    void ledger(int good, int store, const char* date, int document, int amount, const char* remaining) {
        execute(*session,
                "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad, RemainInAnbar, OperationType, "
                "OperationCode) VALUES (?, ?, ?, ?, ?, " +
                    std::string(remaining) + ", 1, ?)",
                {std::int64_t{good}, std::int64_t{store}, std::string(date), std::int64_t{document},
                 std::int64_t{amount}, std::int64_t{document}});
    }
    static std::string line(int good, int store, const char* amount) {
        return "SELECT " + std::to_string(good) + " AS Code, " + std::to_string(store) + " AS Anbar, " + amount +
               " AS Mogodi";
    }
    // From day 5 up to document 50 of day 10.
    bool mayBeSaved(const std::string& lines) { return Check_TockMinus(lines, "1405/01/05", "1405/01/10", 50); }
    void expectRefusal() { fake.expectMessage("ShowSmartMessage(error 30055)"); }
};

TEST_F(LedgerCheck, whatTheSpanLeavesMayGoAndNoMore) {
    ledger(5, 1, "1405/01/07", 3, -70, "30");
    EXPECT_TRUE(mayBeSaved(line(5, 1, "-30")));
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(5, 1, "-31")));
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(5, 1, "-30.000000001")));
}

TEST_F(LedgerCheck, theSpanBeginsWithItsFirstDay) {
    ledger(5, 1, "1405/01/04", 3, -95, "5");
    ledger(5, 1, "1405/01/05", 4, 20, "25");
    EXPECT_TRUE(mayBeSaved(line(5, 1, "-25")));  // 5 were left the day before
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(5, 1, "-26")));
}

TEST_F(LedgerCheck, onTheLastDayOnlyWhatWasEnteredBeforeCounts) {
    ledger(5, 1, "1405/01/10", 50, -95, "5");
    ledger(5, 1, "1405/01/10", 51, -1, "4");
    ledger(5, 1, "1405/01/11", 7, -1, "3");
    EXPECT_TRUE(mayBeSaved(line(5, 1, "-80")));
    ledger(5, 1, "1405/01/10", 49, -10, "79");
    EXPECT_TRUE(mayBeSaved(line(5, 1, "-79")));
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(5, 1, "-80")));
}

TEST_F(LedgerCheck, aRowThatDoesNotSayWhatRemainedLeavesNothing) {
    ledger(5, 1, "1405/01/07", 3, 10, "NULL");
    EXPECT_TRUE(mayBeSaved(line(5, 1, "0")));
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(5, 1, "-1")));
}

TEST_F(LedgerCheck, rowsOfOtherStoresAndGoodsDoNotCount) {
    ledger(5, 2, "1405/01/07", 3, -1, "0");
    ledger(6, 1, "1405/01/07", 4, -99, "1");
    EXPECT_TRUE(mayBeSaved(line(5, 1, "-50")));
    // A line of several that finds too little is enough.
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(5, 1, "-50") + " UNION ALL " + line(6, 1, "-2")));
}

TEST_F(LedgerCheck, theBalanceOfTheFirstDayHasToCoverALine) {
    ledger(5, 1, "1405/01/05", 3, -40, "500");  // a remainder that stage one is content with
    ledger(5, 1, "1405/01/06", 4, 400, "500");  // behind the day that the balance is struck
    EXPECT_TRUE(mayBeSaved(line(5, 1, "-60")));
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(5, 1, "-61")));
}

// Good 7: 5 came on day 1, and document 50 of day 10 took them all.
class EditedDocument : public LedgerCheck {
protected:
    EditedDocument() {
        ledger(7, 1, "1405/01/01", 3, 5, "5");
        ledger(7, 1, "1405/01/10", 50, -5, "0");
    }
};

TEST_F(EditedDocument, isAskedForByItsDifferenceInTheTextForm) {
    const auto mayTake = [](const char* amount) {
        return Check_TockMinus(line(7, 1, amount), "1405/01/10", "1405/01/10", 50);
    };
    // What the document took already is not there for its lines.
    for (const char* whole : {"-5", "-3"}) {
        expectRefusal();
        EXPECT_FALSE(mayTake(whole)) << whole;
    }
    EXPECT_TRUE(mayTake("0"));  // 5 again
    EXPECT_TRUE(mayTake("2"));  // 3 instead of 5
    expectRefusal();
    EXPECT_FALSE(mayTake("-1"));  // 6 instead of 5
}

TEST_F(EditedDocument, isAskedForByItsNewLinesInTheProcedureForm) {
    const auto mayTake = [](const char* amount) {
        return Check_TockMinus(line(7, 1, amount), "1405/01/10", 50, false);
    };
    for (const char* enough : {"-5", "-3", "0"})
        EXPECT_TRUE(mayTake(enough)) << enough;
    fake.expectMessage("ShowSmartMessage(error 30055, 'نان')");
    EXPECT_FALSE(mayTake("-6"));
    EXPECT_EQ(strMinusGoodCodes, "7");
}

TEST_F(LedgerCheck, aLineWithoutRowsInItsStoreStandsForItself) {
    EXPECT_TRUE(mayBeSaved(line(7, 2, "1")));
    EXPECT_TRUE(mayBeSaved(line(7, 2, "0")));
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(7, 2, "-1")));
}

TEST_F(LedgerCheck, warnedUserDecidesAndAllowingLooksAtNothing) {
    strMinusGoodCodes = "before";
    fake.settings.NegativeType = 1;
    fake.expectMessage("ShowSmartMessage(confirmation 20091)", mrYes);
    EXPECT_TRUE(mayBeSaved(line(7, 2, "-1")));
    fake.expectMessage("ShowSmartMessage(confirmation 20091)", mrNo);
    EXPECT_FALSE(mayBeSaved(line(7, 2, "-1")));
    fake.settings.NegativeType = 2;
    EXPECT_TRUE(mayBeSaved("no query at all"));
    EXPECT_EQ(strMinusGoodCodes, "before");
}

TEST_F(LedgerCheck, linesThatAreNoQueryAreAnError) {
    EXPECT_THROW((void)mayBeSaved("no query at all"), DatabaseError);
    EXPECT_FALSE(fake.DM().SharedQuery.Active());
    expectRefusal();
    EXPECT_FALSE(mayBeSaved(line(7, 2, "-1")));
}

// What is not known to be there must not pass as enough.
TEST_F(LedgerCheck, bothChecksRefuseALineOfNoKnownGoodOrStore) {
    struct Line {
        const char* query;
        const char* message;
        const char* codes;
    };
    for (const Line& each : {Line{"SELECT 99 AS Code, 1 AS Anbar, -1 AS Mogodi", ", '99'", "99"},
                             Line{"SELECT 5 AS Code, NULL AS Anbar, -1 AS Mogodi", ", 'قند'", "5"},
                             Line{"SELECT NULL AS Code, 1 AS Anbar, -1 AS Mogodi", "", ""}}) {
        expectRefusal();
        EXPECT_FALSE(mayBeSaved(each.query)) << each.query;
        fake.expectMessage(std::string("ShowSmartMessage(error 30055") + each.message + ")");
        EXPECT_FALSE(Check_TockMinus(each.query, "1405/01/05", 0, false)) << each.query;
        EXPECT_EQ(strMinusGoodCodes, each.codes);
    }
    const std::string receipt = "SELECT 99 AS Code, 1 AS Anbar, 1 AS Mogodi";
    EXPECT_TRUE(mayBeSaved(receipt));
    EXPECT_TRUE(Check_TockMinus(receipt, "1405/01/05", 0, false));
}

TEST_F(LedgerCheck, theProcedureNamesTheGoods) {
    const std::string lines = line(7, 1, "-1") + " UNION ALL " + line(5, 1, "-101");
    fake.expectMessage("ShowSmartMessage(error 30055, 'قند، نان')");
    EXPECT_FALSE(Check_TockMinus(lines, "1405/01/05", 0, false));
    EXPECT_EQ(strMinusGoodCodes, "5,7");
    EXPECT_TRUE(Check_TockMinus(line(5, 1, "-100"), "1405/01/05", 0, false));
    EXPECT_EQ(strMinusGoodCodes, "");
    fake.settings.NegativeType = 1;
    fake.expectMessage("ShowSmartMessage(confirmation 20091, 'قند، نان')", mrNo);
    EXPECT_FALSE(Check_TockMinus(lines, "1405/01/05", 0, false));
    EXPECT_EQ(strMinusGoodCodes, "5,7");
    fake.expectMessage("ShowSmartMessage(confirmation 20091, 'قند، نان')", mrYes);
    EXPECT_TRUE(Check_TockMinus(lines, "1405/01/05", 0, false));
    EXPECT_EQ(strMinusGoodCodes, "");
}

TEST_F(GoodsOnDatabase, particularsAreReadWithTheStockOfAllStores) {
    move(5, 1, "1405/01/01", 1, "10.5", "1000");
    move(5, 2, "1405/01/02", 2, "2");
    execute(*session, "UPDATE dbo.GoodInf SET MinAva = 3.25, Pos = N'A-12', TaxExempt = 1 WHERE Code = 5");
    TGoodInfoMapper info;
    ASSERT_TRUE(FillGoodInfo("5", info));
    EXPECT_EQ(info._Code, 5);
    EXPECT_EQ(info._Name, "قند");
    EXPECT_EQ(info._Mogodi, 12.5L);
    EXPECT_EQ(info._UnitName, "عدد");
    EXPECT_EQ(info._UnitName2, "کارتن");
    EXPECT_EQ(info._MinAva, "3.25");
    EXPECT_EQ(info._Gheymat_Miangin, 1000.0L);
    EXPECT_TRUE(info._TaxExempt);
    ASSERT_TRUE(FillGoodInfo("7", info));
    EXPECT_EQ(info._Gheymat_Miangin, 0.0L);  // nothing came in at a known cost
    EXPECT_FALSE(FillGoodInfo("8", info));
    EXPECT_EQ(info._Code, 7);
}

TEST_F(GoodsOnDatabase, withoutSellingLevelsTheDefaultRemains) {
    TStrings items;
    Fill_SellCostLevel(items);
    EXPECT_THAT(items, ElementsAre(TStringItem{"پيش فرض", 0}, TStringItem{"خرده", 1}, TStringItem{"عمده", 2},
                                   TStringItem{"همکار", 3}));
    execute(*session, "DELETE FROM dbo.costlist");
    execute(*session, "DELETE FROM dbo.CostLevel WHERE CostType = 1 AND Code > 0");
    Fill_SellCostLevel(items);
    EXPECT_THAT(items, ElementsAre(TStringItem{"پيش فرض", 0}));
}

// Scans

class Scanned : public GoodsOnDatabase {
protected:
    Scanned() {
        execute(*session,
                "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
                "BarCodeType, ItemConstantCode, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, "
                "AmountDivide, BalanceNoStart, BalanceNoCount, BalanceNoAsStore, PriceStart, PriceCount) VALUES "
                "(N'وزن', 13, 1, 2, N'28', 1, 0, 2, 3, 5, 8, 5, 5, 0, 0, 0, 0, 0)");
        execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'!00042!!7!' WHERE Code IN (5, 6)");
    }
    TBarCodeFormulType kind = bftNone;
};

TEST_F(Scanned, ofGoodsWithOneScaleCodeTheHighestIsTaken) {
    EXPECT_TRUE(FillGoodInfFromBarcode(butNew, kind, " 2800042012505 ", "10", "", 0));
    EXPECT_EQ(kind, bftAmount);
    EXPECT_EQ(state::GoodCode, Value(std::string("6")));
    EXPECT_EQ(state::Weight, "1.25");
    EXPECT_EQ(state::Fi, "2000");
    EXPECT_EQ(GetGoodInFromBarCode(), 1);
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'' WHERE Code = 6");
    EXPECT_TRUE(FillGoodInfFromBarcode(butNew, kind, "2800042012505", "10", "", 0));
    EXPECT_EQ(state::GoodCode, Value(std::string("5")));
    EXPECT_EQ(state::Fi, "800");  // the person's own level
}

TEST_F(Scanned, aScaleCodeThatNoGoodBearsIsGoodZeroWithoutAPrice) {
    fake.expectMessage("ShowSmartMessage(notification 10152)");
    EXPECT_TRUE(FillGoodInfFromBarcode(butNew, kind, "2800043012505", "10", "", 0));
    EXPECT_EQ(state::GoodCode, Value(std::string("0")));
    EXPECT_EQ(state::Fi, "0");
    EXPECT_EQ(GetGoodInFromBarCode(), 2);
}

TEST_F(Scanned, aBarcodeOfNoLayoutIsNone) {
    EXPECT_FALSE(FillGoodInfFromBarcode(butNew, kind, "2900042012505", "10", "", 0));
    EXPECT_FALSE(FillGoodInfFromBarcode(butNew, kind, "280004201250", "10", "", 0));
    EXPECT_EQ(kind, bftNone);
}

// Codes are pasted: it is for the caller to look at what a scanner gave.
TEST_F(Scanned, aCodeThatIsMoreThanACodeIsRunAsItStands) {
    execute(*session, "INSERT INTO dbo.Items (Code, name1, price, type) VALUES (6, N'چای', 2000, 1)");
    EXPECT_EQ(GetBarcode_Code("6;DELETE FROM dbo.Items", false, false), 6);
    EXPECT_EQ(rowsOf(*session, "SELECT Code FROM dbo.Items").rowCount(), 0U);
}

// Scales

class SentToScales : public GoodsOnDatabase {
protected:
    SentToScales() {
        session->run(
            "INSERT INTO dbo.Scales (Number, IP, ipRange) VALUES (1, N'192.168.10.21', 1), (2, N'192.168.10.22', 1)\n"
            "INSERT INTO dbo.Scales_Groups (GroupNo, ScaleCode) VALUES (1, 1), (20, 2)\n"
            "INSERT INTO dbo.Items (Code, name1, name2, price, [type], BarCode) VALUES (5, N'قند', N'حبه', 1000, 0, "
            "N'2800005'), (6, N'چای', NULL, 2000, 1, NULL)\n"
            "INSERT INTO dbo.[Group-PLU] (PlU, Group1, Group20) VALUES (4, 5, 5), (9, NULL, 6)");
    }
};

TEST_F(SentToScales, aGoodOfOneGroupIsTheLastOfItsBatch) {
    GoodInf_SendToScale("6", 1);
    EXPECT_THAT(fake.calls, ElementsAre("start(open, ScaleAgentApp.exe, 6 \"چای\" \" \"  2000  1 \" \"  9  "
                                        "192.168.10.22  1, , 0)"));
}

TEST_F(SentToScales, aGoodOfTwoGroupsIsSentToEach) {
    GoodInf_SendToScale("5", 1);
    EXPECT_THAT(
        fake.calls,
        ElementsAre(
            "start(open, ScaleAgentApp.exe, 5 \"قند\" \"حبه \"  1000  0 \"2800005 \"  4  192.168.10.21  0, , 0)",
            "start(open, ScaleAgentApp.exe, 5 \"قند\" \"حبه \"  1000  0 \"2800005 \"  4  192.168.10.22  1, , 0)"));
}

TEST_F(SentToScales, pricesWithDecimalsAreWrittenShort) {
    session->run(
        "DROP TABLE dbo.Items\n"
        "CREATE TABLE dbo.Items (Code int, name1 nvarchar(50), name2 nvarchar(50), price decimal(23, 9), [type] int, "
        "BarCode nvarchar(20), costlevel_Type int)\n"
        "INSERT INTO dbo.Items VALUES (6, N'چای', NULL, 2000.5, 1, NULL, NULL)");
    GoodInf_SendToScale("6", 1);
    EXPECT_THAT(fake.calls, ElementsAre("start(open, ScaleAgentApp.exe, 6 \"چای\" \" \"  2000.5  1 \" \"  9  "
                                        "192.168.10.22  1, , 0)"));
}

TEST_F(SentToScales, goodsWithoutAKeyStartNothingAndCodesThatAreNoneFail) {
    GoodInf_SendToScale("7", 1);
    EXPECT_THAT(fake.calls, IsEmpty());
    EXPECT_THROW(GoodInf_SendToScale("5,", 1), DatabaseError);
    EXPECT_THAT(fake.calls, IsEmpty());
    EXPECT_FALSE(fake.DM().SharedQuery.Active());
}

}  // namespace
}  // namespace basalt::host
