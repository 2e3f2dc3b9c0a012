// The conditions that searching puts to the database, as full texts.
#include "host/screens/search_condition.h"

#include <gtest/gtest.h>

#include <QString>

#include "tests/ado/named_case.h"

namespace basalt::host {
namespace {

struct InputCase {
    const char* name;
    const char* field;
    const char* input;
    const char* condition;
};

class TextConditions : public ::testing::TestWithParam<InputCase> {};
TEST_P(TextConditions, foldAndEscape) {
    EXPECT_EQ(textCondition(GetParam().field, QString::fromUtf8(GetParam().input)), GetParam().condition);
}
INSTANTIATE_TEST_SUITE_P(
    All, TextConditions,
    ::testing::Values(InputCase{"empty", "Name", "", ""}, InputCase{"blanksOnly", "Name", "  ", ""},
                      InputCase{"plain", "Name", "سطح", "[Name] LIKE N'%سطح%'"},
                      InputCase{"arabicYeh", "Name", "علي", "[Name] LIKE N'%عل[یيى]%'"},
                      InputCase{"persianYeh", "Name", "علی", "[Name] LIKE N'%عل[یيى]%'"},
                      InputCase{"bothKafs", "Name", "كک", "[Name] LIKE N'%[کك][کك]%'"},
                      InputCase{"digits", "Name", "1۲٣", "[Name] LIKE N'%[1۱١][2۲٢][3۳٣]%'"},
                      InputCase{"blankIsHalfSpace", "Name", "ا ب", "[Name] LIKE N'%ا[ \u200C]ب%'"},
                      InputCase{"wildcards", "Name", "50%_[", "[Name] LIKE N'%[5۵٥][0۰٠][%][_][[]%'"},
                      InputCase{"quote", "Name", "O'Neil", "[Name] LIKE N'%O''Neil%'"},
                      InputCase{"bracketInField", "a]b", "x", "[a]]b] LIKE N'%x%'"}),
    NameOfCase());

class DigitConditions : public ::testing::TestWithParam<InputCase> {};
TEST_P(DigitConditions, matchTheBeginning) {
    EXPECT_EQ(digitsCondition(GetParam().field, QString::fromUtf8(GetParam().input)), GetParam().condition);
}
INSTANTIATE_TEST_SUITE_P(
    All, DigitConditions,
    ::testing::Values(InputCase{"empty", "Code", "", ""},
                      InputCase{"ascii", "Code", "12", "CAST([Code] AS NVARCHAR(40)) LIKE N'12%'"},
                      InputCase{"persian", "Code", "۱۲", "CAST([Code] AS NVARCHAR(40)) LIKE N'12%'"},
                      InputCase{"arabic", "Code", "١٢", "CAST([Code] AS NVARCHAR(40)) LIKE N'12%'"},
                      InputCase{"leadingZeros", "Code", "007", "CAST([Code] AS NVARCHAR(40)) LIKE N'7%'"},
                      InputCase{"zero", "Code", "0", "CAST([Code] AS NVARCHAR(40)) LIKE N'0%'"},
                      InputCase{"others", "Code", "';1", "CAST([Code] AS NVARCHAR(40)) LIKE N'1%'"},
                      InputCase{"noDigit", "Code", "abc", ""}),
    NameOfCase());

struct RangeCase {
    const char* name;
    const char* from;
    const char* to;
    const char* condition;
};
class RangeConditions : public ::testing::TestWithParam<RangeCase> {};
TEST_P(RangeConditions, boundNumbers) {
    EXPECT_EQ(rangeCondition("F1", QString::fromUtf8(GetParam().from), QString::fromUtf8(GetParam().to)),
              GetParam().condition);
}
INSTANTIATE_TEST_SUITE_P(
    All, RangeConditions,
    ::testing::Values(RangeCase{"open", "", "", ""}, RangeCase{"from", "1000", "", "[F1] >= 1000"},
                      RangeCase{"to", "", "۲٬۵۰۰٫۵", "[F1] <= 2500.5"},
                      RangeCase{"both", "-5", "1,000", "[F1] >= -5 AND [F1] <= 1000"},
                      RangeCase{"pointAlone", "5.", ".5", "[F1] >= 5 AND [F1] <= 0.5"},
                      RangeCase{"leadingZeros", "000000000000000000000000000000000000000000012", "", "[F1] >= 12"},
                      RangeCase{"longestWhole", "9999999999999999999999999999", "",
                                "[F1] >= 9999999999999999999999999999"},
                      RangeCase{"aboveAll", "12345678901234567890123456789012345678901234567890", "",
                                "[F1] >= 10000000000000000000000000000"},
                      RangeCase{"upToAll", "", "99999999999999999999999999999999999999999999999",
                                "[F1] <= 10000000000000000000000000000"},
                      RangeCase{"belowAll", "-99999999999999999999999999999999999999999999999", "",
                                "[F1] >= -10000000000000000000000000000"},
                      RangeCase{"fineFrom", "1.0000000000000000000000000000000000000000001", "", "[F1] > 1"},
                      RangeCase{"fineTo", "", "1.0000000000000000000000000000000000000000001", "[F1] <= 1"},
                      RangeCase{"fineNegative", "-1.00000000000000000000000000000000000000001",
                                "-1.00000000000000000000000000000000000000001", "[F1] >= -1 AND [F1] < -1"},
                      RangeCase{"groups", "-1,234,567", "۱٬۲۳۴٬۵۶۷٫۸۹", "[F1] >= -1234567 AND [F1] <= 1234567.89"},
                      RangeCase{"commaForADecimalMark", "1,5", "12،5", ""},
                      RangeCase{"halfAGroup", "1٬2", "1,2345", ""}, RangeCase{"longGroup", "1234,567", ",123", ""},
                      RangeCase{"marksOfTwoKinds", "1,234٬567", "1,234,", ""}, RangeCase{"noNumber", "-", ".", ""},
                      RangeCase{"injection", "1 OR 1=1", "", ""}),
    NameOfCase());

TEST(EqualCondition, tellsNumbersFromTexts) {
    EXPECT_EQ(equalCondition("Status", "2"), "[Status] = 2");
    EXPECT_EQ(equalCondition("Kind", "فروش"), "[Kind] = N'فروش'");
    EXPECT_EQ(equalCondition("Kind", "a'b"), "[Kind] = N'a''b'");
    EXPECT_EQ(equalCondition("Kind", ""), "");
}

TEST(JoinedConditions, leaveOutTheEmptyOnes) {
    EXPECT_EQ(joinedConditions({}), "");
    EXPECT_EQ(joinedConditions({"", ""}), "");
    EXPECT_EQ(joinedConditions({"", "[A] = 1"}), "[A] = 1");
    EXPECT_EQ(joinedConditions({"[A] = 1", "", "[B] = 2"}), "([A] = 1) AND ([B] = 2)");
}

}  // namespace
}  // namespace basalt::host
