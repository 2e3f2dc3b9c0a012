#include <gmock/gmock.h>

#include "tests/database/company.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GoodParticulars : public SmallCompany {};

TEST_F(GoodParticulars, areReadFromTheGoodItsUnitsAndTheLedger) {
    session->run(
        "UPDATE dbo.GoodInf SET Kala_Type = N'خواربار', Kala_Index = N'K-5', Kala_Name = N'حبه', MinAva = 12, Pos = "
        "N'الف۱', "
        "Meghdar_Formool = 24, OffPercentSell = 2.5, TaxExempt = 1, Tax_In_SellCosts = 1, TaxPercent = 9, "
        "ChargePercent = "
        "1, ConsumerPrice = 1200 WHERE Code = 5");
    move(5, 1, "1405/01/01", 1, "10", "100", 4);
    move(5, 1, "1405/01/02", 2, "30", "120");
    move(5, 1, "1405/01/03", 3, "-8", "500", 1);
    move(5, 2, "1405/01/04", 4, "2", "900", 10);  // a transfer brings no cost of its own
    move(6, 1, "1405/01/04", 4, "50", "7");
    // 10 + 30 - 8 + 2; (10 * 100 + 30 * 120) / 40
    EXPECT_THAT(rows("EXEC GoodParticularInfo_SP @GoodCode = 5"),
                ElementsAre("5|قند|خواربار|K-5|حبه|34.000000000|1|2|عدد|کارتن|12.000000000|الف۱|24.000000000|"
                            "115.000000000|2.5000|True|False|False|True|9.0000|1.0000|1200.000000000"));
}

TEST_F(GoodParticulars, areNullWhereNothingIsKnown) {
    EXPECT_THAT(
        rows("EXEC GoodParticularInfo_SP @GoodCode = 7"),
        ElementsAre("7|نان|NULL|NULL|NULL|0.000000000|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|False|False|False|"
                    "False|NULL|NULL|NULL"));
}

TEST_F(GoodParticulars, ofAMissingGoodAreNoRow) {
    EXPECT_THAT(rows("EXEC GoodParticularInfo_SP @GoodCode = 99"), IsEmpty());
}

TEST_F(GoodParticulars, areAskedForWithTheCodeAsText) {
    const CallResult call =
        session->call("GoodParticularInfo_SP", std::vector<Argument>{{"@GoodCode", std::string("5")}});
    ASSERT_EQ(call.batch.results.size(), 1U);
    const RowSet& row = call.batch.results[0].rows.value();
    ASSERT_EQ(row.rowCount(), 1U);
    std::string names;
    for (std::size_t i = 0; i < row.columnCount(); ++i)
        names += row.column(i).info().name + " ";
    EXPECT_EQ(
        names,
        "Code Name Kala_Type Kala_Index Kala_Name Mogodi Unit Unit2 UnitName UnitName2 MinAva Pos Meghdar_Formool "
        "Gheymat_Miangin OffPercentSell TaxExempt ChargeExempt Tax_In_BuyCosts Tax_In_SellCosts TaxPercent "
        "ChargePercent ConsumerPrice ");
}

class OpeningVoucher : public SmallCompany {
protected:
    OpeningVoucher() {
        move(5, 1, "1405/01/01", 1, "10", "100", 4);
        move(5, 2, "1405/01/01", 1, "2", "110", 4);
        move(6, 1, "1405/01/02", 2, "3", "50", 4);
        move(7, 1, "1405/01/02", 2, "4", "NULL", 4);
        move(6, 1, "1405/01/03", 3, "1000", "50");
    }

    std::int64_t make(const std::string& arguments) {
        return integerAt(rowsOf(*session, "DECLARE @Result int EXEC @Result = AutoVoucherFirstPriodGoods " + arguments +
                                              " SELECT @Result"),
                         0, 0);
    }

    std::vector<std::string> voucher() {
        return rows(
            "SELECT Radif, AccountCode, kala, Bed, Bes FROM dbo.SanadDetail WHERE SanadCode = 40 ORDER BY Radif");
    }
};

TEST_F(OpeningVoucher, debitsTheValueOfEachGoodAndCreditsTheSum) {
    EXPECT_EQ(make("0, 40, '1405/01/01', NULL, NULL, 0, 0, NULL"), 0);
    EXPECT_THAT(rows("SELECT Code, [Date] FROM dbo.Sanad"), ElementsAre("40|1405/01/01"));
    EXPECT_THAT(voucher(), ElementsAre("1|1|5|1220.000000000|0.000000000", "2|1|6|150.000000000|0.000000000",
                                       "3|5|NULL|0.000000000|1370.000000000"));
}

TEST_F(OpeningVoucher, takesWhatLiesWithinItsLimits) {
    EXPECT_EQ(make("0, 40, '1405/01/01', '1405/01/02', '1405/01/05', 0, 0, ''"), 0);
    EXPECT_THAT(voucher(), ElementsAre("1|1|6|150.000000000|0.000000000", "2|5|NULL|0.000000000|150.000000000"));
    EXPECT_EQ(make("1, 40, '1405/01/01', '', '1405/01/01', 1, 5, '4,5'"), 0);
    EXPECT_THAT(voucher(), ElementsAre("1|1|5|1220.000000000|0.000000000", "2|5|NULL|0.000000000|1220.000000000"));
}

TEST_F(OpeningVoucher, isRefusedWhereOneIsAlready) {
    session->run("INSERT INTO dbo.Sanad (Code, [Date]) VALUES (40, N'1405/02/02')");
    EXPECT_EQ(make("0, 40, '1405/01/01', NULL, NULL, 0, 0, NULL"), 1);
    EXPECT_EQ(make("NULL, 40, '1405/01/01', NULL, NULL, 0, 0, NULL"), 1);
    EXPECT_THAT(voucher(), IsEmpty());
    EXPECT_THAT(rows("SELECT [Date] FROM dbo.Sanad"), ElementsAre("1405/02/02"));
}

TEST_F(OpeningVoucher, isNotMadeOfNothing) {
    EXPECT_EQ(make("0, 40, '1405/01/01', NULL, NULL, 7, 7, NULL"), 2);
    EXPECT_THAT(rows("SELECT Code FROM dbo.Sanad"), IsEmpty());
}

// Persons 10, 11 and 12 with vouchers that are in order: 10 bought for 500, 11 paid 200, 12 bought for 300 and paid it,
// both in one voucher.
class VoucherConflicts : public SmallCompany {
protected:
    VoucherConflicts() {
        session->run(
            "INSERT INTO dbo.PersonOperations (PerCode, OperationType, OperationCode, [Date], Amount, SanadCode) "
            "VALUES "
            "(10, 1, 1, N'1405/01/01', 500, 1), (11, 11, 1, N'1405/01/02', -200, 2), "
            "(12, 1, 2, N'1405/01/03', 300, 3), (12, 11, 2, N'1405/01/03', -100, 3)\n"
            "INSERT INTO dbo.Sanad (Code, [Date]) VALUES (1, N'1405/01/01'), (2, N'1405/01/02'), (3, N'1405/01/03')\n"
            "INSERT INTO dbo.SanadDetail (SanadCode, Radif, AccountCode, PerCode, Bed, Bes) VALUES "
            "(1, 1, 2, 10, 500, 0), (1, 2, 3, NULL, 0, 500), (2, 1, 2, 11, 0, 200), (2, 2, 4, NULL, 200, 0), "
            "(3, 1, 2, 12, 300, 0), (3, 2, 3, NULL, 0, 300), (3, 3, 2, 12, 0, 100), (3, 4, 4, NULL, 100, 0)");
    }

    std::vector<std::string> conflicts() { return rows("EXEC VoucherConflictAccountList_sp 1, 1"); }
};

TEST_F(VoucherConflicts, areNoneWhenAllIsInOrder) {
    EXPECT_THAT(conflicts(), IsEmpty());
    const RowSet none = rowsOf(*session, "EXEC VoucherConflictAccountList_sp 1, 1");
    ASSERT_EQ(none.columnCount(), 2U);
    EXPECT_EQ(none.column(0).info().name, "Code");
    EXPECT_EQ(none.column(1).info().name, "fullname");
}

TEST_F(VoucherConflicts, areOperationsWithoutAVoucher) {
    execute(*session, "UPDATE dbo.PersonOperations SET SanadCode = NULL WHERE PerCode = 10");
    EXPECT_THAT(conflicts(), ElementsAre("10|علی احمدی"));
}

TEST_F(VoucherConflicts, areVouchersThatAreGone) {
    session->run("DELETE FROM dbo.SanadDetail WHERE SanadCode = 2 DELETE FROM dbo.Sanad WHERE Code = 2");
    EXPECT_THAT(conflicts(), ElementsAre("11|مریم نوری"));
}

TEST_F(VoucherConflicts, areVouchersThatDoNotBalance) {
    execute(*session, "UPDATE dbo.SanadDetail SET Bes = 499 WHERE SanadCode = 1 AND Radif = 2");
    EXPECT_THAT(conflicts(), ElementsAre("10|علی احمدی"));
}

TEST_F(VoucherConflicts, areAmountsThatDiffer) {
    session->run(
        "UPDATE dbo.SanadDetail SET Bed = 301 WHERE SanadCode = 3 AND Radif = 1 "
        "UPDATE dbo.SanadDetail SET Bes = 301 WHERE SanadCode = 3 AND Radif = 2");
    EXPECT_THAT(conflicts(), ElementsAre("12|حسن باقری"));
}

TEST_F(VoucherConflicts, areBookingsOnAnotherPerson) {
    execute(*session, "UPDATE dbo.SanadDetail SET PerCode = 11 WHERE SanadCode = 1 AND Radif = 1");
    EXPECT_THAT(conflicts(), ElementsAre("10|علی احمدی"));
}

TEST_F(VoucherConflicts, countAPersonOnceAndOperationsEach) {
    execute(*session, "UPDATE dbo.PersonOperations SET SanadCode = 77 WHERE PerCode = 12");
    EXPECT_THAT(conflicts(), ElementsAre("12|حسن باقری"));
    EXPECT_THAT(rows("EXEC VoucherConflictAccountList_sp 1, 0"),
                ElementsAre("12|حسن باقری|1|2|1405/01/03", "12|حسن باقری|11|2|1405/01/03"));
}

TEST_F(VoucherConflicts, ofIssuesBelowZeroWaitWhereThatIsAllowed) {
    execute(*session, "UPDATE dbo.PersonOperations SET SanadCode = NULL WHERE PerCode IN (10, 11)");
    move(5, 1, "1405/01/01", 1, "-3", "100", 1);
    execute(*session, "UPDATE dbo.Kardex SET RemainInAnbar = -3");
    EXPECT_THAT(conflicts(), ElementsAre("10|علی احمدی", "11|مریم نوری"));
    EXPECT_THAT(rows("EXEC VoucherConflictAccountList_sp 0, 1"), ElementsAre("11|مریم نوری"));
}

}  // namespace
}  // namespace basalt::host
