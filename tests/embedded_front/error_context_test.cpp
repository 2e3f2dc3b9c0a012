#include "engines/embedded/lexer/error_context.h"

#include <gtest/gtest.h>

#include <string>

namespace basalt::embedded {
namespace {

SourceRange rangeOf(std::string_view text, std::string_view part) {
    const auto begin = static_cast<std::uint32_t>(text.find(part));
    return {begin, begin + static_cast<std::uint32_t>(part.size())};
}

TEST(Locate, CountsLinesAndCharactersFromOne) {
    EXPECT_EQ(locate("abc", 0).line, 1U);
    EXPECT_EQ(locate("abc", 2).column, 3U);
    EXPECT_EQ(locate("a\nb", 2).line, 2U);
    EXPECT_EQ(locate("a\r\nb", 3).line, 2U);
    EXPECT_EQ(locate("a\rb", 2).line, 2U);
    EXPECT_EQ(locate("a\r\nb", 3).column, 1U);
    EXPECT_EQ(locate("کالا x", 9).column, 6U);
    EXPECT_EQ(locate("abc", 99).column, 4U);
}

TEST(DisplayWidth, CountsColumns) {
    EXPECT_EQ(displayWidth("abc"), 3U);
    EXPECT_EQ(displayWidth("کالا"), 4U);
    EXPECT_EQ(displayWidth("e\xCC\x81"), 1U);                     // a combining accent
    EXPECT_EQ(displayWidth("\xD9\x85\xD9\x8E"), 1U);              // an Arabic vowel mark
    EXPECT_EQ(displayWidth("\xE6\xBC\xA2\xE5\xAD\x97"), 4U);      // two wide characters
    EXPECT_EQ(displayWidth("\xD9\x85\xE2\x80\x8C\xD8\xB4"), 2U);  // a zero-width joiner between two letters
    EXPECT_EQ(displayWidth(""), 0U);
}

TEST(RenderContext, MarksThePlace) {
    const std::string sql = "select Code\n  from T where from = 1";
    EXPECT_EQ(renderContext(sql, {27, 31}),
              "Line 2, column 16:\n"
              "  from T where from = 1\n"
              "               ^^^^");
}

TEST(RenderContext, StandsBelowPersianText) {
    const std::string sql = "where نام = 'عمده' x";
    EXPECT_EQ(renderContext(sql, rangeOf(sql, "x")),
              "Line 1, column 20:\n"
              "where نام = 'عمده' x\n"
              "                   ^");
}

TEST(RenderContext, StandsBelowWideAndCombinedCharacters) {
    const std::string sql = "\xE6\xBC\xA2 e\xCC\x81 x";
    EXPECT_EQ(renderContext(sql, rangeOf(sql, "x")), "Line 1, column 6:\n" + sql + "\n     ^");
}

TEST(RenderContext, ShowsTabsAsBlanks) {
    const std::string sql = "\tselect\tx";
    EXPECT_EQ(renderContext(sql, rangeOf(sql, "x")), "Line 1, column 9:\n select x\n        ^");
}

TEST(RenderContext, MarksTheEndOfTheText) {
    EXPECT_EQ(renderContext("select", {6, 6}), "Line 1, column 7:\nselect\n      ^");
    EXPECT_EQ(renderContext("", {0, 0}), "Line 1, column 1:\n\n^");
}

TEST(RenderContext, ShowsPartOfALongLine) {
    const std::string sql = "select " + std::string(300, 'a') + " from t where " + std::string(300, 'b');
    const std::string shown = renderContext(sql, rangeOf(sql, "where"));
    const std::string line = shown.substr(shown.find('\n') + 1);
    const std::string first = line.substr(0, line.find('\n'));
    const std::string mark = line.substr(line.find('\n') + 1);
    EXPECT_LE(displayWidth(first), 102U);
    EXPECT_EQ(first.substr(0, 3), "...");
    EXPECT_EQ(first.substr(first.size() - 3), "...");
    EXPECT_EQ(mark.find('^'), first.find("where"));
    EXPECT_EQ(mark.size() - mark.find('^'), 5U);
}

TEST(RenderContext, MarksOnlyTheFirstLineOfARange) {
    const std::string sql = "a 'b\nc' d";
    EXPECT_EQ(renderContext(sql, {2, 7}), "Line 1, column 3:\na 'b\n  ^^");
}

TEST(StatementError, CarriesNumberStateAndStatement) {
    const DatabaseError error = statementError(ErrorCategory::Syntax, 102, "Incorrect syntax near 'x'.", "x y", {0, 1});
    EXPECT_EQ(error.nativeCode(), 102);
    EXPECT_EQ(error.sqlState(), "42000");
    EXPECT_EQ(error.statement(), "x y");
    EXPECT_STREQ(error.what(), "Incorrect syntax near 'x'.\nLine 1, column 1:\nx y\n^");
}

}  // namespace
}  // namespace basalt::embedded
