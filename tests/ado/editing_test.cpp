// Writing records: every statement in full, and what stays after each failure.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "ado/query.h"
#include "tests/ado/named_case.h"
#include "tests/ado/price_levels.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;

const char* const kSelect = "select * from CostLevel";

std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const UsageError& error) {
        return error.what();
    } catch (const DatabaseError& error) {
        return error.what();
    }
    return "no error";
}

ErrorCategory categoryOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DatabaseError& error) {
        return error.category();
    }
    ADD_FAILURE() << "no error";
    return ErrorCategory::Other;
}

ColumnInfo pictureColumn(const char* name, FieldType type) {
    ColumnInfo info = levelColumn(name, type);
    info.baseTable = "Picture";
    return info;
}

class Editing : public ::testing::Test {
protected:
    Editing() {
        session.setTable(levelTable());
        openOn(levelRows());
    }
    void openOn(RowSet rows) {
        session.expect(kSelect, std::move(rows));
        query.Close();
        query.SQL = kSelect;
        query.Open();
    }
    TField& field(const char* name) { return query.FieldByName(name); }

    ScriptedSession session;
    TADOConnection connection{session};
    TADOQuery query{connection, "Get_QUR"};
};

TEST_F(Editing, updatesWhatChangedKeyedByKeyAndOldValues) {
    query.Edit();
    EXPECT_EQ(query.State(), dsEdit);
    field("Code") = 1;
    field("Name") = "نو";
    EXPECT_EQ(field("Name").AsString(), "نو");
    EXPECT_TRUE(query.Modified());
    session.expectChange(
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {text("نو"), integer(1), integer(1), text("عمده")}, 1);
    query.Post();
    EXPECT_EQ(query.State(), dsBrowse);
    EXPECT_EQ(field("Name").AsString(), "نو");
    EXPECT_EQ(query.RecNo(), 1);
}

// What was written into them is not what the server holds, so that a second change would meet a conflict with itself.
TEST_F(Editing, comparesWhatTheServerPadsAsTheServerDoes) {
    const ColumnInfo code = pictureColumn("Code", FieldType::Integer);
    ColumnInfo note = pictureColumn("Note", FieldType::Text);
    note.typeName = "nchar";
    session.setTable({.name = "Picture", .columns = {code, note}, .key = {"Code"}});
    RowSet rows({code, note});
    rows.column(0).appendInt(7);
    rows.column(1).appendText("a");
    rows.finishRow();
    openOn(std::move(rows));
    query.Edit();
    field("Note") = "b";
    session.expectChange("UPDATE [Picture] SET [Note] = ? WHERE [Code] = ? AND [Note] = ?",
                         {text("b"), integer(7), text("a")}, 1);
    query.Post();
}

// As a value it would travel as a text, which a server does not turn into bytes (257).
TEST_F(Editing, writesNullIntoBinaryColumnsByItsName) {
    const ColumnInfo code = pictureColumn("Code", FieldType::Integer);
    const ColumnInfo image = pictureColumn("Image", FieldType::Binary);
    const ColumnInfo note = pictureColumn("Note", FieldType::Text);
    session.setTable({.name = "Picture", .columns = {code, image, note}, .key = {"Code"}});
    RowSet rows({code, image, note});
    rows.column(0).appendInt(7);
    rows.column(1).appendBytes("\x01\x02", 2);
    rows.column(2).appendText("a");
    rows.finishRow();
    openOn(std::move(rows));
    query.Edit();
    field("Image").Clear();
    field("Note").Clear();
    session.expectChange(
        "UPDATE [Picture] SET [Image] = NULL, [Note] = ? WHERE [Code] = ? AND [Image] = ? AND CAST(CAST([Note] AS "
        "nvarchar(max)) AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {Null{}, integer(7), Bytes{1, 2}, text("a")}, 1);
    query.Post();
    EXPECT_TRUE(field("Image").IsNull());

    query.Append();
    field("Code") = 8;
    field("Image") = Value(Bytes{3});
    field("Image").Clear();
    field("Note") = "b";
    session.expectChange("INSERT INTO [Picture] ([Code], [Image], [Note]) VALUES (?, NULL, ?)", {integer(8), text("b")},
                         1);
    query.Post();
}

TEST_F(Editing, comparesOldNullsWithIsNullAndWritesNulls) {
    query.RecNo(2);
    query.Edit();
    field("Rate") = 3;
    field("Name").Clear();
    session.expectChange(
        "UPDATE [CostLevel] SET [Name] = ?, [Rate] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS "
        "nvarchar(max)) AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max)) AND [Rate] "
        "IS NULL",
        {Null{}, Decimal(300, 2), integer(1), integer(2), text("تک")}, 1);
    query.Post();
    EXPECT_TRUE(field("Name").IsNull());
    EXPECT_EQ(field("Rate").AsString(), "3");
}

TEST_F(Editing, changesAKeyByItsOldValue) {
    query.Edit();
    field("Code") = 5;
    session.expectChange("UPDATE [CostLevel] SET [Code] = ? WHERE [CostType] = ? AND [Code] = ?",
                         {integer(5), integer(1), integer(1)}, 1);
    query.Post();
    EXPECT_EQ(field("Code").AsInteger(), 5);
}

TEST_F(Editing, sendsNothingWhenNothingChanged) {
    query.Edit();
    query.Post();
    EXPECT_EQ(query.State(), dsBrowse);
    query.Edit();
    field("Name") = "عمده";
    field("Rate") = 12.5;
    EXPECT_FALSE(query.Modified());
    query.Post();
    EXPECT_EQ(query.State(), dsBrowse);
}

TEST_F(Editing, lostUpdateIsAConflictAndKeepsWhatWasTyped) {
    query.Edit();
    field("Name") = "نو";
    session.expectChange(
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {text("نو"), integer(1), integer(1), text("عمده")}, 0);
    EXPECT_EQ(categoryOf([&] { query.Post(); }), ErrorCategory::Conflict);
    EXPECT_EQ(query.State(), dsEdit);
    EXPECT_EQ(field("Name").AsString(), "نو");
    query.Cancel();
    EXPECT_EQ(query.State(), dsBrowse);
    EXPECT_EQ(field("Name").AsString(), "عمده");
}

TEST_F(Editing, moreThanOneRowOrNoCountIsAnError) {
    const char* const update = "UPDATE [CostLevel] SET [Rate] = ? WHERE [CostType] = ? AND [Code] = ? AND [Rate] = ?";
    const std::vector<Value> values{Decimal(100, 2), integer(1), integer(1), Decimal(1250, 2)};
    query.Edit();
    field("Rate") = 1;
    session.expectChange(update, values, 2);
    EXPECT_EQ(errorOf([&] { query.Post(); }),
              "Get_QUR: the statement should have changed one row, the database reports 2");
    session.expectBatch(update, values, {});
    EXPECT_EQ(errorOf([&] { query.Post(); }),
              "Get_QUR: the statement should have changed one row, the database reports no count");
    EXPECT_EQ(query.State(), dsEdit);
    query.Cancel();
}

TEST_F(Editing, failedPostCanBeRepeatedAndAsksForTheTableAnew) {
    query.Edit();
    field("Rate") = 1;
    const char* const update = "UPDATE [CostLevel] SET [Rate] = ? WHERE [CostType] = ? AND [Code] = ? AND [Rate] = ?";
    const std::vector<Value> values{Decimal(100, 2), integer(1), integer(1), Decimal(1250, 2)};
    session.expectChangeError(update, values, DatabaseError(ErrorCategory::Busy, "HYT00", 1222, "locked"));
    EXPECT_EQ(categoryOf([&] { query.Post(); }), ErrorCategory::Busy);
    EXPECT_EQ(session.tableRequests, 1);
    EXPECT_EQ(query.State(), dsEdit);
    session.expectChange(update, values, 1);
    query.Post();
    EXPECT_EQ(session.tableRequests, 2);
    query.Edit();
    field("Rate") = 2;
    session.expectChange(update, {Decimal(200, 2), integer(1), integer(1), Decimal(100, 2)}, 1);
    query.Post();
    EXPECT_EQ(session.tableRequests, 2);
}

TEST_F(Editing, insertsAssignedFields) {
    query.Append();
    EXPECT_EQ(query.State(), dsInsert);
    EXPECT_EQ(field("Name").AsString(), "");
    EXPECT_TRUE(field("Code").IsNull());
    field("Code") = 9;
    field("CostType") = 1;
    field("Name") = std::string("نهم");
    EXPECT_EQ(query.RecordCount(), 4);
    session.expectChange("INSERT INTO [CostLevel] ([Code], [CostType], [Name]) VALUES (?, ?, ?)",
                         {integer(9), integer(1), text("نهم")}, 1);
    query.Post();
    EXPECT_EQ(query.RecordCount(), 5);
    EXPECT_EQ(query.RecNo(), 5);
    EXPECT_EQ(field("Name").AsString(), "نهم");
    EXPECT_TRUE(field("Rate").IsNull());
}

TEST_F(Editing, insertsIntoAnEmptyResult) {
    openOn(makeRows(levelColumns(), {}));
    query.Insert();
    EXPECT_FALSE(query.IsEmpty());
    field("Code") = 1;
    session.expectChange("INSERT INTO [CostLevel] ([Code]) VALUES (?)", {integer(1)}, 1);
    query.Post();
    EXPECT_EQ(query.RecordCount(), 1);
    EXPECT_FALSE(query.Eof());
}

TEST_F(Editing, readsTheIdentityBack) {
    TableInfo table{.name = "Tags",
                    .columns = {levelColumn("ID", FieldType::Integer), levelColumn("Title", FieldType::Text, 20)},
                    .key = {"ID"}};
    for (ColumnInfo& column : table.columns)
        column.baseTable = "Tags";
    table.columns[0].identity = true;
    session.setTable(table);
    openOn(makeRows(table.columns, {}));
    query.Append();
    field("Title") = "قرمز";
    BatchResult batch;
    batch.results.push_back({.rows = std::nullopt, .affectedRows = 1});
    batch.results.push_back(
        {.rows = makeRows({{.name = "", .type = FieldType::Decimal, .precision = 38}}, {{Decimal(12, 0)}})});
    session.expectBatch("INSERT INTO [Tags] ([Title]) VALUES (?); SELECT SCOPE_IDENTITY()", {text("قرمز")},
                        std::move(batch));
    query.Post();
    EXPECT_EQ(field("ID").AsInteger(), 12);
    query.Edit();
    field("ID") = 13;
    EXPECT_EQ(errorOf([&] { query.Post(); }),
              "Get_QUR: the field ID is numbered by the database and cannot be assigned; nothing was sent");
    query.Cancel();
}

// Not every driver counts the rows of a statement that a result set follows.
TEST_F(Editing, aNewNumberTellsThatTheRecordWasInserted) {
    TableInfo table{.name = "Tags",
                    .columns = {{.name = "ID", .type = FieldType::Integer, .baseColumn = "ID"},
                                {.name = "Title", .type = FieldType::Text, .size = 50, .baseColumn = "Title"}},
                    .key = {"ID"}};
    for (ColumnInfo& column : table.columns)
        column.baseTable = "Tags";
    table.columns[0].identity = true;
    session.setTable(table);
    openOn(makeRows(table.columns, {}));
    const auto answerWith = [&](const Value& number) {
        BatchResult batch;
        batch.results.push_back(
            {.rows = makeRows({{.name = "", .type = FieldType::Decimal, .precision = 38}}, {{number}})});
        session.expectBatch("INSERT INTO [Tags] ([Title]) VALUES (?); SELECT SCOPE_IDENTITY()", {text("قرمز")},
                            std::move(batch));
    };
    query.Append();
    field("Title") = "قرمز";
    answerWith(Null{});
    EXPECT_EQ(errorOf([&] { query.Post(); }),
              "Get_QUR: the statement should have changed one row, the database reports no count");
    answerWith(Decimal(12, 0));
    query.Post();
    EXPECT_EQ(field("ID").AsInteger(), 12);
}

TEST_F(Editing, misuseSaysWhatToDo) {
    EXPECT_EQ(errorOf([&] { query.Post(); }), "Get_QUR.Post: there is nothing to post; call Edit or Append before");
    EXPECT_EQ(errorOf([&] { field("Name") = "x"; }), "Get_QUR.Name: call Edit or Append before assigning a field");
    query.Cancel();
    query.Append();
    EXPECT_EQ(errorOf([&] { query.Post(); }), "Get_QUR.Post: no field of the new record has been given a value");
    query.Cancel();
    openOn(makeRows(levelColumns(), {}));
    EXPECT_EQ(errorOf([&] { query.Edit(); }), "Get_QUR.Edit: there is no record to edit, the result is empty");
    EXPECT_EQ(errorOf([&] { query.Delete(); }), "Get_QUR.Delete: there is no record to delete, the result is empty");
    EXPECT_EQ(query.State(), dsBrowse);
}

struct RefusedCase {
    const char* name;
    const char* field;
    Value value;
    ErrorCategory category;
    const char* message;
};

class EditingRefuses : public Editing, public ::testing::WithParamInterface<RefusedCase> {};

TEST_P(EditingRefuses, valuesThatDoNotFitBeforeAnythingIsSent) {
    query.Edit();
    field("Name") = "نو";
    const auto assign = [&] { field(GetParam().field) = GetParam().value; };
    EXPECT_EQ(errorOf(assign), GetParam().message);
    EXPECT_EQ(categoryOf(assign), GetParam().category);
    EXPECT_EQ(query.State(), dsEdit);
    EXPECT_EQ(field("Name").AsString(), "نو");
    EXPECT_EQ(field("Code").AsInteger(), 1);
    query.Cancel();
}

INSTANTIATE_TEST_SUITE_P(
    Values, EditingRefuses,
    ::testing::Values(
        RefusedCase{"tooLong", "Name", text("عمده‌فروشان"), ErrorCategory::Truncation,
                    "Get_QUR.Name: the value has 11 characters, at most 10 fit"},
        RefusedCase{"tooLongInUtf16", "Name", text("😀😀😀😀😀😀"), ErrorCategory::Truncation,
                    "Get_QUR.Name: the value has 12 characters, at most 10 fit"},
        RefusedCase{
            "tooLarge", "CostType", integer(256), ErrorCategory::Conversion,
            "Get_QUR: column CostType (tinyint): the value '256' is out of range; it must lie between 0 and 255"},
        RefusedCase{
            "tooManyDigits", "Rate", Decimal(1'000'000'000, 0), ErrorCategory::Conversion,
            "Get_QUR: column Rate (decimal): the value '1000000000' is out of range; at most 7 digits may stand "
            "before the point"},
        RefusedCase{"noNumber", "Code", text("abc"), ErrorCategory::Conversion,
                    "Get_QUR: the value 'abc' cannot be converted to an integer"}),
    NameOfCase());

TEST_F(Editing, acceptsEveryKindOfValue) {
    query.Edit();
    field("Name") = std::string(10, 'x');
    field("Rate") = 12.345L;
    EXPECT_EQ(field("Rate").AsString(), "12.35");
    field("Rate") = std::int64_t{7};
    EXPECT_EQ(field("Rate").AsString(), "7");
    field("Rate") = "8.5";
    EXPECT_EQ(field("Rate").AsString(), "8.5");
    enum Kind { kSecond = 2 };
    field("CostType") = kSecond;
    EXPECT_EQ(field("CostType").AsInteger(), 2);
    field("CostType") = true;
    EXPECT_EQ(field("CostType").AsInteger(), 1);
    field("Name") = field("Code");
    EXPECT_EQ(field("Name").AsString(), "1");
    EXPECT_THROW(field("Rate").SetExtended(std::numeric_limits<Extended>::infinity()), DatabaseError);
    query.Cancel();
}

TEST_F(Editing, leavingARecordPostsItsChanges) {
    query.Edit();
    field("Name") = "نو";
    session.expectChange(
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {text("نو"), integer(1), integer(1), text("عمده")}, 1);
    query.Next();
    EXPECT_EQ(query.State(), dsBrowse);
    EXPECT_EQ(query.RecNo(), 2);
    query.Edit();
    query.Last();
    EXPECT_EQ(query.State(), dsBrowse);
    query.Append();
    query.First();
    EXPECT_EQ(query.State(), dsBrowse);
    query.Edit();
    field("Name") = "دیگر";
    query.Close();
    EXPECT_EQ(query.State(), dsInactive);
}

TEST_F(Editing, deletesByKey) {
    query.RecNo(2);
    session.expectChange("DELETE FROM [CostLevel] WHERE [CostType] = ? AND [Code] = ?", {integer(1), integer(2)}, 1);
    query.Delete();
    EXPECT_EQ(query.RecordCount(), 3);
    EXPECT_EQ(query.RecNo(), 2);
    EXPECT_EQ(field("Name").AsString(), "Alpha");
    query.Last();
    session.expectChange("DELETE FROM [CostLevel] WHERE [CostType] = ? AND [Code] = ?", {integer(3), integer(7)}, 0);
    EXPECT_EQ(categoryOf([&] { query.Delete(); }), ErrorCategory::Conflict);
    EXPECT_EQ(query.RecordCount(), 3);
    session.expectChange("DELETE FROM [CostLevel] WHERE [CostType] = ? AND [Code] = ?", {integer(3), integer(7)}, 1);
    query.Delete();
    EXPECT_EQ(query.RecNo(), 2);
    query.Append();
    query.Delete();
    EXPECT_EQ(query.State(), dsBrowse);
    EXPECT_EQ(query.RecordCount(), 2);
}

TEST_F(Editing, aFilteredRecordMayLeaveTheSelection) {
    query.Filter("CostType = 3");
    query.Filtered(true);
    query.Edit();
    field("CostType") = 1;
    session.expectChange("UPDATE [CostLevel] SET [CostType] = ? WHERE [CostType] = ? AND [Code] = ?",
                         {integer(1), integer(3), integer(1)}, 1);
    query.Post();
    EXPECT_EQ(query.RecordCount(), 1);
    EXPECT_EQ(field("Name").AsString(), "beta");
    query.Append();
    field("Code") = 8;
    field("CostType") = 3;
    session.expectChange("INSERT INTO [CostLevel] ([Code], [CostType]) VALUES (?, ?)", {integer(8), integer(3)}, 1);
    query.Post();
    EXPECT_EQ(query.RecordCount(), 2);
    EXPECT_EQ(field("Code").AsInteger(), 8);
    session.expectChange("DELETE FROM [CostLevel] WHERE [CostType] = ? AND [Code] = ?", {integer(3), integer(8)}, 1);
    query.Delete();
    EXPECT_EQ(field("Name").AsString(), "beta");
    query.Filtered(false);
    EXPECT_EQ(query.RecordCount(), 4);
}

TEST_F(Editing, showsTheTypedRowToGrids) {
    query.RecNo(3);
    query.Edit();
    field("Name") = "typed";
    EXPECT_EQ(query.textAt(2, 2), "typed");
    EXPECT_EQ(query.textAt(1, 2), "تک");
    EXPECT_EQ(query.rowSet().column(2).textAt(2), "Alpha");
    query.Cancel();
}

TEST_F(Editing, beforePostMayAssignOrRefuse) {
    query.BeforePost = [](TDataSet& rows) { rows.FieldByName("Rate") = 1; };
    query.Edit();
    field("Name") = "نو";
    session.expectChange(
        "UPDATE [CostLevel] SET [Name] = ?, [Rate] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS "
        "nvarchar(max)) AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max)) AND [Rate] = "
        "?",
        {text("نو"), Decimal(100, 2), integer(1), integer(1), text("عمده"), Decimal(1250, 2)}, 1);
    query.Post();
    query.BeforePost = [](TDataSet&) { throw UsageError("refused"); };
    query.Edit();
    field("Name") = "باز";
    EXPECT_EQ(errorOf([&] { query.Post(); }), "refused");
    EXPECT_EQ(query.State(), dsEdit);
    query.Cancel();
}

TEST_F(Editing, paddingBlanksAreNoChange) {
    ColumnInfo fixed = levelColumn("Name", FieldType::Text, 10);
    fixed.fixedLength = true;
    openOn(makeRows({levelColumn("Code", FieldType::Integer), levelColumn("CostType", FieldType::TinyInt), fixed},
                    {{integer(1), integer(1), text("ab        ")}}));
    query.Edit();
    field("Name") = "ab";
    EXPECT_FALSE(query.Modified());
    query.Post();
}

// Which table

struct ForeignCase {
    const char* name;
    std::vector<ColumnInfo> columns;
    std::vector<std::string> key;
    const char* field;
    const char* message;
};

ColumnInfo of(const char* table, const char* name) {
    ColumnInfo info;
    info.name = name;
    info.type = FieldType::Integer;
    info.baseTable = table;
    if (*table != '\0') info.baseColumn = name;
    return info;
}

class EditingForeign : public ::testing::TestWithParam<ForeignCase> {};

TEST_P(EditingForeign, refusesRowsThatCannotBeToldApart) {
    ScriptedSession session;
    session.setTable({.name = "A", .columns = {of("A", "ID"), of("A", "Part"), of("A", "X")}, .key = GetParam().key});
    TADOConnection connection(session);
    TADOQuery query(connection, "Q");
    const std::vector<Value> row(GetParam().columns.size(), integer(1));
    session.expect("select a, b from A, B", makeRows(GetParam().columns, {row}));
    query.SQL = "select a, b from A, B";
    query.Open();
    query.Edit();
    query.FieldByName(GetParam().field) = 2;
    EXPECT_EQ(errorOf([&] { query.Post(); }), GetParam().message);
    EXPECT_EQ(query.State(), dsEdit);
}

INSTANTIATE_TEST_SUITE_P(
    Results, EditingForeign,
    ::testing::Values(ForeignCase{"expression",
                                  {of("A", "ID"), of("", "Sum")},
                                  {"ID"},
                                  "Sum",
                                  "Q: the field Sum is computed by the statement and has no column; nothing was sent"},
                      ForeignCase{"unknownTables",
                                  {of("", "ID"), of("", "X")},
                                  {"ID"},
                                  "X",
                                  "Q: the rows of this statement belong to no table; nothing was sent"},
                      ForeignCase{"keyNotShown",
                                  {of("A", "Part"), of("A", "X")},
                                  {"ID", "Part"},
                                  "X",
                                  "Q: the key column ID of A is not among the fields; nothing was sent"},
                      ForeignCase{
                          "noKey",
                          {of("A", "ID"), of("A", "X")},
                          {},
                          "X",
                          "Q: the table A has no primary key, so its rows cannot be told apart; nothing was sent"},
                      ForeignCase{"columnIsGone",
                                  {of("A", "ID"), of("A", "Y")},
                                  {"ID"},
                                  "Y",
                                  "Q: the field Y is not a column of A; nothing was sent"}),
    NameOfCase());

TEST(EditingJoins, writesToTheTableOfTheChangedColumn) {
    ScriptedSession session;
    session.setTable({.name = "A", .columns = {of("A", "ID"), of("A", "X")}, .key = {"ID"}});
    TADOConnection connection(session);
    TADOQuery query(connection, "Q");
    session.expect("select",
                   makeRows({of("A", "ID"), of("A", "X"), of("B", "Y")}, {{integer(1), integer(2), integer(3)}}));
    query.SQL = "select";
    query.Open();
    query.Edit();
    query.FieldByName("X") = 5;
    session.expectChange("UPDATE [A] SET [X] = ? WHERE [ID] = ? AND [X] = ?", {integer(5), integer(1), integer(2)}, 1);
    query.Post();
    query.Edit();
    query.FieldByName("X") = 6;
    query.FieldByName("Y") = 6;
    EXPECT_EQ(errorOf([&] { query.Post(); }), "Q: the values belong to more than one table (A, B); nothing was sent");
    query.Cancel();
    EXPECT_EQ(errorOf([&] { query.Delete(); }), "Q: the values belong to more than one table (A, B); nothing was sent");
}

TEST(EditingJoins, aTableJoinedWithItselfIsRefusedWhereItsRowsDiffer) {
    ScriptedSession session;
    session.setTable({.name = "A", .columns = {of("A", "ID"), of("A", "X")}, .key = {"ID"}});
    TADOConnection connection(session);
    TADOQuery query(connection, "Q");
    ColumnInfo parent = of("A", "ID");
    parent.name = "Parent";
    session.expect("select", makeRows({of("A", "ID"), parent, of("A", "X")}, {{integer(1), integer(2), integer(3)}}));
    query.SQL = "select";
    query.Open();
    query.Edit();
    query.FieldByName("X") = 5;
    EXPECT_EQ(errorOf([&] { query.Post(); }), "Q: the statement shows ID of two rows; nothing was sent");
}

TEST(EditingFallback, readsTheTableFromThePlainStatement) {
    ScriptedSession session;
    session.setTable({.name = "CostLevel", .columns = {of("", "Code"), of("", "X")}, .key = {"Code"}});
    TADOConnection connection(session);
    TADOQuery query(connection, "Q");
    session.expect("select Code, X from costlevel where Code > 0",
                   makeRows({of("", "Code"), of("", "X")}, {{integer(1), integer(2)}}));
    query.SQL = "select Code, X from costlevel where Code > 0";
    query.Open();
    query.Edit();
    query.FieldByName("X") = 5;
    session.expectChange("UPDATE [costlevel] SET [X] = ? WHERE [Code] = ? AND [X] = ?",
                         {integer(5), integer(1), integer(2)}, 1);
    query.Post();
    EXPECT_EQ(query.FieldByName("X").AsInteger(), 5);
}

TEST(EditingText, oldLargeTextsAreNotCompared) {
    ScriptedSession session;
    ColumnInfo note = of("A", "Note");
    note.type = FieldType::Text;
    note.typeName = "ntext";
    session.setTable({.name = "A", .columns = {of("A", "ID"), note}, .key = {"ID"}});
    TADOConnection connection(session);
    TADOQuery query(connection, "Q");
    session.expect("select", makeRows({of("A", "ID"), note}, {{integer(1), text("old")}}));
    query.SQL = "select";
    query.Open();
    query.Edit();
    query.FieldByName("Note") = "new";
    session.expectChange("UPDATE [A] SET [Note] = ? WHERE [ID] = ?", {text("new"), integer(1)}, 1);
    query.Post();
}

}  // namespace
}  // namespace basalt
