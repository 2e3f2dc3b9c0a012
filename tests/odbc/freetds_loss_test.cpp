// Connections that are lost, statements that are given up, and transactions, through FreeTDS.
#include "freetds.h"

namespace basalt::odbc {
namespace {

namespace tds = test::tds;
using test::errorOf;
using test::FreeTds;
using test::TdsReply;
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
    EXPECT_FALSE(session().inTransaction());
    session().rollback();
    const DatabaseError refused = errorOf([&] { session().commit(); });
    EXPECT_EQ(refused.nativeCode(), 3902);
    EXPECT_EQ(server_.logins(), 1);

    server_.answer(TdsReply().done());
    session().begin();
    EXPECT_TRUE(session().inTransaction());
    EXPECT_EQ(server_.logins(), 2);
    EXPECT_THAT(sent(), ElementsAre("BEGIN TRANSACTION", "update T set A = 1", "BEGIN TRANSACTION"));
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

}  // namespace
}  // namespace basalt::odbc
