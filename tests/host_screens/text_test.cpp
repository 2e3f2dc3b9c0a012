// Digits, captions and number formats.
#include <gtest/gtest.h>

#include "host/screens/display_format.h"
#include "host/screens/persian_digits.h"
#include "host/screens/short_cut.h"
#include "tests/ado/named_case.h"

namespace basalt::host {
namespace {

TEST(PersianDigits, changeDigitsAndNothingElse) {
    EXPECT_EQ(persianDigits(QStringLiteral("-1,203.45 ریال")).toStdString(), "-۱,۲۰۳.۴۵ ریال");
    EXPECT_EQ(latinDigits(QStringLiteral("۰۱۲۳۴۵۶۷۸۹")).toStdString(), "0123456789");
    EXPECT_EQ(latinDigits(QStringLiteral("٠١٢٣٤٥٦٧٨٩ کالا")).toStdString(), "0123456789 کالا");
}

struct CaptionCase {
    const char* name;
    const char* caption;
    const char* title;
    const char* key;
};

class Captions : public ::testing::TestWithParam<CaptionCase> {};

TEST_P(Captions, nameTheirKeyInTheLastWord) {
    const CaptionParts parts = splitCaption(QString::fromUtf8(GetParam().caption));
    EXPECT_EQ(parts.title.toStdString(), GetParam().title);
    EXPECT_EQ(parts.key.toString(QKeySequence::PortableText).toStdString(), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(All, Captions,
                         ::testing::Values(CaptionCase{"functionKey", "حذف F7", "حذف", "F7"},
                                           CaptionCase{"enter", "انتخاب Enter", "انتخاب", "Enter"},
                                           CaptionCase{"escape", "خروج Esc", "خروج", "Esc"},
                                           CaptionCase{"severalWords", "پیش نمایش ليست F9", "پیش نمایش ليست", "F9"},
                                           CaptionCase{"combination", "چاپ Ctrl+P", "چاپ", "Ctrl+P"},
                                           CaptionCase{"noKey", "پیش نمایش ليست", "پیش نمایش ليست", ""},
                                           CaptionCase{"oneLetterIsNoKey", "سطح A", "سطح A", ""},
                                           CaptionCase{"onlyAKey", "F7", "F7", ""}, CaptionCase{"empty", "", "", ""}),
                         NameOfCase());

struct FormatCase {
    const char* name;
    const char* pattern;
    const char* value;
    const char* text;
};

class DisplayFormats : public ::testing::TestWithParam<FormatCase> {};

TEST_P(DisplayFormats, showNumbers) {
    EXPECT_EQ(DisplayFormat(GetParam().pattern).text(*Decimal::parse(GetParam().value)), GetParam().text);
}

constexpr const char* kPrice = "#,#0.##;-#,#0.##;0";

INSTANTIATE_TEST_SUITE_P(
    All, DisplayFormats,
    ::testing::Values(
        FormatCase{"noFormat", "", "1234.50", "1234.5"}, FormatCase{"groups", kPrice, "1234567.5", "1,234,567.5"},
        FormatCase{"wholeNumber", kPrice, "250.000000000", "250"},
        FormatCase{"negative", kPrice, "-1234.25", "-1,234.25"}, FormatCase{"zero", kPrice, "0.00", "0"},
        FormatCase{"roundedToZero", kPrice, "-0.004", "0"}, FormatCase{"roundedUp", kPrice, "999.995", "1,000"},
        FormatCase{"belowOne", kPrice, "0.5", "0.5"}, FormatCase{"noDecimals", "#,#0;-#,#0;0", "1499.5", "1,500"},
        FormatCase{"threeDecimals", "#,#0.###;-#,#0.###;0", "7.1254", "7.125"},
        FormatCase{"fixedDecimals", "0.00", "3", "3.00"}, FormatCase{"leadingZeros", "0000", "42", "0042"},
        FormatCase{"onlyPositive", "#,#0.0", "-12.34", "-12.3"},
        FormatCase{"words", "#,#0\" ریال\"", "1500", "1,500 ریال"},
        FormatCase{"zeroInWords", "#,#0;-#,#0;\"رایگان\"", "0", "رایگان"},
        FormatCase{"thirtyEightDigits", kPrice, "12345678901234567890123456789012345678",
                   "12,345,678,901,234,567,890,123,456,789,012,345,678"}),
    NameOfCase());

}  // namespace
}  // namespace basalt::host
