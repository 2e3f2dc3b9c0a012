// A database and what becomes of it when it is dumped and loaded.
#include <gmock/gmock.h>

#include <sstream>

#include "ado/error.h"
#include "engines/embedded/embedded_session.h"
#include "host/engines/open_database.h"
#include "host/services/deploy.h"
#include "host/transfer/database_dump.h"
#include "host/transfer/database_load.h"
#include "tests/support/scripted_session.h"

namespace basalt::host {
namespace {

using embedded::EmbeddedSession;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string dumpOf(EmbeddedSession& session) {
    std::ostringstream out;
    EXPECT_TRUE(dumpDatabase(session, readSchema, out).empty());
    return out.str();
}

std::unique_ptr<EmbeddedSession> loaded(const std::string& dump) {
    auto session = EmbeddedSession::open(":memory:");
    std::istringstream script(dump);
    EXPECT_GT(loadScript(*session, script), 0U);
    return session;
}

std::string cell(Session& session, const std::string& sql) {
    const BatchResult result = session.run(sql);
    return toText(result.results.at(0).rows.value().column(0).valueAt(0));
}

class DumpAndLoad : public ::testing::Test {
protected:
    DumpAndLoad() : session_(EmbeddedSession::open(":memory:")) {}

    std::unique_ptr<EmbeddedSession> session_;
};

TEST_F(DumpAndLoad, theReferenceDatabaseComesBackTheSame) {
    deployDatabase(*session_, {.demo = true});
    const std::string dump = dumpOf(*session_);
    const auto copy = loaded(dump);
    EXPECT_EQ(dumpOf(*copy), dump);
    EXPECT_EQ(schemaState(*copy), SchemaState::Current);
    EXPECT_TRUE(copy->integrityCheck().empty());
}

TEST_F(DumpAndLoad, theDefinitionsAloneMakeTheSameDatabaseWithoutRows) {
    deployDatabase(*session_, {.demo = true});
    std::ostringstream definitions;
    dumpDefinitions(session_->schema(), definitions);
    const auto copy = loaded(definitions.str());
    EXPECT_EQ(cell(*copy, "SELECT COUNT(*) FROM GoodInf"), "0");
    std::ostringstream again;
    dumpDefinitions(copy->schema(), again);
    EXPECT_EQ(again.str(), definitions.str());
}

TEST_F(DumpAndLoad, aTableWithAKeyOfAnotherOrderIsSoundAfterDeploying) {
    session_->run(
        "CREATE TABLE dbo.CostLevel (Code int NOT NULL, Name nvarchar(50) NOT NULL, Comment nvarchar(500) NULL, "
        "CostType "
        "int NOT NULL, CONSTRAINT PK_CostLevel PRIMARY KEY (Code, CostType))");
    session_->run("INSERT INTO dbo.CostLevel VALUES (1, N'عمده', NULL, 1), (1, N'نقدی', N'x', 3)");
    deployDatabase(*session_, {.demo = true});
    EXPECT_TRUE(session_->integrityCheck().empty());
    const std::string dump = dumpOf(*session_);
    EXPECT_THAT(dump, HasSubstr("CONSTRAINT [PK_CostLevel] PRIMARY KEY ([Code], [CostType])"));
    const auto copy = loaded(dump);
    EXPECT_TRUE(copy->integrityCheck().empty());
    EXPECT_EQ(dumpOf(*copy), dump);
}

TEST_F(DumpAndLoad, everyTypeComesBackExactly) {
    session_->run(
        "CREATE TABLE V (ID int NOT NULL PRIMARY KEY, A tinyint, B smallint, C bigint, D decimal(38,9), E money, F "
        "float, G real, H bit, I char(5), J varchar(10), K nchar(5), L nvarchar(max), M varbinary(10), N binary(4), O "
        "date, P time(7), Q datetime, R datetime2(7), S smalldatetime, T uniqueidentifier)");
    session_->run(
        "INSERT INTO V VALUES (1, 255, -32768, 9223372036854775807, -12345678901234567890123456789.123456789, "
        "-922337203685477.5808, 1.7976931348623157e308, 0.1, 1, 'ab', 'it''s', N'سلام', N'خط' + NCHAR(13) + NCHAR(10) "
        "+ "
        "N'GO' + NCHAR(10), 0x00FF, 0x01, '9999-12-31', '23:59:59.9999999', '2024-03-20T01:02:03.997', "
        "'0001-01-01T00:00:00.0000001', '2024-03-20T23:58:00', '6F9619FF-8B86-D011-B42D-00C04FC964FF')");
    session_->run("INSERT INTO V (ID, L) VALUES (2, REPLICATE(CAST(N'ی' AS nvarchar(max)), 5000) + NCHAR(10) + N'z')");
    session_->run("INSERT INTO V (ID) VALUES (3)");
    const std::string dump = dumpOf(*session_);
    const auto copy = loaded(dump);
    const BatchResult before = session_->run("SELECT * FROM V ORDER BY ID");
    const BatchResult after = copy->run("SELECT * FROM V ORDER BY ID");
    const RowSet& left = *before.results.at(0).rows;
    const RowSet& right = *after.results.at(0).rows;
    ASSERT_EQ(right.rowCount(), 3U);
    for (std::size_t c = 0; c < left.columnCount(); ++c) {
        EXPECT_EQ(left.column(c).info().typeName, right.column(c).info().typeName);
        for (std::size_t r = 0; r < left.rowCount(); ++r) {
            EXPECT_EQ(left.column(c).isNull(r), right.column(c).isNull(r)) << left.column(c).info().name << r;
            EXPECT_EQ(left.column(c).valueAt(r), right.column(c).valueAt(r)) << left.column(c).info().name << r;
        }
    }
    EXPECT_EQ(dumpOf(*copy), dump);
}

TEST_F(DumpAndLoad, theTextIsWhatItIs) {
    session_->run("CREATE TABLE A (ID int IDENTITY(1,1) NOT NULL CONSTRAINT PK_A PRIMARY KEY, Name nvarchar(20) NULL)");
    session_->run("CREATE TABLE Z (Code int NOT NULL, Twice AS Code * 2)");
    session_->run("INSERT INTO A (Name) VALUES (N'یک'), (NULL) INSERT INTO Z VALUES (3)");
    session_->run("CREATE PROCEDURE P AS SELECT 1 AS One");
    EXPECT_EQ(dumpOf(*session_),
              "SET NOCOUNT ON\n"
              "SET ANSI_NULLS ON\n"
              "SET QUOTED_IDENTIFIER ON\n"
              "GO\n"
              "CREATE TABLE dbo.[A] (\n"
              "    [ID] int IDENTITY(1,1) NOT NULL,\n"
              "    [Name] nvarchar(20) NULL,\n"
              "    CONSTRAINT [PK_A] PRIMARY KEY ([ID])\n"
              ")\n"
              "GO\n"
              "CREATE TABLE dbo.[Z] (\n"
              "    [Code] int NOT NULL,\n"
              "    [Twice] AS (Code * 2) PERSISTED\n"
              ")\n"
              "GO\n"
              "SET IDENTITY_INSERT dbo.[A] ON\n"
              "GO\n"
              "INSERT INTO dbo.[A] ([ID], [Name]) VALUES\n"
              "(1, N'یک'),\n"
              "(2, NULL)\n"
              "GO\n"
              "SET IDENTITY_INSERT dbo.[A] OFF\n"
              "GO\n"
              "INSERT INTO dbo.[Z] ([Code]) VALUES\n"
              "(3)\n"
              "GO\n"
              "CREATE PROCEDURE P AS SELECT 1 AS One\n"
              "GO\n");
}

TEST_F(DumpAndLoad, identitiesGoOnBehindTheLastRow) {
    session_->run("CREATE TABLE A (ID int IDENTITY(5,5) PRIMARY KEY, X int) INSERT INTO A (X) VALUES (1), (2)");
    const auto copy = loaded(dumpOf(*session_));
    copy->run("INSERT INTO A (X) VALUES (3)");
    EXPECT_EQ(cell(*copy, "SELECT ID FROM A WHERE X = 3"), "15");
}

TEST_F(DumpAndLoad, identitiesGoOnBehindRowsThatAreGone) {
    session_->run(
        "CREATE TABLE A (X int, ID int IDENTITY(5,5) PRIMARY KEY) INSERT INTO A (X) VALUES (1), (2), (3) "
        "DELETE FROM A WHERE X > 1 "
        "CREATE TABLE B (ID bigint IDENTITY(-1,-1) PRIMARY KEY, X int) INSERT INTO B (X) VALUES (1), (2) DELETE FROM B "
        "CREATE TABLE C (ID int IDENTITY(7,1) PRIMARY KEY, X int) "
        "CREATE TABLE [it's] (ID int IDENTITY PRIMARY KEY, X int) INSERT INTO [it's] (X) VALUES (1), (2) "
        "DELETE FROM [it's] WHERE X = 2");
    const std::string dump = dumpOf(*session_);
    EXPECT_NE(dump.find("\nDBCC CHECKIDENT(N'dbo.[A]', RESEED, 15) WITH NO_INFOMSGS\nGO\n"), std::string::npos) << dump;
    const auto copy = loaded(dump);
    const auto again = loaded(dumpOf(*copy));
    for (Session* session : {session_.get(), copy.get(), again.get()}) {
        session->run(
            "INSERT INTO A (X) VALUES (9) INSERT INTO B (X) VALUES (9) INSERT INTO C (X) VALUES (9) "
            "INSERT INTO [it's] (X) VALUES (9)");
        EXPECT_EQ(cell(*session, "SELECT ID FROM A WHERE X = 9"), "20");
        EXPECT_EQ(cell(*session, "SELECT ID FROM B WHERE X = 9"), "-3");
        EXPECT_EQ(cell(*session, "SELECT ID FROM C WHERE X = 9"), "7");
        EXPECT_EQ(cell(*session, "SELECT ID FROM [it's] WHERE X = 9"), "3");
    }
}

TEST_F(DumpAndLoad, referencesBetweenRowsAndInCirclesOfTablesComeBack) {
    session_->run("CREATE TABLE Tree (ID int NOT NULL PRIMARY KEY, Parent int NULL REFERENCES Tree (ID))");
    session_->run("INSERT INTO Tree VALUES (3, NULL), (2, 3), (1, 2)");
    session_->run(
        "CREATE TABLE A (ID int NOT NULL PRIMARY KEY, B int NULL) CREATE TABLE B (ID int NOT NULL PRIMARY KEY, A int "
        "NOT "
        "NULL REFERENCES A (ID)) INSERT INTO A VALUES (1, NULL) INSERT INTO B VALUES (7, 1) UPDATE A SET B = 7");
    session_->run("ALTER TABLE A ADD CONSTRAINT FK_A_B FOREIGN KEY (B) REFERENCES B (ID)");
    const std::string dump = dumpOf(*session_);
    EXPECT_THAT(dump, HasSubstr("(3, NULL),\n(2, 3),\n(1, 2)\nGO\n"));
    EXPECT_THAT(dump, HasSubstr("ALTER TABLE dbo.["));
    const auto copy = loaded(dump);
    EXPECT_EQ(dumpOf(*copy), dump);
    EXPECT_THROW(copy->run("UPDATE A SET B = 8"), DatabaseError);
    EXPECT_THROW(copy->run("INSERT INTO Tree VALUES (9, 99)"), DatabaseError);
}

TEST_F(DumpAndLoad, viewsFunctionsAndFilteredIndexesComeBack) {
    session_->run("CREATE TABLE T (ID int NOT NULL PRIMARY KEY, Code int NULL, Name nvarchar(20) NOT NULL)");
    session_->run("CREATE UNIQUE INDEX IX_T ON T (Code) WHERE Code IS NOT NULL");
    session_->run("CREATE VIEW B_View AS SELECT ID, Name FROM T");
    session_->run("CREATE VIEW A_View AS SELECT Name FROM B_View");
    session_->run("ALTER TABLE T ADD Note nvarchar(20) NULL");
    session_->run("INSERT INTO T VALUES (1, NULL, N'a', NULL), (2, NULL, N'b', N'x')");
    const std::string dump = dumpOf(*session_);
    const auto copy = loaded(dump);
    EXPECT_EQ(dumpOf(*copy), dump);
    EXPECT_EQ(cell(*copy, "SELECT COUNT(*) FROM A_View"), "2");
    copy->run("INSERT INTO T VALUES (3, 5, N'c', NULL)");
    EXPECT_THROW(copy->run("INSERT INTO T VALUES (4, 5, N'd', NULL)"), DatabaseError);
    copy->run("DROP INDEX IX_T ON T");
    EXPECT_EQ(dumpOf(*copy).find("IX_T"), std::string::npos);
}

TEST_F(DumpAndLoad, aViewWhoseTableIsGoneBecomesAComment) {
    session_->run("CREATE TABLE T (A int) CREATE TABLE U (A int)");
    session_->run("CREATE VIEW Gone AS\nSELECT A FROM T");
    session_->run("CREATE VIEW OfGone AS SELECT A FROM Gone");
    session_->run("CREATE VIEW Kept AS SELECT A FROM U");
    session_->run("DROP TABLE T");
    std::ostringstream out;
    const std::vector<BrokenView> broken = dumpDatabase(*session_, readSchema, out);
    ASSERT_EQ(broken.size(), 2U);
    EXPECT_EQ(broken[0].name, "Gone");
    EXPECT_EQ(broken[0].reason, "Invalid object name 'T'.");
    EXPECT_EQ(broken[1].name, "OfGone");
    EXPECT_THAT(out.str(), HasSubstr("-- This view could not be read any more: Invalid object name 'T'.\n"
                                     "-- CREATE VIEW Gone AS\n-- SELECT A FROM T\nGO\n"));
    const auto copy = loaded(out.str());
    EXPECT_EQ(cell(*copy, "SELECT COUNT(*) FROM sys.views"), "1");
    EXPECT_EQ(cell(*copy, "SELECT COUNT(*) FROM Kept"), "0");
}

TEST_F(DumpAndLoad, constraintsOfAComputedColumnComeBack) {
    session_->run("CREATE TABLE T (A int, K AS A % 10 PERSISTED NOT NULL UNIQUE CHECK (K <> 3), L AS A + 1)");
    const std::string dump = dumpOf(*session_);
    EXPECT_THAT(dump, HasSubstr("[K] AS (A % 10) PERSISTED NOT NULL,\n"));
    EXPECT_THAT(dump, HasSubstr("[L] AS (A + 1) PERSISTED,\n"));
    const auto copy = loaded(dump);
    EXPECT_EQ(dumpOf(*copy), dump);
    copy->run("INSERT INTO T (A) VALUES (1)");
    for (const char* wrong : {"11", "13", "NULL"})
        EXPECT_THROW(copy->run("INSERT INTO T (A) VALUES (" + std::string(wrong) + ")"), DatabaseError) << wrong;
}

// A server that is busy says nothing about the view.
TEST(Dump, aViewThatCannotBeLookedAtNowEndsTheDump) {
    const SchemaReader oneView = [](Session&) {
        return DatabaseSchema{{}, {{"V", ModuleSchema::Kind::View, "CREATE VIEW V AS SELECT 1 AS A"}}};
    };
    ScriptedSession busy;
    busy.begin();
    busy.expectError("SELECT TOP (0) * FROM dbo.[V]",
                     DatabaseError(ErrorCategory::Busy, "HY000", 1222, "Lock request time out period exceeded."));
    std::ostringstream out;
    EXPECT_THROW(dumpDatabase(busy, oneView, out), DatabaseError);

    // As a server tells of a view whose table is gone.
    ScriptedSession broken;
    broken.begin();
    broken.expectError("SELECT TOP (0) * FROM dbo.[V]",
                       DatabaseError(ErrorCategory::Other, "42000", 4413,
                                     "Could not use view or function 'V' because of binding errors."));
    EXPECT_EQ(dumpDatabase(broken, oneView, out).size(), 1U);
}

TEST_F(DumpAndLoad, manyRowsAreDividedIntoStatements) {
    session_->run("CREATE TABLE T (ID int NOT NULL PRIMARY KEY, Name nvarchar(max))");
    session_->begin();
    for (int i = 1; i <= 350; ++i) {
        session_->run("INSERT INTO T VALUES (" + std::to_string(i) + ", N'" + std::string(i > 300 ? 5000U : 5U, 'x') +
                      "')");
    }
    session_->commit();
    const std::string dump = dumpOf(*session_);
    std::size_t statements = 0;
    for (std::size_t at = dump.find("INSERT INTO"); at != std::string::npos; at = dump.find("INSERT INTO", at + 1))
        ++statements;
    EXPECT_EQ(statements, 3U + 8U);
    EXPECT_EQ(cell(*loaded(dump), "SELECT COUNT(*) FROM T"), "350");
}

TEST_F(DumpAndLoad, aScriptThatFailsLeavesNothing) {
    std::istringstream script(
        "CREATE TABLE T (ID int)\nGO\nINSERT INTO T VALUES (1)\nGO\n\nSELECT * FROM Nowhere\nGO\n");
    try {
        loadScript(*session_, script);
        FAIL() << "it was loaded";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.nativeCode(), 208);
        EXPECT_THAT(error.what(),
                    StartsWith("in the batch that begins at line 5: error 208: Invalid object name 'Nowhere'."));
    }
    EXPECT_FALSE(session_->inTransaction());
    EXPECT_TRUE(session_->schema().tables.empty());
}

TEST_F(DumpAndLoad, aScriptMayNotEndTheTransactionThatItRunsIn) {
    std::istringstream script(
        "\xEF\xBB\xBF"
        "ROLLBACK TRANSACTION\nGO\nCREATE TABLE T (ID int)\n");
    EXPECT_THROW(loadScript(*session_, script), UsageError);
    EXPECT_TRUE(session_->schema().tables.empty());
}

TEST_F(DumpAndLoad, aScriptMayNotLeaveATransactionOpen) {
    std::istringstream script("CREATE TABLE T (ID int)\nGO\nBEGIN TRANSACTION\nGO\nINSERT INTO T VALUES (1)\n");
    try {
        loadScript(*session_, script, "shop.sql");
        FAIL() << "loaded";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), "shop.sql: the script begins a transaction and does not end it");
    }
    EXPECT_FALSE(session_->inTransaction());
    EXPECT_EQ(cell(*session_, "SELECT COUNT(*) FROM sys.tables"), "0");
    std::istringstream ended("CREATE TABLE T (ID int)\nGO\nBEGIN TRANSACTION\nINSERT INTO T VALUES (1)\nCOMMIT\n");
    EXPECT_EQ(loadScript(*session_, ended), 2U);
}

TEST_F(DumpAndLoad, aStreamThatCannotBeWrittenIsAnError) {
    session_->run("CREATE TABLE T (ID int)");
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_THROW(dumpDatabase(*session_, readSchema, out), std::runtime_error);
    EXPECT_FALSE(session_->inTransaction());
}

}  // namespace
}  // namespace basalt::host
