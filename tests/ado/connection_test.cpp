#include "ado/connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ado/command.h"
#include "ado/query.h"
#include "ado/stored_proc.h"
#include "ado/transaction.h"
#include "tests/ado/price_levels.h"
#include "tests/ado/usage_error.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;

class Connection : public ::testing::Test {
protected:
    ScriptedSession session;
    TADOConnection connection{session};
};

TEST_F(Connection, transactionsBeginAndEnd) {
    connection.BeginTrans();
    EXPECT_TRUE(connection.InTransaction());
    EXPECT_EQ(usageErrorOf([&] { connection.BeginTrans(); }),
              "ADOConnection1.BeginTrans: a transaction has already begun, and transactions do not nest");
    connection.CommitTrans();
    EXPECT_FALSE(connection.InTransaction());
    EXPECT_EQ(usageErrorOf([&] { connection.CommitTrans(); }), "ADOConnection1.CommitTrans: no transaction has begun");
    EXPECT_EQ(usageErrorOf([&] { connection.RollbackTrans(); }),
              "ADOConnection1.RollbackTrans: no transaction has begun");
    connection.BeginTrans();
    connection.RollbackTrans();
    EXPECT_FALSE(connection.InTransaction());
}

TEST_F(Connection, aTransactionThatTheDatabaseEndedIsNotCommittedButMayBeRolledBack) {
    connection.BeginTrans();
    session.dropTransaction();
    connection.RollbackTrans();
    connection.BeginTrans();
    session.dropTransaction();
    EXPECT_THROW(connection.CommitTrans(), DatabaseError);
    EXPECT_THROW(connection.RollbackTrans(), UsageError);
    connection.BeginTrans();
    EXPECT_TRUE(connection.InTransaction());
}

TEST_F(Connection, scopedTransactionRollsBackUnlessCommitted) {
    {
        const Transaction transaction(connection);
        EXPECT_TRUE(connection.InTransaction());
    }
    EXPECT_FALSE(connection.InTransaction());
    {
        Transaction transaction(connection);
        transaction.commit();
        EXPECT_FALSE(connection.InTransaction());
        EXPECT_EQ(usageErrorOf([&] { transaction.rollback(); }), "this transaction has already ended");
    }
    {
        Transaction transaction(connection);
        session.dropTransaction();
        transaction.rollback();
    }
    EXPECT_THROW(
        {
            const Transaction transaction(connection);
            throw DatabaseError(ErrorCategory::DiskFull, "53100", 1105, "no room");
        },
        DatabaseError);
    EXPECT_FALSE(connection.InTransaction());
}

class Observer final : public StatementObserver {
public:
    std::vector<std::string> seen;

    void sending(const SentStatement& sent) override {
        std::string line = sent.component + " " + sent.action + ": " + sent.text + sent.procedure;
        for (const Argument& each : sent.parameters)
            line += " " + each.name + "=" + toText(each.value) + (each.output ? " output" : "");
        seen.push_back(line);
    }
    void touched(TDataSet& dataSet) override {
        seen.push_back(dataSet.Name() + (dataSet.Active() ? " active: " : " closed: ") + dataSet.statementText());
    }
    void leaving(TDataSet& dataSet) override {
        seen.push_back(dataSet.Name() + " leaves: " + dataSet.statementText() + " " +
                       std::to_string(dataSet.RecordCount()));
    }
    std::vector<std::string> take() { return std::exchange(seen, {}); }
};

TEST_F(Connection, observersSeeEachStatementAsItLeaves) {
    Observer observer;
    Observer second;
    connection.addObserver(observer);
    connection.addObserver(second);
    session.setTable(levelTable());
    {
        TADOQuery query(connection, "List_QUR");
        query.SQL = "select 1";
        session.expect("select 1", levelRows());
        query.Open();
        query.Edit();
        query.FieldByName("Rate") = 1;
        session.expectChange("UPDATE [CostLevel] SET [Rate] = ? WHERE [CostType] = ? AND [Code] = ? AND [Rate] = ?",
                             {Decimal(100, 2), integer(1), integer(1), Decimal(1250, 2)}, 1);
        query.Post();
    }
    TADOCommand command(connection, "DM.SharedCommand");
    command.CommandText = "delete nothing";
    session.expectError("delete nothing", DatabaseError(ErrorCategory::Syntax, "42000", 102, "no"));
    EXPECT_THROW(command.Execute(), DatabaseError);
    TADOStoredProc proc(connection, "DM.SharedProc");
    proc.ProcedureName("Info");
    session.expectCall("Info", {}, {});
    proc.ExecProc();
    const std::vector<std::string> seen = observer.take();
    EXPECT_THAT(seen,
                ElementsAre("List_QUR closed: select 1", "List_QUR open: select 1", "List_QUR active: select 1",
                            "List_QUR post: UPDATE [CostLevel] SET [Rate] = ? WHERE [CostType] = ? AND [Code] = ? AND "
                            "[Rate] = ? @P1=1.00 @P2=1 @P3=1 @P4=12.50",
                            "List_QUR leaves: select 1 4", "DM.SharedCommand exec: delete nothing",
                            "DM.SharedProc closed: ", "DM.SharedProc call: Info"));
    EXPECT_EQ(second.take(), seen);
    connection.removeObserver(observer);
    session.expectChange("delete nothing", {}, 0);
    command.Execute();
    EXPECT_TRUE(observer.seen.empty());
}

TEST_F(Connection, itsEndLeavesDataSetsWithoutOne) {
    auto brief = std::make_unique<TADOConnection>(session, "Brief");
    TADOQuery query(*brief, "Q");
    EXPECT_EQ(query.Connection(), brief.get());
    brief.reset();
    EXPECT_EQ(query.Connection(), nullptr);
    query.SQL = "select 1";
    EXPECT_THROW(query.Open(), UsageError);
}

TEST_F(Connection, anotherConnectionClosesTheDataSet) {
    TADOQuery query("Q");
    EXPECT_EQ(query.Connection(), nullptr);
    query.Connection(&connection);
    session.expect("select 1", levelRows());
    query.SQL = "select 1";
    query.Open();
    ScriptedSession otherSession;
    TADOConnection other(otherSession);
    query.Connection(&other);
    EXPECT_FALSE(query.Active());
    otherSession.expect("select 1", levelRows());
    query.Open();
    EXPECT_TRUE(query.Active());
}

}  // namespace
}  // namespace basalt
