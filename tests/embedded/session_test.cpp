// The default database end to end, through the seam that data sets use.
#include <gmock/gmock.h>

#include "engines/embedded/embedded_session.h"

namespace basalt::embedded {
namespace {

std::unique_ptr<EmbeddedSession> newSession() {
    return EmbeddedSession::open(":memory:");
}

TEST(EmbeddedSession, keepsAndFindsRows) {
    const auto session = newSession();
    session->run(
        "create table CostLevel(Code int not null, Name nvarchar(50), Comment nvarchar(200), CostType int not null, "
        "constraint PK_CostLevel primary key(Code, CostType))");
    EXPECT_EQ(session->run("insert into CostLevel values(1, N'عمده', N'', 1), (2, N'خرده', null, 1)")
                  .results.at(0)
                  .affectedRows,
              2);
    const BatchResult result =
        session->run("select Code, Name from CostLevel where name = N'عمده' and Code <> 3  AND CostType = 1");
    const RowSet& rows = *result.results.at(0).rows;
    ASSERT_EQ(rows.rowCount(), 1U);
    EXPECT_EQ(rows.column(0).intAt(0), 1);
    EXPECT_EQ(rows.column(1).textAt(0), "عمده");
    EXPECT_EQ(rows.column(1).info().baseTable, "CostLevel");
}

}  // namespace
}  // namespace basalt::embedded
