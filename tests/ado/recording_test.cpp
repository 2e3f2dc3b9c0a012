// A session written down and played back.
#include <gtest/gtest.h>

#ifdef __linux__
#include <sys/resource.h>
#endif

#include <csignal>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "ado/query.h"
#include "ado/recording_session.h"
#include "ado/replay_session.h"
#include "tests/ado/price_levels.h"
#include "tests/ado/usage_error.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

class Recording : public ::testing::Test {
protected:
    Recording() {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        file = std::filesystem::path(::testing::TempDir()) / ("basalt_" + std::string(test->name()) + ".jsonl");
    }
    ~Recording() override { std::filesystem::remove(file); }

    void write(const std::string& content) const { std::ofstream(file, std::ios::binary) << content; }
    [[nodiscard]] std::vector<std::string> lines() const {
        std::ifstream in(file, std::ios::binary);
        std::vector<std::string> all;
        for (std::string line; std::getline(in, line);)
            all.push_back(line);
        return all;
    }

    std::filesystem::path file;
    ScriptedSession session;
};

std::vector<ColumnInfo> everyType() {
    std::vector<ColumnInfo> columns;
    for (int type = 0; type <= static_cast<int>(FieldType::DateTime); ++type) {
        ColumnInfo column;
        column.name = "c" + std::to_string(type);
        column.type = static_cast<FieldType>(type);
        column.typeName = "t" + std::to_string(type);
        columns.push_back(column);
    }
    columns[6].precision = 38;
    columns[6].scale = 9;
    columns[7].size = 50;
    columns[7].fixedLength = true;
    columns[3].identity = true;
    columns[3].nullable = false;
    columns[3].baseTable = "CostLevel";
    columns[3].baseColumn = "Code";
    return columns;
}

std::vector<std::vector<Value>> everyValue() {
    const Value most = Decimal::parse("99999999999999999999999999999.999999999").value();
    return {
        {true, integer(255), integer(INT16_MAX), integer(INT32_MAX), integer(INT64_MAX), 0.1, most,
         text("عمده \"x\"\n"), Bytes{0, 255}, *parseDateTime("2024-02-29"),
         *parseDateTime("2024-02-29 07:05:09.1234567")},
        {false, integer(0), integer(INT16_MIN), integer(INT32_MIN), integer(INT64_MIN), -0.0, Decimal(Int128{-1}, 9),
         text("\xC3("), Bytes{}, *parseDateTime("0001-01-01"), *parseDateTime("9999-12-31 23:59:59.9999999")},
        std::vector<Value>(11),
        {true, integer(1), integer(1), integer(1), integer(9007199254740993), std::numeric_limits<double>::infinity(),
         Decimal(0, 9), text(""), Bytes{1}, *parseDateTime("2024-01-01"), *parseDateTime("2024-01-01 00:00:01")}};
}

void expectSameRows(const RowSet& got, const RowSet& wanted) {
    ASSERT_EQ(got.columnCount(), wanted.columnCount());
    ASSERT_EQ(got.rowCount(), wanted.rowCount());
    for (std::size_t c = 0; c < wanted.columnCount(); ++c) {
        const ColumnInfo& a = got.column(c).info();
        const ColumnInfo& b = wanted.column(c).info();
        EXPECT_EQ(a.name, b.name);
        EXPECT_EQ(a.type, b.type);
        EXPECT_EQ(a.size, b.size);
        EXPECT_EQ(a.precision, b.precision);
        EXPECT_EQ(a.scale, b.scale);
        EXPECT_EQ(a.nullable, b.nullable);
        EXPECT_EQ(a.identity, b.identity);
        EXPECT_EQ(a.fixedLength, b.fixedLength);
        EXPECT_EQ(a.typeName, b.typeName);
        EXPECT_EQ(a.baseTable, b.baseTable);
        EXPECT_EQ(a.baseColumn, b.baseColumn);
        for (std::size_t row = 0; row < wanted.rowCount(); ++row)
            EXPECT_EQ(got.column(c).valueAt(row), wanted.column(c).valueAt(row)) << c << " " << row;
    }
}

TEST_F(Recording, repeatsEveryKindOfCallExactly) {
    session.setTable(levelTable());
    session.setProcedure({.name = "Info",
                          .parameters = {{.name = "@a",
                                          .direction = ParameterDirection::InputOutput,
                                          .type = everyType()[6],
                                          .hasDefault = true}}});
    BatchResult batch;
    batch.results.push_back({.rows = makeRows(everyType(), everyValue())});
    batch.results.push_back({.rows = std::nullopt, .affectedRows = 3});
    batch.results.push_back({.rows = makeRows(everyType(), {})});
    batch.messages = {"پیام", "\xFF"};
    batch.messagePlaces = {1, 3};
    session.expectBatch("select N'یک'", {}, std::move(batch));
    const std::vector<Value> values = everyValue()[0];
    session.expectChange("update t set a = ?", values, 1);
    const std::vector<Argument> arguments{{"@a", Decimal(150, 2), true}};
    session.expectCall("Info", arguments, {.batch = {}, .returnValue = -7, .outputs = {{"@a", Decimal(250, 2), true}}});
    session.expectError("bad", DatabaseError(ErrorCategory::Busy, "HYT00", 1222, "قفل است", "bad"));
    {
        RecordingSession recording(session, file);
        EXPECT_EQ(recording.run("select N'یک'").results.size(), 3U);
        recording.begin();
        EXPECT_TRUE(recording.inTransaction());
        recording.run("update t set a = ?", values);
        recording.commit();
        recording.begin();
        recording.rollback();
        recording.call("Info", arguments);
        EXPECT_EQ(recording.table("CostLevel").key.size(), 2U);
        recording.procedure("Info");
        EXPECT_THROW(recording.run("bad"), DatabaseError);
        EXPECT_THROW(recording.table("Missing"), DatabaseError);
    }

    ReplaySession replay(file);
    EXPECT_EQ(replay.engine(), "scripted");
    EXPECT_FALSE(replay.finished());
    const BatchResult again = replay.run("select N'یک'");
    ASSERT_EQ(again.results.size(), 3U);
    expectSameRows(*again.results[0].rows, makeRows(everyType(), everyValue()));
    EXPECT_EQ(again.results[1].affectedRows, 3);
    EXPECT_FALSE(again.results[1].rows.has_value());
    expectSameRows(*again.results[2].rows, makeRows(everyType(), {}));
    EXPECT_EQ(again.messages, (std::vector<std::string>{"پیام", "\xFF"}));
    EXPECT_EQ(again.messagePlaces, (std::vector<std::size_t>{1, 3}));
    EXPECT_FALSE(replay.inTransaction());
    replay.begin();
    EXPECT_TRUE(replay.inTransaction());
    EXPECT_EQ(replay.run("update t set a = ?", values).results.at(0).affectedRows, 1);
    EXPECT_TRUE(replay.inTransaction());
    replay.commit();
    EXPECT_FALSE(replay.inTransaction());
    replay.begin();
    replay.rollback();
    const CallResult call = replay.call("Info", arguments);
    EXPECT_EQ(call.returnValue, -7);
    ASSERT_EQ(call.outputs.size(), 1U);
    EXPECT_EQ(toText(call.outputs[0].value), "2.50");
    EXPECT_TRUE(call.outputs[0].output);
    const TableInfo table = replay.table("CostLevel");
    EXPECT_EQ(table.key, (std::vector<std::string>{"CostType", "Code"}));
    EXPECT_EQ(table.columns.at(2).size, 10);
    const ProcedureInfo procedure = replay.procedure("Info");
    EXPECT_EQ(procedure.parameters.at(0).direction, ParameterDirection::InputOutput);
    EXPECT_TRUE(procedure.parameters.at(0).hasDefault);
    EXPECT_EQ(procedure.parameters.at(0).type.scale, 9);
    try {
        replay.run("bad");
        ADD_FAILURE() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Busy);
        EXPECT_EQ(error.sqlState(), "HYT00");
        EXPECT_EQ(error.nativeCode(), 1222);
        EXPECT_STREQ(error.what(), "قفل است");
        EXPECT_EQ(error.statement(), "bad");
    }
    EXPECT_THROW(replay.table("Missing"), DatabaseError);
    EXPECT_TRUE(replay.finished());
    EXPECT_EQ(replay.leftover(), "");
}

TEST_F(Recording, linesAreReadable) {
    session.expect("select 1",
                   makeRows({{.name = "Rate", .type = FieldType::Decimal, .scale = 2}}, {{Decimal(1250, 2)}}));
    RecordingSession recording(session, file);
    recording.run("select 1");
    EXPECT_EQ(
        lines(),
        (std::vector<std::string>{
            R"({"recording":1,"engine":"scripted"})",
            R"({"kind":"run","text":"select 1","result":{"results":[{"columns":[{"name":"Rate","type":"decimal","scale":2}],"rows":[[{"decimal":"12.50"}]]}]}})"}));
}

// A replay answers at once, so a recording says nothing of times.
TEST_F(Recording, passesTheTimeOfAQueryOnWithoutNotingIt) {
    {
        RecordingSession recording(session, file);
        TADOConnection connection(recording);
        TADOQuery query(connection, "BarCodeFormul_QRY");
        query.CommandTimeout = 0;
        query.SQL = "select 1 as A";
        session.expect("select 1 as A", levelRows());
        query.Open();
        EXPECT_EQ(session.timeLimits, std::vector<std::optional<int>>{0});
    }
    ASSERT_EQ(lines().size(), 2U);
    EXPECT_EQ(lines().at(1).rfind(R"({"kind":"run","text":"select 1 as A","result":)", 0), 0U) << lines().at(1);
    ReplaySession replay(file);
    TADOConnection connection(replay);
    TADOQuery query(connection, "BarCodeFormul_QRY");
    query.CommandTimeout = 0;
    query.SQL = "select 1 as A";
    query.Open();
    EXPECT_EQ(query.RecordCount(), static_cast<int>(levelRows().rowCount()));
    EXPECT_TRUE(replay.finished());
}

TEST_F(Recording, carriesANote) {
    { const RecordingSession recording(session, file, "کاربر 2"); }
    EXPECT_EQ(ReplaySession(file).note(), "کاربر 2");
    { const RecordingSession recording(session, file); }
    EXPECT_EQ(ReplaySession(file).note(), "");
}

TEST_F(Recording, aTransactionEndedByTheDatabaseIsReplayedSo) {
    session.expectError("full", DatabaseError(ErrorCategory::DiskFull, "53100", 1105, "no room"));
    {
        RecordingSession recording(session, file);
        recording.begin();
        session.dropTransaction();
        EXPECT_THROW(recording.run("full"), DatabaseError);
    }
    ReplaySession replay(file);
    replay.begin();
    EXPECT_THROW(replay.run("full"), DatabaseError);
    EXPECT_FALSE(replay.inTransaction());
}

TEST_F(Recording, anotherStatementThanTheNextIsRefused) {
    session.expect("select 1", levelRows());
    session.expectChange("update t set a = ?", {integer(1)}, 1);
    {
        RecordingSession recording(session, file);
        recording.run("select 1");
        recording.run("update t set a = ?", std::vector<Value>{integer(1)});
    }
    ReplaySession replay(file);
    EXPECT_EQ(usageErrorOf([&] { replay.run("select  1"); }),
              R"(replay, line 2: expected {"kind":"run","text":"select 1"}, got {"kind":"run","text":"select  1"})");
    EXPECT_EQ(usageErrorOf([&] { replay.begin(); }),
              R"(replay, line 2: expected {"kind":"run","text":"select 1"}, got {"kind":"begin"})");
    EXPECT_EQ(replay.run("select 1").results.at(0).rows->rowCount(), 4U);
    EXPECT_EQ(replay.leftover(), "line 3: {\"kind\":\"run\",\"text\":\"update t set a = ?\",\"parameters\":[1]}\n");
    EXPECT_EQ(
        usageErrorOf([&] { replay.run("update t set a = ?", std::vector<Value>{integer(2)}); }),
        R"(replay, line 3: expected {"kind":"run","text":"update t set a = ?","parameters":[1]}, got {"kind":"run","text":"update t set a = ?","parameters":[2]})");
    replay.run("update t set a = ?", std::vector<Value>{integer(1)});
    EXPECT_EQ(usageErrorOf([&] { replay.run("select 1"); }),
              R"(replay, line 4: the recording ends here, got {"kind":"run","text":"select 1"})");
}

TEST_F(Recording, whatIsNoRecordingIsRefused) {
    EXPECT_EQ(usageErrorOf([&] { ReplaySession replay(file); }), "the recording " + file.string() + " cannot be read");
    write("select 1\n");
    EXPECT_EQ(usageErrorOf([&] { ReplaySession replay(file); }), "the file " + file.string() + " is not a recording");
    write("{\"recording\":2,\"engine\":\"x\"}\n");
    EXPECT_EQ(usageErrorOf([&] { ReplaySession replay(file); }),
              "the recording " + file.string() + " was made by a newer program");
    for (
        const char* line :
        {"nonsense", "[]", R"({"kind":"run","text":"s"})",
         R"({"kind":"run","text":"s","result":{"results":[{"columns":[{"name":"a","type":"int"}],"rows":[[1,2]]}]}})",
         R"({"kind":"run","text":"s","result":{"results":[{"columns":[{"name":"a","type":"money"}],"rows":[]}]}})",
         R"({"kind":"run","text":"s","result":{"results":[{"columns":[{"name":"a","type":"binary"}],"rows":[[{"bytes":"0"}]]}]}})",
         R"({"kind":"run","text":"s","result":{"results":[{"columns":[{"name":"a","type":"int"}],"rows":[[{"decimal":"x"}]]}]}})"}) {
        SCOPED_TRACE(line);
        write(std::string("{\"recording\":1,\"engine\":\"x\"}\n") + line + "\n");
        ReplaySession replay(file);
        EXPECT_THROW(replay.run("s"), UsageError);
    }
}

TEST_F(Recording, aFileThatCannotBeWrittenIsAnError) {
    EXPECT_THROW(RecordingSession(session, "/nonexistent/folder/case.jsonl"), std::runtime_error);
}

TEST_F(Recording, anotherFileIsLeftAsItIs) {
    for (const char* content : {"select 1\n", "SQLite format 3", "{}", "{\"recording\"", " "}) {
        SCOPED_TRACE(content);
        write(content);
        EXPECT_EQ(usageErrorOf([&] { const RecordingSession recording(session, file); }),
                  "there is a file at " + file.string() +
                      " already, and it is not a recording, which alone would be replaced");
        std::ifstream in(file, std::ios::binary);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), content);
    }
}

TEST_F(Recording, anEmptyFileAndAnOlderRecordingGiveWay) {
    write("");
    { const RecordingSession recording(session, file, "of yesterday"); }
    EXPECT_EQ(ReplaySession(file).note(), "of yesterday");
    { const RecordingSession recording(session, file, "of today"); }
    EXPECT_EQ(ReplaySession(file).note(), "of today");
    EXPECT_EQ(lines().size(), 1U);
}

#ifdef __linux__
// The system refuses to let files grow, as a full disk does.
class FullDisk {
public:
    FullDisk() {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit none{0, before_.rlim_max};
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int) = nullptr;
};

TEST_F(Recording, stopsBeforeTheDatabaseWhenTheFileCannotGrow) {
    session.expectChange("delete a", {}, 1);
    RecordingSession recording(session, file);
    {
        const FullDisk full;
        // What the database has done by then is told, though it could not be written down.
        EXPECT_EQ(recording.run("delete a").results.at(0).affectedRows, 1);
    }
    try {
        recording.run("delete b");
        ADD_FAILURE() << "was passed on";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::DiskFull);
    }
}

TEST_F(Recording, endsATransactionThoughTheFileCannotGrow) {
    session.expectChange("delete a", {}, 1);
    RecordingSession recording(session, file);
    TADOConnection connection(recording);
    connection.BeginTrans();
    {
        const FullDisk full;
        (void)connection.run("Q", "execute", "delete a");
    }
    EXPECT_THROW(connection.CommitTrans(), DatabaseError);
    EXPECT_TRUE(session.inTransaction());
    connection.RollbackTrans();
    EXPECT_FALSE(session.inTransaction());
    EXPECT_FALSE(connection.InTransaction());
}
#endif

}  // namespace
}  // namespace basalt
