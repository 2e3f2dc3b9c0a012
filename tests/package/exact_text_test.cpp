// What goes into an input and comes out again is the same.
#include "package/screens/exact_text.h"

#include <gtest/gtest.h>

namespace basalt {
namespace {

TEST(ExactText, isTheSameWhenItComesBack) {
    for (const char* text : {"", "همکار", "\uFEFFهمکار", "\uFEFF", "a\uFEFFb", "\U0001F600"})
        EXPECT_EQ(exactText(text).toStdString(), text);
}

TEST(ExactText, whatIsNoTextIsShownAsSuch) {
    EXPECT_EQ(exactText("a\xFF").toStdString(), "a\uFFFD");
}

}  // namespace
}  // namespace basalt
