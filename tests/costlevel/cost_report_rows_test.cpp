// The report's rows and the offers on a real database: barcodes of every shape, prices at the limits of their column,
// and goods without any.
#include <gmock/gmock.h>

#include "costlevel/costlevel_dm.h"
#include "package/services.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class ReportRows : public DemoDatabaseTest {
protected:
    ReportRows() { host.signInAs(1); }

    void addGood(int code, const std::string& barcodes) {
        session->run("INSERT INTO GoodInf (Code, Name, AbbName) VALUES (" + std::to_string(code) + ", N'کالا', " +
                     barcodes + ")");
    }
    // The fields of the good's row in that direction, with "|" between; null reads as "NULL".
    std::string row(int code, int status, const std::vector<const char*>& fields) {
        TADOQuery& report = store.CostReport_QUR;
        if (!report.Active()) store.CostReport_Get();
        EXPECT_TRUE(report.Locate("Code;Status", {Value{std::int64_t{code}}, Value{std::int64_t{status}}}));
        std::string line;
        for (const char* field : fields) {
            if (!line.empty()) line += '|';
            line += report.FieldByName(field).IsNull() ? "NULL" : report.FieldByName(field).AsString();
        }
        return line;
    }

    // The good 9001's offers of that kind, in the order in which they come.
    std::vector<std::string> offers(int kind, int person, int currency, int direction) {
        store.OfferCost_GetAll(kind, 9001, person, currency, direction);
        std::vector<std::string> lines;
        for (TADOQuery& rows = store.OfferCost_QUR; !rows.Eof(); rows.Next()) {
            std::string line;
            for (const char* field : {"Code", "TypeCode", "Type", "Cost", "Name"})
                line += (rows.FieldByName(field).IsNull() ? "NULL" : rows.FieldByName(field).AsString()) + ' ';
            lines.push_back(line + rows.FieldByName("deftitle").AsString());
        }
        return lines;
    }

    ReferenceHost host{*session, workstation("report")};
    AttachedHost attached{host};
    TCostLevel_DM store;
};

TEST_F(ReportRows, everyGoodIsThereTwice) {
    store.CostReport_Get();
    EXPECT_THAT(linesOf(*session, "SELECT COUNT(*) * 2 FROM GoodInf"),
                ElementsAre(std::to_string(store.CostReport_QUR.RecordCount())));
    std::vector<std::string> fields;
    fields.reserve(static_cast<std::size_t>(store.CostReport_QUR.FieldCount()));
    for (int i = 0; i < store.CostReport_QUR.FieldCount(); ++i)
        fields.push_back(store.CostReport_QUR.Fields(i).FieldName());
    EXPECT_THAT(fields, ElementsAre("Code", "Name", "AbbName", "Status", "F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8",
                                    "F9", "F10", "ConsumerPrice"));
}

// As the server's table lies, and whatever a search leaves of it.
TEST_F(ReportRows, goodsComeByTheirCodes) {
    store.CostReport_Get();
    const std::string statement = store.CostReport_QUR.SQL.Text();
    for (const char* search : {"", " WHERE [Status] = 2", " WHERE [Status] = 1 AND [Name] LIKE N'%ر[یيى]%'",
                               " WHERE ([F1] >= 100000) AND ([Status] = 2)", " WHERE [AbbName] LIKE N'%626%'",
                               " WHERE CAST([Code] AS NVARCHAR(40)) LIKE N'2%'"}) {
        const std::string sql = *search == '\0' ? statement : "SELECT * FROM (" + statement + ") AS T" + search;
        const RowSet rows = rowsOf(*session, sql);
        ASSERT_GT(rows.rowCount(), 20U) << search;
        const auto status = static_cast<std::size_t>(rows.indexOf("Status"));
        for (std::size_t row = 1; row < rows.rowCount(); ++row) {
            // The sale rows stand before the purchase rows.
            if (integerAt(rows, status, row) != integerAt(rows, status, row - 1)) {
                EXPECT_LT(integerAt(rows, status, row), integerAt(rows, status, row - 1)) << search;
                continue;
            }
            ASSERT_GT(integerAt(rows, 0, row), integerAt(rows, 0, row - 1)) << search << ' ' << row;
        }
    }
}

TEST_F(ReportRows, barcodesAreShownInParentheses) {
    const std::pair<const char*, const char*> shapes[] = {
        {"N'!12!34'", "(12)(34"},
        {"NULL", "NULL"},
        {"N''", ""},
        {"N'!'", "("},
        {"N'!!12'", "(12"},
        // The statement leaves room for five more characters than the list has, whatever its number of barcodes.
        {"N'!1!2!3!4!5!6!7!8!9!10'", "(1)(2)(3)(4)(5)(6)(7)(8)(9"},
        {"N'!12!34!'", "(12)(34)("},
    };
    int code = 9000;
    for (const auto& [barcodes, shown] : shapes)
        addGood(++code, barcodes);
    code = 9000;
    for (const auto& [barcodes, shown] : shapes)
        EXPECT_EQ(row(++code, 2, {"AbbName"}), shown) << barcodes;
}

TEST_F(ReportRows, goodWithoutPricesHasZeros) {
    EXPECT_EQ(row(39, 2, {"F1", "F10"}), "0|0");
    EXPECT_EQ(row(39, 1, {"F1", "F10"}), "0|0");
}

TEST_F(ReportRows, pricesAtTheLimitsAreExact) {
    addGood(9001, "NULL");
    session->run(
        "INSERT INTO GoodCostDiscount (GoodCode, CostLevel_Sell_1, CostLevel_Sell_2, CostLevel_Buy_10) "
        "VALUES (9001, 99999999999999.999999999, -99999999999999.999999999, 0.000000001)");
    EXPECT_EQ(row(9001, 2, {"F1", "F2", "F3", "ConsumerPrice"}),
              "99999999999999.999999999|-99999999999999.999999999|0|0");
    EXPECT_EQ(row(9001, 1, {"F1", "F10"}), "0|0.000000001");
}

// Offers

TEST_F(ReportRows, everyKindOffersItsOwnPrices) {
    session->run("DELETE FROM costlist");
    session->run("DELETE FROM CostLevel WHERE CostType = 1 AND Code NOT IN (1, 2, 3, 10)");
    session->run("UPDATE CostLevel SET Name = N'س' + CAST(Code AS nvarchar(9)) WHERE CostType = 1");
    addGood(9001, "NULL");
    session->run(
        "INSERT INTO GoodCostDiscount (GoodCode, CostLevel_Sell_1, CostLevel_Sell_2, CostLevel_Sell_10, "
        "CostLevel_Buy_1, CostLevel_Buy_2, CostLevel_Buy_3, Default_CostLevel_Sell_Number, "
        "Default_CostLevel_Buy_Number) VALUES (9001, 99999999999999.999999999, -99999999999999.999999999, 30, "
        "-0.000000001, 7.5, 0, 10, 2)");
    session->run("INSERT INTO Currencies (Code, Name, Rate, Decimals) VALUES (77, N'ارز', 0.5, 2)");
    // This person buys at the third level, which the good has a purchase price of and no sale price.
    const std::string person = linesOf(*session, "SELECT MIN(Code) FROM PerInf").front();
    session->run(
        "INSERT INTO costlist (Type, Status, TypeCode, CostLevelCode, CostLevelType, [Default]) "
        "VALUES (1, 1, " +
        person + ", 3, 1, 1), (1, 0, " + person + ", 3, 1, 1)");
    // Levels without a price are left out by the procedures only.
    EXPECT_THAT(offers(0, 0, 0, 0), ElementsAre("1 9001 3 -0.000000001 س1 ", "2 9001 3 7.5 س2 پیش فرض",
                                                "3 9001 3 0 س3 ", "10 9001 3 NULL س10 "));
    EXPECT_THAT(offers(1, 0, 0, 0),
                ElementsAre("1 9001 3 99999999999999.999999999 س1 ", "2 9001 3 -99999999999999.999999999 س2 ",
                            "3 9001 3 NULL س3 ", "10 9001 3 30 س10 پیش فرض"));
    EXPECT_THAT(offers(2, std::stoi(person), 0, 0),
                ElementsAre("1 9001 3 99999999999999.999999999 س1 ", "2 9001 3 -99999999999999.999999999 س2 ",
                            "10 9001 3 30 س10 پیش فرض"));
    // The mark is the person's.
    EXPECT_THAT(offers(3, std::stoi(person), 0, 0),
                ElementsAre("1 9001 3 -0.000000001 س1 ", "2 9001 3 7.5 س2 ", "3 9001 3 0 س3 پیش فرض"));
    EXPECT_THAT(
        offers(4, std::stoi(person), 77, 1),
        ElementsAre("1 9001 3 200000000000000 س1 ", "2 9001 3 -200000000000000 س2 ", "10 9001 3 60 س10 پیش فرض"));
    EXPECT_THAT(offers(4, std::stoi(person), 77, 0),
                ElementsAre("1 9001 3 0 س1 ", "2 9001 3 15 س2 ", "3 9001 3 0 س3 پیش فرض"));
}

class MarkedOffers : public ReportRows {
protected:
    // The codes of the levels marked as default, in the order of their rows.
    std::string marked(int kind, int currency = 0, int direction = 0) {
        store.OfferCost_GetAll(kind, 57, 0, currency, direction);
        std::string codes;
        for (TADOQuery& rows = store.OfferCost_QUR; !rows.Eof(); rows.Next()) {
            const std::string mark = rows.FieldByName("deftitle").AsString();
            if (mark.empty()) continue;
            EXPECT_EQ(mark, "پیش فرض");
            codes += (codes.empty() ? "" : " ") + rows.FieldByName("Code").AsString();
        }
        return codes;
    }
    void setDefaults(const std::string& sale, const std::string& purchase) {
        session->run("UPDATE GoodCostDiscount SET Default_CostLevel_Sell_Number = " + sale +
                     ", Default_CostLevel_Buy_Number = " + purchase + " WHERE GoodCode = 57");
    }
};

TEST_F(MarkedOffers, areTheGoodsDefaults) {
    setDefaults("3", "7");
    EXPECT_EQ(marked(0), "7");
    EXPECT_EQ(marked(1), "3");
    EXPECT_EQ(marked(2), "3");
    EXPECT_EQ(marked(3), "7");
    EXPECT_EQ(marked(4, 1, 1), "3");
    EXPECT_EQ(marked(4, 1, 0), "7");
}

// The prices themselves mark what the good has stored, an offer to a person falls back to the first level.
TEST_F(MarkedOffers, ofAGoodWithoutADefault) {
    for (const auto& [sale, purchase] : {std::pair("0", "0"), std::pair("11", "-1"), std::pair("NULL", "NULL")}) {
        setDefaults(sale, purchase);
        EXPECT_EQ(marked(0), "") << purchase;
        EXPECT_EQ(marked(1), "") << sale;
        EXPECT_EQ(marked(2), "1") << sale;
        EXPECT_EQ(marked(3), "1") << purchase;
        EXPECT_EQ(marked(4, 1, 1), "1") << sale;
        EXPECT_EQ(marked(4, 1, 0), "1") << purchase;
    }
}

TEST_F(MarkedOffers, ofADefaultLevelThatDoesNotExist) {
    setDefaults("5", "5");
    session->run("DELETE FROM costlist WHERE CostLevelCode = 5");
    session->run("DELETE FROM CostLevel WHERE CostType = 1 AND Code = 5");
    for (const int kind : {0, 1, 2, 3})
        EXPECT_EQ(marked(kind), "") << kind;
}

// As a screen asks for it: the names of the levels and the mark of the default are of other tables.
TEST_F(ReportRows, aPriceListIsEditedInItsOwnTable) {
    session->run("DELETE FROM tmpcostlist");
    session->run(
        "INSERT INTO tmpcostlist (Type, Status, TypeCode, CostLevelCode, Cost, [Default]) "
        "VALUES (3, 0, 57, 2, 99999999999999.999999999, 0), (3, 0, 57, 1, -0.5, 1), (3, 0, 57, 44, NULL, 0)");
    TADOQuery& list = store.SetCost_QUR;
    list.SQL =
        "SELECT T.*, L.Name AS title, CASE WHEN T.[Default] = 1 THEN N'پیش فرض' ELSE N'' END AS deftitle "
        "FROM tmpcostlist AS T LEFT OUTER JOIN CostLevel AS L ON L.CostType = 1 AND L.Code = T.CostLevelCode "
        "ORDER BY T.CostLevelCode";
    const auto shown = [&] {
        std::vector<std::string> lines;
        for (list.First(); !list.Eof(); list.Next()) {
            std::string line;
            for (const char* field : {"Row", "CostLevelCode", "Cost", "Default", "title", "deftitle"})
                line += (list.FieldByName(field).IsNull() ? "NULL" : list.FieldByName(field).AsString()) + '|';
            lines.push_back(line);
        }
        return lines;
    };
    list.Open();
    EXPECT_THAT(shown(),
                ElementsAre("1|1|-0.5|True|تک‌فروشی|پیش فرض|",
                            "2|2|99999999999999.999999999|False|عمده‌فروشی||", "3|44|NULL|False|NULL||"));
    list.First();
    list.Edit();
    EXPECT_THROW(list.FieldByName("deftitle") = "x", UsageError);
    list.FieldByName("Cost") = *Decimal::parse("-99999999999999.999999999");
    list.Post();
    EXPECT_EQ(list.FieldByName("Row").AsInteger(), 1);
    EXPECT_THAT(linesOf(*session, "SELECT CostLevelCode, Cost FROM tmpcostlist ORDER BY CostLevelCode"),
                ElementsAre("1|-99999999999999.999999999", "2|99999999999999.999999999", "44|NULL"));
}

TEST_F(ReportRows, reportsTableTakesAnotherColumn) {
    store.AddCostReportColumn(Value{std::int64_t{11}});
    EXPECT_THAT(linesOf(*session, "SELECT COUNT(F11) FROM CostReport"), UnorderedElementsAre("0"));
    EXPECT_THROW(store.AddCostReportColumn(Value{std::int64_t{11}}), DatabaseError);
}

}  // namespace
}  // namespace basalt::host
