#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "host/services/script_batches.h"
#include "host/transfer/definition_text.h"
#include "tests/database/dump.h"

namespace basalt::host {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

// The database as version 1 left it.
std::unique_ptr<Session> versionOne() {
    auto session = openDatabase(":memory:");
    for (const database::SqlScript& script : database::scripts()) {
        const bool inVersionOne =
            script.name == "schema/010_users.sql" || script.name == "schema/020_workstations.sql" ||
            script.name == "schema/030_goods.sql" || script.name == "schema/040_price_levels.sql" ||
            script.name == "schema/900_reference_data.sql";
        if (!inVersionOne) continue;
        for (const std::string& batch : splitBatches(script.text))
            session->run(batch);
    }
    execute(*session, "INSERT INTO dbo.HostSchemaVersion (Version) VALUES (1)");
    return session;
}

// The database as version 3 left it: what the later versions added is in files of its own, but for an index that they
// replaced.
std::unique_ptr<embedded::EmbeddedSession> versionThree(bool demo) {
    auto session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    for (const database::SqlScript& script : database::scripts()) {
        if (script.name == "schema/190_reference_indexes.sql" || (script.demo && !demo)) continue;
        for (const std::string& batch : splitBatches(script.text))
            session->run(batch);
    }
    session->run(
        "DROP INDEX IX_Kardex_Document ON dbo.Kardex CREATE INDEX IX_Kardex_Global_ID ON dbo.Kardex (Global_ID)");
    execute(*session, "INSERT INTO dbo.HostSchemaVersion (Version) VALUES (3)");
    return session;
}

// Tables, columns, keys, indexes and modules, as the statements that make them.
std::vector<std::string> definitions(embedded::EmbeddedSession& session) {
    std::vector<std::string> texts;
    const DatabaseSchema schema = session.schema();
    for (const TableSchema& table : schema.tables) {
        texts.push_back(tableText(table));
        for (const IndexSchema& index : table.indexes)
            texts.push_back(indexText(table, index));
    }
    for (const ModuleSchema& module : schema.modules)
        texts.push_back(moduleText(module));
    std::sort(texts.begin(), texts.end());
    return texts;
}

TEST(Deployment, makesTheTablesOfEverySubject) {
    EXPECT_THAT(deployedTables(), SizeIs(50));
    EXPECT_THAT(deployedTables(), Contains("dbo.[Group-PLU]"));
}

TEST(Deployment, tellsWhatIsMissing) {
    const auto session = openDatabase(":memory:");
    EXPECT_TRUE(missingObjects(*session).all);
    EXPECT_THAT(missingObjects(*session).names, AllOf(Contains("[Group-PLU]"), Contains("OfferSellCost")));
    deployDatabase(*session);
    EXPECT_FALSE(missingObjects(*session).all);
    EXPECT_THAT(missingObjects(*session).names, IsEmpty());
    session->run("DROP TABLE dbo.[Group-PLU] DROP PROCEDURE dbo.OfferSellCost");
    session->run("DROP VIEW dbo.GoodDetailStock DROP FUNCTION dbo.GetCategoryName");
    EXPECT_THAT(missingObjects(*session).names,
                UnorderedElementsAre("[Group-PLU]", "GoodDetailStock", "GetCategoryName", "OfferSellCost"));
}

TEST(Deployment, againLeavesTheSameDatabase) {
    for (const bool demo : {false, true}) {
        const auto session = openDatabase(":memory:");
        deployDatabase(*session, {.demo = demo});
        const auto before = dump(*session);
        deployDatabase(*session, {.demo = demo});
        EXPECT_EQ(dump(*session), before);
    }
}

TEST(Deployment, saysHowTheLedgerNumbersItsDocuments) {
    const std::string said = "SELECT Value FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'";
    const auto session = openDatabase(":memory:");
    deployDatabase(*session);
    EXPECT_THAT(linesOf(*session, said), ElementsAre("date"));
    // The demo company comes into the empty ledger and brings its own numbers.
    deployDatabase(*session, {.demo = true});
    EXPECT_THAT(linesOf(*session, said), ElementsAre("all"));
    // What was made before there was such a row is looked at.
    execute(*session, "DELETE FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'");
    deployDatabase(*session);
    EXPECT_THAT(linesOf(*session, said), ElementsAre("all"));
    // Document 11 is of the first day: a number of two days.
    execute(*session, "DELETE FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'");
    execute(*session, "UPDATE TOP (1) dbo.Kardex SET [Date] = N'1405/01/02' WHERE Global_ID = 11");
    deployDatabase(*session);
    EXPECT_THAT(linesOf(*session, said), ElementsAre("date"));
    // What its owner says stays.
    execute(*session, "UPDATE dbo.HostSettings SET Value = N'all' WHERE Name = N'LedgerNumbering'");
    deployDatabase(*session, {.demo = true});
    EXPECT_THAT(linesOf(*session, said), ElementsAre("all"));
}

TEST(Deployment, givesTheSameDemoCompanyEachTime) {
    const auto rowsOfADemo = [] {
        const auto session = openDatabase(":memory:");
        deployDatabase(*session, {.demo = true});
        execute(*session, "DELETE FROM dbo.HostSchemaVersion");  // the time of the deployment
        return dump(*session);
    };
    EXPECT_EQ(rowsOfADemo(), rowsOfADemo());
}

TEST(Deployment, keepsWhatWasChangedInTheDemoCompany) {
    const auto session = openDatabase(":memory:");
    deployDatabase(*session, {.demo = true});
    session->run(
        "UPDATE dbo.GoodInf SET Name = N'کالای ما', Pos = N'۱' WHERE Code = 300\n"
        "DELETE FROM dbo.Tags WHERE Code = 4\n"
        "DELETE FROM dbo.PersonOperations WHERE ID = 1\n"
        "UPDATE dbo.Currencies SET Rate = 590000 WHERE Code = 2\n"
        "UPDATE dbo.colors SET cl_code = '$00FFFFFF' WHERE code = 12");
    const auto before = dump(*session);
    deployDatabase(*session, {.demo = true});
    EXPECT_EQ(dump(*session), before);
}

TEST(Deployment, bringsVersionOneUpToDateAndKeepsItsRows) {
    const auto session = versionOne();
    session->run(
        "INSERT INTO dbo.Units (Code, Name) VALUES (1, N'عدد')\n"
        "INSERT INTO dbo.GoodInf (Code, Name, AbbName, Unit, ConsumerPrice) VALUES (7, N'قند', N'!1!', 1, 1500)\n"
        "INSERT INTO dbo.GoodCostDiscount (GoodCode, CostLevel_Sell_1) VALUES (7, 1400)");
    EXPECT_EQ(schemaState(*session), SchemaState::Older);
    deployDatabase(*session);
    EXPECT_EQ(schemaState(*session), SchemaState::Current);
    EXPECT_THAT(linesOf(*session, "SELECT Code, Name, AbbName, Unit, ConsumerPrice, Pos, TaxExempt FROM dbo.GoodInf"),
                ElementsAre("7|قند|!1!|1|1500.000000000|NULL|False"));
    EXPECT_THAT(linesOf(*session,
                        "SELECT Mogodi, UnitName FROM (SELECT 1 AS A) AS A CROSS JOIN (SELECT "
                        "CostLevel_Sell_1 AS Mogodi, N'-' AS UnitName FROM dbo.GoodCostDiscount) AS B"),
                ElementsAre("1400.000000000|-"));
    // A price without its good is refused from now on.
    EXPECT_THROW(execute(*session, "INSERT INTO dbo.GoodCostDiscount (GoodCode) VALUES (8)"), DatabaseError);
}

TEST(Deployment, bringsVersionOneWithPricesOfMissingGoodsUpToDate) {
    const auto session = versionOne();
    execute(*session, "INSERT INTO dbo.GoodCostDiscount (GoodCode, CostLevel_Sell_1) VALUES (8, 5)");
    deployDatabase(*session);
    EXPECT_EQ(schemaState(*session), SchemaState::Current);
    EXPECT_THAT(linesOf(*session, "SELECT GoodCode FROM dbo.GoodCostDiscount"), ElementsAre("8"));
}

// Who deploys without the program runs the line that stands in the README, perhaps more than once.
TEST(Deployment, theReadmeWritesDownTheVersionOfThisProgram) {
    std::ifstream file(BASALT_SOURCE_DIR "/database/README.md");
    std::ostringstream text;
    text << file.rdbuf();
    const std::string readme = text.str();
    const std::size_t begin = readme.find("INSERT INTO dbo.HostSchemaVersion ");
    ASSERT_NE(begin, std::string::npos);
    const std::string statement = readme.substr(begin, readme.find('"', begin) - begin);
    const auto session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    deployDatabase(*session);
    execute(*session, "DELETE FROM dbo.HostSchemaVersion");
    for (int i = 0; i < 2; ++i) {
        session->run(statement);
        EXPECT_THAT(linesOf(*session, "SELECT Version FROM dbo.HostSchemaVersion"),
                    ElementsAre(std::to_string(kSchemaVersion)));
    }
}

TEST(Deployment, bringsVersionThreeToWhatANewDatabaseHas) {
    for (const bool demo : {false, true}) {
        const auto older = versionThree(demo);
        EXPECT_EQ(schemaState(*older), SchemaState::Older);
        EXPECT_THAT(linesOf(*older, "SELECT 1 FROM sys.indexes WHERE name = N'IX_GoodInf_Unit2'"), IsEmpty());
        const auto rowsBefore = dump(*older);
        deployDatabase(*older, {.demo = demo});
        EXPECT_EQ(schemaState(*older), SchemaState::Current);
        EXPECT_THAT(linesOf(*older, "SELECT Version FROM dbo.HostSchemaVersion ORDER BY Version"),
                    ElementsAre("3", std::to_string(kSchemaVersion)));
        const auto fresh = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
        deployDatabase(*fresh, {.demo = demo});
        EXPECT_EQ(definitions(*older), definitions(*fresh));
        execute(*older, "DELETE FROM dbo.HostSchemaVersion WHERE Version > 3");
        EXPECT_EQ(dump(*older), rowsBefore);
    }
}

TEST(Deployment, ofTheDemoCompanyLeavesOwnGoodsAlone) {
    const auto session = openDatabase(":memory:");
    deployDatabase(*session);
    execute(*session, "INSERT INTO dbo.GoodInf (Code, Name) VALUES (1, N'کالای ما')");
    deployDatabase(*session, {.demo = true});
    EXPECT_THAT(linesOf(*session, "SELECT Code, Name, AbbName, Pos FROM dbo.GoodInf"),
                ElementsAre("1|کالای ما|NULL|NULL"));
    for (const char* table : {"GoodCostDiscount", "Items", "GoodDetailValues"})
        EXPECT_THAT(linesOf(*session, std::string("SELECT * FROM dbo.") + table), IsEmpty()) << table;
    // Price lists of goods; those of the demo's persons are there.
    EXPECT_THAT(linesOf(*session, "SELECT * FROM dbo.costlist WHERE [Type] = 3"), IsEmpty());
}

TEST(Deployment, ofTheDemoCompanyMakesNoVouchersOfAnotherLedger) {
    const auto session = openDatabase(":memory:");
    deployDatabase(*session);
    session->run(
        "INSERT INTO dbo.Stores (Code, Name) VALUES (2, N'انبار ما')\n"
        "INSERT INTO dbo.GoodInf (Code, Name) VALUES (1, N'کالای ما')\n"
        "INSERT INTO dbo.PerInf (Code, FullName) VALUES (9, N'مشتری ما')\n"
        "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad, Fi, OperationType, OperationCode, PerCode) "
        "VALUES (1, 2, N'1405/01/01', 1, -1, 500, 1, 1, 9)");
    deployDatabase(*session, {.demo = true});
    EXPECT_THAT(linesOf(*session, "SELECT PerCode FROM dbo.PersonOperations"), IsEmpty());
    EXPECT_THAT(linesOf(*session, "SELECT Code FROM dbo.Sanad"), IsEmpty());
}

}  // namespace
}  // namespace basalt::host
