// Values that cross the registry, and their JSON, digit for digit.
#include "package/datum.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

#include "ado/error.h"

namespace basalt {
namespace {

struct Written {
    const char* name;
    Datum value;
    const char* json;
};
void PrintTo(const Written& row, std::ostream* out) {
    *out << row.name;
}

class DatumToJson : public ::testing::TestWithParam<Written> {};

TEST_P(DatumToJson, isExact) {
    EXPECT_EQ(GetParam().value.toJson(), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Datum, DatumToJson,
    ::testing::Values(
        Written{"null", Datum(), "null"}, Written{"yes", Datum(true), "true"}, Written{"no", Datum(false), "false"},
        Written{"zero", Datum(0), "0"}, Written{"negative", Datum(-12), "-12"},
        Written{"largestInteger", Datum(std::numeric_limits<std::int64_t>::max()), "9223372036854775807"},
        Written{"smallestInteger", Datum(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808"},
        Written{"decimalLosesTrailingZeros", Datum(Decimal(1250050, 2)), "12500.5"},
        Written{"wholeDecimal", Datum(Decimal(1250000, 2)), "12500"},
        Written{"smallDecimal", Datum(Decimal(-25, 2)), "-0.25"},
        Written{"decimalOf38Digits", Datum(*Decimal::parse("12345678901234567890123456789.123456789")),
                "12345678901234567890123456789.123456789"},
        Written{"amount", Datum(12500.5L), "12500.5"}, Written{"amountOfATenth", Datum(0.1L), "0.1"},
        Written{"hugeAmount", Datum(0x1p100L), "1267650600228229401496703205376"},
        Written{"emptyText", Datum(""), "\"\""}, Written{"persianText", Datum("سطح قيمتي"), "\"سطح قيمتي\""},
        Written{"controlCharacters", Datum("a\"\\\n\t\x01"), "\"a\\\"\\\\\\n\\t\\u0001\""},
        Written{"beyondTheFirstPlane", Datum("😀"), "\"😀\""}, Written{"brokenUtf8", Datum("a\xDB"), "\"a\xEF\xBF\xBD\""},
        Written{"emptyList", Datum::list({}), "[]"}, Written{"emptyRecord", Datum::record({}), "{}"},
        Written{"list", Datum::list({1, "دو", Datum()}), "[1,\"دو\",null]"},
        Written{"recordKeepsItsOrder", Datum::record({{"Name", "همکار"}, {"Code", 3}, {"Sub", Datum::list({true})}}),
                "{\"Name\":\"همکار\",\"Code\":3,\"Sub\":[true]}"}),
    [](const auto& row) { return row.param.name; });

struct Parsed {
    const char* name;
    const char* json;
    Datum value;
};
void PrintTo(const Parsed& row, std::ostream* out) {
    *out << row.name << ' ' << row.json;
}

class DatumFromJson : public ::testing::TestWithParam<Parsed> {};

TEST_P(DatumFromJson, isExact) {
    const Datum datum = Datum::parseJson(GetParam().json);
    EXPECT_EQ(datum, GetParam().value) << datum.toJson();
}

INSTANTIATE_TEST_SUITE_P(
    Datum, DatumFromJson,
    ::testing::Values(Parsed{"null", " null ", Datum()}, Parsed{"flag", "true", Datum(true)},
                      Parsed{"integer", "-5", Datum(-5)},
                      Parsed{"largestInteger", "9223372036854775807", Datum(std::numeric_limits<std::int64_t>::max())},
                      Parsed{"oneMore", "9223372036854775808", Datum(*Decimal::parse("9223372036854775808"))},
                      Parsed{"beyondSixtyFourBits", "12345678901234567890123",
                             Datum(*Decimal::parse("12345678901234567890123"))},
                      Parsed{"fraction", "0.1", Datum(Decimal(1, 1))},
                      Parsed{"manyDigits", "12345678901234567890123456789.123456789",
                             Datum(*Decimal::parse("12345678901234567890123456789.123456789"))},
                      Parsed{"exponent", "1.5e3", Datum(Decimal(1500, 0))},
                      Parsed{"negativeExponent", "-25E-2", Datum(Decimal(-25, 2))},
                      Parsed{"zeroWithAnyExponent", "0e999999999999", Datum(Decimal(0, 0))},
                      Parsed{"escapes", "\"\\u0633\\n\"", Datum("س\n")},
                      Parsed{"list", "[1, [2], {}]", Datum::list({1, Datum::list({2}), Datum::record({})})},
                      Parsed{"record", "{\"Code\": 3, \"Name\": \"همکار\", \"None\": null}",
                             Datum::record({{"Code", 3}, {"Name", "همکار"}, {"None", Datum()}})}),
    [](const auto& row) { return row.param.name; });

class MalformedJson : public ::testing::TestWithParam<std::string> {};

TEST_P(MalformedJson, isAUsageError) {
    EXPECT_THROW((void)Datum::parseJson(GetParam()), UsageError);
}

INSTANTIATE_TEST_SUITE_P(Datum, MalformedJson,
                         ::testing::Values("", " ", "{", "[1,", "{\"a\"}", "{\"a\":}", "nul", "01", "1.", "'a'",
                                           "\"\xDB\"", "1 2", "1e400", "123456789012345678901234567890123456789.5",
                                           std::string(100000, '['), std::string(65, '[') + std::string(65, ']')));

TEST(Datum, anEventIsCalledByWhoGetsIt) {
    int calls = 0;
    const Datum event = Datum::event([&calls] { ++calls; });
    const Datum copy = event;
    EXPECT_TRUE(event.isEvent());
    EXPECT_FALSE(event.isNull());
    copy.asEvent()();
    event.asEvent()();
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(copy, event);
    EXPECT_NE(Datum::event([] {}), event);
    EXPECT_EQ(event.toJson(), "\"event\"");
    EXPECT_EQ(event.asText(), "event");
    EXPECT_THROW((void)event.asInteger(), UsageError);
}

TEST(Datum, noEventIsNull) {
    EXPECT_TRUE(Datum::event({}).isNull());
    EXPECT_FALSE(Datum().asEvent());
    for (const Datum& none : {Datum(true), Datum("event"), Datum(0)})
        EXPECT_THROW((void)none.asEvent(), UsageError) << none.toJson();
}

TEST(Datum, malformedJsonNamesThePlace) {
    try {
        (void)Datum::parseJson("{\"Code\": 3,}");
        ADD_FAILURE() << "was read";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), "malformed JSON at character 12");
    }
}

TEST(Datum, aNumberBeyondAllIsToldAsSuch) {
    try {
        (void)Datum::parseJson("[1e400]");
        ADD_FAILURE() << "was read";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), "the number 1e400 is too large");
    }
}

TEST(Datum, databaseValues) {
    EXPECT_EQ(Datum::from(Value{}), Datum());
    EXPECT_EQ(Datum::from(true), Datum(true));
    EXPECT_EQ(Datum::from(std::int64_t{7}), Datum(7));
    EXPECT_EQ(Datum::from(0.25), Datum(Decimal(25, 2)));
    EXPECT_EQ(Datum::from(Decimal(125, 1)), Datum(Decimal(125, 1)));
    EXPECT_EQ(Datum::from(std::string("متن")), Datum("متن"));
    EXPECT_EQ(Datum::from(Bytes{0x0A, 0xFF}), Datum("0x0AFF"));
    EXPECT_EQ(Datum::from(*parseDateTime("2025-03-21 13:45:00")), Datum("2025-03-21 13:45:00"));
}

TEST(Datum, readsAsInteger) {
    EXPECT_EQ(Datum(7).asInteger(), 7);
    EXPECT_EQ(Datum(" -7 ").asInteger(), -7);
    EXPECT_EQ(Datum(Decimal(700, 2)).asInteger(), 7);
    EXPECT_EQ(Datum(true).asInteger(), 1);
    for (const Datum& value : {Datum(), Datum(""), Datum("سه"), Datum("7.5"), Datum(Decimal(75, 1)),
                               Datum("9223372036854775808"), Datum::list({}), Datum::record({})}) {
        EXPECT_THROW((void)value.asInteger(), UsageError) << value.toJson();
    }
}

TEST(Datum, readsAsIntegerOf32Bits) {
    EXPECT_EQ(Datum(std::int64_t{2147483647}).asInt32(), 2147483647);
    EXPECT_EQ(Datum("-2147483648").asInt32(), -2147483647 - 1);
    for (const Datum& value : {Datum(std::int64_t{2147483648}), Datum("-2147483649"), Datum(Decimal(75, 1)), Datum()}) {
        EXPECT_THROW((void)value.asInt32(), UsageError) << value.toJson();
    }
}

TEST(Datum, readsAsAmount) {
    EXPECT_EQ(Datum(7).asAmount(), 7.0L);
    EXPECT_EQ(Datum("12500.5").asAmount(), 12500.5L);
    EXPECT_EQ(Datum(Decimal(1, 1)).asAmount(), 0.1L);
    for (const Datum& value : {Datum(), Datum("x"), Datum::list({1})}) {
        EXPECT_THROW((void)value.asAmount(), UsageError) << value.toJson();
    }
}

TEST(Datum, readsAsFlag) {
    for (const Datum& value :
         {Datum(true), Datum(1), Datum(-1), Datum("1"), Datum("-1"), Datum("yes"), Datum("True")}) {
        EXPECT_TRUE(value.asBool()) << value.toJson();
    }
    for (const Datum& value : {Datum(false), Datum(0), Datum("0"), Datum("no"), Datum("FALSE")}) {
        EXPECT_FALSE(value.asBool()) << value.toJson();
    }
    for (const Datum& value : {Datum(), Datum(""), Datum(2), Datum("بله"), Datum::list({})}) {
        EXPECT_THROW((void)value.asBool(), UsageError) << value.toJson();
    }
}

TEST(Datum, readsAsText) {
    EXPECT_EQ(Datum().asText(), "");
    EXPECT_EQ(Datum("متن").asText(), "متن");
    EXPECT_EQ(Datum(-7).asText(), "-7");
    EXPECT_EQ(Datum(12500.5L).asText(), "12500.5");
    EXPECT_EQ(Datum(true).asText(), "true");
    EXPECT_THROW((void)Datum::list({}).asText(), UsageError);
    EXPECT_THROW((void)Datum::record({}).asText(), UsageError);
}

TEST(Datum, fieldsAreFoundWithoutCase) {
    const Datum record = Datum::record({{"CostType", 3}});
    EXPECT_EQ(record["costtype"], Datum(3));
    EXPECT_TRUE(record["Code"].isNull());
    EXPECT_THROW((void)Datum(3)["Code"], UsageError);
}

TEST(Datum, refusalShowsTheValue) {
    try {
        (void)Datum("سه").asInteger();
        ADD_FAILURE() << "was read";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), "\"سه\" cannot be read as a whole number");
    }
}

TEST(Datum, amountsReadAsUsersWriteThem) {
    EXPECT_EQ(Datum("۱۲٬۵۰۰٫۵").asAmount(), 12500.5L);
    EXPECT_EQ(Datum("٣").asAmount(), 3.0L);
    EXPECT_EQ(Datum(" -12,500.5 ").asAmount(), -12500.5L);
    EXPECT_EQ(Datum(7).asAmount(), 7.0L);
    for (const char* const text : {"", "دو", "1e3", "۱۲ ریال"})
        EXPECT_THROW(static_cast<void>(Datum(text).asAmount()), UsageError) << text;
}

TEST(Datum, amountsMustBeFiniteAndHold) {
    EXPECT_THROW((void)Datum(std::numeric_limits<Extended>::infinity()), UsageError);
    EXPECT_THROW((void)Datum(1e39L), UsageError);
}

}  // namespace
}  // namespace basalt
