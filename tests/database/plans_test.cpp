// Statements that documents wait for find their rows by the schema's indexes.
#include <gmock/gmock.h>

#include "engines/embedded/generated_sql.h"
#include "engines/embedded/open_database.h"
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

TEST_F(Plans, aLayoutIsFoundByItsNumberOfDigits) {
    EXPECT_THAT(plan("SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('2712345012505' , "
                     "ConstantStart, ConstantCount) = ConstantCode  "),
                Contains(HasSubstr("IX_BarCodeFormul_DigitCount (DigitCount=?)")));
}

// What restricts the balance above is the document, not the statement's grouping.
TEST_F(Plans, aGroupedLedgerByItselfIsReadThrough) {
    EXPECT_THAT(plan("Select kala as code, Anbar, SUM(Tedad) as Mogodi from Kardex group by kala, Anbar"),
                Contains(HasSubstr("SCAN")));
}

}  // namespace
}  // namespace basalt::host
