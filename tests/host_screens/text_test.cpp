// Digits, captions and number formats.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QSpinBox>
#include <QtTest>

#include "host/screens/display_format.h"
#include "host/screens/number_typing.h"
#include "host/screens/persian_digits.h"
#include "host/screens/short_cut.h"
#include "host/screens/theme.h"
#include "tests/ado/named_case.h"

namespace basalt::host {
namespace {

TEST(PersianDigits, changeDigitsAndNothingElse) {
    EXPECT_EQ(persianDigits(QStringLiteral("-1,203.45 ریال")).toStdString(), "-۱,۲۰۳.۴۵ ریال");
    EXPECT_EQ(latinDigits(QStringLiteral("۰۱۲۳۴۵۶۷۸۹")).toStdString(), "0123456789");
    EXPECT_EQ(latinDigits(QStringLiteral("٠١٢٣٤٥٦٧٨٩ کالا")).toStdString(), "0123456789 کالا");
}

TEST(ScreenNumbers, havePersianMarksBetweenDigits) {
    EXPECT_EQ(screenNumber("-1,234,567.05").toStdString(), "-۱٬۲۳۴٬۵۶۷٫۰۵");
    EXPECT_EQ(screenNumber("0").toStdString(), "۰");
    EXPECT_EQ(screenNumber("").toStdString(), "");
    EXPECT_EQ(screenNumber("1,500 ریال.").toStdString(), "۱٬۵۰۰ ریال.");
    EXPECT_EQ(plainNumber(QStringLiteral("-۱٬۲۳۴٬۵۶۷٫۰۵")).toStdString(), "-1,234,567.05");
}

TEST(ScreenNumbers, inASentenceKeepTheirSignOnTheLeft) {
    EXPECT_EQ(isolatedNumber("-12,500").toStdString(), "\u2066-۱۲٬۵۰۰\u2069");
    EXPECT_EQ(isolatedNumber("12,500").toStdString(), "۱۲٬۵۰۰");
    EXPECT_EQ(plainNumber(isolatedNumber("-12,500.5")).toStdString(), "-12,500.5");
}

TEST(ScreenTexts, leaveWordsWithLatinLettersAlone) {
    EXPECT_EQ(screenText(QStringLiteral("سطر 12 از A4 در 1405/08/30، 08:30:11")).toStdString(),
              "سطر ۱۲ از A4 در ۱۴۰۵/۰۸/۳۰، ۰۸:۳۰:۱۱");
    EXPECT_EQ(screenText(QStringLiteral(" 6267311001001\nXK-200  7")).toStdString(), " ۶۲۶۷۳۱۱۰۰۱۰۰۱\nXK-200  ۷");
}

TEST(ScreenNumbers, areLatinWhenTheUserWishesSo) {
    showPersianDigits(false);
    EXPECT_EQ(screenNumber("1,234.5").toStdString(), "1,234.5");
    EXPECT_EQ(screenText(QStringLiteral("سطر 12")).toStdString(), "سطر 12");
    EXPECT_EQ(typedNumber(QStringLiteral("۱"), true).toStdString(), "1");
    EXPECT_EQ(typedNumber(QStringLiteral("/"), true).toStdString(), ".");
    showPersianDigits(true);
    EXPECT_EQ(screenNumber("1,234.5").toStdString(), "۱٬۲۳۴٫۵");
}

TEST(PlainAmounts, takeMarksOfThousandsOnlyBetweenGroupsOfThree) {
    const auto plain = [](const char* text) {
        return plainAmount(QString::fromUtf8(text)).value_or("none").toStdString();
    };
    EXPECT_EQ(plain("1,500"), "1500");
    EXPECT_EQ(plain("-۱۲٬۳۴۵٬۶۷۸٫۵"), "-12345678.5");
    EXPECT_EQ(plain("0"), "0");
    EXPECT_EQ(plain("0.125"), "0.125");
    EXPECT_EQ(plain(".5"), "0.5");
    EXPECT_EQ(plain("-٫۵"), "-0.5");
    EXPECT_EQ(plain("2."), "2");
    EXPECT_EQ(plain("۱٬۵۰۰/"), "1500");
    EXPECT_EQ(plain("."), "none");
    EXPECT_EQ(plain("-."), "none");
    EXPECT_EQ(plain(""), "none");
    EXPECT_EQ(plain("1000،000"), "none");
    EXPECT_EQ(plain("1,5"), "none");
    EXPECT_EQ(plain("1,234٬567"), "none");
    // A nought is no thousand: the comma was meant for the point.
    EXPECT_EQ(plain("0,125"), "none");
    EXPECT_EQ(plain("0٬050"), "none");
    EXPECT_EQ(plain("007"), "007");
}

TEST(NumberTyping, showsWhatIsTypedAsWhatIsStored) {
    applyTheme(*qApp);
    QLineEdit number;
    number.setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    QTest::keyClicks(&number, "-12.5");
    EXPECT_EQ(number.text().toStdString(), "-۱۲٫۵");
    number.clear();
    QTest::keyClicks(&number, "1/25");
    EXPECT_EQ(number.text().toStdString(), "۱٫۲۵");
    QSpinBox spin;
    spin.setMaximum(1000);
    auto* inner = spin.findChild<QLineEdit*>();
    inner->selectAll();
    QTest::keyClicks(&spin, "57");
    EXPECT_EQ(spin.value(), 57);
    EXPECT_EQ(inner->text().toStdString(), "۵۷");
    QLineEdit words;
    QTest::keyClicks(&words, "A4 1.5/2");
    EXPECT_EQ(words.text().toStdString(), "A4 1.5/2");
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
