// The calendar: rows, and every day of some centuries against a calendar that counts.
#include "brindle/framework/local_time.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace brindle;

std::string Shown(const LocalTime& t) {
    std::string out;
    for (const int part : {t.year, t.month, t.day, t.hour, t.minute, t.second, t.weekday, t.yearDay})
        out += std::to_string(part) + " ";
    return out;
}

TEST(LocalTime, BreakDown) {
    struct Row {
        const char* label;
        std::int64_t seconds;
        const char* expected;
    };
    const Row rows[] = {
        {"epoch", 0, "1970 1 1 0 0 0 4 0 "},
        {"one second before", -1, "1969 12 31 23 59 59 3 364 "},
        {"a leap day", 1709251199, "2024 2 29 23 59 59 4 59 "},
        {"end of 32 bits", 2147483647, "2038 1 19 3 14 7 2 18 "},
        {"end of unsigned 32 bits", 4294967295, "2106 2 7 6 28 15 0 37 "},
        {"1601", -11644473600, "1601 1 1 0 0 0 1 0 "},
        {"a century without a leap day", -2203891200, "1900 3 1 0 0 0 4 59 "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Shown(BreakDownUtc(row.seconds)), row.expected);
    }
}

TEST(LocalTime, EveryDayOfTenCenturies) {
    std::int64_t days = DaysFromDate({1500, 1, 1});
    for (std::int64_t year = 1500; year < 2500; ++year) {
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; day <= DaysInMonth(year, month); ++day, ++days) {
                ASSERT_EQ(DaysFromDate({year, month, day}), days);
                const CalendarDate back = DateFromDays(days);
                ASSERT_TRUE(back.year == year && back.month == month && back.day == day) << days;
            }
        }
    }
    EXPECT_EQ(days, DaysFromDate({2500, 1, 1}));
}

TEST(LocalTime, Years) {
    EXPECT_TRUE(IsLeapYear(2000) && IsLeapYear(2024) && IsLeapYear(400) && IsLeapYear(0));
    EXPECT_FALSE(IsLeapYear(1900) || IsLeapYear(2023) || IsLeapYear(2100));
    EXPECT_EQ(DaysInMonth(2024, 2), 29);
    EXPECT_EQ(DaysInMonth(2023, 2), 28);
    EXPECT_EQ(DaysInMonth(2023, 0), 0);
    EXPECT_EQ(DaysInMonth(2023, 13), 0);
    EXPECT_EQ(DaysFromDate({2024, 2, 30}), DaysFromDate({2024, 3, 1})) << "a day too many counts on";
    EXPECT_EQ(DaysFromDate({-4, 3, 1}), DaysFromDate({-4, 2, 29}) + 1) << "years before 0 as well";
}

}  // namespace
