// What scanners type under other keyboard layouts.
#include "host/counter/scan_text.h"

#include <gtest/gtest.h>

namespace basalt::host {
namespace {

std::string repaired(const char* typed) {
    return repairedScan(QString::fromUtf8(typed)).toStdString();
}

TEST(ScanText, latinScansStayAsTheyAre) {
    EXPECT_EQ(repaired("2800057012505"), "2800057012505");
    EXPECT_EQ(repaired("AB12cd"), "AB12cd");
    EXPECT_EQ(repaired("  28 \t"), "28");
    EXPECT_EQ(repaired(""), "");
}

TEST(ScanText, digitsOfOtherScriptsBecomeDigits) {
    EXPECT_EQ(repaired("۲۸۰۰۰۵۷۰۱۲۵۰۵"), "2800057012505");
    EXPECT_EQ(repaired("٢٨٠٠"), "2800");
    EXPECT_EQ(repaired("۲8٠"), "280");
}

TEST(ScanText, lettersOfThePersianLayoutBecomeTheirKeys) {
    EXPECT_EQ(repaired("شذز۱۲"), "abc12");
    EXPECT_EQ(repaired("ضصثقفغعهخحشسیبلاتنمظطزرذدپ"), "qwertyuiopasdfghjklzxcvbnm");
    EXPECT_EQ(repaired("ي"), "d");  // the Arabic letter of the same key
}

TEST(ScanText, signsAboveTheDigitsBecomeDigits) {
    EXPECT_EQ(repaired("!٬٫﷼٪×،*)("), "1234567890");
}

// It would be the barcode of another good.
TEST(ScanText, signsOfTheBarcodeItselfStay) {
    for (const char* scan : {"2*00105012507", "!AB", "(01)06267311001001", "12!", "AB*", "2%00", "a,b", "*"})
        EXPECT_EQ(repaired(scan), scan);
    EXPECT_EQ(repaired("۲*۰۰"), "2*00");
    EXPECT_EQ(repaired("۲٪۰۰"), "2٪00");
    EXPECT_EQ(repaired("(۰۱)۰۶۲"), "(01)062");
    EXPECT_EQ(repaired("شز*"), "ac*");
    EXPECT_EQ(repaired("٬*a"), "٬*a");
    EXPECT_EQ(repaired("!*)("), "!*)(");  // of which layout nobody knows
    EXPECT_EQ(repaired("٬*(( "), "2800");
}

TEST(ScanText, directionMarksGo) {
    EXPECT_EQ(repaired("\u200F\u202B28\u202C\u2066"
                       "00\u2069"),
              "2800");
}

TEST(ScanText, aPlainCodeHasLettersAndDigitsAlone) {
    EXPECT_TRUE(isPlainCode("2800057012505"));
    EXPECT_TRUE(isPlainCode("AB12"));
    EXPECT_FALSE(isPlainCode(""));
    EXPECT_FALSE(isPlainCode("12'34"));
    EXPECT_FALSE(isPlainCode("12%"));
    EXPECT_FALSE(isPlainCode("12 34"));
    EXPECT_FALSE(isPlainCode(QString::fromUtf8("۱۲")));
}

}  // namespace
}  // namespace basalt::host
