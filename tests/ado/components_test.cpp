// Commands and stored procedures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ado/command.h"
#include "ado/query.h"
#include "ado/stored_proc.h"
#include "tests/ado/price_levels.h"
#include "tests/ado/usage_error.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

TEST(Query, execSqlGivesTheRowsChanged) {
    ScriptedSession session;
    TADOConnection connection(session);
    TADOQuery query(connection, "Temp_QUR");
    EXPECT_EQ(usageErrorOf([&] { query.ExecSQL(); }), "Temp_QUR.ExecSQL: the statement is empty; set SQL first");
    session.expectChange("delete CostLevel", {}, 3);
    query.SQL = "delete CostLevel";
    EXPECT_EQ(query.ExecSQL(), 3);
    EXPECT_FALSE(query.Active());
    BatchResult batch;
    batch.results.push_back({.rows = std::nullopt, .affectedRows = 1});
    batch.results.push_back({.rows = std::nullopt, .affectedRows = 7});
    batch.results.push_back({.rows = levelRows()});
    session.expectBatch("two", {}, std::move(batch));
    query.SQL = "two";
    EXPECT_EQ(query.ExecSQL(), 7);
    session.expectBatch("set nothing", {}, {});
    query.SQL = "set nothing";
    EXPECT_EQ(query.ExecSQL(), -1);
}

TEST(Query, theTimeOfOneQueryIsNobodyElses) {
    ScriptedSession session;
    TADOConnection connection(session);
    TADOQuery patient(connection, "BarCodeFormul_QRY");
    EXPECT_EQ(patient.CommandTimeout, std::nullopt);
    patient.CommandTimeout = 0;
    TADOQuery other(connection, "Temp_QRY");
    for (const char* const text : {"a", "b", "c", "d"})
        session.expect(text, levelRows());
    patient.SQL = "a";
    patient.Open();
    other.SQL = "b";
    other.Open();
    patient.CommandTimeout = 90;
    patient.SQL = "c";
    patient.ExecSQL();
    other.SQL = "d";
    other.Open();
    EXPECT_THAT(session.timeLimits, ::testing::ElementsAre(0, std::nullopt, 90, std::nullopt));
}

TEST(Query, theTimeOfAQueryThatFailsIsNobodyElses) {
    ScriptedSession session;
    TADOConnection connection(session);
    TADOQuery query(connection, "Temp_QRY");
    query.CommandTimeout = 5;
    query.SQL = "a";
    session.expectError("a", DatabaseError(ErrorCategory::Busy, "HYT00", 0, "Timeout expired"));
    EXPECT_THROW(query.Open(), DatabaseError);
    session.expectChange("b", {}, 1);
    TADOCommand command(connection, "DM.SharedCommand");
    command.CommandText = "b";
    command.Execute();
    EXPECT_THAT(session.timeLimits, ::testing::ElementsAre(5, std::nullopt));
}

TEST(Query, aTimeBelowNothingIsRefused) {
    ScriptedSession session;
    TADOConnection connection(session);
    TADOQuery query(connection, "Temp_QRY");
    query.CommandTimeout = -1;
    query.SQL = "a";
    EXPECT_EQ(usageErrorOf([&] { query.Open(); }),
              "Temp_QRY.Open: CommandTimeout is -1; it counts seconds, and 0 is no limit");
    EXPECT_EQ(usageErrorOf([&] { query.ExecSQL(); }),
              "Temp_QRY.ExecSQL: CommandTimeout is -1; it counts seconds, and 0 is no limit");
}

TEST(Command, runsAStatementWithoutRows) {
    ScriptedSession session;
    TADOConnection connection(session);
    TADOCommand command("DM.SharedCommand");
    command.CommandText = "update T set a = 1";
    EXPECT_EQ(usageErrorOf([&] { command.Execute(); }), "DM.SharedCommand.Execute: there is no connection");
    command.Connection(&connection);
    session.expectChange("update T set a = 1", {}, 5);
    EXPECT_EQ(command.Execute(), 5);
    command.CommandText.clear();
    EXPECT_EQ(usageErrorOf([&] { command.Execute(); }),
              "DM.SharedCommand.Execute: the statement is empty; set CommandText first");
}

ProcedureInfo stockInfo() {
    ColumnInfo amount;
    amount.type = FieldType::Decimal;
    amount.precision = 23;
    amount.scale = 9;
    return {.name = "StockInfo",
            .parameters = {{.name = "@GoodCode", .type = {.type = FieldType::Integer}},
                           {.name = "@Store", .type = {.type = FieldType::Integer}, .hasDefault = true},
                           {.name = "@Amount", .direction = ParameterDirection::InputOutput, .type = amount}}};
}

class StoredProc : public ::testing::Test {
protected:
    StoredProc() {
        session.setProcedure(stockInfo());
        proc.ProcedureName("StockInfo;1");
        proc.Parameters().Refresh();
    }
    ScriptedSession session;
    TADOConnection connection{session};
    TADOStoredProc proc{connection, "DM.SharedProc"};
};

TEST_F(StoredProc, knowsItsParametersAfterRefresh) {
    EXPECT_EQ(proc.ProcedureName(), "StockInfo;1");  // as it was set; it is called without the number
    EXPECT_EQ(proc.Parameters().Count(), 4);
    EXPECT_EQ(proc.Parameters().Items(0).Name(), "@RETURN_VALUE");
    EXPECT_EQ(proc.Parameters().ParamByName("goodcode").Name(), "@GoodCode");
    EXPECT_EQ(&proc.Parameters()["@GOODCODE"], &proc.Parameters().Items(1));
    EXPECT_EQ(proc.Parameters().FindParam("@Other"), nullptr);
    EXPECT_EQ(usageErrorOf([&] { proc.Parameters()["@Other"] = 1; }),
              "DM.SharedProc: there is no parameter @Other; there are @RETURN_VALUE, @GoodCode, @Store, @Amount");
    EXPECT_EQ(usageErrorOf([&] { static_cast<void>(proc.Parameters().Items(4)); }),
              "DM.SharedProc: there is no parameter 4; there are 4");
    proc.ProcedureName("Other");
    EXPECT_EQ(usageErrorOf([&] { proc.Parameters()["@GoodCode"] = 1; }),
              "DM.SharedProc: there is no parameter @GoodCode; call Parameters().Refresh() first");
    EXPECT_THROW(proc.Parameters().Refresh(), DatabaseError);
}

TEST_F(StoredProc, executesWithValuesOutputsAndReturnValue) {
    proc.Parameters()["@GoodCode"] = 7;
    proc.Parameters().ParamByName("Amount").SetExtended(1.5L);
    session.expectCall("StockInfo", {{"@GoodCode", integer(7), false}, {"@Amount", Decimal(1'500'000'000, 9), true}},
                       {.batch = {}, .returnValue = -3, .outputs = {{"@Amount", Decimal(2'250'000'000, 9), true}}});
    proc.ExecProc();
    EXPECT_FALSE(proc.Active());
    EXPECT_EQ(proc.Parameters()["@RETURN_VALUE"].AsInteger(), -3);
    EXPECT_EQ(proc.Parameters()["@Amount"].AsFloat(), 2.25L);
    EXPECT_EQ(proc.Parameters()["@Amount"].AsString(), "2.25");
}

TEST_F(StoredProc, leavesUnassignedParametersToTheirDefaults) {
    proc.Parameters()["@Store"] = Null{};
    session.expectCall("StockInfo", {{"@Store", Null{}, false}, {"@Amount", Null{}, true}}, {});
    proc.ExecProc();
    EXPECT_TRUE(proc.Parameters()["@Amount"].IsNull());
    EXPECT_EQ(proc.Parameters()["@RETURN_VALUE"].AsInteger(), 0);
}

TEST_F(StoredProc, opensOnItsFirstRows) {
    proc.Parameters()["@GoodCode"] = std::string("7");
    CallResult result;
    result.batch.results.push_back({.rows = std::nullopt, .affectedRows = 1});
    result.batch.results.push_back({.rows = levelRows()});
    result.returnValue = 5;
    session.expectCall("StockInfo", {{"@GoodCode", text("7"), false}, {"@Amount", Null{}, true}}, std::move(result));
    proc.Open();
    EXPECT_EQ(proc.RecordCount(), 4);
    EXPECT_EQ(proc.FieldByName("Name").AsString(), "عمده");
    EXPECT_EQ(proc.Parameters()["@RETURN_VALUE"].AsInt64(), 5);
    proc.Close();
    session.expectCall("StockInfo", {{"@GoodCode", text("7"), false}, {"@Amount", Null{}, true}}, {});
    EXPECT_EQ(usageErrorOf([&] { proc.Open(); }),
              "DM.SharedProc.Open: the statement gives no rows; run it with ExecSQL or ExecProc");
}

TEST_F(StoredProc, mayHaveAParameterMadeAnOutput) {
    proc.Parameters()["@GoodCode"] = 7;
    proc.Parameters()["@GoodCode"].Direction(ParameterDirection::InputOutput);
    session.expectCall("StockInfo", {{"@GoodCode", integer(7), true}, {"@Amount", Null{}, true}},
                       {.batch = {}, .returnValue = 0, .outputs = {{"@goodcode", integer(8), true}}});
    proc.ExecProc();
    EXPECT_EQ(proc.Parameters()["@GoodCode"].AsInteger(), 8);
}

TEST_F(StoredProc, mayHaveItsParametersMadeBeforehand) {
    proc.ProcedureName("First");
    proc.Parameters().CreateParameter("RETURN_VALUE", ParameterDirection::ReturnValue);
    proc.Parameters().CreateParameter("@Kind", ParameterDirection::Input, integer(2));
    proc.Parameters().CreateParameter("@Day", ParameterDirection::Input);
    session.expectCall("First", {{"@Kind", integer(2), false}}, {.batch = {}, .returnValue = 4, .outputs = {}});
    proc.ExecProc();
    EXPECT_EQ(proc.Parameters()["@RETURN_VALUE"].AsInteger(), 4);
}

TEST(StoredProcMisuse, saysWhatIsMissing) {
    TADOStoredProc proc("P");
    EXPECT_EQ(usageErrorOf([&] { proc.Parameters().Refresh(); }), "P.ProcedureName: it is empty; set it first");
    proc.ProcedureName("X");
    EXPECT_EQ(usageErrorOf([&] { proc.ExecProc(); }), "P.Connection: there is none; set it first");
}

}  // namespace
}  // namespace basalt
