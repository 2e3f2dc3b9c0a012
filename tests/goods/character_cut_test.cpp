// Cutting texts by position.
#include "goods/character_cut.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace basalt {
namespace {

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();

struct Cut {
    const char* name;
    const char* text;
    int start;
    int count;
    const char* cut;
};
void PrintTo(const Cut& row, std::ostream* out) {
    *out << row.name;
}

class Cuts : public ::testing::TestWithParam<Cut> {};

TEST_P(Cuts, giveWhatLiesInside) {
    const Cut& row = GetParam();
    EXPECT_EQ(cutCharacters(row.text, row.start, row.count), row.cut);
}

INSTANTIATE_TEST_SUITE_P(
    Text, Cuts,
    ::testing::Values(Cut{"inside", "2812345", 3, 5, "12345"}, Cut{"all", "2812345", 1, 7, "2812345"},
                      Cut{"beyondTheEnd", "2812345", 6, 5, "45"}, Cut{"behindTheEnd", "2812345", 8, 5, ""},
                      Cut{"nothing", "2812345", 3, 0, ""}, Cut{"lessThanNothing", "2812345", 3, -1, ""},
                      Cut{"fromZero", "2812345", 0, 3, "28"}, Cut{"beforeTheBegin", "2812345", -3, 3, ""},
                      Cut{"fromBefore", "2812345", -3, 6, "28"}, Cut{"ofNothing", "", 1, 5, ""},
                      Cut{"largest", "2812345", 2, kMost, "812345"}, Cut{"largestStart", "2812345", kMost, kMost, ""},
                      Cut{"least", "2812345", kLeast, kMost, ""}, Cut{"leastCount", "2812345", 1, kLeast, ""},
                      Cut{"persian", "۲۸۱۲۳۴۵", 3, 2, "۱۲"}, Cut{"pairCountsTwice", "a😀b", 4, 1, "b"},
                      Cut{"pair", "a😀b", 2, 2, "😀"}, Cut{"firstHalfOfAPair", "a😀b", 2, 1, "\xEF\xBF\xBD"},
                      Cut{"secondHalfOfAPair", "a😀b", 3, 2,
                          "\xEF\xBF\xBD"
                          "b"},
                      Cut{"nothingOfAPair", "a😀b", 3, 0, ""}, Cut{"lessThanNothingOfAPair", "a😀b", 4, -1, ""},
                      Cut{"nothingBeforeAPair", "😀", 2, 0, ""}, Cut{"leastOfAPair", "a😀b", 3, kLeast, ""},
                      Cut{"strayByte",
                          "12\x80"
                          "34",
                          3, 2, "34"},
                      Cut{"cutShortCharacter", "12\xD9", 3, 1, "\xD9"}),
    [](const auto& row) { return row.param.name; });

TEST(OuterBlanks, areRemoved) {
    EXPECT_EQ(withoutOuterBlanks("  28 12\t\r\n"), "28 12");
    EXPECT_EQ(withoutOuterBlanks("28"), "28");
    EXPECT_EQ(withoutOuterBlanks(" \t "), "");
    EXPECT_EQ(withoutOuterBlanks(""), "");
    EXPECT_EQ(withoutOuterBlanks("۲۸ "), "۲۸");
}

TEST(Utf16, isWhatTheSystemTakes) {
    EXPECT_EQ(toUtf16(""), u"");
    EXPECT_EQ(toUtf16("برنج 1"), u"برنج 1");
    EXPECT_EQ(toUtf16("a😀"), u"a😀");
    EXPECT_EQ(toUtf16("a\xFF"
                      "b"),
              u"a\uFFFDb");
    EXPECT_EQ(toUtf16("\xED\xA0\x80"), u"\uFFFD");  // half a pair
    EXPECT_EQ(toUtf16("\xC0\xAF"), u"\uFFFD");      // a slash in disguise
    EXPECT_EQ(toUtf16("\xF4\x90\x80\x80"), u"\uFFFD");
}

}  // namespace
}  // namespace basalt
