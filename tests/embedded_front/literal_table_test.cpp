#include <gtest/gtest.h>

#include "engines/embedded/lexer/lexer.h"

namespace basalt::embedded {
namespace {

LiteralTable tableOf(std::string_view sql) {
    Lexer lexer;
    lexer.scan(sql);
    return LiteralTable(lexer.literals());
}

bool fits(const LiteralTable& table, std::string_view sql) {
    Lexer lexer;
    lexer.scan(sql);
    return table.fits(lexer.literals());
}

TEST(LiteralTable, KeepsTextsWhenTheScannedOneIsGone) {
    LiteralTable table;
    {
        const std::string sql = "select 'a''b', N'', 5, 0xFF";
        table = tableOf(sql);
    }
    ASSERT_EQ(table.size(), 4U);
    EXPECT_EQ(table[0].text, "a'b");
    EXPECT_EQ(table[1].text, "");
    EXPECT_EQ(table[2].integer, 5);
    EXPECT_EQ(table[3].text, "\xFF");
}

TEST(LiteralTable, BoundLiteralsFitAnyValue) {
    const LiteralTable table = tableOf("5, 'abc'");
    EXPECT_TRUE(fits(table, "6, 'x'"));
    EXPECT_FALSE(fits(table, "6"));
}

TEST(LiteralTable, FixedLiteralsFitTheirOwnValueOnly) {
    const LiteralTable table = tableOf("5, 'abc', 1.5, 2e0");
    table.fix(1);
    EXPECT_TRUE(fits(table, "6, 'abc', 2.5, 3e0"));
    EXPECT_FALSE(fits(table, "6, 'abd', 2.5, 3e0"));
    table.fix(2);
    EXPECT_FALSE(fits(table, "6, 'abc', 2.5, 3e0"));
    table.fix(0);
    table.fix(3);
    EXPECT_TRUE(fits(table, "5, 'abc', 1.5, 2e0"));
    EXPECT_FALSE(fits(table, "5, 'abc', 1.5, 3e0"));
}

TEST(LiteralTable, LengthCountsUtf16Units) {
    const LiteralTable table = tableOf("N'عمده'");
    table.narrow(0, LiteralUse::Length);
    EXPECT_TRUE(fits(table, "N'abcd'"));
    EXPECT_FALSE(fits(table, "N'abc'"));
    EXPECT_TRUE(fits(table, "N'\xF0\x9F\x98\x80xy'"));
}

TEST(LiteralTable, NarrowingNeverWidens) {
    const LiteralTable table = tableOf("'a'");
    table.fix(0);
    table.narrow(0, LiteralUse::Bound);
    EXPECT_EQ(table.use(0), LiteralUse::Value);
}

}  // namespace
}  // namespace basalt::embedded
