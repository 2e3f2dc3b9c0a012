#include "host/services/jalali_calendar.h"

#include <gtest/gtest.h>

#include "ado/error.h"

namespace basalt::host {
namespace {

struct KnownDay {
    const char* name;
    JalaliDate jalali;
    GregorianDate gregorian;
};

class KnownDays : public ::testing::TestWithParam<KnownDay> {};

TEST_P(KnownDays, convertBothWays) {
    const auto& [name, jalali, gregorian] = GetParam();
    EXPECT_EQ(toJalali(gregorian.year, gregorian.month, gregorian.day), jalali);
    EXPECT_EQ(toGregorian(jalali), gregorian);
}

INSTANTIATE_TEST_SUITE_P(Calendar, KnownDays,
                         ::testing::Values(KnownDay{"firstDayOfAll", {1, 1, 1}, {622, 3, 22}},
                                           KnownDay{"epochOfUnix", {1348, 10, 11}, {1970, 1, 1}},
                                           KnownDay{"winterOf1357", {1357, 11, 22}, {1979, 2, 11}},
                                           KnownDay{"newYear1375AfterALeapYear", {1375, 1, 1}, {1996, 3, 20}},
                                           KnownDay{"leapDayOf1375", {1375, 12, 30}, {1997, 3, 20}},
                                           KnownDay{"leapDayOf1399", {1399, 12, 30}, {2021, 3, 20}},
                                           KnownDay{"newYear1400", {1400, 1, 1}, {2021, 3, 21}},
                                           KnownDay{"lastDayOfACommonYear", {1402, 12, 29}, {2024, 3, 19}},
                                           KnownDay{"leapDayOf1403", {1403, 12, 30}, {2025, 3, 20}},
                                           KnownDay{"newYear1404", {1404, 1, 1}, {2025, 3, 21}},
                                           KnownDay{"endOfSummer", {1404, 6, 31}, {2025, 9, 22}},
                                           KnownDay{"autumnOf1405", {1405, 8, 30}, {2026, 11, 21}},
                                           KnownDay{"leapDayOf1408", {1408, 12, 30}, {2030, 3, 20}},
                                           KnownDay{"gregorianLeapDay", {1406, 12, 9}, {2028, 2, 28}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(JalaliCalendar, leapYearsOfACycleHaveOneGapOfFive) {
    std::vector<int> leaps;
    for (int year = 1370; year <= 1412; ++year) {
        if (isLeapYear(year)) leaps.push_back(year);
    }
    EXPECT_EQ(leaps, (std::vector<int>{1370, 1375, 1379, 1383, 1387, 1391, 1395, 1399, 1403, 1408, 1412}));
}

TEST(JalaliCalendar, everyDayFollowsTheOneBefore) {
    GregorianDate day = toGregorian({1, 1, 1});
    JalaliDate expected{1, 1, 1};
    const auto nextGregorian = [](GregorianDate d) {
        const bool leap = (d.year % 4 == 0 && d.year % 100 != 0) || d.year % 400 == 0;
        const int days[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        if (++d.day > days[d.month - 1]) {
            d.day = 1;
            if (++d.month > 12) {
                d.month = 1;
                ++d.year;
            }
        }
        return d;
    };
    while (expected.year <= 3177) {
        ASSERT_EQ(toJalali(day.year, day.month, day.day), expected) << toText(expected, "/");
        ASSERT_EQ(toGregorian(expected), day) << toText(expected, "/");
        if (++expected.day > daysInMonth(expected.year, expected.month)) {
            expected.day = 1;
            if (++expected.month > 12) {
                expected.month = 1;
                ++expected.year;
            }
        }
        day = nextGregorian(day);
    }
    EXPECT_THROW(static_cast<void>(toJalali(day.year, day.month, day.day)), UsageError) << "beyond the last year";
}

TEST(JalaliCalendar, daysThatDoNotExistAreRefused) {
    EXPECT_THROW(static_cast<void>(toGregorian({1402, 12, 30})), UsageError);
    EXPECT_THROW(static_cast<void>(toGregorian({1404, 7, 31})), UsageError);
    EXPECT_THROW(static_cast<void>(toGregorian({1404, 13, 1})), UsageError);
    EXPECT_THROW(static_cast<void>(toGregorian({0, 1, 1})), UsageError);
    EXPECT_THROW(static_cast<void>(toGregorian({3178, 1, 1})), UsageError);
    EXPECT_THROW(static_cast<void>(toJalali(2025, 2, 29)), UsageError);
    EXPECT_THROW(static_cast<void>(toJalali(2025, 13, 1)), UsageError);
    EXPECT_THROW(static_cast<void>(toJalali(600, 1, 1)), UsageError);
}

TEST(JalaliCalendar, textHasTwoDigitsEachAndAnySeparator) {
    EXPECT_EQ(toText({1404, 1, 2}, "/"), "1404/01/02");
    EXPECT_EQ(toText({1404, 12, 29}, ""), "14041229");
    EXPECT_EQ(toText({7, 1, 2}, "-"), "0007-01-02");
}

TEST(JalaliCalendar, readsWhatPeopleType) {
    EXPECT_EQ(parseJalali("1405/08/30"), (JalaliDate{1405, 8, 30}));
    EXPECT_EQ(parseJalali("1405-8-3"), (JalaliDate{1405, 8, 3}));
    EXPECT_EQ(parseJalali("۱۴۰۳/۱۲/۳۰"), (JalaliDate{1403, 12, 30}));
    EXPECT_EQ(parseJalali("١٤٠٣/١٢/٣٠"), (JalaliDate{1403, 12, 30}));
    for (const char* text :
         {"", "1402/12/30", "1405/8", "1405/8-3", "1405/08/30 ", "140500/8/3", "امروز", "1405/08/300"}) {
        EXPECT_EQ(parseJalali(text), std::nullopt) << text;
    }
}

TEST(JalaliCalendar, monthsHaveNames) {
    EXPECT_EQ(monthName(1), "فروردین");
    EXPECT_EQ(monthName(12), "اسفند");
    EXPECT_THROW(static_cast<void>(monthName(0)), UsageError);
}

}  // namespace
}  // namespace basalt::host
