// Amounts between text and number, and texts inside statements.
#include "package/numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "ado/error.h"

namespace basalt {
namespace {

struct Writing {
    const char* name;
    Extended value;
    const char* text;
};
void PrintTo(const Writing& row, std::ostream* out) {
    *out << row.name;
}

class FloatToStr : public ::testing::TestWithParam<Writing> {};

TEST_P(FloatToStr, writesPlainFixedPoint) {
    EXPECT_EQ(FloatToStr_VRO(GetParam().value), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, FloatToStr,
    ::testing::Values(
        Writing{"zero", 0.0L, "0"}, Writing{"negativeZero", -0.0L, "0"}, Writing{"whole", 12500.0L, "12500"},
        Writing{"half", 12500.5L, "12500.5"}, Writing{"negative", -12.25L, "-12.25"},
        Writing{"belowOne", 0.75L, "0.75"}, Writing{"negativeBelowOne", -0.001L, "-0.001"},
        Writing{"nineDigits", 0.123456789L, "0.123456789"}, Writing{"tenthDigitDown", 0.1234567894L, "0.123456789"},
        Writing{"tenthDigitUp", 0.1234567896L, "0.12345679"}, Writing{"roundsUpToWhole", 0.9999999999L, "1"},
        Writing{"smallestShown", 0.000000001L, "0.000000001"}, Writing{"tooSmallToShow", 0.0000000004L, "0"},
        Writing{"negativeTooSmallToShow", -0.0000000004L, "0"},
        // Ties that a binary fraction holds exactly: 2^-10 = 0.0009765625 ends in a five at the tenth digit.
        Writing{"tieAwayFromZero", 0x1p-10L, "0.000976563"},
        Writing{"negativeTieAwayFromZero", -0x1p-10L, "-0.000976563"},
        Writing{"tieOnEvenDigit", 2.0L + 0x1p-10L + 0x1p-9L, "2.002929688"}, Writing{"aDoublesTenth", 0.1, "0.1"},
        Writing{"third", 1.0L / 3.0L, "0.333333333"}, Writing{"noExponent", 1e15L, "1000000000000000"},
        Writing{"sixtyFourBits", 18446744073709551615.0L, "18446744073709551615"},
        Writing{"beyondSixtyFourBits", 0x1p64L, "18446744073709551616"},
        Writing{"twentyTwoZeros", 1e22L, "10000000000000000000000"},
        Writing{"negativeHuge", -0x1p100L, "-1267650600228229401496703205376"},
        Writing{"beyondDecimal", 0x1p130L, "1361129467683753853853498429727072845824"}),
    [](const auto& row) { return row.param.name; });

TEST(Numbers, largestNumberIsWrittenInFull) {
    const std::string text = FloatToStr_VRO(std::numeric_limits<Extended>::max());
    EXPECT_EQ(text.find_first_not_of("0123456789"), std::string::npos);
    EXPECT_EQ(text.size(), static_cast<std::size_t>(std::numeric_limits<Extended>::max_exponent10) + 1);
    EXPECT_EQ(StrToFloat_VRO(text), std::numeric_limits<Extended>::max());
}

TEST(Numbers, writingRefusesWhatIsNoNumber) {
    EXPECT_THROW((void)FloatToStr_VRO(std::numeric_limits<Extended>::quiet_NaN()), UsageError);
    EXPECT_THROW((void)FloatToStr_VRO(std::numeric_limits<Extended>::infinity()), UsageError);
    EXPECT_THROW((void)FloatToStr_VRO(-std::numeric_limits<Extended>::infinity()), UsageError);
}

struct Reading {
    const char* name;
    const char* text;
    Extended value;
};
void PrintTo(const Reading& row, std::ostream* out) {
    *out << row.name << " '" << row.text << '\'';
}

class StrToFloat : public ::testing::TestWithParam<Reading> {};

TEST_P(StrToFloat, reads) {
    EXPECT_EQ(StrToFloat_VRO(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, StrToFloat,
    ::testing::Values(Reading{"zero", "0", 0.0L}, Reading{"whole", "12500", 12500.0L}, Reading{"plus", "+7", 7.0L},
                      Reading{"minus", "-7.25", -7.25L}, Reading{"fraction", "12500.5", 12500.5L},
                      Reading{"leadingZeros", "007", 7.0L}, Reading{"blanksAround", " \t12 \n", 12.0L},
                      Reading{"thousands", "1,234,567.5", 1234567.5L},
                      Reading{"persianDigits", "۱۲۳۴۵۶۷۸۹۰", 1234567890.0L},
                      Reading{"arabicDigits", "١٢٣٤٥٦٧٨٩٠", 1234567890.0L}, Reading{"mixedDigits", "1۲٣", 123.0L},
                      Reading{"arabicDecimalPoint", "۱۲٫۵", 12.5L}, Reading{"arabicThousands", "۱۲٬۵۰۰٫۵", 12500.5L},
                      Reading{"arabicComma", "۱۲،۵۰۰", 12500.0L}, Reading{"persianFraction", "-۰٫۲۵", -0.25L},
                      Reading{"exactExtended", "0.1", 0.1L},
                      Reading{"sixtyFourBits", "18446744073709551615", 18446744073709551615.0L},
                      Reading{"manyDigits", "100000000000000000000000000000000000000000000000000", 1e50L},
                      Reading{"nineDigits", "0.123456789", 0.123456789L}),
    [](const auto& row) { return row.param.name; });

TEST(Numbers, readingTooSmallIsZero) {
    EXPECT_EQ(StrToFloat_VRO("0." + std::string(6000, '0') + "1"), 0.0L);
}

TEST(Numbers, readingNegativeZeroIsZero) {
    EXPECT_FALSE(std::signbit(StrToFloat_VRO("-0")));
}

class NotANumber : public ::testing::TestWithParam<const char*> {};

TEST_P(NotANumber, isAConversionErrorThatQuotesTheText) {
    const std::string text = GetParam();
    try {
        (void)StrToFloat_VRO(text);
        ADD_FAILURE() << "'" << text << "' was read";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Conversion);
        EXPECT_NE(std::string(error.what()).find("'" + text + "'"), std::string::npos) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(Numbers, NotANumber,
                         ::testing::Values("", " ", "-", "+", "--1", "+-1", "- 1", "abc", "1a", "a1", "1e5", "1E5",
                                           "0x10", "nan", "inf", "infinity", ".", "5.", ".5", "1.2.3", "1..2", "1 2",
                                           ",1", "1,", "1,,2", "1,.5", "1.,5", "1.5,5", "٫۵", "۵٫", "۱٫۲٫۳", "1/2",
                                           "۱۲ریال", "½", "\xDB", "1\xDB", "\xD9\xAB", "12-"));

TEST(Numbers, tooLargeIsAConversionError) {
    EXPECT_THROW((void)StrToFloat_VRO("1" + std::string(5000, '0')), DatabaseError);
    EXPECT_THROW((void)StrToFloat_VRO("1" + std::string(5000, '0') + ".5"), DatabaseError);
}

TEST(Numbers, localeDoesNotMatter) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    // Whichever of these the machine has; all write a comma before the fraction.
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "fa_IR.UTF-8"})
        std::setlocale(LC_NUMERIC, locale);
    EXPECT_EQ(FloatToStr_VRO(1234.5L), "1234.5");
    EXPECT_EQ(StrToFloat_VRO("1234.5"), 1234.5L);
    std::setlocale(LC_NUMERIC, before.c_str());
}

class RoundTrip : public ::testing::TestWithParam<const char*> {};

TEST_P(RoundTrip, textSurvives) {
    EXPECT_EQ(FloatToStr_VRO(StrToFloat_VRO(GetParam())), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Numbers, RoundTrip,
                         ::testing::Values("0", "1", "-1", "0.1", "0.000000001", "999999999.999999999", "12500.5",
                                           "-0.333333333", "9007199254740993", "18446744073709551615"));

TEST(Numbers, nullReadsAsZero) {
    EXPECT_EQ(VarIsNull_VRO(Value{}), Value{std::int64_t{0}});
}

TEST(Numbers, whatIsNotNullStays) {
    for (const Value& value : std::vector<Value>{std::int64_t{5}, std::string("متن"), std::string(), false, 2.5,
                                                 Decimal(125, 1), DateTime{7}}) {
        EXPECT_EQ(VarIsNull_VRO(value), value);
    }
}

TEST(Numbers, quotedTextDoublesQuotes) {
    EXPECT_EQ(QuotedStr(""), "''");
    EXPECT_EQ(QuotedStr("همکار"), "'همکار'");
    EXPECT_EQ(QuotedStr("O'Neil"), "'O''Neil'");
    EXPECT_EQ(QuotedStr("'"), "''''");
    EXPECT_EQ(QuotedStr("''; drop table CostLevel --"), "'''''; drop table CostLevel --'");
    EXPECT_EQ(QuotedStr("a\"b\\c%d"), "'a\"b\\c%d'");
}

TEST(Numbers, formatFillsInOrder) {
    EXPECT_EQ(Format("Code = %d and Name = %s", {"3", "'همکار'"}), "Code = 3 and Name = 'همکار'");
    EXPECT_EQ(Format("%dUNION ALL", {"1"}), "1UNION ALL");
    EXPECT_EQ(Format("like '%%%s%%'", {"x"}), "like '%x%'");
    EXPECT_EQ(Format("plain", {}), "plain");
}

TEST(Numbers, formatDoesNotReadWhatItFilledIn) {
    EXPECT_EQ(Format("%s and %s", {"'100%d'", "'%s'"}), "'100%d' and '%s'");
}

TEST(Numbers, formatRefusesAnotherCount) {
    EXPECT_THROW((void)Format("%d", {}), UsageError);
    EXPECT_THROW((void)Format("%d %s", {"1"}), UsageError);
    EXPECT_THROW((void)Format("%d", {"1", "2"}), UsageError);
    EXPECT_THROW((void)Format("%x", {"1"}), UsageError);
    EXPECT_THROW((void)Format("100%", {}), UsageError);
}

}  // namespace
}  // namespace basalt
