#include "host/services/deploy.h"

#include <gmock/gmock.h>

#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;
using ::testing::UnorderedElementsAreArray;

const std::vector<std::string> kTables = {"HostSchemaVersion",
                                          "SoftwarePart",
                                          "HostPermissionTypes",
                                          "HostUserGroups",
                                          "HostUsers",
                                          "HostGroupPermissions",
                                          "HostUserPermissions",
                                          "HostUserLog",
                                          "HostWorkstations",
                                          "CodeLock_TBL",
                                          "HostSettings",
                                          "HostFormOptions",
                                          "HostProperties",
                                          "Units",
                                          "GoodInf",
                                          "CostLevel",
                                          "GoodCostDiscount",
                                          "costlist",
                                          "tmpcostlist",
                                          "CostReport",
                                          "PrintsSettings",
                                          "Stores",
                                          "OperationTypes",
                                          "Currencies",
                                          "Zone",
                                          "PerInf",
                                          "category",
                                          "DefaultUserCategory",
                                          "Kala_category",
                                          "person_category",
                                          "colors",
                                          "Tags",
                                          "SelectedLists",
                                          "SelectedList_Detail",
                                          "Kardex",
                                          "BarCodeFormul",
                                          "Scales",
                                          "Scales_Groups",
                                          "Items",
                                          "[Group-PLU]",
                                          "DetailTypes",
                                          "GoodDetailRelation",
                                          "GoodDetailValues",
                                          "GoodDetailValueDetails",
                                          "GoodDetailKardex",
                                          "GoodDetailKardexExit_Temp",
                                          "Accounts",
                                          "Sanad",
                                          "SanadDetail",
                                          "PersonOperations"};

std::vector<std::string> everything(Session& session) {
    std::vector<std::string> all;
    for (const std::string& table : kTables) {
        all.push_back(table);
        for (std::string& line : linesOf(session, "SELECT * FROM dbo." + table))
            all.push_back(std::move(line));
    }
    return all;
}

TEST(Deploy, anEmptyDatabaseBecomesCurrent) {
    const auto session = openDatabase(":memory:");
    EXPECT_EQ(schemaState(*session), SchemaState::Missing);
    deployDatabase(*session);
    EXPECT_EQ(schemaState(*session), SchemaState::Current);
    EXPECT_FALSE(holdsDemoData(*session));
    EXPECT_THAT(linesOf(*session, "SELECT Version FROM dbo.HostSchemaVersion"),
                ElementsAre(std::to_string(kSchemaVersion)));
}

TEST(Deploy, withoutDemoDataThereIsWhatAShopBeginsWith) {
    const auto session = openDatabase(":memory:");
    deployDatabase(*session);
    EXPECT_THAT(linesOf(*session, "SELECT Code, UserName, IsManager, PasswordHash FROM dbo.HostUsers"),
                ElementsAre("1|manager|True|"));
    EXPECT_THAT(
        linesOf(*session, "SELECT CostType, COUNT(*), MAX(Code) FROM dbo.CostLevel WHERE Code > 0 GROUP BY CostType"),
        ElementsAre("1|10|10", "3|4|4"));
    EXPECT_THAT(linesOf(*session, "SELECT Name FROM dbo.CostLevel WHERE Code = 10"), ElementsAre("سطح قیمت ۱۰"));
    EXPECT_THAT(linesOf(*session, "SELECT Code, Name FROM dbo.Stores"), ElementsAre("1|انبار اصلی"));
    EXPECT_THAT(linesOf(*session, "SELECT Code, Name FROM dbo.Units"), ElementsAre("1|عدد", "2|کارتن", "3|کیلوگرم"));
    for (const char* table : {"GoodInf", "GoodCostDiscount", "HostUserLog", "PrintsSettings", "CodeLock_TBL"}) {
        EXPECT_THAT(linesOf(*session, std::string("SELECT * FROM dbo.") + table), IsEmpty()) << table;
    }
}

TEST(Deploy, aSecondTimeChangesNothing) {
    for (const bool demo : {false, true}) {
        const auto session = openDatabase(":memory:");
        deployDatabase(*session, {.demo = demo});
        const auto before = everything(*session);
        deployDatabase(*session, {.demo = demo});
        EXPECT_EQ(everything(*session), before);
    }
}

TEST(Deploy, demoDataGoesNotIntoTablesThatAreInUse) {
    const auto session = openDatabase(":memory:");
    deployDatabase(*session);
    execute(*session, "UPDATE dbo.CostLevel SET Name = N'قیمت ما' WHERE Code = 1 AND CostType = 1");
    execute(*session, "UPDATE dbo.Stores SET Name = N'فروشگاه ما'");
    execute(*session, "UPDATE dbo.HostUsers SET PasswordHash = N'x'");
    const std::vector<std::string> levels = linesOf(*session, "SELECT * FROM dbo.CostLevel");
    execute(*session, "DELETE FROM dbo.Units WHERE Code = 2");
    deployDatabase(*session);
    EXPECT_THAT(linesOf(*session, "SELECT Code FROM dbo.Units"), ElementsAre("1", "3"));
    execute(*session, "INSERT INTO dbo.GoodInf (Code, Name) VALUES (1, N'کالای ما')");
    deployDatabase(*session, {.demo = true});
    EXPECT_EQ(linesOf(*session, "SELECT * FROM dbo.CostLevel"), levels);
    EXPECT_THAT(linesOf(*session, "SELECT Name FROM dbo.Stores"), ElementsAre("فروشگاه ما"));
    EXPECT_THAT(linesOf(*session, "SELECT PasswordHash FROM dbo.HostUsers WHERE Code = 1"), ElementsAre("x"));
}

TEST(Deploy, demoDataTakesThePlaceOfWhatAShopBeginsWith) {
    const auto later = openDatabase(":memory:");
    deployDatabase(*later);
    deployDatabase(*later, {.demo = true});
    const auto atOnce = openDatabase(":memory:");
    deployDatabase(*atOnce, {.demo = true});
    for (const char* table : {"CostLevel", "Stores", "Units", "HostUsers", "Kardex"}) {
        const std::string rows = std::string("SELECT * FROM dbo.") + table;
        EXPECT_THAT(linesOf(*later, rows), UnorderedElementsAreArray(linesOf(*atOnce, rows))) << table;
    }
}

TEST(Deploy, aNewerDatabaseIsRefusedAndLeftAlone) {
    const auto session = openDatabase(":memory:");
    deployDatabase(*session);
    execute(*session, "INSERT INTO dbo.HostSchemaVersion (Version) VALUES (1000)");
    const auto before = everything(*session);
    try {
        deployDatabase(*session, {.demo = true});
        FAIL() << "a newer database was changed";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Version);
        EXPECT_THAT(error.what(), HasSubstr("1000"));
    }
    EXPECT_THROW(static_cast<void>(schemaState(*session)), DatabaseError);
    EXPECT_EQ(everything(*session), before);
}

TEST(Deploy, aScriptThatFailsIsNamedAndLeavesNothingHalfDone) {
    const auto session = openDatabase(":memory:");
    deployDatabase(*session);
    // The print columns come after the levels in the same script.
    session->run("DROP TABLE dbo.PrintsSettings");
    session->run("CREATE TABLE dbo.PrintsSettings (ID int NOT NULL, PartName nvarchar(50) NULL)");
    try {
        deployDatabase(*session, {.demo = true});
        FAIL() << "a script that cannot run was taken as done";
    } catch (const DatabaseError& error) {
        EXPECT_THAT(error.what(), HasSubstr("demo/020_levels.sql"));
    }
    EXPECT_FALSE(session->inTransaction());
    EXPECT_THAT(linesOf(*session, "SELECT Name FROM dbo.CostLevel WHERE Code = 2 AND CostType = 1"),
                ElementsAre("سطح قیمت ۲"));
}

class DemoDataTest : public DemoDatabaseTest {};

TEST_F(DemoDataTest, hasTenPriceLevelsAndTheRowForAll) {
    EXPECT_TRUE(holdsDemoData(*session));
    EXPECT_THAT(linesOf(*session, "SELECT Code FROM dbo.CostLevel WHERE CostType = 1 ORDER BY Code"),
                ElementsAre("0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"));
    EXPECT_THAT(linesOf(*session, "SELECT Code FROM dbo.CostLevel WHERE CostType = 3 ORDER BY Code"),
                ElementsAre("1", "2", "3", "4"));
    EXPECT_THAT(linesOf(*session, "SELECT Code FROM dbo.CostLevel WHERE CostType = 4"), SizeIs(1));
}

TEST_F(DemoDataTest, namesAreUniqueWithinAKindOfLevel) {
    EXPECT_THAT(linesOf(*session, "SELECT Name FROM dbo.CostLevel GROUP BY Name, CostType HAVING COUNT(*) > 1"),
                IsEmpty());
}

TEST_F(DemoDataTest, everyPriceLevelHasItsPrintColumn) {
    EXPECT_THAT(linesOf(*session, "SELECT Comment FROM dbo.PrintsSettings WHERE PartName = N'CostReport'"),
                UnorderedElementsAre("F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "F9", "F10", "F11"));
}

TEST_F(DemoDataTest, barcodesHaveRightCheckDigitsAndAreUnique) {
    std::set<std::string> seen;
    for (const std::string& list : linesOf(*session, "SELECT AbbName FROM dbo.GoodInf")) {
        ASSERT_GE(list.size(), 15U) << list;
        ASSERT_EQ(list.front(), '!') << list;
        ASSERT_EQ(list.back(), '!') << list;
        std::istringstream codes(list.substr(1));
        for (std::string code; std::getline(codes, code, '!');) {
            if (code.size() == 5) continue;  // the good's number on the scales
            ASSERT_EQ(code.size(), 13U) << list;
            int sum = 0;
            for (std::size_t i = 0; i < 13; ++i)
                sum += (code[i] - '0') * (i % 2 == 0 ? 1 : 3);
            EXPECT_EQ(sum % 10, 0) << code;
            EXPECT_TRUE(seen.insert(code).second) << code;
        }
    }
    EXPECT_GE(seen.size(), 300U);
}

TEST_F(DemoDataTest, pricesBelongToGoods) {
    EXPECT_THAT(linesOf(*session,
                        "SELECT GoodCode FROM dbo.GoodCostDiscount AS P WHERE NOT EXISTS (SELECT 1 FROM "
                        "dbo.GoodInf AS G WHERE G.Code = P.GoodCode)"),
                IsEmpty());
    EXPECT_THAT(linesOf(*session,
                        "SELECT Code FROM dbo.GoodInf AS G WHERE NOT EXISTS (SELECT 1 FROM "
                        "dbo.GoodCostDiscount AS P WHERE P.GoodCode = G.Code)"),
                SizeIs(2));
}

TEST_F(DemoDataTest, amountsAreExact) {
    EXPECT_THAT(
        linesOf(*session, "SELECT CostLevel_Sell_1, CostLevel_Buy_7 FROM dbo.GoodCostDiscount WHERE GoodCode = 1"),
        ElementsAre("15365000.000000000|NULL"));
}

TEST_F(DemoDataTest, aLevelInAPriceListCannotBeDeleted) {
    try {
        session->run("Delete CostLevel where Code= 3 AND CostType = 1");
        FAIL() << "the level was deleted";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Constraint);
        EXPECT_EQ(error.nativeCode(), 547);
    }
    session->run("Delete CostLevel where Code= 4 AND CostType = 1");
    EXPECT_THAT(linesOf(*session, "SELECT Code FROM dbo.CostLevel WHERE CostType = 1 AND Code IN (3, 4)"),
                ElementsAre("3"));
}

TEST_F(DemoDataTest, priceReportColumnsCanBeAdded) {
    session->run("Alter Table CostReport Add F12 Decimal(23, 9) ");
    execute(*session, "INSERT INTO dbo.CostReport (Code, [Status], F12) VALUES (1, 2, 1.5)");
    EXPECT_THAT(linesOf(*session, "SELECT F12 FROM dbo.CostReport"), ElementsAre("1.500000000"));
}

}  // namespace
}  // namespace basalt::host
