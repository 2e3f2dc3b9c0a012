// Connections that are lost, statements that are given up, and transactions, through FreeTDS.
#include <chrono>
#include <thread>

#include "ado/connection.h"
#include "ado/query.h"
#include "freetds.h"

namespace basalt::odbc {
namespace {

namespace tds = test::tds;
using test::errorOf;
using test::FreeTds;
using test::TdsReply;
using test::TdsRequest;
using testing::ElementsAre;

const TdsReply& threeRows() {
    static const TdsReply reply = TdsReply()
                                      .columns({tds::integer("A")})
                                      .row({std::int64_t{1}})
                                      .row({std::int64_t{2}})
                                      .row({std::int64_t{3}})
                                      .done(3);
    return reply;
}

class CutShort : public FreeTds, public testing::WithParamInterface<std::size_t> {};

TEST_P(CutShort, theLossIsAnErrorAndTheNextRequestConnectsAnew) {
    server_.answerAndHangUp(test::cutShort(threeRows(), GetParam()));
    server_.answer(threeRows());
    const DatabaseError error = errorOf([&] { session().run("select A from T"); });
    EXPECT_EQ(error.category(), ErrorCategory::Connection);
    EXPECT_EQ(error.sqlState(), "08S01");
    EXPECT_EQ(error.statement(), "select A from T");
    EXPECT_STREQ(error.what(),
                 "the connection to SERVER=127.0.0.1;Database=Basalt was lost: Unexpected EOF from the server");
    EXPECT_EQ(session().run("select A from T").results.at(0).rows.value().rowCount(), 3U);
    EXPECT_EQ(server_.logins(), 2);
}

// Before anything, within the columns, between rows, within a row, before the end.
INSTANTIATE_TEST_SUITE_P(Places, CutShort, testing::Values(0, 5, 14, 20, 22, 32, 40));

TEST_F(FreeTds, aTransactionIsLostWithItsConnection) {
    server_.answer(TdsReply().done());
    server_.answerAndHangUp("");
    session().begin();
    EXPECT_TRUE(session().inTransaction());
    const DatabaseError error = errorOf([&] { session().run("update T set A = 1"); });
    EXPECT_EQ(error.category(), ErrorCategory::Connection);
    EXPECT_STREQ(error.what(),
                 "the connection to SERVER=127.0.0.1;Database=Basalt was lost, and the transaction with it: Unexpected "
                 "EOF from the server");
    EXPECT_TRUE(session().inTransaction());
    session().rollback();
    EXPECT_FALSE(session().inTransaction());
    session().rollback();
    EXPECT_EQ(errorOf([&] { session().commit(); }).nativeCode(), 3902);
    EXPECT_EQ(server_.logins(), 1);

    server_.answer(TdsReply().done());
    session().begin();
    EXPECT_TRUE(session().inTransaction());
    EXPECT_EQ(server_.logins(), 2);
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "update T set A = 1", "BEGIN TRANSACTION"));
}

// Whoever overlooks the loss would write on without a transaction, and keep half of it.
class LostWithinATransaction : public FreeTds {
protected:
    void SetUp() override {
        FreeTds::SetUp();
        if (IsSkipped()) return;
        server_.answer(TdsReply().done());
        session().begin();
        lose();
    }
    void lose() {
        server_.answerAndHangUp("");
        EXPECT_EQ(errorOf([&] { session().run("update T set A = 1"); }).sqlState(), "08S01");
        seen_ = sent().size();
    }
    void expectRefused(const std::function<void()>& request) {
        const DatabaseError error = errorOf(request);
        EXPECT_EQ(error.category(), ErrorCategory::Connection);
        EXPECT_EQ(error.sqlState(), "25S03");
        EXPECT_STREQ(
            error.what(),
            "the transaction was lost with the connection to SERVER=127.0.0.1;Database=Basalt; nothing is done "
            "before it has been rolled back");
        EXPECT_EQ(sent().size(), seen_);
        EXPECT_EQ(server_.logins(), 1);
        EXPECT_TRUE(session().inTransaction());
    }
    void expectAnew() {
        EXPECT_FALSE(session().inTransaction());
        server_.answer(TdsReply().done(1));
        EXPECT_EQ(affectedRows(session().run("update U set A = 1")), 1);
        EXPECT_EQ(server_.logins(), 2);
        EXPECT_EQ(sent().size(), seen_ + 1);
    }

    std::size_t seen_ = 0;
};

TEST_F(LostWithinATransaction, everyRequestIsRefusedUntilItIsRolledBack) {
    expectRefused([&] { session().run("insert U values (1)"); });
    expectRefused([&] { session().run("insert U values (?)", std::vector<Value>{std::int64_t{1}}); });
    expectRefused([&] { (void)session().call("CloseTheYear", {}); });
    expectRefused([&] { (void)session().procedure("CloseTheYear"); });
    expectRefused([&] { (void)session().table("U"); });
    expectRefused([&] { session().begin(); });
    session().rollback();
    expectAnew();
}

TEST_F(LostWithinATransaction, committingFailsAndEndsIt) {
    const DatabaseError error = errorOf([&] { session().commit(); });
    EXPECT_EQ(error.category(), ErrorCategory::Connection);
    EXPECT_EQ(error.nativeCode(), 3902);
    EXPECT_STREQ(error.what(),
                 "the transaction was lost with the connection to SERVER=127.0.0.1;Database=Basalt; nothing of it was "
                 "saved");
    expectAnew();
}

TEST_F(LostWithinATransaction, theWordsRollBackAndCommitToo) {
    expectRefused([&] { session().run("rollback insert U values (1)"); });
    EXPECT_TRUE(session().run("if @@trancount > 0 rollback transaction;").results.empty());
    EXPECT_FALSE(session().inTransaction());
    expectAnew();

    server_.answer(TdsReply().done());
    session().begin();
    lose();
    EXPECT_EQ(errorOf([&] { session().run("COMMIT"); }).nativeCode(), 3902);
    EXPECT_FALSE(session().inTransaction());
}

TEST_F(LostWithinATransaction, throughTheDataSetsToo) {
    TADOConnection connection(session());
    EXPECT_TRUE(connection.InTransaction());
    expectRefused([&] { (void)connection.run("Q", "exec", "insert U values (1)"); });
    connection.RollbackTrans();
    expectAnew();
}

TEST_F(FreeTds, everyLevelOfALostTransactionHasItsEnd) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().done());
    server_.answerAndHangUp("");
    session().begin();
    session().begin();
    EXPECT_EQ(errorOf([&] { session().commit(); }).category(), ErrorCategory::Connection);
    EXPECT_TRUE(session().inTransaction());
    EXPECT_EQ(errorOf([&] { session().run("insert U values (1)"); }).sqlState(), "25S03");
    EXPECT_EQ(errorOf([&] { session().commit(); }).nativeCode(), 3902);
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "BEGIN TRANSACTION", "COMMIT TRANSACTION"));
}

TEST_F(FreeTds, aTransactionThatIsLostWhileItIsRolledBackHasEnded) {
    server_.answer(TdsReply().done());
    server_.answerAndHangUp("");
    server_.answer(TdsReply().done(1));
    session().begin();
    EXPECT_EQ(errorOf([&] { session().rollback(); }).category(), ErrorCategory::Connection);
    EXPECT_FALSE(session().inTransaction());
    EXPECT_EQ(affectedRows(session().run("delete U")), 1);
}

class LostAfter : public FreeTds, public testing::WithParamInterface<const char*> {};

// The server was not asked, and nobody may count on there having been none.
TEST_P(LostAfter, aTextThatMayHaveBegunOne) {
    server_.answer(TdsReply().done());
    server_.answerAndHangUp("");
    session().run(GetParam());
    EXPECT_EQ(errorOf([&] { session().run("delete T"); }).sqlState(), "08S01");
    const DatabaseError error = errorOf([&] { session().run("delete U"); });
    EXPECT_EQ(error.sqlState(), "25S03");
    EXPECT_STREQ(error.what(),
                 "a transaction may have been lost with the connection to SERVER=127.0.0.1;Database=Basalt; nothing is "
                 "done before it has been rolled back");
    EXPECT_TRUE(session().inTransaction());
    EXPECT_TRUE(session().run("rollback").results.empty());
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre(GetParam(), "delete T"));
}

INSTANTIATE_TEST_SUITE_P(Texts, LostAfter, testing::Values("begin tran", "set implicit_transactions on"));

// The question of a caller meets the loss.
TEST_F(FreeTds, aTransactionThatIsLostWhenAskedForIsStillToBeEnded) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().done());
    server_.answerAndHangUp("");
    session().begin();
    session().run("exec CloseTheYear");
    EXPECT_TRUE(session().inTransaction());
    EXPECT_EQ(errorOf([&] { session().run("delete U"); }).sqlState(), "25S03");
    session().rollback();
    server_.answer(TdsReply().done(1));
    EXPECT_EQ(affectedRows(session().run("delete U")), 1);
}

// The server may have done it before the connection went.
TEST_F(FreeTds, whetherALostCommitWasDoneIsNotKnown) {
    server_.answer(TdsReply().done());
    server_.answerAndHangUp("");
    session().begin();
    EXPECT_STREQ(
        errorOf([&] { session().commit(); }).what(),
        "the connection to SERVER=127.0.0.1;Database=Basalt was lost; whether the transaction was saved before "
        "is not known: Unexpected EOF from the server");
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "COMMIT TRANSACTION"));
}

TEST_F(FreeTds, oneAttemptToConnectARequest) {
    server_.answerAndHangUp("");
    errorOf([&] { session().run("a"); });
    server_.refuseLogin(18456, "Login failed for user 'sa'.");
    EXPECT_EQ(errorOf([&] { session().run("b"); }).nativeCode(), 18456);
    EXPECT_EQ(server_.logins(), 2);
    server_.answer(TdsReply().done(1));
    session().run("c");
    EXPECT_EQ(server_.logins(), 3);
    EXPECT_THAT(sent(), ElementsAre("a", "c"));
}

// The server says its last word and closes: the driver notices with the next request.
TEST_F(FreeTds, aFatalErrorIsToldAndThenTheLoss) {
    server_.answerAndHangUp(TdsReply().error(21, 20, "Warning: Fatal error 823 occurred.").doneWithError().bytes());
    server_.answer(TdsReply().done(1));
    EXPECT_EQ(errorOf([&] { session().run("a"); }).nativeCode(), 21);
    EXPECT_EQ(errorOf([&] { session().run("b"); }).category(), ErrorCategory::Connection);
    session().run("c");
    EXPECT_EQ(server_.logins(), 2);
    EXPECT_THAT(sent(), ElementsAre("a", "c"));
}

TEST_F(FreeTds, aStatementThatTakesTooLongIsGivenUpAndTheConnectionStays) {
    options_.queryTimeoutSeconds = 1;
    server_.keepWaiting();
    server_.answer(TdsReply().done(1));
    const DatabaseError error = errorOf([&] { session().run("waitfor delay '1:00'"); });
    EXPECT_EQ(error.category(), ErrorCategory::Busy);
    EXPECT_EQ(error.sqlState(), "HYT00");
    EXPECT_EQ(affectedRows(session().run("next")), 1);
    EXPECT_EQ(server_.logins(), 1);
}

TEST_F(FreeTds, aQueryHasItsOwnLimitOfTimeAndTheNextOneTheSessions) {
    options_.queryTimeoutSeconds = 1;
    server_.answerWith([](const TdsRequest&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        return threeRows();
    });
    TADOConnection connection(session());
    TADOQuery patient(connection, "BarCodeFormul_QRY");
    patient.CommandTimeout = 0;
    patient.SQL = "select A from T";
    patient.Open();
    EXPECT_EQ(patient.RecordCount(), 3);
    server_.keepWaiting();
    TADOQuery other(connection, "Temp_QRY");
    other.SQL = "select A from T";
    EXPECT_EQ(errorOf([&] { other.Open(); }).sqlState(), "HYT00");
    // And the limit of a query is kept where the session has none, or a longer one.
    session_.reset();
    options_.queryTimeoutSeconds = 0;
    TADOConnection unlimited(session());
    server_.keepWaiting();
    TADOQuery hasty(unlimited, "Temp_QRY");
    hasty.CommandTimeout = 1;
    hasty.SQL = "delete T";
    EXPECT_EQ(errorOf([&] { hasty.ExecSQL(); }).sqlState(), "HYT00");
    hasty.CommandTimeout = 0;
    EXPECT_EQ(hasty.ExecSQL(), -1);
    EXPECT_EQ(server_.logins(), 2);
}

TEST_F(FreeTds, aRefusedLoginTellsNoPassword) {
    server_.refuseLogin(18456, "Login failed for user 'sa' (top-secret).");
    const DatabaseError error = errorOf([&] { session(); });
    EXPECT_EQ(error.category(), ErrorCategory::Connection);
    EXPECT_EQ(error.nativeCode(), 18456);
    EXPECT_STREQ(error.what(), "cannot connect to SERVER=127.0.0.1;Database=Basalt: Login failed for user 'sa' (***).");
}

TEST_F(FreeTds, whereTheDataLivesIsToldWithoutSecrets) {
    EXPECT_EQ(session().engine(), "odbc");
    EXPECT_EQ(session().location(), "SERVER=127.0.0.1;Database=Basalt");
}

TdsReply transactionState(int count, int state) {
    return TdsReply()
        .columns({tds::integer(""), tds::integer("", 2)})
        .row({std::int64_t{count}, std::int64_t{state}})
        .done(1);
}

constexpr const char* kQuestion = "SELECT @@TRANCOUNT, XACT_STATE()";

TEST_F(FreeTds, transactionsTravelAsTexts) {
    for (int i = 0; i < 5; ++i)
        server_.answer(TdsReply().done());
    session().begin();
    session().commit();
    EXPECT_FALSE(session().inTransaction());
    session().begin();
    session().run("update T set Transport = 1");
    session().rollback();
    EXPECT_FALSE(session().inTransaction());
    session().rollback();
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "COMMIT TRANSACTION", "BEGIN TRANSACTION",
                                    "update T set Transport = 1", "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"));
}

TEST_F(FreeTds, anErrorThatLeavesTheTransactionAlone) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().error(547, 16, "The DELETE statement conflicted.").doneWithError());
    server_.answer(transactionState(1, 1));
    session().begin();
    EXPECT_EQ(errorOf([&] { session().run("delete T"); }).nativeCode(), 547);
    EXPECT_TRUE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "delete T", kQuestion));
}

// Of a linked server, for example.
TEST_F(FreeTds, aStatementThatFailsForALoginLosesNothing) {
    for (const int number : {18456, 4060}) {
        server_.answer(TdsReply().done());
        server_.answer(TdsReply().error(number, 14, "Login failed for user 'far'.").doneWithError());
        server_.answer(transactionState(1, 1));
        server_.answer(TdsReply().done());
        session().begin();
        const DatabaseError error = errorOf([&] { session().run("select 1 from far.db.dbo.T"); });
        EXPECT_EQ(error.nativeCode(), number);
        EXPECT_STREQ(error.what(), "Login failed for user 'far'.");
        EXPECT_TRUE(session().inTransaction());
        session().commit();
    }
    EXPECT_EQ(server_.logins(), 1);
}

TEST_F(FreeTds, anErrorThatEndsTheTransaction) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().error(1205, 13, "Transaction was deadlocked.").doneWithError());
    server_.answer(transactionState(0, 0));
    session().begin();
    EXPECT_EQ(errorOf([&] { session().run("delete T"); }).category(), ErrorCategory::Busy);
    EXPECT_FALSE(session().inTransaction());
    EXPECT_EQ(errorOf([&] { session().commit(); }).nativeCode(), 3902);
}

TEST_F(FreeTds, aDoomedTransactionIsRolledBack) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().error(245, 16, "Conversion failed.").doneWithError());
    server_.answer(transactionState(1, -1));
    server_.answer(TdsReply().done());
    session().begin();
    EXPECT_EQ(errorOf([&] { session().run("select 1 + 'a'"); }).nativeCode(), 245);
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "select 1 + 'a'", kQuestion,
                                    "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"));
}

TEST_F(FreeTds, aServerThatDoesNotAnswerThatQuestionChangesNothing) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().error(547, 16, "The DELETE statement conflicted.").doneWithError());
    server_.answer(TdsReply().error(195, 15, "'XACT_STATE' is not a recognized function name.").doneWithError());
    session().begin();
    EXPECT_EQ(errorOf([&] { session().run("delete T"); }).nativeCode(), 547);
    EXPECT_TRUE(session().inTransaction());
}

TEST_F(FreeTds, aBatchThatBeginsATransactionByItselfIsNoticed) {
    server_.answer(TdsReply().done());
    server_.answer(transactionState(1, 1));
    server_.answer(TdsReply().done());
    session().run("Begin Tran; update T set A = 1");
    EXPECT_TRUE(session().inTransaction());
    session().commit();
    EXPECT_FALSE(session().inTransaction());
}

class EndsTheTransaction : public FreeTds, public testing::WithParamInterface<const char*> {};

TEST_P(EndsTheTransaction, isNoticed) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().done());
    server_.answer(transactionState(0, 0));
    session().begin();
    session().run(GetParam());
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", GetParam(), kQuestion));
    EXPECT_EQ(errorOf([&] { session().commit(); }).nativeCode(), 3902);
}

INSTANTIATE_TEST_SUITE_P(Batches, EndsTheTransaction,
                         testing::Values("commit", "COMMIT WORK", "update T set A = 1;Rollback", "rollback work",
                                         "exec CloseTheYear", "if 1 = 1 EXECUTE CloseTheYear", "CloseTheYear 1405",
                                         "-- the year\n/* at last */ ;[Close the year]"));

class LeavesATransaction : public FreeTds, public testing::WithParamInterface<const char*> {};

TEST_P(LeavesATransaction, isNoticed) {
    server_.answer(TdsReply().done());
    server_.answer(transactionState(1, 1));
    server_.answer(TdsReply().done());
    session().run(GetParam());
    EXPECT_TRUE(session().inTransaction());
    session().rollback();
    EXPECT_THAT(sent(), ElementsAre(GetParam(), kQuestion, "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"));
}

INSTANTIATE_TEST_SUITE_P(Batches, LeavesATransaction, testing::Values("exec OpenTheYear", "dbo.OpenTheYear"));

TEST_F(FreeTds, aProcedureThatFailsForLeavingATransactionIsNoticed) {
    server_.answer(TdsReply().error(266, 16, "Transaction count after EXECUTE indicates a mismatch.").doneWithError());
    server_.answer(transactionState(1, 1));
    EXPECT_EQ(errorOf([&] { session().run("exec OpenTheYear"); }).nativeCode(), 266);
    EXPECT_TRUE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("exec OpenTheYear", kQuestion));
}

TEST_F(FreeTds, aBatchThatCannotChangeTheTransactionCostsNoQuestion) {
    const auto texts = {"select Committed, Executed, Rollback_ from T", "(select 1)",
                        "  with C as (select 1 as A) select A from C"};
    for (const char* text : texts) {
        server_.answer(TdsReply().done());
        session().run(text);
        EXPECT_FALSE(session().inTransaction());
    }
    EXPECT_EQ(server_.requests().size(), texts.size());
}

TEST_F(FreeTds, nobodyIsAskedForWhatNobodyWantsToKnow) {
    for (int i = 0; i < 3; ++i)
        server_.answer(TdsReply().done());
    server_.answer(transactionState(0, 0));
    for (int i = 0; i < 3; ++i)
        session().run("exec PricesOf 5");
    EXPECT_FALSE(session().inTransaction());
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("exec PricesOf 5", "exec PricesOf 5", "exec PricesOf 5", kQuestion));
}

TEST_F(FreeTds, aTransactionWithinATransactionHasItsOwnEnd) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().done());
    server_.answer(transactionState(2, 1));
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().done());
    session().begin();
    session().run("begin tran");
    session().commit();
    EXPECT_TRUE(session().inTransaction());
    session().commit();
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(),
                ElementsAre("BEGIN TRANSACTION", "begin tran", kQuestion, "COMMIT TRANSACTION", "COMMIT TRANSACTION"));
}

TEST_F(FreeTds, nothingIsCommittedThatABatchHasEnded) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().done());
    server_.answer(transactionState(0, 0));
    session().begin();
    session().run("exec CloseTheYear");
    EXPECT_EQ(errorOf([&] { session().commit(); }).nativeCode(), 3902);
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "exec CloseTheYear", kQuestion));
}

TEST_F(FreeTds, whatABatchMayHaveBegunIsRolledBackWithoutAQuestion) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().done());
    session().run("exec OpenTheYear");
    session().rollback();
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("exec OpenTheYear", "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"));
}

TEST_F(FreeTds, anErrorWhereATransactionMayBeOpen) {
    server_.answer(TdsReply().done());
    server_.answer(TdsReply().error(1205, 13, "Transaction was deadlocked.").doneWithError());
    server_.answer(transactionState(0, 0));
    session().run("exec OpenTheYear");
    EXPECT_EQ(errorOf([&] { session().run("delete T"); }).nativeCode(), 1205);
    EXPECT_FALSE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("exec OpenTheYear", "delete T", kQuestion));
}

TEST_F(FreeTds, withImplicitTransactionsEveryStatementMayBeginOne) {
    server_.answer(TdsReply().done());
    server_.answer(transactionState(0, 0));
    server_.answer(TdsReply().done());
    server_.answer(transactionState(1, 1));
    session().run("set implicit_transactions on");
    EXPECT_FALSE(session().inTransaction());
    session().run("delete T");
    EXPECT_TRUE(session().inTransaction());
    EXPECT_THAT(sent(), ElementsAre("set implicit_transactions on", kQuestion, "delete T", kQuestion));
}

TEST_F(FreeTds, aLossWhereATransactionMayBeOpenSaysSo) {
    server_.answer(TdsReply().done());
    server_.answerAndHangUp("");
    session().run("exec OpenTheYear");
    EXPECT_STREQ(errorOf([&] { session().run("delete T"); }).what(),
                 "the connection to SERVER=127.0.0.1;Database=Basalt was lost, and with it the transaction if one was "
                 "open: Unexpected EOF from the server");
    EXPECT_FALSE(session().inTransaction());
    EXPECT_EQ(server_.requests().size(), 2U);
}

// The question meets the loss. It has no answer but "no", and no later request may go to another connection as if
// nothing had been.
class LostWhenAsked : public FreeTds {
protected:
    void SetUp() override {
        FreeTds::SetUp();
        if (IsSkipped()) return;
        server_.answer(TdsReply().done());
        server_.answerAndHangUp("");
        session().run("exec OpenTheYear");
        EXPECT_FALSE(session().inTransaction());
        EXPECT_FALSE(session().inTransaction());
    }
    void expectLoss(const std::function<void()>& request) {
        const DatabaseError error = errorOf(request);
        EXPECT_EQ(error.category(), ErrorCategory::Connection);
        EXPECT_STREQ(error.what(),
                     "the connection to SERVER=127.0.0.1;Database=Basalt was lost, and with it the transaction if one "
                     "was open: Unexpected EOF from the server");
        EXPECT_EQ(server_.logins(), 1);
        server_.answer(TdsReply().done(1));
        EXPECT_EQ(affectedRows(session().run("delete U")), 1);
        EXPECT_THAT(sent(), ElementsAre("exec OpenTheYear", kQuestion, "delete U"));
        EXPECT_EQ(server_.logins(), 2);
    }
};

TEST_F(LostWhenAsked, theNextBatchFails) {
    expectLoss([&] { session().run("delete T"); });
}

TEST_F(LostWhenAsked, theNextCallFails) {
    expectLoss([&] { (void)session().call("CloseTheYear", {}); });
}

TEST_F(LostWhenAsked, theNextTransactionDoesNotBegin) {
    expectLoss([&] { session().begin(); });
}

TEST_F(LostWhenAsked, nothingIsCommitted) {
    expectLoss([&] { session().commit(); });
}

TEST_F(LostWhenAsked, rollingBackIsAllRightAndTheNextRequestFails) {
    session().rollback();
    expectLoss([&] { session().run("delete T"); });
}

}  // namespace
}  // namespace basalt::odbc
