#include <gmock/gmock.h>

#include <regex>

#include "tests/database/dump.h"

namespace basalt::host {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

class DemoCompany : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        session = openDatabase(":memory:");
        deployDatabase(*session, {.demo = true});
    }
    static void TearDownTestSuite() { session.reset(); }

    static std::vector<std::string> rows(const std::string& sql) { return linesOf(*session, sql); }

    static std::unique_ptr<Session> session;
};

std::unique_ptr<Session> DemoCompany::session;

TEST_F(DemoCompany, isLargeEnoughToLookAt) {
    EXPECT_THAT(rows("SELECT COUNT(*) FROM dbo.GoodInf UNION ALL SELECT COUNT(*) FROM dbo.PerInf UNION ALL "
                     "SELECT COUNT(DISTINCT OstanCode) FROM dbo.Zone UNION ALL SELECT COUNT(*) FROM dbo.category"),
                ElementsAre("300", "60", "31", "62"));
}

// Every foreign key that stands behind a column in the scripts.
TEST_F(DemoCompany, keepsItsForeignKeys) {
    static const std::regex table(R"(CREATE TABLE (dbo\.(?:\w+|\[[^\]]+\])))");
    static const std::regex key(R"(^        (?!FOREIGN)(\w+|\[\w+\]) .*REFERENCES (dbo\.\w+) \((\w+)\))");
    int keys = 0;
    for (const database::SqlScript& script : database::scripts()) {
        std::istringstream text{std::string(script.text)};
        std::string current;
        std::smatch match;
        for (std::string line; std::getline(text, line);) {
            if (std::regex_search(line, match, table)) current = match[1];
            if (!std::regex_search(line, match, key)) continue;
            const std::string column = match[1];
            const std::string parent = match[2];
            const std::string parentColumn = match[3];
            ++keys;
            EXPECT_THAT(rows("SELECT C." + column + " FROM " + current + " AS C WHERE C." + column +
                             " IS NOT NULL AND NOT EXISTS (SELECT 1 FROM " + parent + " AS P WHERE P." + parentColumn +
                             " = C." + column + ")"),
                        IsEmpty())
                << current << "." << column;
        }
    }
    EXPECT_EQ(keys, 32);
    // The two that stand by themselves.
    EXPECT_THAT(rows("SELECT GoodCode FROM dbo.GoodCostDiscount WHERE GoodCode NOT IN (SELECT Code FROM dbo.GoodInf)"),
                IsEmpty());
    EXPECT_THAT(
        rows("SELECT C.ID FROM dbo.costlist AS C WHERE C.CostLevelCode IS NOT NULL AND NOT EXISTS (SELECT 1 FROM "
             "dbo.CostLevel AS L WHERE L.CostType = C.CostLevelType AND L.Code = C.CostLevelCode)"),
        IsEmpty());
    EXPECT_THAT(rows("SELECT COUNT(*) FROM sys.foreign_keys"), ElementsAre("34"));
}

TEST_F(DemoCompany, hasBarcodesWithRightCheckDigits) {
    int codes = 0;
    int scaleCodes = 0;
    for (const std::string& row : rows("SELECT Code, AbbName FROM dbo.GoodInf")) {
        const std::string good = row.substr(0, row.find('|'));
        std::istringstream list(row.substr(row.find('|') + 2));
        for (std::string code; std::getline(list, code, '!');) {
            if (code.size() == 5) {
                ++scaleCodes;
                EXPECT_EQ(std::stoi(code), std::stoi(good)) << row;
                continue;
            }
            ++codes;
            ASSERT_EQ(code.size(), 13U) << row;
            int sum = 0;
            for (std::size_t i = 0; i < 13; ++i)
                sum += (code[i] - '0') * (i % 2 == 0 ? 1 : 3);
            EXPECT_EQ(sum % 10, 0) << row;
        }
    }
    EXPECT_GT(codes, 400);
    EXPECT_EQ(scaleCodes, 28);
}

TEST_F(DemoCompany, hasPricesThatFallFromConsumerToPurchase) {
    EXPECT_THAT(
        rows(
            "SELECT G.Code FROM dbo.GoodInf AS G INNER JOIN dbo.GoodCostDiscount AS P ON P.GoodCode = G.Code WHERE NOT "
            "(G.ConsumerPrice > P.CostLevel_Sell_1 AND P.CostLevel_Sell_1 > P.CostLevel_Sell_2 AND "
            "P.CostLevel_Sell_2 > P.CostLevel_Buy_1 AND P.CostLevel_Buy_1 > 0)"),
        IsEmpty());
    // Behind the first ninety-six every level has its price: nobody sells below what it costs.
    EXPECT_THAT(rows("SELECT GoodCode FROM dbo.GoodCostDiscount WHERE GoodCode > 96 AND NOT (CostLevel_Sell_9 > "
                     "CostLevel_Buy_6 AND CostLevel_Buy_10 > 0 AND CostLevel_Sell_10 > 0)"),
                IsEmpty());
    EXPECT_THAT(rows("SELECT CostLevel_Sell_1, CostLevel_Sell_9, CostLevel_Buy_10 FROM dbo.GoodCostDiscount WHERE "
                     "GoodCode = 97"),
                ElementsAre("630500.000000000|526500.000000000|461500.000000000"));
}

TEST_F(DemoCompany, hasGoodsWithDifferentNames) {
    EXPECT_THAT(rows("SELECT Name FROM dbo.GoodInf GROUP BY Name HAVING COUNT(*) > 1"), IsEmpty());
    EXPECT_THAT(rows("SELECT FullName FROM dbo.PerInf GROUP BY FullName HAVING COUNT(*) > 1"), IsEmpty());
    EXPECT_THAT(rows("SELECT Shahr, OstanCode FROM dbo.Zone GROUP BY Shahr, OstanCode HAVING COUNT(*) > 1"), IsEmpty());
}

TEST_F(DemoCompany, hasCategoriesInThreeLevels) {
    EXPECT_THAT(rows("SELECT C.id FROM dbo.category AS C LEFT JOIN dbo.category AS P ON P.id = C.parent_code "
                     "WHERE C.level <> ISNULL(P.level, 0) + 1 OR (P.id IS NULL AND C.parent_code <> 0)"),
                IsEmpty());
    EXPECT_THAT(rows("SELECT level FROM dbo.category GROUP BY level ORDER BY level"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(
        rows("SELECT category_code FROM dbo.Kala_category AS L WHERE NOT EXISTS (SELECT 1 FROM dbo.category AS C "
             "WHERE C.id = L.category_code)"),
        IsEmpty());
}

TEST_F(DemoCompany, hasALedgerWhoseBalancesAreRight) {
    EXPECT_THAT(
        rows("SELECT K.ID FROM dbo.Kardex AS K WHERE K.RemainInAnbar <> (SELECT SUM(O.Tedad) "
             "FROM dbo.Kardex AS O WHERE O.kala = K.kala AND O.Anbar = K.Anbar AND (O.[Date] < K.[Date] OR (O.[Date] = "
             "K.[Date] AND O.Global_ID <= K.Global_ID)))"),
        IsEmpty());
    // What left one store by a transfer came into the other.
    EXPECT_THAT(rows("SELECT Global_ID FROM dbo.Kardex WHERE OperationType IN (9, 10) GROUP BY Global_ID, kala HAVING "
                     "SUM(Tedad) <> 0 OR COUNT(*) <> 2"),
                IsEmpty());
    EXPECT_THAT(rows("SELECT DISTINCT [Date] FROM dbo.Kardex"), Each(MatchesRegex("1405/0[1-8]/[0-3][0-9]")));
}

// Fifty were sold of thirty-six, and nothing came in since.
TEST_F(DemoCompany, hasOneGoodWhoseStockIsBelowZero) {
    EXPECT_THAT(rows("SELECT kala, Anbar, [Date], OperationType, OperationCode, Tedad, RemainInAnbar FROM dbo.Kardex "
                     "WHERE RemainInAnbar < 0"),
                ElementsAre("160|2|1405/05/03|1|62|-50.000000000|-14.000000000"));
    EXPECT_THAT(rows("SELECT kala, Anbar, SUM(Tedad) FROM dbo.Kardex GROUP BY kala, Anbar HAVING SUM(Tedad) < 0"),
                ElementsAre("160|2|-14.000000000"));
}

// The stock check finds something with each kind of document: one more sale, what improves the stock, a transfer that
// takes out of the shop, and what is too much of a good that is there.
TEST_F(DemoCompany, hasStockThatChecksHoldUp) {
    const auto check = [](const std::string& kind, const std::string& lines, const std::string& transition) {
        return rows(
            "DECLARE @Result int, @Names nvarchar(max), @Codes nvarchar(max) "
            "EXEC @Result = CheckNegativeInventory_SP " +
            kind + ", N'" + lines + "', N'1405/08/30', 0, " + transition +
            ", @Names OUTPUT, @Codes OUTPUT SELECT @Result, @Codes, @Names");
    };
    const std::string sale = "SELECT 160 AS Code, 2 AS Anbar, -1 AS Mogodi";
    EXPECT_THAT(check("0", sale, "0"), ElementsAre("1|160|پودر کاکائو ۱۰۰ گرمی"));
    EXPECT_THAT(check("1", sale, "0"), ElementsAre("1|160|پودر کاکائو ۱۰۰ گرمی"));
    EXPECT_THAT(check("2", sale, "0"), ElementsAre("0||"));
    EXPECT_THAT(check("0", "SELECT 160 AS Code, 2 AS Anbar, 5 AS Mogodi", "0"), ElementsAre("0||"));
    EXPECT_THAT(check("0",
                      "SELECT 160 AS Code, 2 AS Anbar, -1 AS Mogodi UNION ALL SELECT 160, 1, 1 UNION ALL SELECT 159, "
                      "2, -1000 UNION ALL SELECT 159, 1, 1000",
                      "1"),
                ElementsAre("1|159,160|قهوه فوری سه در یک ۲۰ عددی، پودر کاکائو ۱۰۰ گرمی"));
}

TEST_F(DemoCompany, hasTagsInDifferentColours) {
    EXPECT_THAT(rows("SELECT T.Code FROM dbo.Tags AS T INNER JOIN dbo.colors AS C ON T.color_code = C.code"),
                SizeIs(5));
    EXPECT_THAT(rows("SELECT color_code FROM dbo.Tags GROUP BY color_code HAVING COUNT(*) > 1"), IsEmpty());
    for (const std::string& tags :
         rows("SELECT tags FROM dbo.GoodInf WHERE tags IS NOT NULL UNION ALL SELECT tags FROM "
              "dbo.PerInf WHERE tags IS NOT NULL")) {
        EXPECT_THAT(tags, MatchesRegex(",([1-5],)+"));
    }
}

TEST_F(DemoCompany, hasAPaletteOfPngImages) {
    const RowSet palette = rowsOf(*session, "SELECT [H-img], [l-img], cl_code FROM dbo.colors");
    ASSERT_EQ(palette.rowCount(), 12U);
    const auto number = [](const std::string& bytes, std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
        return value;
    };
    for (std::size_t row = 0; row < palette.rowCount(); ++row) {
        for (std::size_t column = 0; column < 2; ++column) {
            const Value value = palette.column(column).valueAt(row);
            const auto& bytes = std::get<Bytes>(value);
            const std::string image(bytes.begin(), bytes.end());
            EXPECT_EQ(image.substr(0, 8), "\x89PNG\r\n\x1a\n");
            EXPECT_EQ(image.substr(12, 4), "IHDR");
            EXPECT_EQ(number(image, 16), column == 0 ? 48U : 16U);
            EXPECT_EQ(number(image, 20), column == 0 ? 20U : 16U);
            EXPECT_EQ(image.substr(image.size() - 8, 4), "IEND");
        }
        EXPECT_THAT(textAt(palette, 2, row), MatchesRegex("\\$00[0-9A-F]{6}"));
    }
}

TEST_F(DemoCompany, hasSalespeopleWhoHaveNoneThemselves) {
    EXPECT_THAT(rows("SELECT Code FROM dbo.PerInf WHERE [percent] IS NOT NULL AND VisitorCode IS NOT NULL"), IsEmpty());
    EXPECT_THAT(rows("SELECT P.Code FROM dbo.PerInf AS P INNER JOIN dbo.PerInf AS V ON V.Code = P.VisitorCode WHERE "
                     "V.[percent] IS NULL"),
                IsEmpty());
    EXPECT_THAT(rows("SELECT Code FROM dbo.PerInf WHERE CurrDefault <> 0 AND CurrDefault NOT IN (SELECT Code FROM "
                     "dbo.Currencies)"),
                IsEmpty());
}

TEST_F(DemoCompany, hasBarcodeLayoutsThatFitTheirLengths) {
    EXPECT_THAT(
        rows("SELECT Title FROM dbo.BarCodeFormul WHERE LEN(ConstantCode) <> ConstantCount OR DigitCount < "
             "ConstantStart + "
             "ConstantCount - 1 OR DigitCount < ItemCodeStart + ItemCodeCount - 1 OR DigitCount < AmountStart + "
             "AmountCount - 1 OR DigitCount < BalanceNoStart + BalanceNoCount - 1 OR DigitCount < PriceStart + "
             "PriceCount - 1"),
        IsEmpty());
    EXPECT_THAT(rows("SELECT BarCodeType FROM dbo.BarCodeFormul GROUP BY BarCodeType ORDER BY BarCodeType"),
                ElementsAre("1", "2", "3"));
}

TEST_F(DemoCompany, hasScaleKeysThatMeanItems) {
    EXPECT_THAT(
        rows("SELECT PlU FROM dbo.[Group-PLU] AS P WHERE NOT EXISTS (SELECT 1 FROM dbo.Items AS I WHERE I.Code = "
             "P.Group1) OR (P.Group2 IS NOT NULL AND NOT EXISTS (SELECT 1 FROM dbo.Items AS I WHERE I.Code = "
             "P.Group2))"),
        IsEmpty());
    EXPECT_THAT(rows("SELECT COUNT(*), COUNT(Group2) FROM dbo.[Group-PLU]"), ElementsAre("28|6"));
}

TEST_F(DemoCompany, hasSerialsThatAreThereOnce) {
    EXPECT_THAT(
        rows("SELECT V.Value FROM dbo.GoodDetailValueDetails AS V INNER JOIN dbo.DetailTypes AS T ON T.ID = V.DetailID "
             "WHERE T.DetailType IN (3, 4) GROUP BY V.Value HAVING COUNT(*) > 1"),
        IsEmpty());
    // A serial is one piece, which is there or gone; most are there.
    EXPECT_THAT(
        rows(
            "SELECT S.DetailValueID FROM dbo.GoodDetailStock AS S INNER JOIN dbo.GoodDetailValueDetails AS V ON "
            "V.DetailValueID = S.DetailValueID INNER JOIN dbo.DetailTypes AS T ON T.ID = V.DetailID WHERE T.DetailType "
            "= 3 AND S.Amount1 NOT IN (0, 1)"),
        IsEmpty());
    EXPECT_THAT(rows("SELECT COUNT(*) FROM dbo.GoodDetailKardex WHERE GoodCode BETWEEN 295 AND 300 AND Amount1 <> 1"),
                ElementsAre("0"));
}

// What the details tell of the shop is what its ledger tells.
TEST_F(DemoCompany, hasDetailsThatAgreeWithTheLedger) {
    // Every row is a part of one of the ledger, in the direction of its operation.
    EXPECT_THAT(
        rows("SELECT D.ID FROM dbo.GoodDetailKardex AS D WHERE NOT EXISTS (SELECT 1 FROM dbo.Kardex AS K INNER JOIN "
             "dbo.OperationTypes AS O ON O.Code = K.OperationType WHERE K.OperationType = D.OperationType AND "
             "K.OperationCode = D.OperationCode AND K.OperationRow = D.OperationRow AND K.Anbar = D.StoreCode AND "
             "K.kala = D.GoodCode AND K.Tedad * O.Direction > 0)"),
        IsEmpty());
    EXPECT_THAT(rows("SELECT D.ID FROM dbo.GoodDetailKardex AS D INNER JOIN dbo.GoodDetailValues AS V ON V.ID = "
                     "D.DetailValueID WHERE V.GoodCode <> D.GoodCode"),
                IsEmpty());
    // The parts are the whole, in every row of the shop and so in its stock.
    EXPECT_THAT(
        rows("SELECT K.kala, K.OperationType, K.OperationCode FROM dbo.Kardex AS K WHERE K.Anbar = 2 AND K.kala IN "
             "(SELECT GoodCode FROM dbo.GoodDetailRelation) AND ABS(K.Tedad) <> ISNULL((SELECT SUM(D.Amount1) FROM "
             "dbo.GoodDetailKardex AS D WHERE D.OperationType = K.OperationType AND D.OperationCode = K.OperationCode "
             "AND D.OperationRow = K.OperationRow AND D.StoreCode = K.Anbar AND D.GoodCode = K.kala), 0)"),
        IsEmpty());
    EXPECT_THAT(rows("SELECT S.GoodCode FROM (SELECT GoodCode, StoreCode, SUM(Amount1) AS Amount1 FROM "
                     "dbo.GoodDetailStock GROUP BY GoodCode, StoreCode) AS S WHERE S.Amount1 <> (SELECT SUM(K.Tedad) "
                     "FROM dbo.Kardex AS K WHERE K.kala = S.GoodCode AND K.Anbar = S.StoreCode)"),
                IsEmpty());
    EXPECT_THAT(rows("SELECT COUNT(DISTINCT GoodCode), MIN(StoreCode), MAX(StoreCode) FROM dbo.GoodDetailStock"),
                ElementsAre("16|2|2"));
    EXPECT_THAT(rows("SELECT DetailValueID FROM dbo.GoodDetailStock WHERE Amount1 < 0 OR TotalAmount <> Amount1"),
                IsEmpty());
    // Something was sold of some, and not of all.
    EXPECT_THAT(rows("SELECT COUNT(DISTINCT GoodCode) FROM dbo.GoodDetailKardex WHERE OperationType = 1"),
                ElementsAre("9"));
}

TEST_F(DemoCompany, hasTilesThatAreWhatTheirNamesSay) {
    EXPECT_THAT(
        rows("SELECT G.Code FROM dbo.GoodDetailValueDetails AS V INNER JOIN dbo.GoodDetailValues AS D ON D.ID = "
             "V.DetailValueID INNER JOIN dbo.GoodInf AS G ON G.Code = D.GoodCode WHERE V.DetailID = 3 AND "
             "G.Unit = 9 AND G.Name NOT LIKE N'% ' + V.Value"),
        IsEmpty());
    EXPECT_THAT(rows("SELECT GoodCode, [Length], Width FROM dbo.GoodDetailKardex WHERE [Length] > 0 GROUP BY GoodCode, "
                     "[Length], Width ORDER BY GoodCode"),
                ElementsAre("251|0.600000000|0.300000000", "252|0.900000000|0.300000000", "253|0.600000000|0.600000000",
                            "254|0.800000000|0.800000000"));
    EXPECT_THAT(rows("SELECT D.ID FROM dbo.GoodDetailKardex AS D INNER JOIN dbo.GoodInf AS G ON G.Code = D.GoodCode "
                     "WHERE D.Amount3 <> CASE WHEN G.Unit = 9 THEN D.Amount1 ELSE 0 END"),
                IsEmpty());
}

TEST_F(DemoCompany, hasVouchersOfWhichFiveAreWrong) {
    EXPECT_THAT(
        rows("EXEC VoucherConflictAccountList_sp 1, 0"),
        ElementsAre("21|نرگس نجفی|1|102|1405/07/23", "25|الهام موسوی|1|62|1405/05/03", "29|زهرا حیدری|1|22|1405/02/13",
                    "46|حسن فلاح|1|83|1405/06/15", "50|احمد ابراهیمی|1|43|1405/03/25"));
    EXPECT_THAT(rows("EXEC VoucherConflictAccountList_sp 1, 1"),
                ElementsAre("21|نرگس نجفی", "25|الهام موسوی", "29|زهرا حیدری", "46|حسن فلاح", "50|احمد ابراهیمی"));
}

// Where stock may go below zero, the voucher of the sale that did it waits.
TEST_F(DemoCompany, hasAWrongVoucherThatWaitsForItsStock) {
    EXPECT_THAT(rows("EXEC VoucherConflictAccountList_sp 0, 0"),
                ElementsAre("21|نرگس نجفی|1|102|1405/07/23", "29|زهرا حیدری|1|22|1405/02/13",
                            "46|حسن فلاح|1|83|1405/06/15", "50|احمد ابراهیمی|1|43|1405/03/25"));
    EXPECT_THAT(rows("EXEC VoucherConflictAccountList_sp 0, 1"),
                ElementsAre("21|نرگس نجفی", "29|زهرا حیدری", "46|حسن فلاح", "50|احمد ابراهیمی"));
}

// A good's price list and its row of the price table are two views of the same prices.
TEST_F(DemoCompany, hasPriceListsThatAgreeWithThePriceTable) {
    EXPECT_THAT(rows("SELECT C.TypeCode, C.CostLevelCode FROM dbo.costlist AS C LEFT JOIN dbo.GoodPrices AS P ON "
                     "P.GoodCode = C.TypeCode AND P.Status = C.Status AND P.CostLevelCode = C.CostLevelCode WHERE "
                     "C.[Type] = 3 AND (P.Cost IS NULL OR P.Cost <> C.Cost OR C.[Default] <> CASE WHEN P.DefaultCode = "
                     "C.CostLevelCode THEN 1 ELSE 0 END)"),
                IsEmpty());
    EXPECT_THAT(
        rows("SELECT TypeCode, CostLevelCode, Cost, [Default] FROM dbo.costlist WHERE [Type] = 3 AND TypeCode "
             "IN (1, 22) ORDER BY TypeCode, CostLevelCode"),
        ElementsAre("1|1|15365000.000000000|False", "1|2|14140000.000000000|True", "1|3|13750000.000000000|False",
                    "22|1|4175000.000000000|True", "22|2|3855000.000000000|False", "22|3|3710000.000000000|False"));
    EXPECT_THAT(
        rows("SELECT TypeCode FROM dbo.costlist WHERE [Type] = 3 GROUP BY TypeCode HAVING COUNT(*) = 3 ORDER BY "
             "TypeCode"),
        ElementsAre("1", "2", "7", "13", "22"));
}

}  // namespace
}  // namespace basalt::host
