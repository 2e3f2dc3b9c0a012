// Several sessions on one file, as several programs have them.
#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <thread>

#include "ado/progress.h"
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
        EXPECT_STREQ(error.what(),
                     "Lock request time out period exceeded. Another program is writing to the database; try again in "
                     "a moment.");
    }
    EXPECT_THROW(second->begin(), DatabaseError);
    EXPECT_FALSE(second->inTransaction());
    first->commit();
    second->run("insert into T values(2)");
    EXPECT_EQ(number(*first, "select COUNT(*) from T"), 2);
}

// The number of the error; 0 when there is none.
int errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DatabaseError& error) {
        return error.nativeCode();
    }
    return 0;
}

std::chrono::milliseconds waitOf(EmbeddedSession& session, const std::string& sql) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(errorOf([&] { session.run(sql); }), 1222) << sql;
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

TEST_F(Clients, aLockIsWaitedForAsLongAsTheSessionSays) {
    const auto first = open();
    const auto second = EmbeddedSession::open(folder_.file("shop.basalt"), {.busyTimeoutMs = 600});
    first->run("create table T(A int)");
    first->begin();
    first->run("insert into T values(1)");
    EXPECT_EQ(number(*second, "select @@LOCK_TIMEOUT"), -1);

    second->run("set lock_timeout 0");
    EXPECT_EQ(number(*second, "select @@LOCK_TIMEOUT"), 0);
    EXPECT_LT(waitOf(*second, "insert into T values(2)").count(), 100);
    EXPECT_LT(waitOf(*second, "begin tran").count(), 100);

    second->run("declare @n int set @n = 200 set lock_timeout @n");
    EXPECT_EQ(number(*second, "select @@LOCK_TIMEOUT"), 200);
    const auto wait = waitOf(*second, "insert into T values(2)");
    EXPECT_GE(wait.count(), 200);
    EXPECT_LT(wait.count(), 550);

    // As long as the session was opened for.
    second->run("SET LOCK_TIMEOUT -1");
    EXPECT_EQ(number(*second, "select @@LOCK_TIMEOUT"), -1);
    EXPECT_GE(waitOf(*second, "insert into T values(2)").count(), 600);
}

TEST_F(Clients, aBatchGoesOnBehindALockThatItDidNotGet) {
    const auto first = open();
    const auto second = open();
    first->run("create table T(A int)");
    first->begin();
    EXPECT_EQ(errorOf([&] { second->run("SET LOCK_TIMEOUT 10; insert into T values(2); SET LOCK_TIMEOUT -1"); }), 1222);
    EXPECT_EQ(number(*second, "select @@LOCK_TIMEOUT"), -1);
    EXPECT_EQ(number(*second,
                     "SET LOCK_TIMEOUT 10; begin try insert into T values(2) end try begin catch select ERROR_NUMBER() "
                     "end catch"),
              1222);
    first->rollback();
    second->run("insert into T values(2)");
    EXPECT_EQ(number(*first, "select COUNT(*) from T"), 1);
}

// What follows would be done outside of the transaction that it was written for.
TEST_F(Clients, aBatchEndsWhereItCannotBeginItsTransaction) {
    const auto first = open();
    const auto second = open();
    first->run("create table T(A int)");
    first->run("create procedure P as begin tran insert into #t values(1) commit");
    first->begin();
    second->run("create table #t(A int)");
    EXPECT_EQ(errorOf([&] { second->run("begin tran insert into #t values(1) commit"); }), 1222);
    EXPECT_EQ(errorOf([&] { second->run("exec P insert into #t values(1)"); }), 1222);
    EXPECT_EQ(number(*second, "select COUNT(*) from #t"), 0);
    EXPECT_FALSE(second->inTransaction());
}

TEST_F(Clients, aWaitForALockCanBeGivenUp) {
    const auto first = open();
    const auto second = EmbeddedSession::open(folder_.file("shop.basalt"), {.busyTimeoutMs = 20'000});
    first->run("create table T(A int)");
    first->begin();
    int asked = 0;
    second->onProgress([&] { return ++asked < 5; });
    const auto start = std::chrono::steady_clock::now();
    try {
        second->run("insert into T values(2)");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_TRUE(isCancelled(error)) << error.what();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    second->onProgress({});
    second->run("SET LOCK_TIMEOUT 0");
    EXPECT_EQ(errorOf([&] { second->run("insert into T values(2)"); }), 1222);
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

TEST_F(Clients, temporaryTablesDoNotWaitForAnothersWriting) {
    const auto first = open();
    const auto second = open();
    first->run("create table T(A int) insert into T values(1)");
    first->run(
        "create procedure P as set nocount on declare @t table(ID int identity, A int) insert into @t select A from T "
        "create table #t(ID int identity, A int) insert into #t(A) select A from @t update #t set A = A + ID "
        "insert into #t exec('select A from T') select A into #u from #t truncate table #t drop table #t "
        "select SUM(A) from #u");
    first->begin();
    first->run("insert into T values(5)");
    EXPECT_EQ(number(*second, "exec P"), 3);
    first->commit();
    EXPECT_EQ(number(*second, "exec P"), 15);
    EXPECT_FALSE(second->inTransaction());
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

// Lists are read by the key of their table, which another program may drop or rebuild meanwhile.
TEST_F(Clients, aListIsReadOnWhenAnotherDropsItsKey) {
    const auto first = open();
    const auto second = open();
    first->run(
        "create table G(Code int not null, Unit int, Note nvarchar(9), constraint PK_G primary key (Code)) "
        "create index IX_Unit on G(Unit) create table P(GoodCode int primary key, Price int) "
        "insert into G values(2, 1, N'b'), (1, 2, N'a'), (3, 0, N'c') insert into P values(1, 5)");
    first->run("create procedure List as select G.Code, G.Note, P.Price from G left join P on P.GoodCode = G.Unit");
    const std::string list = "select G.Code, G.Note, P.Price from G left join P on P.GoodCode = G.Unit";
    const std::string batch = "declare @n int; " + list + " where G.Code > @n or @n is null";
    const auto codes = [&](const std::string& sql) {
        std::vector<std::int64_t> result;
        const BatchResult answer = second->run(sql);
        const RowSet& rows = answer.results.back().rows.value();
        for (std::size_t r = 0; r < rows.rowCount(); ++r)
            result.push_back(toInt64(rows.column(0).valueAt(r)));
        return result;
    };
    const auto expectCodes = [&] {
        for (const std::string& sql : {list, batch, std::string("exec List")}) {
            EXPECT_THAT(codes(sql), testing::UnorderedElementsAre(1, 2, 3)) << sql;
            EXPECT_THAT(codes(sql), testing::UnorderedElementsAre(1, 2, 3)) << sql;
        }
    };
    expectCodes();
    EXPECT_THAT(codes(list), testing::ElementsAre(1, 2, 3));
    first->run("alter table G drop constraint PK_G");
    expectCodes();
    first->run("alter table G add constraint PK_Other primary key (Code)");
    expectCodes();
    EXPECT_THAT(codes(list), testing::ElementsAre(1, 2, 3));
    // With other columns the rows that were read by the old plan are not those of the answer.
    first->run("alter table G drop constraint PK_Other alter table G alter column Code nvarchar(9)");
    const BatchResult texts = second->run(list);
    EXPECT_EQ(texts.results.at(0).rows.value().column(0).info().typeName, "nvarchar");
    EXPECT_EQ(texts.results.at(0).rows.value().rowCount(), 3U);
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
