#include <gmock/gmock.h>

#include "tests/database/company.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Good 5 has a serial (detail 1), a colour (3) and a date (4); good 6 a barcode (2) and a colour; good 7 none.
//   combination 1 of 5: SN1, red, 1405/06/01    came into store 1, sold
//   combination 2 of 5: SN2, blue, 1405/09/01   came into store 1, moved to store 2
//   combination 3 of 5: SN2, red                never came in
//   combination 4 of 6: D77, red                4 came into store 2, 1 sold
class GoodDetails : public SmallCompany {
protected:
    GoodDetails() {
        session->run(
            "INSERT INTO dbo.DetailTypes (ID, Title, DetailType) VALUES (1, N'سریال', 3), (2, N'بارکد', 4), (3, "
            "N'رنگ', 1), (4, N'تاریخ', 2)\n"
            "INSERT INTO dbo.GoodDetailRelation (GoodCode, Slot, DetailID) VALUES (5, 1, 1), (5, 2, 3), (5, 3, 4), (6, "
            "1, 2), "
            "(6, 2, 3)");
        session->run(
            "EXEC dbo.InsertGoodDetailValuesID @GoodCode = 5, @DetailID1 = 1, @DetailValue1 = 'SN1', @DetailID2 = 3, "
            "@DetailValue2 = N'قرمز', @DetailID3 = 4, @DetailValue3 = '1405/06/01', @DetailID4 = 0, @DetailValue4 = "
            "'', "
            "@DetailID5 = 0, @DetailValue5 = ''\n"
            "EXEC dbo.InsertGoodDetailValuesID 5, 1, 'SN2', 3, N'آبی', 4, '1405/09/01'\n"
            "EXEC dbo.InsertGoodDetailValuesID 5, 1, 'SN2', 3, N'قرمز'\n"
            "EXEC dbo.InsertGoodDetailValuesID 6, 2, 'D77', 3, N'قرمز'");
        session->run(
            "INSERT INTO dbo.GoodDetailKardex (DetailValueID, StoreCode, GoodCode, Amount1, OperationType, "
            "OperationCode, "
            "OperationRow) VALUES (1, 1, 5, 1, 2, 10, 1), (2, 1, 5, 1, 2, 10, 2), (4, 2, 6, 4, 2, 10, 3), (1, 1, 5, 1, "
            "1, 20, "
            "1), (2, 1, 5, 1, 9, 21, 1), (2, 2, 5, 1, 10, 21, 1), (4, 2, 6, 1, 1, 22, 1)");
    }

    // The slots as they are sent for what is asked of the first: the others empty.
    static std::string only(int detail, const std::string& value, const std::string& second = "",
                            const std::string& condition = "") {
        std::string text = ", @DetailID1 = " + std::to_string(detail) + ", @Detail1Value1 = N'" + value +
                           "', @Detail1Value2 = N'" + second + "', @ConditionOperator1 = '" + condition + "'";
        return text;
    }

    static std::string emptySlots(int from) {
        std::string text;
        for (int slot = from; slot <= 5; ++slot) {
            const std::string n = std::to_string(slot);
            text += ", @DetailID" + n + " = 0, @Detail" + n + "Value1 = '', @Detail" + n +
                    "Value2 = '', @ConditionOperator" + n + " = ''";
        }
        return text;
    }

    // The combinations found.
    std::vector<std::string> found(int good, const std::string& slots) {
        const RowSet all = rowsOf(
            *session, " EXEC dbo.GetGoodDetailValuesID     @GoodCode           = " + std::to_string(good) + slots);
        std::vector<std::string> ids;
        for (std::size_t row = 0; row < all.rowCount(); ++row)
            ids.push_back(textAt(all, 0, row));
        return ids;
    }
};

TEST_F(GoodDetails, areFoundByAllTheirValues) {
    const std::string red =
        ", @DetailID2 = 3, @Detail2Value1 = N'قرمز', @Detail2Value2 = '', @ConditionOperator2 = '='";
    EXPECT_THAT(found(5, only(1, "SN2") + red + emptySlots(3)), ElementsAre("3"));
    // Combination 1 has a date too.
    EXPECT_THAT(found(5, only(1, "SN1") + red + emptySlots(3)), IsEmpty());
    EXPECT_THAT(found(5, only(1, "SN1") + red), ElementsAre("1"));
    EXPECT_THAT(found(5, only(1, "SN2") + emptySlots(2)), IsEmpty());
    EXPECT_THAT(found(6, only(1, "SN2")), IsEmpty());
}

TEST_F(GoodDetails, areFoundBySomeOfTheirValues) {
    EXPECT_THAT(found(5, only(1, "SN2", "SN2")), ElementsAre("2", "3"));
    EXPECT_THAT(found(5, only(3, "قرمز")), ElementsAre("1", "3"));
    EXPECT_THAT(found(5, ""), ElementsAre("1", "2", "3"));
    EXPECT_THAT(found(5, only(1, "SN9")), IsEmpty());
}

TEST_F(GoodDetails, areFoundByComparison) {
    EXPECT_THAT(found(5, only(4, "1405/06/01", "", ">")), ElementsAre("2"));
    EXPECT_THAT(found(5, only(4, "1405/06/01", "", ">=")), ElementsAre("1", "2"));
    EXPECT_THAT(found(5, only(4, "1405/09/01", "", "<")), ElementsAre("1"));
    EXPECT_THAT(found(5, only(4, "1405/09/01", "", "<=")), ElementsAre("1", "2"));
    EXPECT_THAT(found(5, only(4, "1405/09/01", "", "<>")), ElementsAre("1"));
    EXPECT_THAT(found(5, only(4, "1405/01/01", "1405/07/01", "between")), ElementsAre("1"));
    EXPECT_THAT(found(5, only(4, "1405/01/01", "", "no such")), IsEmpty());
}

TEST_F(GoodDetails, haveTitles) {
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_GetGoodDetailTitle     @GoodDetailValueID = 1"),
                ElementsAre("SN1 - قرمز - 1405/06/01|1|SN1|3|قرمز|4|1405/06/01|0||0|"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_GetGoodDetailTitle     @GoodDetailValueID = 99"), IsEmpty());
}

TEST_F(GoodDetails, keepAQuoteInAValue) {
    session->run("EXEC dbo.InsertGoodDetailValuesID 5, 1, 'AB''12'");
    EXPECT_THAT(found(5, only(1, "AB''12") + emptySlots(2)), ElementsAre("5"));
}

TEST_F(GoodDetails, areInStockWhereTheyCameAndHaveNotLeft) {
    const auto stock = [this](int store, int good, const std::string& slots) {
        return rows(" EXEC dbo.GetGoodDetailKardex_Mojodi     @Anbar              = " + std::to_string(store) +
                    "  , @GoodCode           = " + std::to_string(good) + slots);
    };
    const std::string red = ", @DetailID2 = 3, @Detail2Value1 = N'قرمز', @Detail2Value2 = '', @ConditionOperator2 = ''";
    EXPECT_THAT(stock(2, 6, only(2, "D77") + red + emptySlots(3)), ElementsAre("3.000000000"));
    EXPECT_THAT(stock(1, 5, only(1, "SN1")), ElementsAre("0.000000000"));
    EXPECT_THAT(stock(2, 5, only(1, "SN2")), ElementsAre("1.000000000"));
    EXPECT_THAT(stock(1, 5, ""), ElementsAre("0.000000000"));
    EXPECT_THAT(stock(1, 6, only(2, "D77")), IsEmpty());  // never was there
}

TEST_F(GoodDetails, belongToGoodsThatDefineThem) {
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckGoodDetailRelation    @GoodCode = 6"),
                ElementsAre("6|1|2", "6|2|3"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckGoodDetailRelation    @GoodCode = 7"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckGoodDetailExists    @GoodCode = 5"), ElementsAre("1"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckGoodDetailExists    @GoodCode = 7"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckGoodDetailKardexExists    @GoodCode = 6"), ElementsAre("3"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckGoodDetailKardexExists    @GoodCode = 7"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.CheckExistsGoodDetailSerial_InGood    @GoodCode = 5"), ElementsAre("1|1"));
    EXPECT_THAT(rows(" EXEC dbo.CheckExistsGoodDetailSerial_InGood    @GoodCode = 6"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.ExistsGoodDetails_Operation    @OperationCode = 21 , @OperationType = 9"),
                ElementsAre("5"));
    EXPECT_THAT(rows(" EXEC dbo.ExistsGoodDetails_Operation    @OperationCode = 21 , @OperationType = 1"), IsEmpty());
}

TEST_F(GoodDetails, areMeasuredInTheUnitThatMeansSquareMetre) {
    const std::string check = " EXEC dbo.GoodDetail_Select_CheckGoodUnit_MetreMoraba      @GoodCode = ";
    EXPECT_THAT(rows(check + "5   , @Unit     = 1"), ElementsAre("5"));
    EXPECT_THAT(rows(check + "5   , @Unit     = 2"), ElementsAre("5"));
    EXPECT_THAT(rows(check + "6   , @Unit     = 2"), IsEmpty());
    EXPECT_THAT(rows(check + "7   , @Unit     = 0"), IsEmpty());
}

// Good 6 has the own barcode 626, good 7 the barcodes 111 and 626.
class DetailBarcodes : public GoodDetails {
protected:
    DetailBarcodes() {
        session->run(
            "UPDATE dbo.GoodInf SET AbbName = N'!626!', Pos = N'ب۲', OffPercentSell = 7.5, TaxExempt = 1, TaxPercent = "
            "9 "
            "WHERE Code = 6 UPDATE dbo.GoodInf SET AbbName = N'!111!626!' WHERE Code = 7");
        move(6, 2, "1405/01/01", 1, "5");
        move(6, 1, "1405/01/01", 1, "5");
        move(6, 1, "1405/01/02", 2, "-5");
    }
};

TEST_F(DetailBarcodes, sayWhichGoodsHaveThem) {
    const std::string check = " EXEC dbo.GoodDetail_Select_CheckBarcodeForThisGoodIsValid      @Barcode = ";
    EXPECT_THAT(rows(check + "'D77'"), ElementsAre("6"));
    EXPECT_THAT(rows(check + "'626'"), ElementsAre("6", "7"));
    EXPECT_THAT(rows(check + "'62'"), IsEmpty());
    EXPECT_THAT(rows(check + "''"), IsEmpty());
    EXPECT_THAT(rows(check + "'SN1'"), IsEmpty());  // a serial
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckBarcodeForOtherGoodsIsSaved      @Barcode = '111'"),
                ElementsAre("7"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckBarcodeForOtherGoodsIsSaved      @Barcode = 'D77'"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckBarcodeInGoodDetail      @Barcode = 'D77'"), ElementsAre("4|6"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckBarcodeInGoodDetail      @Barcode = '626'"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckExistsGoodDetailWithDetailBarcode      @Barcode = 'D77'"),
                ElementsAre("6"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckExistsGoodDetailWithGoodBarcode      @Barcode = '626'"),
                ElementsAre("6"));  // 7 has no details
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckExistsGoodDetailWithGoodBarcode      @Barcode = 'D77'"),
                IsEmpty());
}

TEST_F(DetailBarcodes, nameOneGood) {
    const std::string name = " EXEC dbo.GoodDetail_Select_GetGoodCodeWithBarcode      @Barcode = ";
    EXPECT_THAT(rows(name + "'D77'"), ElementsAre("6"));
    EXPECT_THAT(rows(name + "'626'"), ElementsAre("7"));
    EXPECT_THAT(rows(name + "'9'"), IsEmpty());
    // The barcode of a detail goes before a good's own.
    session->run("UPDATE dbo.GoodInf SET AbbName = N'!D77!' WHERE Code = 7");
    EXPECT_THAT(rows(name + "'D77'"), ElementsAre("6"));
}

TEST_F(DetailBarcodes, leadToTheGoodsParticulars) {
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode @Barcode = 'D77'"),
                ElementsAre("2|6|ب۲|7.5000|True|False|False|NULL|9.0000"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_GetGoodInf_ByGoodBarcode      @Barcode = '626'"),
                ElementsAre("0|7||0.0000|False|False|False|NULL|NULL", "2|6|ب۲|7.5000|True|False|False|NULL|9.0000"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode @Barcode = '626'"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_GetGoodInf_ByGoodBarcode      @Barcode = 'D77'"), IsEmpty());
}

TEST_F(DetailBarcodes, leadToTheRestOfTheirCombination) {
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_ReturnBarcodeDetailValue       @GoodCode = 6"), ElementsAre("2|1"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_ReturnBarcodeDetailValue       @GoodCode = 5"), IsEmpty());
    const RowSet found = rowsOf(*session,
                                " EXEC dbo.GetGoodDetailValuesID     @GoodCode      = 6  , @DetailID1     = 2  , "
                                "@Detail1Value1 = 'D77'  , @Detail1Value2 = 'D77'");
    ASSERT_EQ(found.rowCount(), 1U);
    EXPECT_EQ(textAt(found, static_cast<std::size_t>(found.indexOf("D2Value")), 0), "قرمز");
    EXPECT_EQ(textAt(found, static_cast<std::size_t>(found.indexOf("D5Value")), 0), "");
}

TEST_F(GoodDetails, areFoundBySerial) {
    const std::string serial = " EXEC dbo.GoodDetail_Select_GetGoodCodeWithSerial      @Serial = ";
    EXPECT_THAT(rows(serial + "'SN1'"), ElementsAre("5|1"));         // sold, but it came into store 1
    EXPECT_THAT(rows(serial + "'SN2'"), ElementsAre("5|2", "5|0"));  // in stock first
    EXPECT_THAT(rows(serial + "'D77'"), IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckSerialForOtherGoods      @Serial   = 'SN1'   , @GoodCode = 6"),
                ElementsAre("5"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_CheckSerialForOtherGoods      @Serial   = 'SN1'   , @GoodCode = 5"),
                IsEmpty());
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_ReturnSerialDetailValue       @Serial   = 'SN2'    , @GoodCode = 5"),
                ElementsAre("1"));
    EXPECT_THAT(rows(" EXEC dbo.GoodDetail_Select_ReturnSerialDetailValue       @Serial   = 'SN2'    , @GoodCode = 6"),
                IsEmpty());
}

TEST_F(GoodDetails, ofAnIssueAreFoundBySerial) {
    session->run(
        "INSERT INTO dbo.GoodDetailKardexExit_Temp (DetailValueID, StoreCode, GoodCode, DetailTitle1, OperationType, "
        "OperationCode, OperationRow) VALUES (1, 1, 5, 'SN1', 1, 1, 1), (2, 1, 5, 'SN2', 1, 1, 2), (1, 1, 5, 'SN1', 1, "
        "2, 1)");
    const std::string serial = " EXEC dbo.GoodDetail_Select_GetGoodDetailIDFromExitGoodDetailTemp      @Serial = ";
    EXPECT_THAT(rows(serial + "'SN1'"), ElementsAre("3", "1"));
    EXPECT_THAT(rows(serial + "'SN9'"), IsEmpty());
}

}  // namespace
}  // namespace basalt::host
