#include "ado/display_width.h"

#include <gtest/gtest.h>

namespace basalt {
namespace {

TEST(DisplayWidth, countsWhatIsSeen) {
    EXPECT_EQ(displayWidth(U'a'), 1U);
    EXPECT_EQ(displayWidth(U'ی'), 1U);
    EXPECT_EQ(displayWidth(U'本'), 2U);
    EXPECT_EQ(displayWidth(U'Ａ'), 2U);
    EXPECT_EQ(displayWidth(U'\u064F'), 0U) << "a vowel above a letter";
    EXPECT_EQ(displayWidth(U'\u200C'), 0U) << "what keeps two letters apart";
}

}  // namespace
}  // namespace basalt
