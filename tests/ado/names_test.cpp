#include "ado/names.h"

#include <gtest/gtest.h>

namespace basalt {
namespace {

TEST(Names, compareWithoutCaseInEveryScript) {
    EXPECT_TRUE(sameName("CostType", "costtype"));
    EXPECT_TRUE(sameName("ÄRGER", "ärger"));
    EXPECT_TRUE(sameName("", ""));
    EXPECT_TRUE(sameName("کد", "کد"));
    EXPECT_FALSE(sameName("Code", "Code2"));
    EXPECT_FALSE(sameName("Code2", "Code"));
    // The Persian kaf is another letter than the Arabic one.
    EXPECT_FALSE(sameName("کد", "كد"));
    EXPECT_FALSE(sameName("[", "{"));
}

TEST(Names, bytesThatAreNoTextCompareAsTheyAre) {
    EXPECT_TRUE(
        sameName("\xFF"
                 "a",
                 "\xFF"
                 "A"));
    EXPECT_FALSE(sameName("\xFF", "\xFE"));
}

TEST(Names, areQuotedInBrackets) {
    EXPECT_EQ(quotedName("desc"), "[desc]");
    EXPECT_EQ(quotedName("odd]name"), "[odd]]name]");
}

}  // namespace
}  // namespace basalt
