#include "engines/embedded/interpreter/message_format.h"

#include <gtest/gtest.h>

#include "ado/error.h"

namespace basalt::embedded {
namespace {

struct FormatCase {
    const char* name;
    const char* format;
    std::vector<Value> values;
    std::string text;
};

Value text(const char* value) {
    return std::string(value);
}
Value number(std::int64_t value) {
    return value;
}

TEST(MessageFormat, FillsItsPlaces) {
    const FormatCase cases[] = {
        {"nothing to fill", "plain", {}, "plain"},
        {"percent", "100%%", {}, "100%"},
        {"text and number", "%s has %d", {text("کالا"), number(5)}, "کالا has 5"},
        {"width", "[%5d][%-5d][%05d]", {number(42), number(42), number(42)}, "[   42][42   ][00042]"},
        {"text width", "[%6s][%-6s]", {text("نام"), text("ab")}, "[   نام][ab    ]"},
        {"text precision", "[%.2s]", {text("عمده")}, "[عم]"},
        {"signs", "%+d % d %d", {number(5), number(5), number(-5)}, "+5  5 -5"},
        {"bases", "%x %X %o %u", {number(255), number(255), number(8), number(7)}, "ff FF 10 7"},
        {"alternate", "%#x %#o", {number(255), number(8)}, "0xff 010"},
        {"negative unsigned", "%u %x", {number(-1), number(-1)}, "4294967295 ffffffff"},
        {"large", "%I64d", {number(9'000'000'000)}, "9000000000"},
        {"smallest large", "%I64d", {number(INT64_MIN)}, "-9223372036854775808"},
        {"precision of a number", "%.4d", {number(7)}, "0007"},
        {"star", "[%*d][%-*d]", {number(4), number(7), number(4), number(7)}, "[   7][7   ]"},
        {"null", "%s %d", {Null{}, Null{}}, "(null) (null)"},
        {"missing", "%s %d", {text("a")}, "a (null)"},
        {"too many", "%s", {text("a"), text("b")}, "a"},
        {"bit", "%d", {Value(true)}, "1"},
    };
    for (const FormatCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(formatMessage(c.format, c.values), c.text);
    }
}

int errorOf(const char* format, const std::vector<Value>& values) {
    try {
        static_cast<void>(formatMessage(format, values));
        return 0;
    } catch (const DatabaseError& error) {
        return error.nativeCode();
    }
}

TEST(MessageFormat, RefusesWhatDoesNotFit) {
    EXPECT_EQ(errorOf("%d", {text("x")}), 2786);
    EXPECT_EQ(errorOf("%s", {number(1)}), 2786);
    EXPECT_EQ(errorOf("%d", {number(3'000'000'000)}), 2786);
    EXPECT_EQ(errorOf("%q", {number(1)}), 2787);
    EXPECT_EQ(errorOf("ends with %", {}), 2787);
    EXPECT_EQ(errorOf("%s", {Value(1.5)}), 2748);
}

TEST(MessageFormat, BoundsWidthAndLength) {
    EXPECT_EQ(formatMessage("%99999999d", {number(1)}).size(), 1000U);
    EXPECT_EQ(formatMessage("%s", {Value(std::string(5000, 'x'))}).size(), 2047U);
}

}  // namespace
}  // namespace basalt::embedded
