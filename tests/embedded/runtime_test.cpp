// Stored forms and the order of texts.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "ado/error.h"
#include "engines/embedded/runtime/collation.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/dates.h"
#include "engines/embedded/runtime/decimal_codec.h"
#include "engines/embedded/runtime/decimal_math.h"

namespace basalt::embedded {
namespace {

int compareBytes(const EncodedDecimal& a, const EncodedDecimal& b) {
    const int common = std::memcmp(a.bytes.data(), b.bytes.data(), static_cast<std::size_t>(std::min(a.size, b.size)));
    return common != 0 ? common : a.size - b.size;
}

TEST(DecimalCodec, keepsEveryNumberAndItsOrder) {
    std::vector<Int128> numbers = {0};
    for (int digits = 0; digits < 38; ++digits) {
        for (const int offset : {-1, 0, 1}) {
            numbers.push_back(powerOfTen(digits) + offset);
            numbers.push_back(-powerOfTen(digits) + offset);
        }
    }
    for (int bits = 0; bits < 120; ++bits) {
        numbers.push_back(Int128{1} << bits);
        numbers.push_back(-(Int128{1} << bits));
        numbers.push_back((Int128{1} << bits) - 1);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const EncodedDecimal encoded = encodeDecimal(numbers[i]);
        EXPECT_EQ(toString(decodeDecimal(encoded.bytes.data(), encoded.size)), toString(numbers[i]));
        if (i > 0) {
            EXPECT_LT(compareBytes(encodeDecimal(numbers[i - 1]), encoded), 0)
                << toString(numbers[i - 1]) << " and " << toString(numbers[i]);
        }
    }
}

TEST(DecimalCodec, refusesBytesThatAreNoDecimal) {
    EXPECT_THROW(static_cast<void>(decodeDecimal("", 0)), DatabaseError);
    EXPECT_THROW(static_cast<void>(decodeDecimal("\x82\x01", 2)), DatabaseError);
}

TEST(Collation, fastWayAndCollatorAgree) {
    // Every pair of short texts over characters of all sorts is ordered one way only.
    const std::vector<std::string> pieces = {"", "a", "B", "é", "1", " ", "_", "ی", "ي", "ک", "l", "·", "\u0301", "z"};
    std::vector<std::string> texts;
    for (const std::string& a : pieces) {
        for (const std::string& b : pieces) {
            for (const std::string& c : {std::string(), std::string("x"), std::string(" ")})
                texts.push_back(a + b + c);
        }
    }
    std::mt19937 random(7);
    std::shuffle(texts.begin(), texts.end(), random);
    for (std::size_t i = 0; i + 2 < texts.size(); ++i) {
        for (std::size_t j = i + 1; j < std::min(texts.size(), i + 40); ++j) {
            const auto sign = [](int value) { return (value > 0) - (value < 0); };
            ASSERT_EQ(sign(compareTexts(texts[i], texts[j])), -sign(compareTexts(texts[j], texts[i])))
                << texts[i] << " | " << texts[j];
            const std::string& third = texts[(j * 31) % texts.size()];
            if (compareTexts(texts[i], texts[j]) <= 0 && compareTexts(texts[j], third) <= 0) {
                ASSERT_LE(compareTexts(texts[i], third), 0) << texts[i] << " | " << texts[j] << " | " << third;
            }
        }
    }
}

TEST(Dates, everyWrittenFormReadsBack) {
    const SqlType type = SqlType::of(TypeKind::DateTime);
    const std::int64_t moment = roundedTo(fromCivil({2024, 2, 29, 13, 5, 7, 997'000'000}).ticks, type);
    for (const int style : {101, 102, 103, 104, 105, 106, 107, 110, 111, 112, 120, 121, 126}) {
        const std::string text = formatDate(moment, type, style);
        const std::optional<std::int64_t> back = parseDate(text, style);
        ASSERT_TRUE(back) << text;
        EXPECT_EQ(*back / kTicksPerDay, moment / kTicksPerDay) << text;
    }
    EXPECT_EQ(*parseDate(formatDate(moment, type, 121), 121), moment);
}

TEST(Dates, refusesWhatIsNoDate) {
    for (const char* text :
         {"abc", "2024-02-30", "2023-02-29", "24:00", "12", "2024-1", "1/2", "13:61", "2024-01-01 25:00", "--"}) {
        EXPECT_FALSE(parseDate(text, 0)) << text;
    }
}

TEST(Convert, numbersThatFitNowhere) {
    const SqlType text = SqlType::text(TypeKind::VarChar, 50);
    for (const char* bad : {"1e400", "nan", "inf", "0x10", "1,5", "--1", "1 2"}) {
        EXPECT_THROW(static_cast<void>(convert(std::string(bad), text, SqlType::of(TypeKind::Float))), DatabaseError)
            << bad;
        EXPECT_THROW(static_cast<void>(convert(std::string(bad), text, SqlType::of(TypeKind::Int))), DatabaseError)
            << bad;
        EXPECT_THROW(static_cast<void>(convert(std::string(bad), text, SqlType::decimal(10, 2))), DatabaseError) << bad;
    }
}

}  // namespace
}  // namespace basalt::embedded
