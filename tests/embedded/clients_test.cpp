// Several sessions on one file, as several programs have them.
#include <gmock/gmock.h>

#include <thread>

#include "engines/embedded/embedded_session.h"
#include "tests/support/temp_folder.h"

namespace basalt::embedded {
namespace {

class Clients : public testing::Test {
protected:
    std::unique_ptr<EmbeddedSession> open() {
        return EmbeddedSession::open(folder_.file("shop.basalt"), {.busyTimeoutMs = 50, .createIfMissing = true});
    }
    static std::int64_t number(EmbeddedSession& session, const std::string& sql) {
        return toInt64(session.run(sql).results.at(0).rows.value().column(0).valueAt(0));
    }

    test::TempFolder folder_;
};

TEST_F(Clients, aWriterMakesAnotherWriterWaitAndThenSayBusy) {
    const auto first = open();
    const auto second = open();
    first->run("create table T(A int)");
    first->begin();
    first->run("insert into T values(1)");
    try {
        second->run("insert into T values(2)");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Busy);
        EXPECT_EQ(error.nativeCode(), 1222);
        EXPECT_STREQ(
            error.what(),
            "Lock request time out period exceeded: another program is writing to the database. Try again in a "
            "moment.");
    }
    EXPECT_THROW(second->begin(), DatabaseError);
    EXPECT_FALSE(second->inTransaction());
    first->commit();
    second->run("insert into T values(2)");
    EXPECT_EQ(number(*first, "select COUNT(*) from T"), 2);
}

TEST_F(Clients, readersDoNotWait) {
    const auto first = open();
    const auto second = open();
    first->run("create table T(A int)");
    first->begin();
    first->run("insert into T values(1)");
    EXPECT_EQ(number(*second, "select COUNT(*) from T"), 0);
    first->commit();
    EXPECT_EQ(number(*second, "select COUNT(*) from T"), 1);
}

TEST_F(Clients, aSchemaChangeOfAnotherIsSeen) {
    const auto first = open();
    const auto second = open();
    first->run("create table T(A int not null primary key, B int)");
    first->run("insert into T values(1, 2)");
    EXPECT_EQ(second->run("select * from T where A = 1").results.at(0).rows.value().columnCount(), 2U);
    second->run("update T set B = 3 where A = 1");
    first->run("alter table T add C nvarchar(5) not null default N'c'");
    const BatchResult after = second->run("select * from T where A = 1");
    ASSERT_EQ(after.results.at(0).rows.value().columnCount(), 3U);
    EXPECT_EQ(after.results.at(0).rows.value().column(2).textAt(0), "c");
    EXPECT_EQ(second->table("T").columns.size(), 3U);

    second->run("insert into T(A, B) values(10, 1)");
    first->run("drop table T");
    first->run("create table T(A nvarchar(10))");
    second->run("insert into T(A) values(N'x')");
    EXPECT_EQ(second->run("select * from T").results.at(0).rows.value().column(0).textAt(0), "x");
    EXPECT_THROW(second->run("insert into T(A, B) values(11, 1)"), DatabaseError);
}

TEST_F(Clients, identityNumbersNeverCollide) {
    open()->run("create table T(ID int identity(1,1) primary key, W int)");
    constexpr int perWriter = 60;
    const auto write = [&](int writer) {
        const auto session =
            EmbeddedSession::open(folder_.file("shop.basalt"), {.busyTimeoutMs = 20'000, .createIfMissing = true});
        for (int i = 0; i < perWriter; ++i)
            session->run("insert into T(W) values(" + std::to_string(writer) + ")");
    };
    std::thread other(write, 1);
    write(2);
    other.join();
    const auto session = open();
    EXPECT_EQ(number(*session, "select COUNT(DISTINCT ID) from T"), 2 * perWriter);
    EXPECT_EQ(number(*session, "select MAX(ID) from T"), 2 * perWriter);
}

TEST_F(Clients, codesReadAndWrittenInATransactionNeverCollide) {
    open()->run("create table T(Code int not null primary key)");
    constexpr int perWriter = 60;
    const auto write = [&] {
        const auto session =
            EmbeddedSession::open(folder_.file("shop.basalt"), {.busyTimeoutMs = 20'000, .createIfMissing = true});
        for (int i = 0; i < perWriter; ++i) {
            session->begin();
            const std::int64_t code = number(*session, "select isnull(Max(Code),0)+1 from T");
            session->run("insert into T values(" + std::to_string(code) + ")");
            session->commit();
        }
    };
    std::thread other(write);
    write();
    other.join();
    EXPECT_EQ(number(*open(), "select COUNT(*) from T"), 2 * perWriter);
}

TEST_F(Clients, temporaryTablesBelongToTheirSession) {
    const auto first = open();
    const auto second = open();
    first->run("create table #t(A int)");
    first->run("insert into #t values(1)");
    EXPECT_EQ(number(*first, "select COUNT(*) from #t"), 1);
    EXPECT_THROW(second->run("select COUNT(*) from #t"), DatabaseError);
}

}  // namespace
}  // namespace basalt::embedded
