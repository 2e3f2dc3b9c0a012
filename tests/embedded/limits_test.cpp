// Statements too large or too deep for the whole engine: an error, and a session that works on.
#include <gtest/gtest.h>

#include <string>

#include "engines/embedded/embedded_session.h"

namespace basalt::embedded {
namespace {

class TooLarge : public testing::Test {
protected:
    static std::string repeated(std::string_view text, int count) {
        std::string result;
        for (int i = 0; i < count; ++i)
            result += text;
        return result;
    }

    // `piece` with its number in place of every #.
    static std::string numbered(const std::string& piece, int count, const std::string& separator) {
        std::string result;
        for (int i = 0; i < count; ++i) {
            if (i > 0) result += separator;
            for (const char c : piece)
                result += c == '#' ? std::to_string(i) : std::string(1, c);
        }
        return result;
    }

    void expectLimit(const std::string& sql, int number) {
        try {
            static_cast<void>(session_->run(sql));
            ADD_FAILURE() << "accepted: " << sql.substr(0, 60);
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.category(), ErrorCategory::Limit) << error.what();
            EXPECT_EQ(error.nativeCode(), number) << error.what();
        }
        EXPECT_EQ(integer("SELECT 7"), 7);
    }

    std::int64_t integer(const std::string& sql) {
        const BatchResult result = session_->run(sql);
        return std::get<std::int64_t>(result.results.back().rows->column(0).valueAt(0));
    }

    std::unique_ptr<EmbeddedSession> session_ = EmbeddedSession::open(":memory:");
};

TEST_F(TooLarge, Nesting) {
    expectLimit("SELECT " + repeated("(", 10'000) + "1" + repeated(")", 10'000), 191);
    expectLimit("SELECT 1 WHERE " + repeated("NOT ", 10'000) + "1 = 1", 191);
    expectLimit(repeated("BEGIN ", 10'000) + "SELECT 1 " + repeated("END ", 10'000), 191);
    expectLimit("SELECT * FROM " + repeated("(SELECT * FROM ", 1000) + "(SELECT 1 AS A) X" + repeated(") X", 1000),
                191);
}

TEST_F(TooLarge, Chains) {
    expectLimit(numbered("SELECT # AS A", 4000, " UNION ALL "), 191);
    expectLimit("SELECT " + numbered("#", 100'000, " + "), 191);
    expectLimit("SELECT 1 WHERE " + numbered("# = #", 100'000, " AND "), 191);
}

TEST_F(TooLarge, Lists) {
    expectLimit("SELECT " + numbered("1 AS c#", 5000, ", "), 1056);
    expectLimit("SELECT COUNT(*) FROM " + numbered("(SELECT 1 AS A) t#", 100, " CROSS JOIN "), 106);
    expectLimit("SELECT COUNT(*) FROM (VALUES " + numbered("(#)", 1001, ", ") + ") X(A)", 10738);
}

// Each would take gigabytes, some of them many.
TEST_F(TooLarge, Values) {
    const std::string big = "REPLICATE(CAST('a' AS varchar(max)), 140000000)";
    expectLimit("SELECT LEN(REPLICATE(CAST('ab' AS varchar(max)), 9000000000000000000))", 8631);
    expectLimit(
        "SELECT LEN(REPLACE(REPLACE(REPLACE(REPLICATE(CAST('a' AS varchar(max)), 8000), 'a', REPLICATE('a', "
        "8000)), 'a', REPLICATE('a', 8000)), 'a', REPLICATE('a', 8000)))",
        8631);
    expectLimit("SELECT LEN(STUFF(" + big + ", 1, 0, " + big + "))", 8631);
    expectLimit("SELECT LEN(" + big + " + " + big + ")", 8631);
    expectLimit("SELECT LEN(CONCAT(" + big + ", " + big + "))", 8631);
    expectLimit(
        "DECLARE @s varchar(max) = 'aaaaaaaaaa', @i int = 0 WHILE @i < 60 BEGIN SET @s = @s + @s SET @i += 1 END",
        8631);
    expectLimit(
        "DECLARE @b varbinary(max) = 0x0102030405060708, @i int = 0 WHILE @i < 60 BEGIN SET @b = @b + @b SET @i += 1 "
        "END",
        8631);
    EXPECT_EQ(integer("SELECT LEN(REPLICATE(CAST('ab' AS varchar(max)), 1000000) + 'c')"), 2'000'001);
    EXPECT_EQ(integer("SELECT LEN(REPLICATE('', 9000000000000000000))"), 0);
}

TEST_F(TooLarge, WhatIsLargeButNotTooLargeRuns) {
    // A megabyte of literals.
    EXPECT_EQ(integer("SELECT COUNT(*) FROM (SELECT 149999 AS A) X WHERE A IN (" + numbered("#", 150'000, ",") + ")"),
              1);
    EXPECT_EQ(integer("SELECT COUNT(*) FROM (" + numbered("SELECT # AS A", 400, " UNION ALL ") + ") X"), 400);
    for (const int terms : {399, 400, 401, 799, 800, 801, 1001}) {
        const std::string all = "(" + numbered("SELECT # AS A, N'x' AS B", terms, " UNION ALL ") + ") X";
        EXPECT_EQ(integer("SELECT COUNT(*) FROM " + all + " WHERE B = N'X '"), terms);
        EXPECT_EQ(integer("SELECT SUM(A) FROM " + all), terms * (terms - 1) / 2);
    }
    EXPECT_EQ(integer(numbered("SELECT # AS A", 500, " UNION ALL ") + " ORDER BY A"), 0);
    EXPECT_EQ(integer("SELECT " + repeated("(", 90) + "5" + repeated(")", 90)), 5);
    EXPECT_EQ(integer("SELECT LEN(N'" + std::string(2'000'000, 'x') + "')"), 2'000'000);
    EXPECT_EQ(integer(numbered("SELECT #", 3000, ";")), 2999);
}

TEST_F(TooLarge, ProceduresAndFunctionsInsideEachOther) {
    static_cast<void>(session_->run("CREATE PROCEDURE P @n int AS BEGIN SET @n = @n + 1 EXEC P @n END"));
    static_cast<void>(session_->run("CREATE FUNCTION dbo.F(@n int) RETURNS int AS BEGIN RETURN dbo.F(@n + 1) END"));
    static_cast<void>(session_->run("CREATE VIEW V AS SELECT 1 AS A"));
    expectLimit("EXEC P 1", 217);
    expectLimit("SELECT dbo.F(1)", 217);
    static_cast<void>(session_->run("ALTER VIEW V AS SELECT A FROM V"));
    try {
        static_cast<void>(session_->run("SELECT * FROM V"));
        ADD_FAILURE() << "a view of itself was read";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.nativeCode(), 217) << error.what();
    }
    EXPECT_EQ(integer("SELECT 7"), 7);
}

}  // namespace
}  // namespace basalt::embedded
