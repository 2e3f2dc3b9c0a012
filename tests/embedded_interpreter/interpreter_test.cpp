#include <gmock/gmock.h>

#include "engines/embedded/embedded_session.h"

namespace basalt::embedded {
namespace {

using testing::ElementsAre;

class Interpreting : public testing::Test {
protected:
    std::unique_ptr<EmbeddedSession> session_ = EmbeddedSession::open(":memory:");

    BatchResult run(std::string_view sql) { return session_->run(sql); }

    int errorOf(std::string_view sql) {
        try {
            run(sql);
            return 0;
        } catch (const DatabaseError& error) {
            return error.nativeCode();
        }
    }
};

TEST_F(Interpreting, PrintsBecomeMessagesInTheirOrder) {
    const BatchResult result =
        run("PRINT N'آغاز' DECLARE @i int = 1 WHILE @i <= 2 BEGIN PRINT @i SET @i += 1 END RAISERROR('note %d', 5, 1, "
            "7) PRINT NULL");
    EXPECT_THAT(result.messages, ElementsAre("آغاز", "1", "2", "note 7", ""));
    EXPECT_TRUE(result.results.empty());
}

TEST_F(Interpreting, SaysThatNullIsNoReturnValue) {
    run("CREATE PROCEDURE P AS RETURN NULL");
    EXPECT_THAT(
        run("EXEC P").messages,
        ElementsAre("The 'P' procedure attempted to return a status of NULL, which is not allowed. A status of 0 "
                    "will be returned instead."));
}

TEST_F(Interpreting, MessagesKnowTheirPlaceAmongTheResults) {
    run("CREATE TABLE T(A int)");
    run("CREATE PROCEDURE P AS PRINT 'c' SELECT 2 AS A RAISERROR('d', 0, 1)");
    const BatchResult result = run("PRINT 'a' SELECT 1 PRINT 'b' EXEC P INSERT INTO T EXEC P PRINT 'e'");
    EXPECT_THAT(result.messages, ElementsAre("a", "b", "c", "d", "c", "d", "e"));
    EXPECT_THAT(result.messagePlaces, ElementsAre(0U, 1U, 1U, 2U, 2U, 2U, 3U));
    BatchResult unknown;
    unknown.messages = {"from another engine"};
    unknown.results.resize(2);
    unknown.say("later");
    EXPECT_EQ(unknown.placeOf(0), 0U);
    EXPECT_EQ(unknown.placeOf(1), 2U);
}

TEST_F(Interpreting, ResultsComeInTheOrderOfTheStatements) {
    run("CREATE TABLE T(A int)");
    run("CREATE PROCEDURE P AS SELECT 20 SELECT 30");
    const BatchResult result = run("SELECT 10 EXEC P INSERT INTO T VALUES(1), (2) SELECT A FROM T ORDER BY A DESC");
    ASSERT_EQ(result.results.size(), 5U);
    EXPECT_EQ(result.results[0].rows->column(0).intAt(0), 10);
    EXPECT_EQ(result.results[1].rows->column(0).intAt(0), 20);
    EXPECT_EQ(result.results[2].rows->column(0).intAt(0), 30);
    EXPECT_FALSE(result.results[3].rows);
    EXPECT_EQ(result.results[3].affectedRows, 2);
    EXPECT_EQ(result.results[4].rows->column(0).intAt(0), 2);
}

TEST_F(Interpreting, MarkersReachVariablesAndArguments) {
    run("CREATE PROCEDURE P @A int, @B nvarchar(10) AS SELECT @A * 2, @B");
    const Value values[] = {std::int64_t{21}, std::string("x")};
    const BatchResult called = session_->run("{call P(?, ?)}", values);
    EXPECT_EQ(called.results[0].rows->column(0).intAt(0), 42);
    EXPECT_EQ(called.results[0].rows->column(1).textAt(0), "x");
    const BatchResult assigned =
        session_->run("DECLARE @a int = ?, @b nvarchar(10) = ? SELECT @b + CAST(@a AS nvarchar(10))", values);
    EXPECT_EQ(assigned.results[0].rows->column(0).textAt(0), "x21");
}

TEST_F(Interpreting, ErrorsNameTheBatchThatWasSent) {
    run("CREATE PROCEDURE P AS SELECT 1 / 0");
    try {
        run("EXEC P");
        FAIL();
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.nativeCode(), 8134);
        EXPECT_EQ(error.statement(), "EXEC P");
    }
}

TEST_F(Interpreting, CallTakesArgumentsByNameAndReturnsOutputs) {
    run("CREATE PROCEDURE P @A int, @B decimal(10,2) = 1.5 OUTPUT, @C nvarchar(20) OUTPUT AS BEGIN SELECT @A SET @B = "
        "@B * @A SET @C "
        "= N'done' RETURN 3 END");
    const Argument arguments[] = {{"@C", Null{}, true}, {"@A", std::string("4"), false}, {"@B", Decimal(250, 2), true}};
    const CallResult result = session_->call("dbo.P", arguments);
    EXPECT_EQ(result.returnValue, 3);
    ASSERT_EQ(result.outputs.size(), 2U);
    EXPECT_EQ(result.outputs[0].name, "@C");
    EXPECT_EQ(toText(result.outputs[0].value), "done");
    EXPECT_EQ(toText(result.outputs[1].value), "10.00");
    ASSERT_EQ(result.batch.results.size(), 1U);
    EXPECT_EQ(result.batch.results[0].rows->column(0).intAt(0), 4);
}

TEST_F(Interpreting, CallUsesDefaultsForArgumentsThatAreLeftOut) {
    run("CREATE PROCEDURE P @A int = 5, @B nvarchar(10) = N'x' OUTPUT AS SET @B = @B + CAST(@A AS nvarchar(10))");
    const Argument arguments[] = {{"@b", std::string("y"), true}};
    EXPECT_EQ(toText(session_->call("P", arguments).outputs.at(0).value), "y5");
}

TEST_F(Interpreting, CallOfNothing) {
    try {
        session_->call("Nothing", {});
        FAIL();
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::NotFound);
        EXPECT_EQ(error.nativeCode(), 2812);
    }
    EXPECT_THROW(static_cast<void>(session_->procedure("Nothing")), DatabaseError);
}

TEST_F(Interpreting, TellsTheParametersOfAProcedure) {
    run("CREATE PROCEDURE dbo.P @A int, @B nvarchar(50) = N'x', @C decimal(23,9) OUTPUT AS SELECT 1");
    const ProcedureInfo info = session_->procedure("[dbo].[p]");
    EXPECT_EQ(info.name, "P");
    ASSERT_EQ(info.parameters.size(), 3U);
    EXPECT_EQ(info.parameters[0].name, "@A");
    EXPECT_EQ(info.parameters[0].type.type, FieldType::Integer);
    EXPECT_FALSE(info.parameters[0].hasDefault);
    EXPECT_EQ(info.parameters[1].type.size, 50);
    EXPECT_TRUE(info.parameters[1].hasDefault);
    EXPECT_EQ(info.parameters[1].direction, ParameterDirection::Input);
    EXPECT_EQ(info.parameters[2].type.precision, 23);
    EXPECT_EQ(info.parameters[2].type.scale, 9);
    EXPECT_EQ(info.parameters[2].direction, ParameterDirection::InputOutput);
}

TEST_F(Interpreting, CallsThatDifferInTheirLiteralsShareAPlan) {
    run("CREATE TABLE T(A int PRIMARY KEY, N nvarchar(20)) INSERT INTO T VALUES(1, N'a'), (2, N'b'), (3, N'c')");
    run("CREATE PROCEDURE P @A int AS SELECT N FROM T WHERE A = @A");
    run("EXEC P @A = 1");
    const PlanStatistics before = session_->planStatistics();
    EXPECT_EQ(run("EXEC P @A = 2").results[0].rows->column(0).textAt(0), "b");
    EXPECT_EQ(run("EXEC P @A = 3").results[0].rows->column(0).textAt(0), "c");
    EXPECT_EQ(session_->planStatistics().hits - before.hits, 2U);
    EXPECT_EQ(session_->planStatistics().misses, before.misses);
}

TEST_F(Interpreting, BatchesOfVariablesShareAPlanToo) {
    run("DECLARE @a int SELECT @a = 1 SELECT @a + 10");
    const PlanStatistics before = session_->planStatistics();
    EXPECT_EQ(run("DECLARE @a int SELECT @a = 7 SELECT @a + 20").results[0].rows->column(0).intAt(0), 27);
    EXPECT_EQ(session_->planStatistics().misses, before.misses);
}

TEST_F(Interpreting, LengthsOfTypesDoNotShareAPlan) {
    EXPECT_EQ(run("DECLARE @a varchar(3) = 'abcdef' SELECT @a").results[0].rows->column(0).textAt(0), "abc");
    EXPECT_EQ(run("DECLARE @a varchar(5) = 'abcdef' SELECT @a").results[0].rows->column(0).textAt(0), "abcde");
}

TEST_F(Interpreting, TheNextBatchStartsAfreshAfterAFailure) {
    run("CREATE PROCEDURE P @N int AS BEGIN DECLARE @M int = @N + 1 EXEC P @M END");
    EXPECT_EQ(errorOf("EXEC P 1"), 217);
    EXPECT_EQ(errorOf("BEGIN TRY SELECT 1 / 0 END TRY BEGIN CATCH THROW END CATCH"), 8134);
    EXPECT_EQ(errorOf("RAISERROR('x', 16, 1)"), 50000);
    EXPECT_EQ(run("SELECT @@NESTLEVEL, ERROR_NUMBER()").results[0].rows->column(0).intAt(0), 0);
    EXPECT_EQ(run("DECLARE @a int = 3 SELECT @a").results[0].rows->column(0).intAt(0), 3);
}

TEST_F(Interpreting, ABrokenProcedureIsRefusedWhenItIsMade) {
    EXPECT_EQ(errorOf("CREATE PROCEDURE P AS SELECT FROM"), 156);
    EXPECT_EQ(errorOf("CREATE PROCEDURE P @A int AS DECLARE @A int"), 134);
    EXPECT_EQ(errorOf("CREATE PROCEDURE P @A nothing AS SELECT 1"), 2715);
    EXPECT_EQ(errorOf("EXEC P"), 2812);
}

TEST_F(Interpreting, ARolledBackTransactionTakesTableVariablesAlong) {
    run("BEGIN TRAN DECLARE @t TABLE (A int) INSERT INTO @t VALUES(1) ROLLBACK");
    const BatchResult result = run("DECLARE @t TABLE (A int) INSERT INTO @t VALUES(2) SELECT A FROM @t");
    ASSERT_EQ(result.results.back().rows->rowCount(), 1U);
    EXPECT_EQ(result.results.back().rows->column(0).intAt(0), 2);
}

}  // namespace
}  // namespace basalt::embedded
