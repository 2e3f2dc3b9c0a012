#include "host/services/script_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "ado/error.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::string_literals;

std::vector<std::string> linesOf(const std::string& bytes) {
    std::istringstream script(bytes);
    ScriptLines lines(script);
    std::vector<std::string> result;
    for (std::string line; lines.next(line);)
        result.push_back(line);
    return result;
}

TEST(ScriptLines, areUtf8WithoutAMark) {
    EXPECT_THAT(linesOf("select N'ب'\r\n\ngo"), ElementsAre("select N'ب'\r\n", "\n", "go"));
    EXPECT_THAT(linesOf("\ngo\n"), ElementsAre("\n", "go\n"));
    EXPECT_THAT(linesOf(""), IsEmpty());
}

TEST(ScriptLines, dropTheMarkOfUtf8) {
    EXPECT_THAT(linesOf("\xEF\xBB\xBF.tables\n"), ElementsAre(".tables\n"));
    EXPECT_THAT(linesOf("\xEF\xBB\xBF"), IsEmpty());
}

TEST(ScriptLines, keepWhatOnlyBeginsLikeAMark) {
    EXPECT_THAT(linesOf("\xEF\xBB"), ElementsAre("\xEF\xBB"));
    EXPECT_THAT(linesOf("\xEF\n2\n"), ElementsAre("\xEF\n", "2\n"));
    EXPECT_THAT(linesOf("\xFF"), ElementsAre("\xFF"));
}

TEST(ScriptLines, areConvertedFromUtf16) {
    // a, ب, a currency sign of three bytes and a face of two units, then the second line without a break.
    EXPECT_THAT(linesOf("\xFF\xFE\x61\0\x28\x06\xAC\x20\x3D\xD8\0\xDE\r\0\n\0\x62\0"s), ElementsAre("aب€😀\r\n", "b"));
    EXPECT_THAT(linesOf("\xFE\xFF\0\x61\x06\x28\x20\xAC\xD8\x3D\xDE\0\0\n"s), ElementsAre("aب€😀\n"));
    // A unit whose one byte is that of a line break is none.
    EXPECT_THAT(linesOf("\xFF\xFE\x0A\x06\n\0"s), ElementsAre("\xD8\x8A\n"));
    EXPECT_THAT(linesOf("\xFF\xFE"), IsEmpty());
}

TEST(ScriptLines, ofMalformedUtf16AreRefused) {
    for (const std::string& bytes :
         {"\xFF\xFE\x61"s, "\xFF\xFE\0\xDC"s, "\xFF\xFE\x3D\xD8"s, "\xFF\xFE\x3D\xD8\x61\0"s})
        EXPECT_THROW((void)linesOf(bytes), UsageError);
}

}  // namespace
}  // namespace basalt::host
