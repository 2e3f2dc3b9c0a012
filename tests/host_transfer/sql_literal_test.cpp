#include "host/transfer/sql_literal.h"

#include <gtest/gtest.h>

namespace basalt::host {
namespace {

struct LiteralRow {
    const char* name;
    Value value;
    std::string type;
    std::string text;
};

Decimal decimal(const char* text) {
    return Decimal::parse(text).value();
}

DateTime moment(const char* text) {
    return parseDateTime(text).value();
}

class Literals : public ::testing::TestWithParam<LiteralRow> {};

TEST_P(Literals, areWrittenExactly) {
    EXPECT_EQ(sqlLiteral(GetParam().value, GetParam().type), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Literals,
    ::testing::Values(
        LiteralRow{"null", Null(), "int", "NULL"}, LiteralRow{"no", false, "bit", "0"},
        LiteralRow{"yes", true, "bit", "1"}, LiteralRow{"zero", std::int64_t{0}, "int", "0"},
        LiteralRow{"smallest", std::numeric_limits<std::int64_t>::min(), "bigint", "-9223372036854775808"},
        LiteralRow{"amount", decimal("12500.500000000"), "decimal(23,9)", "12500.5"},
        LiteralRow{"largestAmount", decimal("-99999999999999.999999999"), "decimal(23,9)", "-99999999999999.999999999"},
        LiteralRow{"smallestAmount", decimal("0.000000001"), "decimal(23,9)", "0.000000001"},
        LiteralRow{"float", 0.1, "float", "1e-01"}, LiteralRow{"wholeFloat", -2.0, "float", "-2e+00"},
        LiteralRow{"largeFloat", 1.7976931348623157e308, "float", "1.7976931348623157e+308"},
        LiteralRow{"empty", std::string(), "nvarchar(10)", "N''"},
        LiteralRow{"persian", std::string("می\u200Cخرم"), "nvarchar(10)", "N'می\u200Cخرم'"},
        LiteralRow{"quote", std::string("O'Neil''s"), "varchar(20)", "N'O''Neil''''s'"},
        LiteralRow{"lines", std::string("a\r\nGO\n"), "nvarchar(10)",
                   "N'a' + NCHAR(13) + NCHAR(10) + N'GO' + NCHAR(10)"},
        LiteralRow{"onlyABreak", std::string("\n"), "nvarchar(10)", "NCHAR(10)"},
        LiteralRow{"bytes", Bytes{0x00, 0x1F, 0xFF}, "varbinary(10)", "0x001FFF"},
        LiteralRow{"noBytes", Bytes{}, "varbinary(10)", "0x"},
        LiteralRow{"day", moment("2024-03-20"), "date", "'2024-03-20'"},
        LiteralRow{"dayAndTime", moment("2024-03-20 07:05:09"), "datetime", "'2024-03-20T07:05:09'"},
        LiteralRow{"milliseconds", moment("2024-03-20 07:05:09.1233333"), "datetime", "'2024-03-20T07:05:09.123'"},
        LiteralRow{"nearestMillisecond", moment("2024-03-20 07:05:09.9966667"), "datetime",
                   "'2024-03-20T07:05:09.997'"},
        LiteralRow{"sevenDigits", moment("2024-03-20 07:05:09.1234567"), "datetime2(7)",
                   "'2024-03-20T07:05:09.1234567'"},
        LiteralRow{"minutes", moment("2024-03-20 07:05:00"), "smalldatetime", "'2024-03-20T07:05:00'"},
        LiteralRow{"clock", moment("0001-01-01 07:05:09.5"), "time(7)", "'07:05:09.5'"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(LongTexts, arePutTogetherWithoutBeingCut) {
    const std::string half(2500, 'x');
    EXPECT_EQ(sqlLiteral(half + half, "nvarchar(max)"), "N'" + half + half + "'");
    EXPECT_EQ(sqlLiteral(half + "\n" + half, "nvarchar(max)"),
              "CAST(N'' AS nvarchar(max)) + N'" + half + "' + NCHAR(10) + N'" + half + "'");
}

}  // namespace
}  // namespace basalt::host
