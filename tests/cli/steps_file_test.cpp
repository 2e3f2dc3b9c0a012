#include "host/steps/steps_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/steps/step_script.h"
#include "host/steps/steps_error.h"

namespace basalt::host {
namespace {

template <class Kind>
Kind only(const std::string& text) {
    const std::vector<Step> steps = parseSteps(text, "a.steps");
    EXPECT_EQ(steps.size(), 1U);
    return std::get<Kind>(steps.at(0).action);
}

TEST(StepsFile, commentsAndEmptyLinesCountAsLinesOnly) {
    const std::vector<Step> steps =
        parseSteps("\xEF\xBB\xBF# title\r\n\r\n  click Edit_BTN\r\n# end\nclear Name_EDT", "a.steps");
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_EQ(steps[0].line, 3);
    EXPECT_EQ(std::get<ClickStep>(steps[0].action).object, "Edit_BTN");
    EXPECT_EQ(steps[1].line, 5);
    EXPECT_EQ(std::get<ClearStep>(steps[1].action).object, "Name_EDT");
}

TEST(StepsFile, actions) {
    EXPECT_EQ(only<DoubleClickStep>("dblclick GroupList_GRD").object, "GroupList_GRD");
    EXPECT_EQ(only<KeyStep>("key - Ctrl+C").object, "-");
    EXPECT_EQ(only<KeyStep>("key - Ctrl+C").key, QKeyCombination(Qt::CTRL, Qt::Key_C));
    EXPECT_EQ(only<RowStep>("row GroupList_GRD 3").row, 3);
    EXPECT_EQ(only<TabStep>("tab Tab_TBC 1").tab, 1);
    EXPECT_EQ(only<ChooseStep>("choose Type_CMB 2").item, 2);
    EXPECT_EQ(only<AnswerStep>("answer cancel").answer.value, mrCancel);
    EXPECT_EQ(only<AnswerStep>("answer 7").answer.value, 7);
    EXPECT_EQ(only<AnswerStep>("answer ۷").answer.value, 7);
    EXPECT_EQ(only<AnswerStep>("answer -١٢").answer.value, -12);
    EXPECT_EQ(only<ShotStep>("shot out/first picture.png").file, "out/first picture.png");
    static_cast<void>(only<NamesStep>("names"));
}

TEST(StepsFile, freeTextIsKeptToTheLetterBehindOneBlank) {
    EXPECT_EQ(only<TypeStep>("type Name_EDT  سطح ویژه ").text, " سطح ویژه ");
    EXPECT_EQ(only<ExpectText>("expect text Name_EDT").text, "");
    EXPECT_EQ(only<ExpectText>("expect text Name_EDT a # b").text, "a # b");
    const auto cell = only<ExpectCell>("expect cell GroupList_GRD 1 Name عمده فروشی");
    EXPECT_EQ(cell.row, 1);
    EXPECT_EQ(cell.column, "Name");
    EXPECT_EQ(cell.text, "عمده فروشی");
}

TEST(StepsFile, statementsWriteLineBreaksAndTabsAsTwoCharacters) {
    EXPECT_EQ(only<ExpectStatement>(R"(expect statement select 1\n WHERE a = '\\n'\t)").text,
              "select 1\n WHERE a = '\\n'\t");
    EXPECT_EQ(only<ExpectStatement>(R"(expect statement a\b)").text, "a\\b");
    EXPECT_EQ(only<ExpectUnsent>(R"(expect unsent update\n)").beginning, "update\n");
}

TEST(StepsFile, messages) {
    const auto bare = only<ExpectMessage>("expect message MsgDeleteRow");
    EXPECT_EQ(bare.operation, "MsgDeleteRow");
    EXPECT_FALSE(bare.number);
    EXPECT_FALSE(bare.arguments);
    const auto words = only<ExpectMessage>("expect message MsgRepeatedField نام | سطح قیمتی");
    EXPECT_THAT(*words.arguments, ::testing::ElementsAre("نام", "سطح قیمتی"));
    const auto smart = only<ExpectMessage>("expect message ShowSmartMessage 10006 الف | ب");
    EXPECT_EQ(smart.number, 10006);
    EXPECT_THAT(*smart.arguments, ::testing::ElementsAre("الف", "ب"));
    const auto numberOnly = only<ExpectMessage>("expect message ShowSmartMessage 10006");
    EXPECT_EQ(numberOnly.number, 10006);
    EXPECT_FALSE(numberOnly.arguments);
    // Only numbered messages have a number; elsewhere digits are a word.
    const auto digits = only<ExpectMessage>("expect message MsgDeleteItem 12");
    EXPECT_FALSE(digits.number);
    EXPECT_THAT(*digits.arguments, ::testing::ElementsAre("12"));
}

struct Malformed {
    std::string name;
    std::string text;
    std::string message;
};

class MalformedSteps : public ::testing::TestWithParam<Malformed> {};

TEST_P(MalformedSteps, nameFileLineAndWhatWasFound) {
    try {
        (void)parseSteps(GetParam().text, "a.steps");
        FAIL() << "no error";
    } catch (const StepsError& error) {
        EXPECT_THAT(error.what(), ::testing::StartsWith(GetParam().message));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, MalformedSteps,
    ::testing::Values(
        Malformed{"unknownStep", "click A\npress B", "a.steps:2: expected a step (answer, choose, clear, click"},
        Malformed{"unknownExpectation", "expect color A red", "a.steps:1: expected what to expect (cell, disabled"},
        Malformed{"nothingToClick", "\nclick ", "a.steps:2: expected an object, found the end of the line"},
        Malformed{"tooMuch", "click A B", "a.steps:1: expected the end of the line, found \"B\""},
        Malformed{"exportFormat", "export G doc a.doc",
                  "a.steps:1: expected a format (csv, xlsx or pdf), found \"doc\""},
        Malformed{"exportFile", "export G csv ", "a.steps:1: expected the file to write, found the end of the line"},
        Malformed{"unsentStatement", "expect unsent",
                  "a.steps:1: expected how a statement begins, found the end of the line"},
        Malformed{"fileName", "expect file", "a.steps:1: expected a file, found the end of the line"},
        Malformed{"rowNegative", "row G -1", "a.steps:1: expected a row (a number from 0), found \"-1\""},
        Malformed{"rowNoNumber", "row G x", "a.steps:1: expected a row (a number from 0), found \"x\""},
        Malformed{"negativeCount", "expect rows G -1",
                  "a.steps:1: expected a count of rows (a number from 0), found \"-1\""},
        Malformed{"hugeNumber", "row G 99999999999", "a.steps:1: expected a row (a number from 0)"},
        Malformed{"badAnswer", "answer maybe", "a.steps:1: expected an answer (yes, no, cancel, ok or a number)"},
        Malformed{"noSuchKey", "click A\nkey - Hyperdrive",
                  "a.steps:2: expected a key (F3, Enter, Ctrl+C), found \"Hyperdrive\""},
        Malformed{"otherPicture", "shot a.jpg",
                  "a.steps:1: expected the picture's file (shot FILE.png), found \"a.jpg\""},
        Malformed{"noPicture", "shot ", "a.steps:1: expected the picture's file (shot FILE.png), found the end"},
        Malformed{"noSuffix", "shot png", "a.steps:1: expected the picture's file (shot FILE.png), found \"png\""},
        Malformed{"notUtf8", "click A\nexpect text A \xD3\xE1", "a.steps:2: the line is not UTF-8"},
        Malformed{"remarkNotUtf8", "# \xFF\nclick A", "a.steps:1: the line is not UTF-8"},
        Malformed{"nothingToType", "type A", "a.steps:1: expected the text to type"}),
    [](const auto& test) { return test.param.name; });

StepScript scriptOf(const std::string& text) {
    return {parseSteps(text, "a.steps"), "a.steps"};
}

TEST(StepScript, anAnswerBeforeTheActionIsKept) {
    StepScript script = scriptOf("answer yes\nclick A");
    script.advance();
    script.advance();
    EXPECT_EQ(script.takeAnswer()->value, mrYes);
    EXPECT_FALSE(script.takeAnswer());
    EXPECT_EQ(script.unusedAnswer(), nullptr);
}

TEST(StepScript, anAnswerBehindTheActionIsTakenAheadOverExpectations) {
    StepScript script = scriptOf("click A\nexpect message MsgDeleteRow\nanswer no\nanswer ok\nclick B\nanswer yes");
    script.advance();
    EXPECT_EQ(script.takeAnswer()->value, mrNo);
    EXPECT_EQ(script.takeAnswer()->value, mrOk);
    EXPECT_FALSE(script.takeAnswer()) << "the third belongs to the next action";
    while (script.current())
        script.advance();
    ASSERT_NE(script.unusedAnswer(), nullptr);
    EXPECT_EQ(script.unusedAnswer()->line, 6);
}

TEST(StepScript, keptAnswersComeBeforeThoseAhead) {
    StepScript script = scriptOf("answer yes\nclick A\nanswer no");
    script.advance();
    script.advance();
    EXPECT_EQ(script.takeAnswer()->value, mrYes);
    EXPECT_EQ(script.takeAnswer()->value, mrNo);
}

}  // namespace
}  // namespace basalt::host
