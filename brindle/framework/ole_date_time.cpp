// COleDateTime and its spans. Conversions go through whole days (calendar) and whole seconds (time of day).
// Tests: ole_date_time_test.cpp.
#include "brindle/framework/ole_date_time.h"

#include <algorithm>
#include <cmath>

namespace {

using brindle::LocalTime;

constexpr double kSecondsPerDay = 86400;
constexpr std::int64_t kDateZero = -25569;    // 1899-12-30 in days from 1970-01-01
constexpr double kFirstDay = -657434;         // 0100-01-01
constexpr double kLastDay = 2958465;          // 9999-12-31
constexpr double kLargestSpanSeconds = 4e18;  // what still fits 64 bits

bool InRange(double date) noexcept {
    return date > kFirstDay - 1 && date < kLastDay + 1;
}

double TimeOfDay(int hour, int minute, int second) noexcept {
    return hour / 24.0 + minute / 1440.0 + second / kSecondsPerDay;
}

// A span in whole seconds, rounded half away from zero.
std::int64_t WholeSeconds(double days) noexcept {
    const double seconds = std::round(days * kSecondsPerDay);
    return std::isnan(seconds)
               ? 0
               : static_cast<std::int64_t>(std::clamp(seconds, -kLargestSpanSeconds, kLargestSpanSeconds));
}

// Status enumerations rank null over invalid over valid.
template <class Status>
Status Worse(Status a, Status b) noexcept {
    return std::max(a, b);
}

}  // namespace

COleDateTimeSpan::COleDateTimeSpan(std::int32_t days, int hours, int minutes, int seconds) noexcept
    : m_span(days + TimeOfDay(hours, minutes, seconds)) {}

std::int64_t COleDateTimeSpan::GetDays() const noexcept {
    return WholeSeconds(m_span) / 86400;
}

int COleDateTimeSpan::GetHours() const noexcept {
    return static_cast<int>(WholeSeconds(m_span) / 3600 % 24);
}

int COleDateTimeSpan::GetMinutes() const noexcept {
    return static_cast<int>(WholeSeconds(m_span) / 60 % 60);
}

int COleDateTimeSpan::GetSeconds() const noexcept {
    return static_cast<int>(WholeSeconds(m_span) % 60);
}

double COleDateTimeSpan::GetTotalDays() const noexcept {
    return static_cast<double>(GetDays());
}

double COleDateTimeSpan::GetTotalHours() const noexcept {
    return static_cast<double>(WholeSeconds(m_span) / 3600);
}

double COleDateTimeSpan::GetTotalMinutes() const noexcept {
    return static_cast<double>(WholeSeconds(m_span) / 60);
}

double COleDateTimeSpan::GetTotalSeconds() const noexcept {
    return static_cast<double>(WholeSeconds(m_span));
}

COleDateTimeSpan COleDateTimeSpan::operator+(const COleDateTimeSpan& other) const noexcept {
    COleDateTimeSpan sum(m_span + other.m_span);
    sum.m_status = Worse(m_status, other.m_status);
    return sum;
}

COleDateTimeSpan COleDateTimeSpan::operator-(const COleDateTimeSpan& other) const noexcept {
    return *this + -other;
}

COleDateTimeSpan COleDateTimeSpan::operator-() const noexcept {
    COleDateTimeSpan negated(-m_span);
    negated.m_status = m_status;
    return negated;
}

COleDateTime::COleDateTime(double days) noexcept : m_dt(days), m_status(InRange(days) ? valid : invalid) {}

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept {
    SetDateTime(year, month, day, hour, minute, second);
}

COleDateTime::COleDateTime(const FILETIME& time, int utcOffsetSeconds) noexcept
    : COleDateTime(brindle::BreakDownUtc(
          static_cast<std::int64_t>(brindle::FileTimeToTicks(time) / brindle::kTicksPerSecond) -
          brindle::kUnixEpochSeconds + utcOffsetSeconds)) {}

COleDateTime::COleDateTime(const LocalTime& time) noexcept {
    SetDateTime(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept {
    const bool isDate = year >= 100 && year <= 9999 && day >= 1 && day <= brindle::DaysInMonth(year, month);
    const bool isTime = hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    m_dt = 0;
    m_status = isDate && isTime ? valid : invalid;
    if (m_status == invalid) return m_status;
    const auto days = static_cast<double>(brindle::DaysFromDate({year, month, day}) - kDateZero);
    const double fraction = TimeOfDay(hour, minute, second);
    m_dt = days < 0 ? days - fraction : days + fraction;
    return m_status;
}

bool COleDateTime::GetAsLocalTime(LocalTime& out) const noexcept {
    if (m_status != valid || !InRange(m_dt)) return false;
    const double day = std::trunc(m_dt);
    const double seconds = std::floor(std::fabs(m_dt - day) * kSecondsPerDay + 0.5);  // 86400: the next day
    const std::int64_t days = static_cast<std::int64_t>(day) + kDateZero;
    const LocalTime time = brindle::BreakDownUtc(days * 86400 + static_cast<std::int64_t>(seconds));
    if (time.year > 9999) return false;
    out = time;
    return true;
}

int COleDateTime::GetYear() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.year : -1;
}

int COleDateTime::GetMonth() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.month : -1;
}

int COleDateTime::GetDay() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.day : -1;
}

int COleDateTime::GetHour() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.hour : -1;
}

int COleDateTime::GetMinute() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.minute : -1;
}

int COleDateTime::GetSecond() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.second : -1;
}

int COleDateTime::GetDayOfWeek() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.weekday + 1 : -1;
}

int COleDateTime::GetDayOfYear() const noexcept {
    LocalTime time;
    return GetAsLocalTime(time) ? time.yearDay + 1 : -1;
}

COleDateTime COleDateTime::operator+(const COleDateTimeSpan& span) const noexcept {
    COleDateTime moved(FromLinear(Linear(m_dt) + span.m_span));
    if (m_status == null || span.m_status == COleDateTimeSpan::null) {
        moved.m_status = null;
    } else if (m_status != valid || span.m_status != COleDateTimeSpan::valid) {
        moved.m_status = invalid;
    }
    return moved;
}

COleDateTime COleDateTime::operator-(const COleDateTimeSpan& span) const noexcept {
    return *this + -span;
}

COleDateTimeSpan COleDateTime::operator-(const COleDateTime& other) const noexcept {
    COleDateTimeSpan span(Linear(m_dt) - Linear(other.m_dt));
    if (m_status == null || other.m_status == null) {
        span.m_status = COleDateTimeSpan::null;
    } else if (m_status != valid || other.m_status != valid) {
        span.m_status = COleDateTimeSpan::invalid;
    }
    return span;
}

double COleDateTime::Linear(double date) noexcept {
    if (date >= 0) return date;
    const double day = std::ceil(date);
    return day - (date - day);
}

double COleDateTime::FromLinear(double days) noexcept {
    if (days >= 0) return days;
    const double day = std::floor(days);
    return day + (day - days);
}
