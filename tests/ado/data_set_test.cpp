// Opening, moving, looking up, filtering and reading.
#include "ado/data_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ado/query.h"
#include "tests/ado/named_case.h"
#include "tests/ado/price_levels.h"
#include "tests/ado/usage_error.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;

const char* const kSelect = "select Code, CostType, Name, Rate from CostLevel";

class DataSet : public ::testing::Test {
protected:
    void open() {
        session.expect(kSelect, levelRows());
        query.SQL = kSelect;
        query.Open();
    }
    [[nodiscard]] std::vector<std::string> names() {
        std::vector<std::string> all;
        for (int row = 0; row < query.RecordCount(); ++row)
            all.push_back(query.textAt(row, 2));
        return all;
    }
    std::string name() { return query.FieldByName("Name").AsString(); }

    ScriptedSession session;
    TADOConnection connection{session};
    TADOQuery query{connection, "List_QUR"};
};

TEST_F(DataSet, closedOneHasNoRecords) {
    EXPECT_FALSE(query.Active());
    EXPECT_EQ(query.State(), dsInactive);
    EXPECT_EQ(query.RecordCount(), 0);
    EXPECT_EQ(query.RecNo(), 0);
    EXPECT_TRUE(query.Bof());
    EXPECT_TRUE(query.Eof());
    EXPECT_TRUE(query.IsEmpty());
    EXPECT_EQ(query.FindField("Name"), nullptr);
    EXPECT_EQ(usageErrorOf([&] { static_cast<void>(query.FieldByName("Name")); }),
              "List_QUR.FieldByName: the data set is closed; call Open first");
    EXPECT_EQ(usageErrorOf([&] { query.Next(); }), "List_QUR.MoveBy: the data set is closed; call Open first");
    EXPECT_EQ(usageErrorOf([&] { query.Edit(); }), "List_QUR.Edit: the data set is closed; call Open first");
    EXPECT_EQ(usageErrorOf([&] { query.Post(); }), "List_QUR.Post: the data set is closed; call Open first");
    EXPECT_EQ(usageErrorOf([&] { query.Locate("Name", text("x")); }),
              "List_QUR.Locate: the data set is closed; call Open first");
    query.Close();
}

TEST_F(DataSet, opensOnItsStatementOnce) {
    open();
    query.Open();
    EXPECT_TRUE(query.Active());
    EXPECT_EQ(query.State(), dsBrowse);
    EXPECT_EQ(query.RecordCount(), 4);
    EXPECT_EQ(query.RecNo(), 1);
    EXPECT_TRUE(query.Bof());
    EXPECT_FALSE(query.Eof());
    query.Close();
    query.Close();
    EXPECT_FALSE(query.Active());
    EXPECT_EQ(query.RecordCount(), 0);
}

TEST_F(DataSet, opensOnAnEmptyResult) {
    session.expect(kSelect, makeRows(levelColumns(), {}));
    query.SQL = kSelect;
    query.Open();
    EXPECT_TRUE(query.IsEmpty());
    EXPECT_TRUE(query.Bof());
    EXPECT_TRUE(query.Eof());
    EXPECT_EQ(query.RecNo(), 0);
    EXPECT_EQ(query.FieldByName("Code").AsInteger(), 0);
    EXPECT_EQ(name(), "");
    EXPECT_TRUE(query.FieldByName("Rate").IsNull());
    query.First();
    query.Last();
    query.Next();
    EXPECT_EQ(query.MoveBy(-3), 0);
    EXPECT_FALSE(query.Locate("Code", integer(1)));
}

TEST_F(DataSet, saysWhyItCannotOpen) {
    EXPECT_EQ(usageErrorOf([&] { query.Open(); }), "List_QUR.Open: the statement is empty; set SQL first");
    query.SQL = "update CostLevel set Name = 'x'";
    session.expectChange("update CostLevel set Name = 'x'", {}, 3);
    EXPECT_EQ(usageErrorOf([&] { query.Open(); }),
              "List_QUR.Open: the statement gives no rows; run it with ExecSQL or ExecProc");
    EXPECT_FALSE(query.Active());
    query.Connection(nullptr);
    EXPECT_EQ(usageErrorOf([&] { query.Open(); }), "List_QUR.Connection: there is none; set it first");
    session.expectError("select nonsense", DatabaseError(ErrorCategory::Syntax, "42000", 102, "not understood"));
    query.Connection(&connection);
    query.SQL = "select nonsense";
    EXPECT_THROW(query.Open(), DatabaseError);
    EXPECT_FALSE(query.Active());
}

TEST_F(DataSet, takesTheFirstOfSeveralResults) {
    BatchResult batch;
    batch.results.push_back({.rows = std::nullopt, .affectedRows = 2});
    batch.results.push_back({.rows = levelRows()});
    batch.results.push_back({.rows = makeRows({{.name = "Other", .type = FieldType::Integer}}, {})});
    session.expectBatch("update t set a = 1; select 1; select 2", {}, std::move(batch));
    query.SQL = "update t set a = 1; select 1; select 2";
    query.Open();
    EXPECT_EQ(query.RecordCount(), 4);
}

TEST_F(DataSet, anotherStatementClosesIt) {
    open();
    query.SQL = "select 2";
    EXPECT_FALSE(query.Active());
    query.SQL.Clear();
    query.SQL.Add("select 3");
    query.SQL.Add("from T");
    EXPECT_EQ(query.SQL.Text(), "select 3\r\nfrom T");
}

TEST_F(DataSet, requeryShowsTheRowsAnew) {
    open();
    query.Last();
    session.expect(kSelect, makeRows(levelColumns(), {{integer(9), integer(1), text("نو"), Null{}}}));
    query.Requery();
    EXPECT_EQ(query.RecordCount(), 1);
    EXPECT_EQ(query.RecNo(), 1);
    EXPECT_EQ(name(), "نو");
    session.expectError(kSelect, DatabaseError(ErrorCategory::Connection, "08S01", 0, "lost"));
    EXPECT_THROW(query.Requery(), DatabaseError);
    EXPECT_EQ(name(), "نو");
}

TEST_F(DataSet, requeryOpensAClosedOne) {
    session.expect(kSelect, levelRows());
    query.SQL = kSelect;
    query.Requery();
    EXPECT_TRUE(query.Active());
}

// Moving

TEST_F(DataSet, movesAndStopsAtTheEnds) {
    open();
    std::vector<int> seen;
    for (query.First(); !query.Eof(); query.Next())
        seen.push_back(query.RecNo());
    EXPECT_THAT(seen, ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(query.RecNo(), 4);
    query.Prior();
    EXPECT_EQ(query.RecNo(), 3);
    EXPECT_FALSE(query.Eof());
    EXPECT_EQ(query.MoveBy(-1), -1);
    EXPECT_EQ(query.MoveBy(-5), -1);
    EXPECT_EQ(query.RecNo(), 1);
    EXPECT_TRUE(query.Bof());
    query.Next();
    EXPECT_FALSE(query.Bof());
    query.Last();
    EXPECT_TRUE(query.Eof());
    EXPECT_EQ(query.MoveBy(0), 0);
    query.RecNo(2);
    EXPECT_EQ(name(), "تک");
    EXPECT_FALSE(query.Eof());
    EXPECT_EQ(usageErrorOf([&] { query.RecNo(5); }), "List_QUR.RecNo: there is no record 5; there are 4");
    EXPECT_EQ(usageErrorOf([&] { query.RecNo(0); }), "List_QUR.RecNo: there is no record 0; there are 4");
    EXPECT_EQ(query.RecNo(), 2);
}

TEST_F(DataSet, tellsOfScrolling) {
    int scrolls = 0;
    query.AfterScroll = [&](TDataSet& rows) {
        EXPECT_EQ(&rows, &query);
        ++scrolls;
    };
    open();
    EXPECT_EQ(scrolls, 1);
    query.Next();
    query.Locate("Code", integer(7));
    EXPECT_EQ(scrolls, 3);
    EXPECT_FALSE(query.Locate("Code", integer(99)));
    EXPECT_EQ(scrolls, 3);
}

// Fields

TEST_F(DataSet, readsFieldsByNameAndIndex) {
    open();
    EXPECT_EQ(query.FieldCount(), 4);
    EXPECT_EQ(query.Fields(2).FieldName(), "Name");
    EXPECT_EQ(query.FieldByName("COSTTYPE").Index(), 1);
    EXPECT_EQ(query.FieldByName("name").AsString(), "عمده");
    EXPECT_EQ(query.FieldByName("Rate").AsFloat(), 12.5L);
    EXPECT_EQ(query.FieldByName("Rate").AsString(), "12.5");
    EXPECT_EQ(query.FieldByName("Rate").AsInteger(), 12);
    EXPECT_TRUE(query.FieldByName("Code").AsBoolean());
    EXPECT_EQ(query.FieldByName("Code").AsString(), "1");
    query.Next();
    EXPECT_TRUE(query.FieldByName("Rate").IsNull());
    EXPECT_EQ(query.FieldByName("Rate").AsFloat(), 0);
    EXPECT_EQ(query.FieldByName("Rate").AsString(), "");
    EXPECT_TRUE(isNull(query.FieldByName("Rate").AsValue()));
    EXPECT_EQ(query.FindField("Missing"), nullptr);
    EXPECT_EQ(usageErrorOf([&] { static_cast<void>(query.FieldByName("Missing")); }),
              "List_QUR.FieldByName: there is no field Missing; the fields are Code, CostType, Name, Rate");
    EXPECT_EQ(usageErrorOf([&] { static_cast<void>(query.Fields(4)); }),
              "List_QUR.Fields: there is no field 4; there are 4");
    EXPECT_EQ(usageErrorOf([&] { static_cast<void>(query.Fields(-1)); }),
              "List_QUR.Fields: there is no field -1; there are 4");
    EXPECT_THROW(static_cast<void>(query.FieldByName("Name").AsInteger()), DatabaseError);
}

TEST_F(DataSet, integersThatDoNotFitAreRefused) {
    session.expect("select big", makeRows({{.name = "Big", .type = FieldType::BigInt}}, {{integer(2147483648)}}));
    query.SQL = "select big";
    query.Open();
    EXPECT_EQ(query.FieldByName("Big").AsInt64(), 2147483648);
    EXPECT_THROW(static_cast<void>(query.FieldByName("Big").AsInteger()), DatabaseError);
}

TEST_F(DataSet, aColumnWithoutANameIsNamedByItsPlace) {
    session.expect("select 1, big",
                   makeRows({{.name = "", .type = FieldType::BigInt}, {.name = "", .type = FieldType::BigInt}},
                            {{integer(1), integer(2147483648)}}));
    query.SQL = "select 1, big";
    query.Open();
    try {
        static_cast<void>(query.Fields(1).AsInteger());
        ADD_FAILURE() << "was read";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(std::string(error.what()),
                  query.Name() + ", column 2: the value 2147483648 is out of range for a 32-bit integer");
    }
}

TEST_F(DataSet, readsAnyRowWithoutMoving) {
    open();
    EXPECT_EQ(query.textAt(3, 2), "beta");
    EXPECT_EQ(query.textAt(3, 3), "-0.5");
    EXPECT_EQ(query.valueAt(1, 0), integer(2));
    EXPECT_EQ(query.RecNo(), 1);
    EXPECT_EQ(query.rowSet().rowCount(), 4U);
}

// Locate

struct LocateCase {
    const char* name;
    const char* fields;
    std::vector<Value> values;
    LocateOptions options;
    int recNo;  // 0: not found
};

class DataSetLocate : public DataSet, public ::testing::WithParamInterface<LocateCase> {};

TEST_P(DataSetLocate, movesOnlyWhenFound) {
    open();
    query.RecNo(2);
    EXPECT_EQ(query.Locate(GetParam().fields, GetParam().values, GetParam().options), GetParam().recNo != 0);
    EXPECT_EQ(query.RecNo(), GetParam().recNo != 0 ? GetParam().recNo : 2);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, DataSetLocate,
    ::testing::Values(
        LocateCase{"one", "Code", {integer(7)}, {}, 4}, LocateCase{"first", "CostType", {integer(3)}, {}, 3},
        LocateCase{"two", "Code;CostType", {integer(1), integer(3)}, {}, 3},
        LocateCase{"twoNotTogether", "Code;CostType", {integer(7), integer(1)}, {}, 0},
        LocateCase{"numberAsText", "Code", {text("7")}, {}, 4}, LocateCase{"noNumber", "Code", {text("x")}, {}, 0},
        LocateCase{"numberAsDecimal", "Code", {Decimal(700, 2)}, {}, 4}, LocateCase{"fraction", "Code", {1.5}, {}, 0},
        LocateCase{"decimal", "Rate", {-0.5}, {}, 4}, LocateCase{"zeroIsNotNull", "Rate", {integer(0)}, {}, 3},
        LocateCase{"null", "Rate", {Null{}}, {}, 2}, LocateCase{"text", "Name", {text("beta")}, {}, 4},
        LocateCase{"textCase", "Name", {text("BETA")}, {}, 0},
        LocateCase{"textWithoutCase", "Name", {text("BETA")}, {.caseInsensitive = true}, 4},
        LocateCase{"part", "Name", {text("Al")}, {.partialKey = true}, 3},
        LocateCase{"partWithoutCase", "Name", {text("aL")}, {.caseInsensitive = true, .partialKey = true}, 3},
        LocateCase{"partOnlyAtTheStart", "Name", {text("lpha")}, {.partialKey = true}, 0},
        LocateCase{"persian", "Name", {text("عمده")}, {}, 1}, LocateCase{"integerInText", "Name", {integer(5)}, {}, 0}),
    NameOfCase());

TEST_F(DataSet, locatePassesOverBlanksThatPad) {
    ColumnInfo fixed = levelColumn("Name", FieldType::Text, 10);
    fixed.fixedLength = true;
    session.expect(kSelect, makeRows({fixed}, {{text("Alphabet  ")}, {text("Alpha     ")}}));
    query.SQL = kSelect;
    query.Open();
    for (const char* wanted : {"Alpha", "Alpha  ", "Alpha           "}) {
        EXPECT_TRUE(query.Locate("Name", text(wanted))) << wanted;
        EXPECT_EQ(query.RecNo(), 2) << wanted;
    }
    EXPECT_FALSE(query.Locate("Name", text("ALPHA ")));
    EXPECT_FALSE(query.Locate("Name", text(" Alpha")));
    EXPECT_TRUE(query.Locate("Name", text("ALPHA "), {.caseInsensitive = true}));
    EXPECT_EQ(query.RecNo(), 2);
    EXPECT_TRUE(query.Locate("Name", text("alpha "), {.caseInsensitive = true, .partialKey = true}));
    EXPECT_EQ(query.RecNo(), 1);
}

TEST_F(DataSet, locateSaysWhatIsWrong) {
    open();
    EXPECT_EQ(usageErrorOf([&] { query.Locate("Code;CostType", {integer(1)}); }),
              "List_QUR.Locate: 2 fields and 1 values");
    EXPECT_EQ(usageErrorOf([&] {
                  query.Locate("Code;Kind", {integer(1), integer(2)});
              }),
              "List_QUR.FieldByName: there is no field Kind; the fields are Code, CostType, Name, Rate");
}

// Filter

TEST_F(DataSet, filterSelectsRecords) {
    open();
    query.RecNo(3);
    query.Filter("CostType = 3");
    EXPECT_EQ(query.RecordCount(), 4);
    query.Filtered(true);
    EXPECT_THAT(names(), ElementsAre("Alpha", "beta"));
    EXPECT_EQ(query.RecNo(), 1);
    EXPECT_EQ(name(), "Alpha");
    query.Next();
    query.Next();
    EXPECT_TRUE(query.Eof());
    EXPECT_FALSE(query.Locate("Code", integer(2)));
    EXPECT_TRUE(query.Locate("Code", integer(7)));
    EXPECT_EQ(query.RecNo(), 2);
    EXPECT_EQ(query.rowOf(1), 3U);
    query.Filter("Name like 'ع*' or Rate is null");
    EXPECT_THAT(names(), ElementsAre("عمده", "تک"));
    EXPECT_EQ(query.RecNo(), 2);
    query.Filter("Code = 99");
    EXPECT_TRUE(query.IsEmpty());
    EXPECT_EQ(name(), "");
    query.Filtered(false);
    EXPECT_EQ(query.RecordCount(), 4);
    query.Filter("");
    query.Filtered(true);
    EXPECT_EQ(query.RecordCount(), 4);
}

TEST_F(DataSet, filterHoldsOverOpenAndRequery) {
    query.Filter("Code > 1");
    query.Filtered(true);
    open();
    EXPECT_THAT(names(), ElementsAre("تک", "beta"));
    session.expect(kSelect, levelRows());
    query.Requery();
    EXPECT_THAT(names(), ElementsAre("تک", "beta"));
}

TEST_F(DataSet, filterThatIsNotUnderstoodChangesNothing) {
    open();
    query.Filter("Code = 7");
    query.Filtered(true);
    EXPECT_EQ(usageErrorOf([&] { query.Filter("Code = "); }),
              "List_QUR.Filter: position 8: expected a field or a value, found the end");
    EXPECT_EQ(query.Filter(), "Code = 7");
    EXPECT_EQ(query.RecordCount(), 1);
    query.Close();
    query.Filter("Kind = 1");
    session.expect(kSelect, levelRows());
    EXPECT_EQ(usageErrorOf([&] { query.Open(); }), "List_QUR.Filter: position 1: there is no field Kind");
    EXPECT_FALSE(query.Active());
}

// Calculated fields

TEST_F(DataSet, calculatesFieldsForTheRecordAtHand) {
    query.AddCalculatedField("Row", FieldType::Integer);
    query.AddCalculatedField("Label", FieldType::Text, 50);
    query.OnCalcFields = [](TDataSet& rows) {
        EXPECT_EQ(rows.State(), dsCalcFields);
        rows.FieldByName("Row") = rows.RecNo();
        rows.FieldByName("Label") = rows.FieldByName("Row").AsString() + ": " + rows.FieldByName("Name").AsString();
    };
    open();
    EXPECT_EQ(query.FieldCount(), 6);
    EXPECT_TRUE(query.FieldByName("Row").Calculated());
    EXPECT_EQ(query.FieldByName("Row").AsInteger(), 1);
    query.Last();
    EXPECT_EQ(query.FieldByName("Row").AsInteger(), 4);
    EXPECT_EQ(query.textAt(1, 5), "2: تک");
    EXPECT_EQ(query.RecNo(), 4);
    EXPECT_EQ(query.State(), dsBrowse);
    EXPECT_TRUE(query.Locate("Label", text("3: Alpha")));
    query.Filter("Row = 1");
    query.Filtered(true);
    EXPECT_EQ(query.RecordCount(), 1);
    EXPECT_EQ(usageErrorOf([&] { query.AddCalculatedField("Late", FieldType::Integer); }),
              "List_QUR.AddCalculatedField: the data set is open; call Close first");
}

TEST_F(DataSet, calculationMayWriteCalculatedFieldsOnly) {
    query.AddCalculatedField("Row", FieldType::Integer);
    open();
    EXPECT_TRUE(query.FieldByName("Row").IsNull());
    query.OnCalcFields = [](TDataSet& rows) { rows.FieldByName("Name") = "x"; };
    EXPECT_EQ(usageErrorOf([&] { static_cast<void>(query.FieldByName("Row").AsInteger()); }),
              "List_QUR.Name: OnCalcFields may assign calculated fields only");
    EXPECT_EQ(query.State(), dsBrowse);
    query.Edit();
    EXPECT_EQ(usageErrorOf([&] { query.FieldByName("Row") = 1; }),
              "List_QUR.Row: the field is calculated; it is assigned in OnCalcFields only");
}

TEST_F(DataSet, anotherStatementTakesItsPlaceOnceItsRowsAreThere) {
    open();
    query.Filter("Code = 2");
    query.Filtered(true);
    const std::vector<std::string> before = names();
    ASSERT_EQ(before.size(), 1U);
    const std::string narrowed = std::string(kSelect) + " where Code > 1";
    session.expectError(narrowed, DatabaseError(ErrorCategory::Other, "HY008", 0, "given up"));
    EXPECT_THROW(query.OpenInstead(narrowed), DatabaseError);
    EXPECT_EQ(query.SQL.Text(), kSelect);
    EXPECT_EQ(names(), before);
    EXPECT_TRUE(query.Filtered());
    EXPECT_EQ(usageErrorOf([&] { query.OpenInstead(""); }),
              "List_QUR.OpenInstead: the statement is empty; set SQL first");

    session.expect(narrowed, levelRows());
    query.OpenInstead(narrowed);
    EXPECT_EQ(query.SQL.Text(), narrowed);
    EXPECT_FALSE(query.Filtered());
    EXPECT_GT(names().size(), 1U);
    EXPECT_EQ(query.RecNo(), 1);

    query.Close();
    session.expect(kSelect, levelRows());
    query.OpenInstead(kSelect);
    EXPECT_TRUE(query.Active());
}

}  // namespace
}  // namespace basalt
