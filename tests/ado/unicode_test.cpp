#include "ado/unicode.h"

#include <gtest/gtest.h>

#include "ado/value.h"

namespace basalt {
namespace {

TEST(Unicode, findsTheFirstByteThatIsNoUtf8) {
    EXPECT_EQ(findInvalidUtf8(""), kValidUtf8);
    EXPECT_EQ(findInvalidUtf8("select N'عمده😀'"), kValidUtf8);
    EXPECT_EQ(findInvalidUtf8("\xF4\x8F\xBF\xBF"), kValidUtf8);  // the last character
    EXPECT_EQ(findInvalidUtf8("twelve bytes\xFF"), 12U);
    EXPECT_EQ(findInvalidUtf8("a\xC0\xAF"), 1U);         // a slash in disguise
    EXPECT_EQ(findInvalidUtf8("\xE0\x9F\xBF"), 0U);      // two bytes would do
    EXPECT_EQ(findInvalidUtf8("\xED\xA0\x80"), 0U);      // half a pair
    EXPECT_EQ(findInvalidUtf8("\xF0\x8F\xBF\xBF"), 0U);  // three bytes would do
    EXPECT_EQ(findInvalidUtf8("\xF4\x90\x80\x80"), 0U);  // beyond the last character
    EXPECT_EQ(findInvalidUtf8("عم\xD8"), 4U);            // cut off
    EXPECT_EQ(findInvalidUtf8("\xF0\x9F\x98"), 0U);
}

TEST(Unicode, readsCharacterByCharacter) {
    const std::string_view text = "aع😀\xFF";
    std::size_t offset = 0;
    EXPECT_EQ(nextCharacter(text, offset), U'a');
    EXPECT_EQ(nextCharacter(text, offset), U'ع');
    EXPECT_EQ(nextCharacter(text, offset), U'😀');
    EXPECT_EQ(offset, 7U);
    EXPECT_EQ(nextCharacter(text, offset), U'\uFFFD');
    EXPECT_EQ(offset, text.size());
}

TEST(Unicode, countsInUnitsAndNeverCutsAPair) {
    const std::string_view text = "عa😀b";
    EXPECT_EQ(utf16Offset(text, -1), 0U);
    EXPECT_EQ(utf16Offset(text, 0), 0U);
    EXPECT_EQ(utf16Offset(text, 1), 2U);
    EXPECT_EQ(utf16Offset(text, 2), 3U);
    EXPECT_EQ(utf16Offset(text, 3), 3U);  // within the pair
    EXPECT_EQ(utf16Offset(text, 4), 7U);
    EXPECT_EQ(utf16Offset(text, 5), text.size());
    EXPECT_EQ(utf16Offset(text, 99), text.size());
    EXPECT_EQ(utf16Offset(text, static_cast<std::int64_t>(utf16Length(text))), text.size());
}

}  // namespace
}  // namespace basalt
