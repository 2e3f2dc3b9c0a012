#include "ado/decimal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "tests/ado/named_case.h"

namespace basalt {
namespace {

const char* const kLargest = "99999999999999999999999999999999999999";

Decimal decimal(const char* text) {
    return Decimal::parse(text).value();
}

struct ParseCase {
    const char* name;
    const char* text;
    const char* result;  // nullptr: refused
    int scale = 0;
};

class DecimalParse : public ::testing::TestWithParam<ParseCase> {};

TEST_P(DecimalParse, readsOrRefuses) {
    const auto parsed = Decimal::parse(GetParam().text);
    if (GetParam().result == nullptr) {
        EXPECT_FALSE(parsed.has_value());
        return;
    }
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->toString(), GetParam().result);
    EXPECT_EQ(parsed->scale(), GetParam().scale);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DecimalParse,
    ::testing::Values(ParseCase{"zero", "0", "0"}, ParseCase{"negativeZero", "-0.00", "0.00", 2},
                      ParseCase{"integer", "12500", "12500"}, ParseCase{"fraction", "12500.50", "12500.50", 2},
                      ParseCase{"negativeFraction", "-0.05", "-0.05", 2}, ParseCase{"plusSign", "+7", "7"},
                      ParseCase{"blanks", "  7.5\t", "7.5", 1}, ParseCase{"leadingZeros", "000.70", "0.70", 2},
                      ParseCase{"noWholePart", ".5", "0.5", 1}, ParseCase{"noFraction", "5.", "5"},
                      ParseCase{"largest", kLargest, kLargest},
                      ParseCase{"largestBehindZeros", "000099999999999999999999999999999999999999", kLargest},
                      ParseCase{"smallest", "0.00000000000000000000000000000000000001",
                                "0.00000000000000000000000000000000000001", 38},
                      ParseCase{"tooManyDigits", "100000000000000000000000000000000000000", nullptr},
                      ParseCase{"tooManyDecimals", "0.000000000000000000000000000000000000001", nullptr},
                      ParseCase{"empty", "", nullptr}, ParseCase{"onlyBlanks", "   ", nullptr},
                      ParseCase{"onlySign", "-", nullptr}, ParseCase{"onlyPoint", ".", nullptr},
                      ParseCase{"twoPoints", "1.2.3", nullptr}, ParseCase{"exponent", "1e5", nullptr},
                      ParseCase{"innerBlank", "1 2", nullptr}, ParseCase{"comma", "1,5", nullptr},
                      ParseCase{"word", "abc", nullptr}, ParseCase{"persianDigits", "۱۲", nullptr}),
    NameOfCase());

struct RescaleCase {
    const char* name;
    const char* text;
    int scale;
    const char* result;  // nullptr: beyond 38 digits
};

class DecimalRescale : public ::testing::TestWithParam<RescaleCase> {};

TEST_P(DecimalRescale, roundsHalfAwayFromZero) {
    const Decimal number = decimal(GetParam().text);
    if (GetParam().result == nullptr) {
        EXPECT_THROW(static_cast<void>(number.rescaled(GetParam().scale)), std::overflow_error);
    } else {
        EXPECT_EQ(number.rescaled(GetParam().scale).toString(), GetParam().result);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Scales, DecimalRescale,
    ::testing::Values(RescaleCase{"same", "1.25", 2, "1.25"}, RescaleCase{"wider", "1.25", 4, "1.2500"},
                      RescaleCase{"halfUp", "1.25", 1, "1.3"}, RescaleCase{"halfDownward", "-1.25", 1, "-1.3"},
                      RescaleCase{"belowHalf", "1.249", 1, "1.2"}, RescaleCase{"toInteger", "0.5", 0, "1"},
                      RescaleCase{"carries", "9.99", 1, "10.0"}, RescaleCase{"vanishes", "0.0049", 2, "0.00"},
                      RescaleCase{"largestByHalf", "9999999999999999999999999999999999999.9", 0,
                                  "10000000000000000000000000000000000000"},
                      RescaleCase{"largestStays", kLargest, 0, kLargest},
                      RescaleCase{"largestCannotGrow", kLargest, 1, nullptr},
                      RescaleCase{"oneAtThirtySeven", "1", 37, "1.0000000000000000000000000000000000000"},
                      RescaleCase{"oneAtThirtyEight", "1", 38, nullptr}, RescaleCase{"scaleBeyond", "1", 39, nullptr}),
    NameOfCase());

TEST(Decimal, plainTextHasNoTrailingZeros) {
    EXPECT_EQ(decimal("12500.500000000").toPlainString(), "12500.5");
    EXPECT_EQ(decimal("12.00").toPlainString(), "12");
    EXPECT_EQ(decimal("-0.250").toPlainString(), "-0.25");
    EXPECT_EQ(decimal("0.000").toPlainString(), "0");
    EXPECT_EQ(decimal("100").toPlainString(), "100");
}

TEST(Decimal, comparesByValue) {
    EXPECT_EQ(decimal("1.5"), decimal("1.50"));
    EXPECT_LT(decimal("1.49"), decimal("1.5"));
    EXPECT_LT(decimal("-1.5"), decimal("-1.49"));
    EXPECT_LT(decimal("-0.1"), decimal("0.01"));
    EXPECT_GT(decimal("0"), decimal("-0.1"));
    // Neither side fits the scale of the other.
    EXPECT_GT(decimal(kLargest), decimal("0.99999999999999999999999999999999999999"));
    EXPECT_LT(decimal("-99999999999999999999999999999999999999"), decimal("0.00000000000000000000000000000000000001"));
    EXPECT_EQ(decimal("0"), decimal("0.00000000000000000000000000000000000000"));
}

TEST(Decimal, countsDigitsOfTheCoefficient) {
    EXPECT_EQ(decimal("0").digits(), 1);
    EXPECT_EQ(decimal("9").digits(), 1);
    EXPECT_EQ(decimal("10").digits(), 2);
    EXPECT_EQ(decimal("-12.50").digits(), 4);
    EXPECT_EQ(decimal("0.05").digits(), 1);
    EXPECT_EQ(decimal(kLargest).digits(), 38);
}

struct ExtendedCase {
    const char* name;
    Extended value;
    int scale;
    const char* result;  // nullptr: does not fit
};

class DecimalFromExtended : public ::testing::TestWithParam<ExtendedCase> {};

TEST_P(DecimalFromExtended, givesTheNearest) {
    const auto made = Decimal::fromExtended(GetParam().value, GetParam().scale);
    if (GetParam().result == nullptr) {
        EXPECT_FALSE(made.has_value());
    } else {
        ASSERT_TRUE(made.has_value());
        EXPECT_EQ(made->toString(), GetParam().result);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Values, DecimalFromExtended,
    ::testing::Values(ExtendedCase{"zero", 0.0L, 2, "0.00"}, ExtendedCase{"tenth", 0.1L, 9, "0.100000000"},
                      ExtendedCase{"exactTie", 2.5L, 0, "3"}, ExtendedCase{"negativeTie", -2.5L, 0, "-3"},
                      // Stored a little below 1.005: not a tie at all.
                      ExtendedCase{"nearTie", static_cast<Extended>(1.005), 2, "1.00"},
                      ExtendedCase{"price", 12500.123456789L, 9, "12500.123456789"},
                      ExtendedCase{"beyondMantissa", 0x1p70L, 0, "1180591620717411303424"},
                      ExtendedCase{"beyondMantissaScaled", 0x1p70L, 9, "1180591620717411303424.000000000"},
                      ExtendedCase{"tinyAtGreatScale", 0x1p-20L, 30, "0.000000953674316406250000000000"},
                      ExtendedCase{"halfAtGreatScale", 0.5L, 38, "0.50000000000000000000000000000000000000"},
                      ExtendedCase{"vanishing", 1e-4000L, 38, "0.00000000000000000000000000000000000000"},
                      ExtendedCase{"tooLarge", 1e38L, 0, nullptr}, ExtendedCase{"tooLargeAtScale", 1e30L, 9, nullptr},
                      ExtendedCase{"infinite", std::numeric_limits<Extended>::infinity(), 0, nullptr},
                      ExtendedCase{"notANumber", std::numeric_limits<Extended>::quiet_NaN(), 0, nullptr}),
    NameOfCase());

TEST(Decimal, turnsIntoOtherNumbers) {
    EXPECT_EQ(decimal("0.1").toExtended(), 0.1L);
    EXPECT_EQ(decimal("0.1").toDouble(), 0.1);
    EXPECT_EQ(decimal("123456789012345678901234567890.12345678").toDouble(), 123456789012345678901234567890.12345678);
    EXPECT_EQ(decimal(kLargest).toExtended(), 99999999999999999999999999999999999999.0L);
    EXPECT_EQ(decimal("-7.9").toInt64(), -7);
    EXPECT_EQ(decimal("9223372036854775807").toInt64(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(decimal("-9223372036854775808.9").toInt64(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(decimal("9223372036854775808").toInt64(), std::nullopt);
    EXPECT_EQ(toString(powerOfTen(38)), "100000000000000000000000000000000000000");
}

}  // namespace
}  // namespace basalt
