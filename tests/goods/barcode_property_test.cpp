// Random barcodes: what is composed by a valid layout comes apart again, and any bytes under any layout do no harm.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "fuzz/substring_oracle.h"
#include "fuzz/targets.h"
#include "goods/barcode_extractor_unt.h"
#include "goods/character_cut.h"
#include "package/services.h"
#include "tests/goods/layouts.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

namespace state = Barcode_extractor_unt;

class Dice {
public:
    explicit Dice(unsigned seed) : engine_(seed) {}
    int between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
    bool coin() { return between(0, 1) == 1; }
    std::string digits(int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += static_cast<char>('0' + between(0, 9));
        return text;
    }
    template <class Items>
    void shuffle(Items& items) {
        std::shuffle(items.begin(), items.end(), engine_);
    }

private:
    std::mt19937 engine_;
};

// A field of the barcode: where the layout keeps its place, and what stands there.
struct Field {
    int* start;
    int* count;
    std::string characters;
};

TEST(BarcodeRoundTrip, whatIsComposedComesApart) {
    Dice dice(20260601);
    for (int round = 0; round < 5000; ++round) {
        Layout layout;
        layout.ConstantCode = dice.digits(dice.between(1, 3));
        layout.AmountDivide = dice.coin() ? dice.between(1, 1000) : 0;
        layout.BalanceNoAsStore = dice.coin();
        const std::string good = dice.digits(dice.between(1, 6));
        const std::string amount = dice.coin() ? dice.digits(dice.between(1, 6)) : "";
        const std::string balance = dice.coin() ? dice.digits(dice.between(1, 3)) : "";
        const std::string price = dice.digits(dice.between(1, 8));
        int fillerStart = 0;
        int fillerCount = 0;
        std::vector<Field> fields = {{&layout.ConstantStart, &layout.ConstantCount, layout.ConstantCode},
                                     {&layout.ItemCodeStart, &layout.ItemCodeCount, good},
                                     {&layout.AmountStart, &layout.AmountCount, amount},
                                     {&layout.BalanceNoStart, &layout.BalanceNoCount, balance},
                                     {&layout.PriceStart, &layout.PriceCount, price},
                                     {&fillerStart, &fillerCount, dice.digits(dice.between(0, 3))}};
        dice.shuffle(fields);
        std::string barcode;
        for (const Field& field : fields) {
            *field.start = static_cast<int>(barcode.size()) + 1;
            *field.count = static_cast<int>(field.characters.size());
            barcode += field.characters;
        }
        layout.DigitCount = static_cast<int>(barcode.size());

        ScriptedSession script;
        FakeHost host(script);
        const AttachedHost attached(host);
        script.expect("SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = " + std::to_string(barcode.size()) +
                          " AND SUBSTRING('" + barcode + "' , ConstantStart, ConstantCount) = ConstantCode  ",
                      layoutRows({layout}));
        TBarCodeFormulType kind = bftNone;
        ASSERT_TRUE(FillGoodInfFromBarcode(butNone, kind, barcode, "12", "", 0)) << barcode;
        ASSERT_EQ(kind, bftAmount);
        ASSERT_EQ(state::GoodCode, Value(good)) << barcode;
        ASSERT_EQ(state::Fi, price) << barcode;
        ASSERT_EQ(state::BalanceNum, balance.empty() || !layout.BalanceNoAsStore ? "-1" : balance) << barcode;
        if (amount.empty()) {
            ASSERT_EQ(state::Weight, "1") << barcode;
        } else if (layout.AmountDivide == 0) {
            ASSERT_EQ(state::Weight, amount) << barcode;
        } else {
            // Thousandths of at most six digits, written without a single trailing zero.
            const int thousandths = std::stoi(amount);
            std::string expected = std::to_string(thousandths / 1000);
            std::string fraction = std::to_string(1000 + thousandths % 1000).substr(1);
            fraction.erase(fraction.find_last_not_of('0') + 1);
            if (!fraction.empty()) expected += "." + fraction;
            ASSERT_EQ(state::Weight, expected) << barcode;
        }
    }
}

TEST(BarcodeRoundTrip, theOracleItselfCutsByPosition) {
    using fuzz::substringOf;
    EXPECT_EQ(substringOf("2812345", 3, 5), "12345");
    EXPECT_EQ(substringOf("2812345", 0, 3), "28");
    EXPECT_EQ(substringOf("2812345", -3, 3), "");
    EXPECT_EQ(substringOf("2812345", 6, 5), "45");
    EXPECT_EQ(substringOf("۲۸۱", 2, 1), "۸");
    EXPECT_EQ(substringOf("a😀b", 2, 2), "😀");
    EXPECT_EQ(substringOf("a😀b", 3, 2), "\uFFFDb");
    EXPECT_EQ(substringOf("a😀b", 3, 0), "");
    EXPECT_EQ(substringOf("a€😀", 1, 4), "a€😀");
    for (const char* none : {"\x80", "\xC0\xAF", "\xD9", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8"})
        EXPECT_EQ(substringOf(none, 1, 1), std::nullopt) << none;
}

// Fields inside, outside, across either end and in the middle of pairs, of no and of negative length.
TEST(BarcodeRoundTrip, anyFieldIsTheSubstringAtItsPlace) {
    Dice dice(41);
    const std::string characters[] = {"0", "7", "x", "۵", "ی", "€", "😀", "𝟚", "\u200E", " "};
    constexpr int kEnds[] = {2147483647, -2147483647 - 1};
    const auto place = [&](int low, int high) {
        return dice.between(0, 30) == 0 ? kEnds[dice.between(0, 1)] : dice.between(low, high);
    };
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        const int size = dice.between(0, 12);
        for (int i = 0; i < size; ++i)
            text += characters[dice.between(0, 9)];
        const int start = place(-3, 26);
        const int count = place(-2, 26);
        ASSERT_EQ(cutCharacters(text, start, count), fuzz::substringOf(text, start, count).value())
            << text << " from " << start << ", " << count;
    }
}

TEST(BarcodeRoundTrip, anyBytesUnderAnyLayoutDoNoHarm) {
    Dice dice(7);
    for (int round = 0; round < 20000; ++round) {
        std::string input;
        const int size = dice.between(0, 40);
        for (int i = 0; i < size; ++i)
            input += static_cast<char>(dice.between(0, 255));
        if (dice.coin() && input.size() > 20) {
            // Layouts that fit, so that the fields are reached.
            const std::size_t prefix = static_cast<unsigned char>(input[16]) % 4;
            std::string barcode = dice.digits(13);
            barcode.replace(0, prefix, input.substr(17, prefix));
            // Now and then with a pair in the middle, which fields may cut.
            if (dice.coin()) barcode.replace(static_cast<std::size_t>(dice.between(3, 11)), 2, "😀");
            input.resize(17 + prefix);
            input += barcode;
            input[0] = 13;
            input[1] = 1;
            input[2] = static_cast<char>(prefix);
            input[3] = static_cast<char>(dice.between(0, 4));
        }
        fuzz::barcode(input);
    }
}

}  // namespace
}  // namespace basalt
