// The reference database, deployed through FreeTDS: every script and all demo data pass the driver, and come back as
// what they are.
#include "host/services/deploy.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "drivers.h"
#include "engines/odbc/odbc_session.h"
#include "stand_in_server.h"
#include "tests/support/row_lines.h"
#include "tests/support/temp_folder.h"

namespace basalt::odbc {
namespace {

std::vector<std::string> linesOf(Session& session, const std::string& sql) {
    const BatchResult batch = session.run(sql);
    return linesOf(batch.results.at(0).rows.value());
}

TEST(DeployThroughFreeTds, theDatabaseIsTheSameFromBothSides) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    test::StandInServer server(folder.file("shop.db"));
    const auto session = OdbcSession::open(*driver + server.connectionPart());
    EXPECT_EQ(host::schemaState(*session), host::SchemaState::Missing);
    const std::vector<std::string> scripts = host::deployDatabase(*session, {.demo = true});
    EXPECT_EQ(host::schemaState(*session), host::SchemaState::Current);
    EXPECT_TRUE(host::holdsDemoData(*session));
    EXPECT_FALSE(session->inTransaction());

    const auto direct = embedded::EmbeddedSession::open(folder.file("shop.db"));
    // Persian names, decimals, dates, images, long texts.
    std::size_t lines = 0;
    for (const char* table :
         {"GoodInf", "CostLevel", "costlist", "PerInf", "Zone", "category", "colors", "Tags", "SelectedLists", "Kardex",
          "BarCodeFormul", "Scales", "DetailTypes", "GoodDetailValues", "Sanad", "HostUsers", "HostUserLog"}) {
        const std::string statement = "SELECT * FROM dbo." + std::string(table);
        const std::vector<std::string> read = linesOf(*session, statement);
        EXPECT_EQ(read, linesOf(*direct, statement)) << table;
        lines += read.size();
    }
    EXPECT_GT(lines, 1000U);

    // And again, which changes nothing.
    const std::string count = "SELECT COUNT(*) FROM dbo.GoodInf";
    const std::vector<std::string> before = linesOf(*session, count);
    EXPECT_EQ(host::deployDatabase(*session, {.demo = true}), scripts);
    EXPECT_EQ(linesOf(*session, count), before);
}

// What procedures and plain texts do to the transaction is known as the server has it.
TEST(DeployThroughFreeTds, theTransactionIsAsTheServerHasIt) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    test::StandInServer server(folder.file("shop.db"));
    const auto session = OdbcSession::open(*driver + server.connectionPart());
    const auto count = [&] { return linesOf(*session, "SELECT @@TRANCOUNT").at(0); };
    session->run("CREATE TABLE dbo.T (A int)");
    session->run("CREATE PROCEDURE dbo.Opens AS BEGIN TRANSACTION INSERT INTO dbo.T VALUES (1)");
    session->run("CREATE PROCEDURE dbo.Closes AS COMMIT TRANSACTION");
    session->run("CREATE PROCEDURE dbo.Throws AS IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION");
    const auto quietly = [&](const std::function<void()>& action) {
        try {
            action();
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.nativeCode(), 266);
        }
    };
    for (const char* open : {"BEGIN TRAN", "EXEC dbo.Opens", "dbo.Opens"}) {
        for (const char* close : {"COMMIT", "ROLLBACK", "EXEC dbo.Closes", "EXEC dbo.Throws"}) {
            SCOPED_TRACE(std::string(open) + " and " + close);
            quietly([&] { session->run(open); });
            EXPECT_TRUE(session->inTransaction());
            EXPECT_EQ(count(), "1");
            quietly([&] { session->run(close); });
            EXPECT_FALSE(session->inTransaction());
            EXPECT_EQ(count(), "0");
        }
    }
    quietly([&] { (void)session->call("Opens", {}); });
    EXPECT_TRUE(session->inTransaction());
    quietly([&] { (void)session->call("Throws", {}); });
    EXPECT_FALSE(session->inTransaction());
    EXPECT_EQ(count(), "0");
    // Two beginnings with BEGIN TRAN's two ends, and twice a beginning in a procedure with the like.
    EXPECT_EQ(linesOf(*session, "SELECT COUNT(*) FROM dbo.T").at(0), "4");
}

std::string outputOf(const std::string& command) {
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return text;
    std::array<char, 4096> buffer{};
    while (const std::size_t size = fread(buffer.data(), 1, buffer.size(), pipe))
        text.append(buffer.data(), size);
    pclose(pipe);
    return text;
}

std::string quoted(const std::string& word) {
    return '\'' + word + '\'';
}

// Schema and rows as the catalog views tell them, through the driver and without it.
TEST(DeployThroughFreeTds, aDumpOfTheServerIsThatOfTheFile) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    {
        const auto direct = embedded::EmbeddedSession::open(folder.file("shop.db"), {.createIfMissing = true});
        host::deployDatabase(*direct, {.demo = true});
        direct->run(
            "CREATE TABLE dbo.Sample (ID int IDENTITY(7,3) NOT NULL CONSTRAINT PK_Sample PRIMARY KEY, "
            "A decimal(9,2) NULL CONSTRAINT DF_Sample_A DEFAULT (1.5), B AS (ID * 2), C nvarchar(max) NULL, "
            "D varbinary(8) NULL, E datetime2(3) NULL, F int NULL, G int NULL, "
            "CONSTRAINT CK_Sample CHECK (A > 0 AND A < 9), CONSTRAINT UQ_Sample UNIQUE (F DESC, G), "
            "CONSTRAINT FK_Sample FOREIGN KEY (G) REFERENCES dbo.Sample (ID))");
        direct->run("CREATE INDEX IX_Sample ON dbo.Sample (A DESC) INCLUDE (C, F)");
        direct->run("CREATE UNIQUE INDEX IX_Sample_Some ON dbo.Sample (F) WHERE F > 3");
        direct->run("INSERT INTO dbo.Sample (C, D, E, F) VALUES (N'خط', 0x00FF, '2024-03-20T01:02:03.997', 4)");
    }
    const std::string program = BASALT_BINARY_DIR "/bin/basalt";
    test::StandInServer server(folder.file("shop.db"));
    const std::string ofServer = " --database " + quoted("odbc:" + *driver + server.connectionPart());
    const std::string ofFile = " --database " + quoted("embedded:" + folder.file("shop.db"));
    for (const char* command : {" db dump", " sql .tables", " sql .schema", " sql '.schema Sample'"}) {
        const std::string expected = outputOf(program + command + ofFile);
        EXPECT_GT(expected.size(), 200U) << command;
        EXPECT_EQ(outputOf(program + command + ofServer + " 2>&1"), expected) << command;
    }
    std::vector<std::string> sent;
    for (const test::TdsRequest& request : server.requests())
        sent.push_back(request.text);
    ASSERT_GT(sent.size(), 6U);
    // The dump came first, and the schema is of its moment too.
    EXPECT_EQ(sent.at(0), "SELECT snapshot_isolation_state FROM sys.databases WHERE database_id = DB_ID()");
    EXPECT_EQ(sent.at(1), "SET TRANSACTION ISOLATION LEVEL SNAPSHOT");
    EXPECT_EQ(sent.at(2), "BEGIN TRANSACTION");
    EXPECT_TRUE(sent.at(3).starts_with("SELECT T.name, C.name, TYPE_NAME(C.system_type_id)")) << sent.at(3);
    const auto end = std::find(sent.begin(), sent.end(), "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION");
    ASSERT_GE(sent.end() - end, 2);
    EXPECT_EQ(*std::next(end), "SET TRANSACTION ISOLATION LEVEL READ COMMITTED");
}

// A literal without N passes through a code page that has no ی: what is there is not found, and that is told.
TEST(DeployThroughFreeTds, aCollationThatLosesLettersIsToldOf) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    const std::string program = BASALT_BINARY_DIR "/bin/basalt";
    const std::string problem =
        "the database's collation loses these letters in texts without N, which the program's statements have: ی; what "
        "has them in its name is not found by it. A collation with UTF-8 (..._SC_UTF8, SQL Server 2019 and later) keeps "
        "every letter\n";
    test::StandInServer server(folder.file("shop.db"));
    const std::string database = " --database " + quoted("odbc:" + *driver + server.connectionPart());
    const std::string place = "odbc:SERVER=127.0.0.1;Database=Basalt";
    const std::string deploy = program + " db deploy --demo" + database + " 2>&1 >/dev/null";
    const std::string check = program + " db check" + database + " 2>&1; echo $?";
    const std::string find = program + " call CostLevel_ExistName 99 1 تک‌فروشی --json" + database;
    EXPECT_EQ(outputOf(deploy), "");
    EXPECT_EQ(outputOf(check), place +
                                   " has the tables of this program and keeps every letter; damage is for the server "
                                   "itself to look for: DBCC CHECKDB\n0\n");
    EXPECT_NE(outputOf(find).find("\"rows\":[{\"Name\":\"تک‌فروشی\"}]"), std::string::npos) << outputOf(find);
    server.loseLetter("ی", "ي");
    EXPECT_EQ(outputOf(deploy), "warning: " + problem);
    EXPECT_EQ(outputOf(check), problem + "1\n");
    EXPECT_NE(outputOf(find).find("\"rows\":[]"), std::string::npos) << outputOf(find);
}

TEST(DeployThroughFreeTds, theOptionsOfTheWorkstationLimitAStatement) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    std::filesystem::create_directories(folder.file("data/basalt"));
    std::ofstream(folder.file("data/basalt/workstation.json")) << "{\"queryTimeoutSeconds\": 1}";
    test::TdsResponder server;
    server.keepWaiting();  // who asks which program the database was made by goes on without an answer
    server.keepWaiting();
    const std::string program = "XDG_DATA_HOME=" + quoted(folder.file("data")) + " " BASALT_BINARY_DIR "/bin/basalt";
    const std::string reply = outputOf(program + " sql \"waitfor delay '1:00'\" --database " +
                                       quoted("odbc:" + *driver + server.connectionPart()) + " 2>&1; echo $?");
    EXPECT_NE(reply.find("Timeout expired"), std::string::npos) << reply;
    EXPECT_TRUE(reply.ends_with("\n1\n")) << reply;
    EXPECT_EQ(server.leftovers(), 0U);
}

// Both statements take longer than the workstation lets one; that of a scale barcode's layouts has no limit.
TEST(DeployThroughFreeTds, theLookUpOfLayoutsWaitsWhateverTheWorkstationSays) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    host::deployDatabase(*embedded::EmbeddedSession::open(folder.file("shop.db"), {.createIfMissing = true}));
    std::filesystem::create_directories(folder.file("data/basalt"));
    std::ofstream(folder.file("data/basalt/workstation.json")) << "{\"queryTimeoutSeconds\": 1}";
    test::StandInServer server(folder.file("shop.db"));
    server.takeTime("FROM   dbo.BarCodeFormul", std::chrono::milliseconds(1500));
    const std::string program = "XDG_DATA_HOME=" + quoted(folder.file("data")) + " " BASALT_BINARY_DIR "/bin/basalt";
    const std::string database =
        " --database " + quoted("odbc:" + *driver + server.connectionPart()) + " 2>&1; echo $?";
    const std::string scan =
        outputOf(program + " call FillGoodInfFromBarcode 1 0 2800057012505 1 0 0 --json" + database);
    EXPECT_NE(scan.find("\"result\":false"), std::string::npos) << scan;
    EXPECT_TRUE(scan.ends_with("\n0\n")) << scan;
    const std::string other = outputOf(program + " sql \"SELECT * FROM   dbo.BarCodeFormul\"" + database);
    EXPECT_NE(other.find("Timeout expired"), std::string::npos) << other;
    EXPECT_TRUE(other.ends_with("\n1\n")) << other;
}

// The scale agent is handed the connection string; whoever reads the reply is not.
TEST(DeployThroughFreeTds, noReplyTellsThePassword) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    host::deployDatabase(*embedded::EmbeddedSession::open(folder.file("shop.db"), {.createIfMissing = true}));
    test::StandInServer server(folder.file("shop.db"));
    const std::string part = server.connectionPart();
    ASSERT_NE(part.find("PWD=top-secret;"), std::string::npos);
    const std::string program = BASALT_BINARY_DIR "/bin/basalt";
    const std::string database = " --database " + quoted("odbc:" + *driver + part);
    const std::string recording = folder.file("recording");
    for (const std::string& command :
         {program + " call GoodInf_SendToScale 97,98 0 --json" + database,
          program + " call GoodInf_SendToScale 97,98 0" + database + " --record " + quoted(recording),
          "echo '{\"call\":\"GoodInf_SendToScale\",\"args\":[\"97,98\",0]}' | " + program + " batch" + database}) {
        const std::string reply = outputOf(command + " 2>&1");
        EXPECT_NE(reply.find("ScaleAgentApp.exe"), std::string::npos) << reply;
        EXPECT_NE(reply.find("PWD=***;"), std::string::npos) << reply;
        EXPECT_EQ(reply.find("top-secret"), std::string::npos) << reply;
    }
    EXPECT_EQ(outputOf("cat " + quoted(recording)).find("top-secret"), std::string::npos);
}

std::vector<std::string> repliesOf(const std::string& url) {
    const std::string program = BASALT_BINARY_DIR "/bin/basalt";
    const std::string calls = BASALT_SOURCE_DIR "/tests/odbc/calls.txt";
    std::istringstream text(outputOf(program + " batch --database '" + url + "' < " + calls + " 2>&1"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

// The program's functions, each called once, on the same data through the driver and without it.
TEST(DeployThroughFreeTds, theFunctionsAnswerAlikeOnBothSides) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    host::deployDatabase(*embedded::EmbeddedSession::open(folder.file("direct.db"), {.createIfMissing = true}),
                         {.demo = true});
    std::filesystem::copy_file(folder.file("direct.db"), folder.file("shop.db"));
    test::StandInServer server(folder.file("shop.db"));
    const std::vector<std::string> direct = repliesOf("embedded:" + folder.file("direct.db"));
    const std::vector<std::string> through = repliesOf("odbc:" + *driver + server.connectionPart());
    EXPECT_GE(direct.size(), 20U);
    ASSERT_EQ(through.size(), direct.size());
    for (std::size_t i = 0; i < direct.size(); ++i)
        EXPECT_EQ(through[i], direct[i]);
}

}  // namespace
}  // namespace basalt::odbc
