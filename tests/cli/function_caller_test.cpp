// What a call reports: driven by functions made up here, over a host on a scripted session.
#include "host/calls/function_caller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ado/query.h"
#include "package/services.h"
#include "tests/support/scripted_session.h"

namespace basalt::host {
namespace {

class SampleStore final : public TDataModule {
public:
    SampleStore() : TDataModule("SampleStore") { own(List_QUR); }
    TADOQuery List_QUR{connection(), "List_QUR"};
};

RowSet levels() {
    RowSet rows({{.name = "Code", .type = FieldType::Integer},
                 {.name = "Name", .type = FieldType::Text},
                 {.name = "Price", .type = FieldType::Decimal, .precision = 23, .scale = 9},
                 {.name = "Active", .type = FieldType::Boolean}});
    rows.column(0).appendInt(3);
    rows.column(1).appendText("عمده");
    rows.column(2).appendDecimal(12500500000000);
    rows.column(3).appendInt(1);
    rows.finishRow();
    rows.column(0).appendInt(4);
    rows.column(1).appendNull();
    rows.column(2).appendDecimal(0);
    rows.column(3).appendInt(0);
    rows.finishRow();
    return rows;
}

class FunctionCallerTest : public ::testing::Test {
protected:
    FunctionCallerTest() {
        registry_.add(FunctionEntry{"Open", "sample", "Opens the list.", {}, "integer", [](FunctionCall& call) {
                                        TADOQuery& query = call.store<SampleStore>().List_QUR;
                                        if (!query.Active()) query.SQL = "select * from levels";
                                        query.Open();
                                        call.result(query.RecordCount());
                                    }});
        registry_.add(FunctionEntry{"Ask",
                                    "sample",
                                    "Asks twice.",
                                    {inOut("Count", "integer"), out("Name", "text")},
                                    "flag",
                                    [](FunctionCall& call) {
                                        call.output("Count", call.integer("Count") + 1);
                                        const bool first = MsgDeleteRow();
                                        const int second =
                                            ShowSmartMessage(TConfirmationMessage{10006}, {"الف", "ب"},
                                                             {TMessageButton::Yes, TMessageButton::Cancel});
                                        ShowSmartMessage(TErrorMessage{30055}, {"x"});
                                        SetUserEvent(spPriceLevels, prEdit, "3", false, true);
                                        call.output("Name", "after");
                                        call.result(first && second == mrYes);
                                    }});
        registry_.add(FunctionEntry{"Weigh",
                                    "sample",
                                    "Fails before it has set anything.",
                                    {inOut("Weight", "amount"), inOut("Count", "integer"), inOut("Gross", "flag"),
                                     inOut("Unit", "text"), inOut("Tare", "amount")},
                                    "flag",
                                    [](FunctionCall&) { throw UsageError("no scale"); }});
        registry_.add(FunctionEntry{"Shared", "sample", "Sends a statement that fails.", {}, "", [](FunctionCall&) {
                                        DM().SharedQuery.Close();
                                        DM().SharedQuery.SQL = "delete x";
                                        DM().SharedQuery.ExecSQL();
                                    }});
    }

    ScriptedSession session_;
    ReferenceHost host_{session_,
                        {.workstationName = "test", .userDataFolder = {}, .persistOptions = false, .process = {}}};
    AttachedHost attached_{host_};
    Registry registry_;
    FunctionCaller caller_{registry_, host_};
};

TEST_F(FunctionCallerTest, reportsRowsOfTheQueriesThatItTouched) {
    session_.expect("select * from levels", levels());
    EXPECT_EQ(
        toDatum(caller_.call("open", {}, {})).toJson(),
        R"({"function":"Open","result":2,"out":{},)"
        R"("statements":[{"component":"List_QUR","action":"open","text":"select * from levels"}],)"
        R"("queries":{"List_QUR":{"text":"select * from levels","active":true,"rows":[)"
        R"({"Code":3,"Name":"عمده","Price":12500.5,"Active":true},{"Code":4,"Name":null,"Price":0,"Active":false}]}},)"
        R"("messages":[],"events":[],"started":[],"error":null})");
}

TEST_F(FunctionCallerTest, storesLiveFromCallToCall) {
    session_.expect("select * from levels", levels());
    EXPECT_EQ(caller_.call("Open", {}, {}).result, Datum(2));
    // The query is open already, so nothing is sent and nothing is touched.
    const CallReport again = caller_.call("Open", {}, {});
    EXPECT_EQ(again.result, Datum(2));
    EXPECT_TRUE(again.statements.empty());
}

TEST_F(FunctionCallerTest, failedStatementIsReportedWithItsError) {
    session_.expectError("delete x", DatabaseError(ErrorCategory::Constraint, "23000", 547, "still in use"));
    EXPECT_EQ(toDatum(caller_.call("Shared", {}, {})).toJson(),
              R"({"function":"Shared","result":null,"out":{},)"
              R"("statements":[{"component":"DM.SharedQuery","action":"exec","text":"delete x"}],)"
              R"("queries":{"DM.SharedQuery":{"text":"delete x","active":false,"rows":[]}},)"
              R"("messages":[],"events":[],"started":[],"error":{"type":"DatabaseError","message":"still in use"}})");
}

TEST_F(FunctionCallerTest, questionWithoutAnAnswerFailsAndOutputsStandAsTheyWere) {
    EXPECT_EQ(toDatum(caller_.call("Ask", {.named = {}, .positional = {1}}, {})).toJson(),
              R"({"function":"Ask","result":null,"out":{"Count":2,"Name":null},"statements":[],"queries":{},)"
              R"("messages":[{"operation":"MsgDeleteRow","kind":null,"number":null,"arguments":[],"answer":null}],)"
              R"("events":[],"started":[],"error":{"type":"UsageError",)"
              R"("message":"the question MsgDeleteRow has no answer; it can be one of: yes, no"}})");
}

TEST_F(FunctionCallerTest, whatWentInComesBackAsNumbersWhenTheCallFails) {
    const CallReport report =
        caller_.call("Weigh", {.named = {}, .positional = {"0.250", "12", "yes", "007", "-7"}}, {});
    ASSERT_TRUE(report.error);
    EXPECT_EQ(Datum::record(report.out).toJson(), R"({"Weight":0.25,"Count":12,"Gross":true,"Unit":"007","Tare":-7})");
}

TEST_F(FunctionCallerTest, answerThatIsNoButtonOfTheQuestionFails) {
    const CallReport report =
        caller_.call("Ask", {.named = {}, .positional = {1}}, {*Answer::parse("yes"), *Answer::parse("no")});
    ASSERT_TRUE(report.error);
    EXPECT_EQ(
        report.error->message,
        "the answer no does not fit the question ShowSmartMessage 10006 (الف | ب); it can be one of: yes, cancel");
}

// The program is given the password; the report goes to screens and files.
TEST_F(FunctionCallerTest, passwordOfTheConnectionStaysOutOfTheReport) {
    struct Programs final : ProgramService {
        StartResult start(const ProgramStart& program) override {
            given = program.parameters;
            return {.started = true};
        }
        std::unique_ptr<ProgramLibrary> load(const std::string& /*name*/) override { return nullptr; }
        std::string given;
    };
    Programs programs;
    host_.setPrograms(programs);
    host_.DM().ADOConnection1.ConnectionString = "Driver=FreeTDS;Server=shop;PWD={top;secret};UID=sa";
    registry_.add(FunctionEntry{"Start", "sample", "Starts a program.", {}, "", [](FunctionCall&) {
                                    const std::string& text = DM().ADOConnection1.ConnectionString;
                                    (void)basalt::Programs().start(
                                        {.verb = "open", .file = "agent.exe", .parameters = '"' + text + "\" \"97\""});
                                }});
    EXPECT_EQ(toDatum(caller_.call("Start", {}, {})).toJson(),
              R"({"function":"Start","result":null,"out":{},"statements":[],"queries":{},"messages":[],"events":[],)"
              R"("started":[{"verb":"open","file":"agent.exe",)"
              R"("parameters":"\"Driver=FreeTDS;Server=shop;PWD=***;UID=sa\" \"97\"","show":0}],"error":null})");
    EXPECT_EQ(programs.given, R"("Driver=FreeTDS;Server=shop;PWD={top;secret};UID=sa" "97")");
}

TEST_F(FunctionCallerTest, unknownFunctionHasNotStarted) {
    const CallReport report = caller_.call("Opn", {}, {});
    EXPECT_FALSE(report.started);
    ASSERT_TRUE(report.error);
    EXPECT_EQ(report.error->type, "UsageError");
    EXPECT_EQ(report.error->message, "there is no function Opn; near names: Open");
}

TEST_F(FunctionCallerTest, answerThatNobodyAskedForFails) {
    session_.expect("select * from levels", levels());
    const CallReport report = caller_.call("Open", {}, {*Answer::parse("yes")});
    ASSERT_TRUE(report.error);
    EXPECT_EQ(report.error->message, "the answer yes was not asked for");
    EXPECT_EQ(report.result, Datum(2));
}

struct AnswerRow {
    std::string text;
    std::optional<int> value;
    bool named;
};

class Answers : public ::testing::TestWithParam<AnswerRow> {};

TEST_P(Answers, areWordsOrNumbers) {
    const std::optional<Answer> answer = Answer::parse(GetParam().text);
    ASSERT_EQ(answer.has_value(), GetParam().value.has_value());
    if (!answer) return;
    EXPECT_EQ(answer->value, *GetParam().value);
    EXPECT_EQ(answer->named, GetParam().named);
}

INSTANTIATE_TEST_SUITE_P(Table, Answers,
                         ::testing::Values(AnswerRow{"ok", 1, true}, AnswerRow{"cancel", 2, true},
                                           AnswerRow{"yes", 6, true}, AnswerRow{"no", 7, true},
                                           AnswerRow{"6", 6, false}, AnswerRow{"-1", -1, false},
                                           AnswerRow{"", std::nullopt, false}, AnswerRow{"Yes", std::nullopt, false},
                                           AnswerRow{"6x", std::nullopt, false},
                                           AnswerRow{"99999999999", std::nullopt, false}));

}  // namespace
}  // namespace basalt::host
