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

TEST_F(ReportRows, offersToAPersonComeFromTheProcedures) {
    const auto offers = [this](int kind, int currency, int direction) {
        store.OfferCost_GetAll(kind, 57, 1, currency, direction);
        return store.OfferCost_QUR.RecordCount();
    };
    // The good has ten sale prices and nine purchase prices.
    EXPECT_EQ(offers(2, 0, 0), 10);
    EXPECT_EQ(store.OfferCost_QUR.FieldByName("TypeCode").AsInteger(), 57);
    EXPECT_EQ(store.OfferCost_QUR.FieldByName("Cost").AsString(), "298500");
    const int bought = offers(3, 0, 0);
    EXPECT_EQ(store.OfferCost_QUR.FieldByName("Cost").AsString(), "230000");
    EXPECT_EQ(offers(4, 1, 1), 10);
    EXPECT_EQ(offers(4, 1, 0), bought);
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

TEST_F(ReportRows, reportsTableTakesAnotherColumn) {
    store.AddCostReportColumn(Value{std::int64_t{11}});
    EXPECT_THAT(linesOf(*session, "SELECT COUNT(F11) FROM CostReport"), UnorderedElementsAre("0"));
    EXPECT_THROW(store.AddCostReportColumn(Value{std::int64_t{11}}), DatabaseError);
}

}  // namespace
}  // namespace basalt::host
