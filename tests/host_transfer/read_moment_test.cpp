// What goes to a server so that everything read is of one moment.
#include "host/transfer/read_moment.h"

#include <gmock/gmock.h>

#include "engines/embedded/embedded_session.h"
#include "tests/support/scripted_session.h"
#include "tests/support/tracing_session.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

constexpr const char* question = "SELECT snapshot_isolation_state FROM sys.databases WHERE database_id = DB_ID()";
constexpr const char* back = "SET TRANSACTION ISOLATION LEVEL READ COMMITTED";

RowSet state(std::int64_t number) {
    RowSet rows({{.name = "snapshot_isolation_state", .type = FieldType::TinyInt}});
    rows.column(0).appendInt(number);
    rows.finishRow();
    return rows;
}

std::vector<std::string> sentFor(std::int64_t snapshots, const std::string& level) {
    ScriptedSession script;
    std::vector<std::string> trace;
    TracingSession session(script, trace);
    script.expect(question, state(snapshots));
    script.expectChange(level, {}, -1);
    script.expect("SELECT Code FROM dbo.GoodInf", state(1));
    script.expectChange(back, {}, -1);
    {
        const ReadMoment moment(session);
        EXPECT_EQ(rowsOf(session, "SELECT Code FROM dbo.GoodInf").rowCount(), 1U);
    }
    return trace;
}

TEST(ReadMoments, areSnapshotsWhereTheDatabaseAllowsThem) {
    const std::string level = "SET TRANSACTION ISOLATION LEVEL SNAPSHOT";
    EXPECT_THAT(sentFor(1, level),
                ElementsAre(question, level, "begin", "SELECT Code FROM dbo.GoodInf", "rollback", back));
}

TEST(ReadMoments, holdOthersOffWhereItDoesNot) {
    const std::string level = "SET TRANSACTION ISOLATION LEVEL SERIALIZABLE";
    for (const std::int64_t state : {0, 2, 3}) {
        EXPECT_THAT(sentFor(state, level),
                    ElementsAre(question, level, "begin", "SELECT Code FROM dbo.GoodInf", "rollback", back));
    }
}

TEST(ReadMoments, leaveTheTransactionOfTheCallerAsItIs) {
    ScriptedSession script;
    std::vector<std::string> trace;
    TracingSession session(script, trace);
    session.begin();
    { const ReadMoment moment(session); }
    EXPECT_TRUE(session.inTransaction());
    EXPECT_THAT(trace, ElementsAre("begin"));
}

TEST(ReadMoments, areTheEmbeddedEnginesTransactions) {
    const auto engine = embedded::EmbeddedSession::open(":memory:");
    std::vector<std::string> trace;
    TracingSession session(*engine, trace);
    { const ReadMoment moment(session); }
    EXPECT_THAT(trace, ElementsAre("begin", "rollback"));
}

}  // namespace
}  // namespace basalt::host
