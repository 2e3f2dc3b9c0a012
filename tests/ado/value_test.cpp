#include "ado/value.h"

#include <gtest/gtest.h>

#include <limits>

#include "ado/error.h"
#include "ado/field_text.h"
#include "tests/ado/named_case.h"

namespace basalt {
namespace {

Value decimal(const char* text) {
    return Decimal::parse(text).value();
}
Value integer(std::int64_t value) {
    return value;
}
Value text(const char* value) {
    return std::string(value);
}
Value moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int nanosecond = 0) {
    return fromCivil({year, month, day, hour, minute, second, nanosecond});
}

struct TextCase {
    const char* name;
    Value value;
    const char* result;
};

class ValueText : public ::testing::TestWithParam<TextCase> {};

TEST_P(ValueText, isPlain) {
    EXPECT_EQ(toText(GetParam().value), GetParam().result);
}

TEST(FieldText, decimalsShowTheDigitsThatCount) {
    EXPECT_EQ(fieldText(*Decimal::parse("450000.000000000")), "450000");
    EXPECT_EQ(fieldText(*Decimal::parse("3.250000000")), "3.25");
    EXPECT_EQ(fieldText(*Decimal::parse("-0.500000000")), "-0.5");
    EXPECT_EQ(fieldText(*Decimal::parse("-0.000000000")), "0");
    EXPECT_EQ(fieldText(*Decimal::parse("1200")), "1200");
    EXPECT_EQ(fieldText(std::string("3.250")), "3.250");
    EXPECT_EQ(fieldText(std::int64_t{100}), "100");
    EXPECT_EQ(fieldText(0.1), "0.1");
    EXPECT_EQ(fieldText(true), "True");
    EXPECT_EQ(fieldText(Null{}), "");
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ValueText,
    ::testing::Values(TextCase{"null", Null{}, ""}, TextCase{"flagTrue", true, "True"},
                      TextCase{"flagFalse", false, "False"}, TextCase{"integer", integer(-42), "-42"},
                      TextCase{"smallestInteger", std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
                      TextCase{"floatWhole", 12.0, "12"}, TextCase{"floatTenth", 0.1, "0.1"},
                      TextCase{"floatLarge", 1e20, "100000000000000000000"}, TextCase{"floatHuge", 1e300, "1e+300"},
                      TextCase{"decimalKeepsScale", decimal("12.500"), "12.500"},
                      TextCase{"persian", text("عمده"), "عمده"}, TextCase{"bytes", Bytes{0x00, 0xAB, 0x0f}, "0x00AB0F"},
                      TextCase{"noBytes", Bytes{}, "0x"}, TextCase{"day", moment(2024, 2, 29), "2024-02-29"},
                      TextCase{"minute", moment(2024, 2, 29, 7, 5), "2024-02-29 07:05:00"},
                      TextCase{"millisecond", moment(1900, 1, 1, 0, 0, 0, 3'000'000), "1900-01-01 00:00:00.003"},
                      TextCase{"tick", moment(9999, 12, 31, 23, 59, 59, 999'999'900), "9999-12-31 23:59:59.9999999"},
                      TextCase{"firstDay", moment(1, 1, 1), "0001-01-01"}),
    NameOfCase());

struct IntegerCase {
    const char* name;
    Value value;
    std::int64_t result;
};

class ValueInteger : public ::testing::TestWithParam<IntegerCase> {};

TEST_P(ValueInteger, roundsHalfToEven) {
    EXPECT_EQ(toInt64(GetParam().value), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ValueInteger,
    ::testing::Values(IntegerCase{"null", Null{}, 0}, IntegerCase{"flag", true, 1}, IntegerCase{"half", 0.5, 0},
                      IntegerCase{"oneAndAHalf", 1.5, 2}, IntegerCase{"negativeHalf", -2.5, -2},
                      IntegerCase{"decimalHalf", decimal("2.5"), 2}, IntegerCase{"decimalNextHalf", decimal("3.50"), 4},
                      IntegerCase{"decimalNegativeHalf", decimal("-3.5"), -4},
                      IntegerCase{"decimalAboveHalf", decimal("2.51"), 3}, IntegerCase{"text", text(" 17 "), 17},
                      IntegerCase{"textFraction", text("2.5"), 2}, IntegerCase{"textExponent", text("1e3"), 1000},
                      IntegerCase{"textLargest", text("9223372036854775807"),
                                  std::numeric_limits<std::int64_t>::max()}),
    NameOfCase());

TEST(Value, whatIsNoIntegerIsAConversionError) {
    for (const Value& value :
         {text(""), text("abc"), text("1,5"), text("9223372036854775808"), decimal("9223372036854775808"), Value(1e19),
          Value(std::numeric_limits<double>::quiet_NaN()), Value(Bytes{1}), moment(2024, 1, 1)}) {
        SCOPED_TRACE(toText(value));
        try {
            static_cast<void>(toInt64(value));
            ADD_FAILURE() << "was converted";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.category(), ErrorCategory::Conversion);
        }
    }
}

TEST(Value, numbers) {
    EXPECT_EQ(toExtended(decimal("12500.5")), 12500.5L);
    EXPECT_EQ(toExtended(Null{}), 0);
    EXPECT_EQ(toExtended(text("-.5")), -0.5L);
    EXPECT_EQ(toExtended(text("1e2")), 100);
    EXPECT_THROW(static_cast<void>(toExtended(text("x"))), DatabaseError);
    EXPECT_THROW(static_cast<void>(toExtended(text("inf"))), DatabaseError);
    EXPECT_EQ(toDecimal(0.1).toString(), "0.1");
    EXPECT_EQ(toDecimal(-1e15).toString(), "-1000000000000000");
    EXPECT_EQ(toDecimal(integer(7)).toString(), "7");
    EXPECT_EQ(toDecimal(Null{}).toString(), "0");
    EXPECT_EQ(toDecimal(text("2.50")).toString(), "2.50");
    EXPECT_THROW(static_cast<void>(toDecimal(1e39)), DatabaseError);
    EXPECT_THROW(static_cast<void>(toDecimal(text("zwei"))), DatabaseError);
}

TEST(Value, truth) {
    EXPECT_TRUE(toBool(text("TRUE")));
    EXPECT_TRUE(toBool(text("-1")));
    EXPECT_TRUE(toBool(text("1")));
    EXPECT_TRUE(toBool(decimal("0.1")));
    EXPECT_FALSE(toBool(text("false")));
    EXPECT_FALSE(toBool(text("0")));
    EXPECT_FALSE(toBool(text("")));
    EXPECT_FALSE(toBool(Null{}));
    EXPECT_THROW(static_cast<void>(toBool(text("yes"))), DatabaseError);
    EXPECT_THROW(static_cast<void>(toBool(moment(2024, 1, 1))), DatabaseError);
}

TEST(Value, samenessIsOfNumbersByValueAndOfTextsAsText) {
    EXPECT_TRUE(sameValue(integer(1), decimal("1.00")));
    EXPECT_TRUE(sameValue(integer(1), 1.0));
    EXPECT_TRUE(sameValue(true, integer(1)));
    EXPECT_TRUE(sameValue(decimal("0.1"), 0.1));
    EXPECT_FALSE(sameValue(integer(1), text("1")));
    EXPECT_TRUE(sameValue(text("a"), text("a")));
    EXPECT_FALSE(sameValue(text("a"), text("A")));
    EXPECT_TRUE(sameValue(Null{}, Null{}));
    EXPECT_FALSE(sameValue(Null{}, integer(0)));
    EXPECT_FALSE(sameValue(Null{}, text("")));
    // These two differ only beyond what a float can tell.
    EXPECT_FALSE(sameValue(integer(9007199254740993), integer(9007199254740992)));
}

struct DateCase {
    const char* name;
    const char* text;
    const char* result;  // nullptr: refused
};

class DateText : public ::testing::TestWithParam<DateCase> {};

TEST_P(DateText, isReadOrRefused) {
    const auto point = parseDateTime(GetParam().text);
    if (GetParam().result == nullptr) {
        EXPECT_FALSE(point.has_value());
    } else {
        ASSERT_TRUE(point.has_value());
        EXPECT_EQ(toText(*point), GetParam().result);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DateText,
    ::testing::Values(DateCase{"day", "2024-02-29", "2024-02-29"}, DateCase{"slashes", "2024/02/29", "2024-02-29"},
                      DateCase{"compact", "20240229", "2024-02-29"},
                      DateCase{"minutes", "2024-02-29 07:05", "2024-02-29 07:05:00"},
                      DateCase{"seconds", "2024-02-29T07:05:09", "2024-02-29 07:05:09"},
                      DateCase{"fraction", "2024-02-29 07:05:09.1234567", "2024-02-29 07:05:09.1234567"},
                      DateCase{"noLeapYear", "2023-02-29", nullptr}, DateCase{"noCenturyLeap", "1900-02-29", nullptr},
                      DateCase{"centuryLeap", "2000-02-29", "2000-02-29"},
                      DateCase{"monthThirteen", "2024-13-01", nullptr}, DateCase{"yearZero", "0000-01-01", nullptr},
                      DateCase{"mixedSeparators", "2024-02/29", nullptr},
                      DateCase{"hour24", "2024-02-29 24:00", nullptr}, DateCase{"trailing", "2024-02-29x", nullptr},
                      DateCase{"pointOnly", "2024-02-29 07:05:09.", nullptr}, DateCase{"empty", "", nullptr},
                      DateCase{"jalaliLooksLikeADate", "1403/12/30", "1403-12-30"}),
    NameOfCase());

TEST(DateTime, civilGoesThereAndBack) {
    // Every day over a leap century border and at both ends of the range.
    for (std::int64_t day : {0, 58, 59, 60, 364, 365, 693594, 730178, 730179, 3652058}) {
        const DateTime point{day * 864'000'000'000 + 12345};
        const CivilDateTime civil = toCivil(point);
        EXPECT_EQ(fromCivil(civil), point) << day;
    }
    EXPECT_EQ(toText(DateTime{3652058LL * 864'000'000'000}), "9999-12-31");
}

TEST(Text, lengthCountsUtf16Units) {
    EXPECT_EQ(utf16Length(""), 0U);
    EXPECT_EQ(utf16Length("abc"), 3U);
    EXPECT_EQ(utf16Length("عمده"), 4U);
    EXPECT_EQ(utf16Length("😀"), 2U);
}

TEST(DatabaseErrors, showANulInTheirMessageInsteadOfEndingThere) {
    const DatabaseError error(ErrorCategory::Other, "42000", 50000, std::string("\0 in front, \0 behind", 20));
    EXPECT_STREQ(error.what(), "␀ in front, ␀ behind");
}

}  // namespace
}  // namespace basalt
