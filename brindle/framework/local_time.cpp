// The calendar, in whole days. A year is taken to begin with March, so that the leap day is its last and the
// lengths of the months follow one formula; 400 years (an era) have 146097 days. Tests: local_time_test.cpp.
#include "brindle/framework/local_time.h"

namespace brindle {
namespace {

constexpr std::int64_t kDaysPerEra = 146097;
constexpr std::int64_t kEpochFromMarchZero = 719468;  // 1970-01-01, counted from 1 March of the year 0
constexpr std::int64_t kSecondsPerDay = 86400;

constexpr std::int64_t FloorDivide(std::int64_t value, std::int64_t by) noexcept {
    return value / by - (value % by < 0 ? 1 : 0);
}

}  // namespace

bool IsLeapYear(std::int64_t year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysInMonth(std::int64_t year, int month) noexcept {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

std::int64_t DaysFromDate(const CalendarDate& date) noexcept {
    const std::int64_t year = date.month <= 2 ? date.year - 1 : date.year;
    const std::int64_t era = FloorDivide(year, 400);
    const std::int64_t yearOfEra = year - era * 400;
    const int monthFromMarch = (date.month + 9) % 12;
    const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + date.day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * kDaysPerEra + dayOfEra - kEpochFromMarchZero;
}

CalendarDate DateFromDays(std::int64_t days) noexcept {
    days += kEpochFromMarchZero;
    const std::int64_t era = FloorDivide(days, kDaysPerEra);
    const std::int64_t dayOfEra = days - era * kDaysPerEra;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const auto dayOfYear = static_cast<int>(dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100));
    const int monthFromMarch = (5 * dayOfYear + 2) / 153;
    const int day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    const int month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

LocalTime BreakDownUtc(std::int64_t unixSeconds) noexcept {
    const std::int64_t days = FloorDivide(unixSeconds, kSecondsPerDay);
    const auto seconds = static_cast<int>(unixSeconds - days * kSecondsPerDay);
    const CalendarDate date = DateFromDays(days);
    LocalTime out;
    out.year = static_cast<int>(date.year);
    out.month = date.month;
    out.day = date.day;
    out.hour = seconds / 3600;
    out.minute = seconds / 60 % 60;
    out.second = seconds % 60;
    out.weekday = static_cast<int>((days % 7 + 11) % 7);  // day 0 was a Thursday
    out.yearDay = static_cast<int>(days - DaysFromDate({date.year, 1, 1}));
    return out;
}

}  // namespace brindle
