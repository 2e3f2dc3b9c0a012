// The store of price and discount levels: every statement in full, in its order, and every way a delete can go.
#include "costlevel/costlevel_dm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "ado/error.h"
#include "package/services.h"
#include "tests/costlevel/level_rows.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"
#include "tests/support/tracing_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const DatabaseError refusedByKey(ErrorCategory::Constraint, "23000", 547, "the row is referred to");
const DatabaseError lostConnection(ErrorCategory::Connection, "08S01", 0, "the connection is lost");

class CostLevelStore : public ::testing::Test {
protected:
    CostLevelStore() { host.calls.clear(); }

    ScriptedSession script;
    TracingSession session{script, host.calls};
    FakeHost host{session};
    AttachedHost attached{host};
    TCostLevel_DM store;
};

TEST_F(CostLevelStore, startsWithTheLevelsAndItsQueriesOnTheHostsConnection) {
    EXPECT_EQ(store.CostLevel_List_QUR.SQL.Text(), "select * from costLevel where code>0");
    EXPECT_EQ(store.CostLevel_List_DS.DataSet(), &store.CostLevel_List_QUR);
    std::vector<std::string> queries;
    for (TADOQuery* query : store.queries()) {
        EXPECT_EQ(query->Connection(), &host.DM().ADOConnection1);
        EXPECT_FALSE(query->Active());
        queries.push_back(query->Name());
    }
    EXPECT_THAT(queries, ElementsAre("CostLevel_List_QUR", "CostLevelGet_QUR", "Temp_Q7777UR", "Temp1_QUR",
                                     "CostReport_QUR", "SetCost_QUR", "SetCostGet_QUR", "OfferCost_QUR"));
}

// Reading

TEST_F(CostLevelStore, listsAllWithoutAFilter) {
    script.expect("select Code,Name,Comment from CostLevel",
                  levelRows({{0, "کلیه گروه ها", "", 1}, {1, "تک‌فروشی", "", 1}}));
    store.CostLevel_GetAll("");
    EXPECT_EQ(store.CostLevel_List_QUR.RecordCount(), 2);
}

TEST_F(CostLevelStore, declaresTheFieldsOfTheList) {
    std::vector<std::string> declared;
    for (const FieldDeclaration& field : store.CostLevel_List_QUR.declaredFields())
        declared.push_back(field.name + " " + std::to_string(static_cast<int>(field.type)) + " of " +
                           std::to_string(field.size));
    EXPECT_THAT(declared, ElementsAre("Code " + std::to_string(static_cast<int>(FieldType::Integer)) + " of 0",
                                      "Title " + std::to_string(static_cast<int>(FieldType::Text)) + " of 50"));
}

TEST_F(CostLevelStore, doesWithoutATitleThatTheStatementDoesNotGive) {
    script.expect("select * from costLevel where code>0", levelRows({{1, "تک‌فروشی", "", 1}}));
    store.CostLevel_List_QUR.Open();
    EXPECT_EQ(store.CostLevel_List_QUR.FindField("Title"), nullptr);
    EXPECT_EQ(store.CostLevel_List_QUR.FieldByName("Code").AsInteger(), 1);
    EXPECT_EQ(store.CostLevel_List_QUR.FieldByName("Name").AsString(), "تک‌فروشی");
}

TEST_F(CostLevelStore, listsPriceLevels) {
    script.expect("select Code,Name,Comment from CostLevel\n WHERE code > 0 AND CostType IN(1)",
                  levelRows({{1, "تک‌فروشی", "", 1}}));
    store.CostLevel_GetAll("code > 0 AND CostType IN(1)");
    EXPECT_EQ(store.CostLevel_List_QUR.RecordCount(), 1);
}

TEST_F(CostLevelStore, listsAnew) {
    script.expect("select Code,Name,Comment from CostLevel\n WHERE code > 0 AND CostType IN(1)",
                  levelRows({{1, "تک‌فروشی", "", 1}}));
    script.expect("select Code,Name,Comment from CostLevel\n WHERE code > 0 AND CostType IN(3, 4)", levelRows({}));
    store.CostLevel_GetAll("code > 0 AND CostType IN(1)");
    store.CostLevel_GetAll("code > 0 AND CostType IN(3, 4)");
    EXPECT_TRUE(store.CostLevel_List_QUR.Active());
    EXPECT_EQ(store.CostLevel_List_QUR.RecordCount(), 0);
}

TEST_F(CostLevelStore, failedListIsClosedAndTheErrorPasses) {
    script.expect("select Code,Name,Comment from CostLevel", levelRows({}));
    script.expectError("select Code,Name,Comment from CostLevel\n WHERE nonsense",
                       DatabaseError(ErrorCategory::Syntax, "42000", 102, "not understood"));
    store.CostLevel_GetAll("");
    EXPECT_THROW(store.CostLevel_GetAll("nonsense"), DatabaseError);
    EXPECT_FALSE(store.CostLevel_List_QUR.Active());
}

TEST_F(CostLevelStore, opensOneLevelForEditing) {
    script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "نمایندگی", nullptr, 1}}));
    store.CostLevel_GetByID(4, 1);
    EXPECT_EQ(store.CostLevelGet_QUR.RecordCount(), 1);
    EXPECT_EQ(store.CostLevelGet_QUR.FieldByName("Name").AsString(), "نمایندگی");
}

TEST_F(CostLevelStore, readsOneLevelIntoARecord) {
    script.expect("SELECT * FROM CostLevel Where Code = 2 AND CostType = 3",
                  levelRows({{2, "تخفیف حجمی", "بیش از ده کارتن", 3}}));
    TCostLevelMapper mapper{.Code = 9, .Name = "قبلی", .Comment = "قبلی", .CostType = 9};
    store.CostLevel_GetByID(2, 3, mapper);
    EXPECT_EQ(mapper.Code, 2);
    EXPECT_EQ(mapper.Name, "تخفیف حجمی");
    EXPECT_EQ(mapper.Comment, "بیش از ده کارتن");
    EXPECT_EQ(mapper.CostType, 3);
    EXPECT_EQ(store.CostLevelGet_QUR.RecordCount(), 1);  // and it can be edited
}

TEST_F(CostLevelStore, missingLevelAndNullsReadAsEmpty) {
    script.expect("SELECT * FROM CostLevel Where Code = 99 AND CostType = 1", levelRows({}));
    TCostLevelMapper mapper{.Code = 9, .Name = "قبلی", .Comment = "قبلی", .CostType = 9};
    store.CostLevel_GetByID(99, 1, mapper);
    EXPECT_EQ(mapper.Code, 99);
    EXPECT_EQ(mapper.Name, "");
    EXPECT_EQ(mapper.Comment, "");
    EXPECT_EQ(mapper.CostType, 0);

    script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "نمایندگی", nullptr, 1}}));
    store.CostLevel_GetByID(4, 1, mapper);
    EXPECT_EQ(mapper.Comment, "");
}

TEST_F(CostLevelStore, failedReadLeavesTheRecord) {
    script.expectError("SELECT * FROM CostLevel Where Code = 2 AND CostType = 3", lostConnection);
    TCostLevelMapper mapper{.Code = 9, .Name = "قبلی", .Comment = "", .CostType = 1};
    EXPECT_THROW(store.CostLevel_GetByID(2, 3, mapper), DatabaseError);
    EXPECT_EQ(mapper.Code, 9);
    EXPECT_EQ(mapper.Name, "قبلی");
}

struct NameLookup {
    const char* name;
    const char* text;
    const char* statement;
};
void PrintTo(const NameLookup& row, std::ostream* out) {
    *out << row.name;
}

class CostLevelNames : public CostLevelStore, public ::testing::WithParamInterface<NameLookup> {};

TEST_P(CostLevelNames, areLookedUpAmongTheOthersOfTheKind) {
    script.expect(GetParam().statement, nameRows({"یک", "دو"}));
    EXPECT_EQ(store.CostLevel_ExistName(5, 1, GetParam().text), 2);
    script.expect(GetParam().statement, nameRows({}));
    EXPECT_EQ(store.CostLevel_ExistName(5, 1, GetParam().text), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Store, CostLevelNames,
    ::testing::Values(
        NameLookup{"persian", "همکار",
                   "select Name from CostLevel where Name = 'همکار' and Code <> 5  AND CostType = 1"},
        NameLookup{"empty", "", "select Name from CostLevel where Name = '' and Code <> 5  AND CostType = 1"},
        NameLookup{"quote", "O'Neil",
                   "select Name from CostLevel where Name = 'O''Neil' and Code <> 5  AND CostType = 1"},
        NameLookup{
            "disguisedStatement", "'; drop table CostLevel --",
            "select Name from CostLevel where Name = '''; drop table CostLevel --' and Code <> 5  AND CostType = 1"},
        NameLookup{"percent", "%d %s 100%",
                   "select Name from CostLevel where Name = '%d %s 100%' and Code <> 5  AND CostType = 1"}),
    [](const auto& row) { return row.param.name; });

TEST_F(CostLevelStore, namesOfDiscountLevelsAreAKindOfTheirOwn) {
    script.expect("select Name from CostLevel where Name = 'همکار' and Code <> 0  AND CostType = 3",
                  nameRows({"همکار"}));
    EXPECT_EQ(store.CostLevel_ExistName(0, 3, "همکار"), 1);
}

TEST_F(CostLevelStore, newCodes) {
    script.expect(
        "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = 1UNION "
        "ALL "
        "Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 114) T1",
        numberRow(10));
    EXPECT_EQ(store.CostLevel_GetNewCode(114, 1), 10);
    script.expect(
        "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = 3UNION "
        "ALL "
        "Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 134) T1",
        numberRow(1));
    EXPECT_EQ(store.CostLevel_GetNewCode(134, 3), 1);
}

TEST_F(CostLevelStore, newCodeBeyondTheRangeOfCodesIsAnError) {
    script.expect(
        "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = 1UNION "
        "ALL "
        "Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 114) T1",
        numberRow(std::int64_t{2147483648}));
    EXPECT_THROW((void)store.CostLevel_GetNewCode(114, 1), DatabaseError);
}

// Writing

TEST_F(CostLevelStore, editWritesWhatChanged) {
    script.setTable(levelTable());
    script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "نمایندگی", nullptr, 1}}));
    store.CostLevel_GetByID(4, 1);
    script.expectChange(
        "UPDATE [CostLevel] SET [Name] = ?, [Comment] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS "
        "nvarchar(max)) AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max)) AND "
        "[Comment] IS NULL",
        {std::string("نمایندگان"), std::string("شهرستان‌ها"), std::int64_t{1}, std::int64_t{4},
         std::string("نمایندگی")},
        1);
    store.CostLevel_InsUpd({.Code = 4, .Name = "نمایندگان", .Comment = "شهرستان‌ها", .CostType = 1}, true);
    EXPECT_EQ(store.CostLevelGet_QUR.State(), dsBrowse);
    EXPECT_EQ(store.CostLevelGet_QUR.FieldByName("Name").AsString(), "نمایندگان");
}

TEST_F(CostLevelStore, insertWritesTheRow) {
    script.setTable(levelTable());
    script.expect("SELECT * FROM CostLevel Where Code = 5 AND CostType = 3", levelRows({}));
    script.expectChange("INSERT INTO [CostLevel] ([Code], [Name], [Comment], [CostType]) VALUES (?, ?, ?, ?)",
                        {std::int64_t{5}, std::string("پلکانی"), std::string(""), std::int64_t{3}}, 1);
    store.CostLevel_InsUpd({.Code = 5, .Name = "پلکانی", .Comment = "", .CostType = 3}, false);
    EXPECT_EQ(store.CostLevelGet_QUR.State(), dsBrowse);
    EXPECT_EQ(store.CostLevelGet_QUR.RecordCount(), 1);
}

TEST_F(CostLevelStore, editWithoutAnOpenedRowSaysSo) {
    EXPECT_THROW(store.CostLevel_InsUpd({.Code = 4, .Name = "الف", .Comment = "", .CostType = 1}, true), UsageError);
    script.expect("SELECT * FROM CostLevel Where Code = 99 AND CostType = 1", levelRows({}));
    store.CostLevel_GetByID(99, 1);
    EXPECT_THROW(store.CostLevel_InsUpd({.Code = 99, .Name = "الف", .Comment = "", .CostType = 1}, true), UsageError);
}

TEST_F(CostLevelStore, failedEditCanBeRepeated) {
    script.setTable(levelTable());
    script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "نمایندگی", "", 1}}));
    store.CostLevel_GetByID(4, 1);
    const char* const update =
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))";
    const std::vector<Value> values{std::string("الف"), std::int64_t{1}, std::int64_t{4}, std::string("نمایندگی")};
    script.expectChangeError(update, values, lostConnection);
    const TCostLevelMapper mapper{.Code = 4, .Name = "الف", .Comment = "", .CostType = 1};
    EXPECT_THROW(store.CostLevel_InsUpd(mapper, true), DatabaseError);
    EXPECT_EQ(store.CostLevelGet_QUR.State(), dsEdit);
    script.expectChange(update, values, 1);
    store.CostLevel_InsUpd(mapper, true);
    EXPECT_EQ(store.CostLevelGet_QUR.State(), dsBrowse);
}

TEST_F(CostLevelStore, failedInsertIsNotWrittenAlongWithTheNext) {
    script.setTable(levelTable());
    script.expect("SELECT * FROM CostLevel Where Code = 5 AND CostType = 3", levelRows({}));
    const char* const insert = "INSERT INTO [CostLevel] ([Code], [Name], [Comment], [CostType]) VALUES (?, ?, ?, ?)";
    script.expectChangeError(insert, {std::int64_t{5}, std::string("الف"), std::string(""), std::int64_t{3}},
                             refusedByKey);
    EXPECT_THROW(store.CostLevel_InsUpd({.Code = 5, .Name = "الف", .Comment = "", .CostType = 3}, false),
                 DatabaseError);
    script.expectChange(insert, {std::int64_t{6}, std::string("ب"), std::string(""), std::int64_t{3}}, 1);
    store.CostLevel_InsUpd({.Code = 6, .Name = "ب", .Comment = "", .CostType = 3}, false);
    EXPECT_EQ(store.CostLevelGet_QUR.RecordCount(), 1);
}

TEST_F(CostLevelStore, tooLongANameIsRefusedBeforeAnythingIsSent) {
    script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "نمایندگی", "", 1}}));
    store.CostLevel_GetByID(4, 1);
    try {
        store.CostLevel_InsUpd({.Code = 4, .Name = std::string(51, 'x'), .Comment = "", .CostType = 1}, true);
        ADD_FAILURE() << "was written";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Truncation);
    }
    // Nothing of it is left over when the name is shortened.
    script.setTable(levelTable());
    script.expectChange(
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {std::string("کوتاه"), std::int64_t{1}, std::int64_t{4}, std::string("نمایندگی")}, 1);
    store.CostLevel_InsUpd({.Code = 4, .Name = "کوتاه", .Comment = "", .CostType = 1}, true);
}

TEST_F(CostLevelStore, aLostUpdateIsReported) {
    script.setTable(levelTable());
    script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "نمایندگی", "", 1}}));
    store.CostLevel_GetByID(4, 1);
    script.expectChange(
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {std::string("الف"), std::int64_t{1}, std::int64_t{4}, std::string("نمایندگی")}, 0);
    try {
        store.CostLevel_InsUpd({.Code = 4, .Name = "الف", .Comment = "", .CostType = 1}, true);
        ADD_FAILURE() << "was written";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Conflict);
    }
}

// Deleting. The whole course of each delete is one list: what the host was asked, and what the database was sent.

TEST_F(CostLevelStore, deletesAPriceLevelWithItsPrintSettings) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    script.expectChange("Delete from PrintsSettings where PartName='CostReport' and Comment='F4'", {}, 1);
    script.expectChange("Delete CostLevel where Code= 4 AND CostType = 1", {}, 1);
    EXPECT_TRUE(store.CostLevel_Delete(4, 1));
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')",
                                        "LocateLockCode_SoftwarePart('4', 114, 7, false)", "MsgDeleteRow()", "begin",
                                        "SetUserEvent(114, 3, '4', true, false)",
                                        "Delete from PrintsSettings where PartName='CostReport' and Comment='F4'",
                                        "Delete CostLevel where Code= 4 AND CostType = 1", "commit"));
}

TEST_F(CostLevelStore, deletesADiscountLevelEvenTheFirst) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    script.expectChange("Delete CostLevel where Code= 1 AND CostType = 3", {}, 1);
    EXPECT_TRUE(store.CostLevel_Delete(1, 3));
    EXPECT_THAT(host.calls, ElementsAre("LocateLockCode_SoftwarePart('1', 134, 7, false)", "MsgDeleteRow()", "begin",
                                        "SetUserEvent(134, 3, '1', true, false)",
                                        "Delete CostLevel where Code= 1 AND CostType = 3", "commit"));
}

TEST_F(CostLevelStore, deleteEndsWhenThePermissionIsRefused) {
    host.permitted = false;
    EXPECT_FALSE(store.CostLevel_Delete(4, 1));
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')"));
}

TEST_F(CostLevelStore, deletingADiscountLevelAsksForNoPermission) {
    host.permitted = false;
    host.expectMessage("MsgDeleteRow()", mrNo);
    EXPECT_FALSE(store.CostLevel_Delete(2, 3));
    EXPECT_THAT(host.calls, ElementsAre("LocateLockCode_SoftwarePart('2', 134, 7, false)", "MsgDeleteRow()"));
}

TEST_F(CostLevelStore, defaultPriceLevelsStay) {
    for (const int code : {1, 2}) {
        host.calls.clear();
        host.expectMessage("DeleteDefault('سطح', 'حذف')");
        EXPECT_FALSE(store.CostLevel_Delete(code, 1));
        EXPECT_THAT(host.calls,
                    ElementsAre("HavePermission(user 1, 114, 3, false, true, '')", "DeleteDefault('سطح', 'حذف')"));
    }
}

TEST_F(CostLevelStore, levelsHeldByOthersStay) {
    host.locked = true;
    host.expectMessage("MSGInUse('سطح قيمتي')");
    EXPECT_FALSE(store.CostLevel_Delete(3, 1));
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')",
                                        "LocateLockCode_SoftwarePart('3', 114, 7, false)", "MSGInUse('سطح قيمتي')"));
    host.calls.clear();
    host.expectMessage("MSGInUse('سطح تخفیف')");
    EXPECT_FALSE(store.CostLevel_Delete(3, 3));
    EXPECT_THAT(host.calls, ElementsAre("LocateLockCode_SoftwarePart('3', 134, 7, false)", "MSGInUse('سطح تخفیف')"));
}

TEST_F(CostLevelStore, deleteThatIsNotConfirmedDoesNothing) {
    host.expectMessage("MsgDeleteRow()", mrNo);
    EXPECT_FALSE(store.CostLevel_Delete(4, 1));
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')",
                                        "LocateLockCode_SoftwarePart('4', 114, 7, false)", "MsgDeleteRow()"));
}

TEST_F(CostLevelStore, otherKindsAreNotDeleted) {
    for (const int kind : {0, 2, 4, -1}) {
        EXPECT_FALSE(store.CostLevel_Delete(4, kind));
    }
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(CostLevelStore, failingLogIsReportedAsSubRecords) {
    host.onUserEvent = [] { throw DatabaseError(ErrorCategory::DiskFull, "53100", 1105, "no room"); };
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    EXPECT_FALSE(store.CostLevel_Delete(4, 1));
    EXPECT_THAT(host.calls,
                ElementsAre("HavePermission(user 1, 114, 3, false, true, '')",
                            "LocateLockCode_SoftwarePart('4', 114, 7, false)", "MsgDeleteRow()", "begin",
                            "SetUserEvent(114, 3, '4', true, false)", "rollback", "MsgHasSubRecords('سطر')"));
    EXPECT_FALSE(host.DM().ADOConnection1.InTransaction());
}

TEST_F(CostLevelStore, aTransactionThatCannotBeginIsReportedAsSubRecords) {
    session.onBegin = [] { throw lostConnection; };
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    EXPECT_FALSE(store.CostLevel_Delete(4, 1));
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')",
                                        "LocateLockCode_SoftwarePart('4', 114, 7, false)", "MsgDeleteRow()", "begin",
                                        "MsgHasSubRecords('سطر')"));
    EXPECT_FALSE(host.DM().ADOConnection1.InTransaction());
}

TEST_F(CostLevelStore, failingPrintSettingsAreReportedAsSubRecords) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    script.expectError("Delete from PrintsSettings where PartName='CostReport' and Comment='F4'", refusedByKey);
    EXPECT_FALSE(store.CostLevel_Delete(4, 1));
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')",
                                        "LocateLockCode_SoftwarePart('4', 114, 7, false)", "MsgDeleteRow()", "begin",
                                        "SetUserEvent(114, 3, '4', true, false)",
                                        "Delete from PrintsSettings where PartName='CostReport' and Comment='F4'",
                                        "rollback", "MsgHasSubRecords('سطر')"));
    EXPECT_FALSE(host.DM().ADOConnection1.InTransaction());
}

TEST_F(CostLevelStore, referencedPriceLevelIsReportedAsSubRecords) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    script.expectChange("Delete from PrintsSettings where PartName='CostReport' and Comment='F4'", {}, 1);
    script.expectError("Delete CostLevel where Code= 4 AND CostType = 1", refusedByKey);
    EXPECT_FALSE(store.CostLevel_Delete(4, 1));
    EXPECT_THAT(host.calls,
                ElementsAre("HavePermission(user 1, 114, 3, false, true, '')",
                            "LocateLockCode_SoftwarePart('4', 114, 7, false)", "MsgDeleteRow()", "begin",
                            "SetUserEvent(114, 3, '4', true, false)",
                            "Delete from PrintsSettings where PartName='CostReport' and Comment='F4'",
                            "Delete CostLevel where Code= 4 AND CostType = 1", "rollback", "MsgHasSubRecords('سطر')"));
    EXPECT_FALSE(host.DM().ADOConnection1.InTransaction());
}

TEST_F(CostLevelStore, referencedDiscountLevelIsReportedAsSubRecords) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    script.expectError("Delete CostLevel where Code= 2 AND CostType = 3", refusedByKey);
    EXPECT_FALSE(store.CostLevel_Delete(2, 3));
    EXPECT_THAT(host.calls,
                ElementsAre("LocateLockCode_SoftwarePart('2', 134, 7, false)", "MsgDeleteRow()", "begin",
                            "SetUserEvent(134, 3, '2', true, false)", "Delete CostLevel where Code= 2 AND CostType = 3",
                            "rollback", "MsgHasSubRecords('سطر')"));
    EXPECT_FALSE(host.DM().ADOConnection1.InTransaction());
}

TEST_F(CostLevelStore, levelCanBeDeletedAfterAFailure) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    script.expectError("Delete CostLevel where Code= 2 AND CostType = 3", refusedByKey);
    EXPECT_FALSE(store.CostLevel_Delete(2, 3));
    host.expectMessage("MsgDeleteRow()", mrYes);
    script.expectChange("Delete CostLevel where Code= 2 AND CostType = 3", {}, 1);
    EXPECT_TRUE(store.CostLevel_Delete(2, 3));
}

TEST_F(CostLevelStore, failingCommitIsReportedAsSubRecords) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    script.expectChange("Delete CostLevel where Code= 2 AND CostType = 3", {}, 1);
    session.onCommit = [] { throw DatabaseError(ErrorCategory::DiskFull, "53100", 1105, "no room"); };
    EXPECT_FALSE(store.CostLevel_Delete(2, 3));
    EXPECT_FALSE(host.DM().ADOConnection1.InTransaction());
}

TEST_F(CostLevelStore, lostConnectionLeavesNoTransaction) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    host.expectMessage("MsgHasSubRecords('سطر')");
    host.onUserEvent = [this] {
        script.dropTransaction();
        throw DatabaseError(lostConnection);
    };
    EXPECT_FALSE(store.CostLevel_Delete(2, 3));
    // The database has rolled back by itself; nothing more is sent to it.
    EXPECT_THAT(host.calls, ElementsAre("LocateLockCode_SoftwarePart('2', 134, 7, false)", "MsgDeleteRow()", "begin",
                                        "SetUserEvent(134, 3, '2', true, false)", "MsgHasSubRecords('سطر')"));
    EXPECT_FALSE(host.DM().ADOConnection1.InTransaction());
    EXPECT_NO_THROW(host.DM().ADOConnection1.BeginTrans());
    host.DM().ADOConnection1.RollbackTrans();
}

// Prices of a good

struct PriceCell {
    const char* name;
    int kind;
    int goodCode;
    int level;
    Extended price;
    const char* statement;
};
void PrintTo(const PriceCell& row, std::ostream* out) {
    *out << row.name;
}

class CostLevelPrices : public CostLevelStore, public ::testing::WithParamInterface<PriceCell> {};

TEST_P(CostLevelPrices, areWrittenToTheirCell) {
    const PriceCell& cell = GetParam();
    script.expectChange(cell.statement, {}, 1);
    store.CostLevel_Update(cell.kind, cell.goodCode, cell.level, cell.price);
}

INSTANTIATE_TEST_SUITE_P(
    Store, CostLevelPrices,
    ::testing::Values(PriceCell{"sale", 1, 57, 3, 12500.0L,
                                "update GoodCostDiscount Set CostLevel_Sell_3 = 12500 where GoodCode=57"},
                      PriceCell{"purchase", 0, 57, 10, 12500.5L,
                                "update GoodCostDiscount Set CostLevel_Buy_10 = 12500.5 where GoodCode=57"},
                      PriceCell{"anyOtherKindIsPurchase", 2, 1, 1, 0.0L,
                                "update GoodCostDiscount Set CostLevel_Buy_1 = 0 where GoodCode=1"},
                      PriceCell{"nineDecimals", 1, 57, 3, 0.123456789L,
                                "update GoodCostDiscount Set CostLevel_Sell_3 = 0.123456789 where GoodCode=57"},
                      PriceCell{"huge", 1, 57, 3, 1e15L,
                                "update GoodCostDiscount Set CostLevel_Sell_3 = 1000000000000000 where GoodCode=57"},
                      PriceCell{"negative", 1, 57, 3, -1.5L,
                                "update GoodCostDiscount Set CostLevel_Sell_3 = -1.5 where GoodCode=57"}),
    [](const auto& row) { return row.param.name; });

TEST_F(CostLevelStore, clearsPriceLists) {
    script.expectChange("delete from costlist where type=3 and  typecode=57", {}, 2);
    store.ClearCostList(57, 3);
    script.expectChange("delete from tmpcostlist where type=255 and  typecode=57", {}, 0);
    store.ClearTempCostList(57, 255);
}

TEST_F(CostLevelStore, errorsOfWritingPass) {
    script.expectError("update GoodCostDiscount Set CostLevel_Sell_3 = 1 where GoodCode=57", lostConnection);
    EXPECT_THROW(store.CostLevel_Update(1, 57, 3, 1.0L), DatabaseError);
    script.expectError("delete from costlist where type=3 and  typecode=57", lostConnection);
    EXPECT_THROW(store.ClearCostList(57, 3), DatabaseError);
    script.expectError("delete from tmpcostlist where type=3 and  typecode=57", lostConnection);
    EXPECT_THROW(store.ClearTempCostList(57, 3), DatabaseError);
}

}  // namespace
}  // namespace basalt
