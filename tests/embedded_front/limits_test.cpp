// Batches that would take a program without limits down.
#include <gtest/gtest.h>

#include <string>

#include "engines/embedded/parser/parser.h"
#include "engines/embedded/printer/printer.h"

namespace basalt::embedded {
namespace {

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

void expectLimit(const std::string& sql, int number) {
    try {
        static_cast<void>(parse(sql));
        ADD_FAILURE() << "accepted: " << sql.substr(0, 60);
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Limit) << sql.substr(0, 60);
        EXPECT_EQ(error.nativeCode(), number) << sql.substr(0, 60);
    }
}

TEST(Limits, NestingIsBounded) {
    constexpr int kMany = 5000;
    expectLimit("select " + repeated("(", kMany) + "1" + repeated(")", kMany), 191);
    expectLimit("select " + repeated("-", 1) + repeated(" -", kMany) + "1", 191);
    expectLimit("select " + repeated("~", kMany) + "1", 191);
    expectLimit("select 1 where " + repeated("not ", kMany) + "1=1", 191);
    expectLimit(repeated("select (", kMany) + "1" + repeated(")", kMany), 191);
    expectLimit(repeated("begin ", kMany) + "print 1" + repeated(" end", kMany), 191);
    expectLimit(repeated("if 1=1 ", kMany) + "print 1", 191);
    expectLimit(repeated("while 1=1 ", kMany) + "print 1", 191);
    expectLimit("select 1 from " + repeated("(select 1 a from ", kMany) + "t" + repeated(") x", kMany), 191);
    expectLimit("select 1 from " + repeated("(", kMany) + "t" + repeated(")", kMany), 191);
    expectLimit(repeated("(", kMany) + "select 1" + repeated(")", kMany), 191);
    expectLimit("select " + repeated("case when 1=1 then ", kMany) + "1" + repeated(" end", kMany), 191);
    expectLimit("select " + repeated("isnull(", kMany) + "1" + repeated(",0)", kMany), 191);
    expectLimit(repeated("begin try ", kMany) + repeated("end try begin catch end catch ", kMany), 191);
    expectLimit("select 1 from a" + repeated(" join a", kMany) + repeated(" on 1=1", kMany), 191);
}

TEST(Limits, LongChainsAreBounded) {
    expectLimit("select 1" + repeated(" + 1", 100'000), 191);
    expectLimit("select 1 where 1=1" + repeated(" and 1=1", 100'000), 191);
    expectLimit("select 1" + repeated(" union all select 1", 100'000), 191);
    expectLimit("select 1 from t" + repeated(" cross join t", 100'000), 191);
    expectLimit("select 1" + repeated(" collate x", 100'000), 191);
}

TEST(Limits, OrdinaryDepthIsFine) {
    constexpr int kDepth = 60;
    EXPECT_EQ(parse("select " + repeated("(", kDepth) + "1" + repeated(")", kDepth)).statements.size(), 1U);
    EXPECT_EQ(parse("select 1" + repeated(" + 1", 900)).statements.size(), 1U);
    EXPECT_EQ(parse("select 1 where x in (1" + repeated(",1", 50'000) + ")").statements.size(), 1U);
    EXPECT_EQ(parse(repeated("select 1 + 1;", 5000)).statements.size(), 5000U);
    EXPECT_EQ(parse("select 1+1" + repeated(", 1+1", 2000)).statements.size(), 1U);
}

TEST(Limits, TheDeepestTreeStillPrints) {
    std::string sql = "select ";
    // Each level holds a chain on its left side, which is what makes the tree highest.
    for (int i = 0; i < 90; ++i)
        sql += "(";
    sql += "1";
    for (int i = 0; i < 90; ++i)
        sql += repeated(" + 1", 10) + ")";
    const ast::Batch batch = parse(sql);
    const std::string printed = print(batch, Parentheses::All);
    EXPECT_EQ(print(parse(print(batch)), Parentheses::All), printed);
}

TEST(Limits, NamesAreBounded) {
    EXPECT_EQ(parse("select 1 as " + std::string(128, 'a')).statements.size(), 1U);
    expectLimit("select 1 as " + std::string(129, 'a'), 103);
    expectLimit("select 1 as [" + std::string(129, 'a') + "]", 103);
    expectLimit("select 1 as '" + std::string(129, 'a') + "'", 103);
    expectLimit("select @" + std::string(129, 'a'), 103);
    EXPECT_EQ(parse("select 1 as [" + repeated("ک", 128) + "]").statements.size(), 1U);
    expectLimit("select 1 as [" + repeated("ک", 129) + "]", 103);
}

TEST(Limits, ValuesRowsAreBoundedAsOnTheServer) {
    EXPECT_EQ(parse("insert t values (1)" + repeated(",(1)", 999)).statements.size(), 1U);
    expectLimit("insert t values (1)" + repeated(",(1)", 1000), 10738);
    expectLimit("select * from (values (1)" + repeated(",(1)", 1000) + ") t(a)", 10738);
}

TEST(Limits, ABatchIsBounded) {
    expectLimit(std::string(kLongestBatch + 1, ' '), 8631);
    EXPECT_TRUE(parse(std::string(kLongestBatch, ' ')).statements.empty());
    expectLimit("select 1" + repeated(",1", 1'000'000), 8631);
}

}  // namespace
}  // namespace basalt::embedded
