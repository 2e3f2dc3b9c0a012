// Statements that documents wait for find their rows by the schema's indexes.
#include <gmock/gmock.h>

#include "engines/embedded/generated_sql.h"
#include "engines/embedded/open_database.h"
#include "tests/database/run_plans.h"
#include "tests/host_services/demo_database.h"
#include "tests/support/temp_folder.h"

namespace basalt::host {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;

class Plans : public ::testing::Test {
protected:
    Plans() { deployDatabase(*embedded::EmbeddedSession::open(path_, {.createIfMissing = true})); }

    std::vector<std::string> plan(const std::string& query) {
        return embedded::queryPlan(*embedded::openDatabase(path_, {}), query);
    }

private:
    test::TempFolder folder_;
    std::string path_ = folder_.file("shop.basalt");
};

TEST_F(Plans, theBalanceOfADocumentsGoodsReadsTheirPartOfTheLedgersIndex) {
    EXPECT_THAT(plan("select sq.Code, sq.Mogodi + ISNULL(K.Mogodi, 0) from  (select Code, 1 as Anbar, -5 as Mogodi "
                     "from GoodInf where Unit = 3) sq  LEFT JOIN (Select kala as code, Anbar, SUM(Tedad) as Mogodi "
                     "from Kardex WHERE Date <= '1405/01/01' group by kala, Anbar) K ON sq.Code = K.Code AND sq.Anbar "
                     "= K.Anbar WHERE (sq.mogodi + ISNULL(K.Mogodi, 0)) < 0"),
                AllOf(Contains(AllOf(HasSubstr("SEARCH"), HasSubstr("COVERING INDEX Kardex.IX_Kardex_kala (kala=?"))),
                      Each(Not(HasSubstr("SCAN main.\"Kardex\"")))));
}

TEST_F(Plans, laterMovementsAreFoundByGoodAndStore) {
    EXPECT_THAT(plan("select * from (select 5 as Code, 1 as Anbar, -2 as Mogodi union all select 6, 1, -3 ) as S join "
                     "Kardex as k on k.kala = S.Code and (ISNULL(k.RemainInAnbar, 0) + S.mogodi) < 0  and (      "
                     "(k.[Date] >= '1405/01/01' and k.[Date] < '1405/01/05')       or       (k.[Date] = '1405/01/05' "
                     "and k.Global_ID < 7)      ) and S.Anbar = K.Anbar "),
                Contains(AllOf(HasSubstr("SEARCH"), HasSubstr("IX_Kardex_kala (kala=? AND Anbar=?"))));
}

// Rows that nobody orders come as they lie, and not as an index of a column that nobody asked for has them.
TEST_F(Plans, goodsWithTheirPricesAreReadByTheirKey) {
    const std::string half =
        "Select G.Code, G.Name, G.ConsumerPrice, isnull(GC.CostLevel_Sell_1,0) as F1, 2 as Status From GoodInf as G left "
        "outer join GoodCostDiscount as GC ON GC.GoodCode = G.Code";
    for (const std::string& query : {half, half + " union all " + half,
                                     "SELECT * FROM (" + half + " union all " + half + ") AS T WHERE [Status] = 2",
                                     "SELECT * FROM (" + half + ") AS T WHERE [Name] LIKE N'%a%'"}) {
        EXPECT_THAT(plan(query), Contains(::testing::MatchesRegex("SCAN s[0-9]+"))) << query;
        EXPECT_THAT(plan(query), Each(Not(HasSubstr(" USING INDEX ")))) << query;
    }
    // What an index finds is found by it still, and what it holds is read from it alone.
    EXPECT_THAT(plan(half + " WHERE G.Unit2 = 3"), Contains(HasSubstr("IX_GoodInf_Unit2 (Unit2=?)")));
    EXPECT_THAT(plan("SELECT * FROM (" + half + ") AS T WHERE Name = N'a'"), Contains(HasSubstr("IX_GoodInf_Name")));
    EXPECT_THAT(plan(half + " ORDER BY G.Name"), Contains(HasSubstr("IX_GoodInf_Name")));
    EXPECT_THAT(
        plan("SELECT G.Code, GC.CostLevel_Sell_1 FROM GoodInf AS G JOIN GoodCostDiscount AS GC ON GC.GoodCode = "
             "G.Code"),
        Contains(HasSubstr("COVERING INDEX GoodInf.")));
}

TEST_F(Plans, aLayoutIsFoundByItsNumberOfDigits) {
    EXPECT_THAT(plan("SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('2712345012505' , "
                     "ConstantStart, ConstantCount) = ConstantCode  "),
                Contains(HasSubstr("IX_BarCodeFormul_DigitCount (DigitCount=?)")));
}

// The procedure's own statements, as they run: the document's old rows by its number and date, the balance before the
// date and the movements from it on by good and store, each from an index alone, and no ledger read through.
class ProcedurePlans : public ::testing::TestWithParam<const char*> {
protected:
    ProcedurePlans() : session_(openDatabase(":memory:")) {
        deployDatabase(*session_);
        session_->run(
            "INSERT INTO dbo.GoodInf (Code, Name) VALUES (5, N'قند'), (6, N'چای')\n"
            "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad) VALUES (5, 1, N'1405/01/01', 1, 10), "
            "(6, 1, N'1405/01/02', 1, 10), (5, 1, N'1405/01/03', 2, -4), (6, 1, N'1405/01/03', 2, -4)");
        execute(*session_, "UPDATE dbo.HostSettings SET Value = ? WHERE Name = N'LedgerNumbering'",
                {std::string(GetParam())});
    }

    // The steps that read the ledger by an index.
    std::vector<std::string> ledgerSteps(std::int64_t document) {
        std::int64_t result = 0;
        const std::vector<std::string> steps = plans_.of([&] {
            result = session_
                         ->call("CheckNegativeInventory_SP",
                                std::vector<Argument>{{"@NegativeType", std::int64_t{0}},
                                                      {"@SelectQuery", "SELECT 5 AS Code, 1 AS Anbar, -99 AS Mogodi"},
                                                      {"@Date", "1405/01/03"},
                                                      {"@globalID", document},
                                                      {"@StoreTransition", false},
                                                      {"@NegProductNames", Null{}, true},
                                                      {"@NegProductCodes", Null{}, true}})
                         .returnValue;
        });
        EXPECT_EQ(result, 1);
        EXPECT_THAT(steps, Each(Not(HasSubstr("no plan"))));
        std::vector<std::string> found;
        for (const std::string& step : steps) {
            if (step.find("Kardex") != std::string::npos) found.push_back(step);
        }
        return found;
    }

private:
    test::RunPlans plans_;
    std::unique_ptr<Session> session_;
};

TEST_P(ProcedurePlans, theLedgerIsReadByItsIndexes) {
    // As often as its statements name the ledger, so that none of them reads it otherwise. Of the document's own rows
    // alone the quantities are read from the table.
    const auto byGood = [](const std::string& name, const std::string& dates) {
        return "SEARCH " + name + " USING COVERING INDEX Kardex.IX_Kardex_kala (kala=? AND Anbar=? AND Date" + dates +
               ")";
    };
    const std::string notNamed =
        "SEARCH s1 USING COVERING INDEX Kardex.IX_Kardex_Document (Global_ID=? AND Date>? AND Date<?)";
    const std::string itsRows = "SEARCH s2 USING INDEX Kardex.IX_Kardex_Document (Global_ID=? AND Date>? AND Date<?)";
    std::vector<std::string> wanted = {notNamed,           itsRows, byGood("s4", "<?"),  // the balance
                                       byGood("s5", ">?"),                               // what goes out
                                       byGood("s2", ">?"),                               // row by row
                                       byGood("s6", ">?"),                               // until the document
                                       byGood("s5", ">?")};                              // document by document
    EXPECT_EQ(ledgerSteps(0), wanted);
    if (GetParam() == std::string("all"))
        wanted.insert(wanted.begin(), "SEARCH s1 USING COVERING INDEX Kardex.IX_Kardex_Document (Global_ID=?)");
    EXPECT_EQ(ledgerSteps(2), wanted);
}

INSTANTIATE_TEST_SUITE_P(Ledgers, ProcedurePlans, ::testing::Values("date", "all"));

// What restricts the balance above is the document, not the statement's grouping.
TEST_F(Plans, aGroupedLedgerByItselfIsReadThrough) {
    EXPECT_THAT(plan("Select kala as code, Anbar, SUM(Tedad) as Mogodi from Kardex group by kala, Anbar"),
                Contains(HasSubstr("SCAN")));
}

}  // namespace
}  // namespace basalt::host
