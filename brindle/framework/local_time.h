// LocalTime: a moment broken down by the calendar, and the calendar itself (proleptic Gregorian, no leap
// seconds). Which time zone a LocalTime means is for whoever filled it to say. Thread: any; values.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"

namespace brindle {

struct LocalTime {
    int year = 1970;
    int month = 1;    // 1 to 12
    int day = 1;      // 1 to 31
    int hour = 0;     // 0 to 23
    int minute = 0;   // 0 to 59
    int second = 0;   // 0 to 60
    int weekday = 4;  // 0 = Sunday
    int yearDay = 0;  // 0 = 1 January
    int utcOffsetSeconds = 0;
};

// A day of the calendar.
struct CalendarDate {
    std::int64_t year;
    int month;  // 1 to 12
    int day;    // 1 to 31
};

// Whether the year has a 29 February.
BRINDLE_API bool IsLeapYear(std::int64_t year) noexcept;
// 28 to 31; 0 for a month that is none.
BRINDLE_API int DaysInMonth(std::int64_t year, int month) noexcept;
// Days since 1970-01-01; negative before. The month must be 1 to 12; the day may be any and counts on.
BRINDLE_API std::int64_t DaysFromDate(const CalendarDate& date) noexcept;
BRINDLE_API CalendarDate DateFromDays(std::int64_t days) noexcept;
// Seconds since 1970-01-01 UTC broken down as UTC. The year must fit an int.
BRINDLE_API LocalTime BreakDownUtc(std::int64_t unixSeconds) noexcept;

}  // namespace brindle
