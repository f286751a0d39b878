// COleDateTime and COleDateTimeSpan: the application framework's day-based dates and spans.
//
// A date is a double: whole days since 1899-12-30, the fraction is the time of day. Before that day the whole
// part is negative while the fraction still counts forward: -1.25 is 1899-12-29 06:00. Dates reach from
// 0100-01-01 to 9999-12-31 and have a resolution of one second; what lies outside is invalid. There is no
// time zone in a date. Thread: value types without shared state.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"
#include "brindle/framework/file_time.h"
#include "brindle/framework/local_time.h"

class BRINDLE_API COleDateTimeSpan {
  public:
    enum DateTimeSpanStatus { valid = 0, invalid = 1, null = 2 };

    COleDateTimeSpan() noexcept = default;
    explicit COleDateTimeSpan(double days) noexcept : m_span(days) {}
    // days + hours/24 + minutes/1440 + seconds/86400; no part is checked for its range.
    COleDateTimeSpan(std::int32_t days, int hours, int minutes, int seconds) noexcept;

    DateTimeSpanStatus GetStatus() const noexcept { return m_status; }
    void SetStatus(DateTimeSpanStatus status) noexcept { m_status = status; }

    // The span cut into parts, each with the span's sign: days, then -23..23, -59..59, -59..59. Rounded to
    // the nearest second first.
    std::int64_t GetDays() const noexcept;
    int GetHours() const noexcept;
    int GetMinutes() const noexcept;
    int GetSeconds() const noexcept;
    // The whole span in one unit, truncated to whole units after the same rounding.
    double GetTotalDays() const noexcept;
    double GetTotalHours() const noexcept;
    double GetTotalMinutes() const noexcept;
    double GetTotalSeconds() const noexcept;

    // A result is null when an operand is, else invalid when an operand is.
    COleDateTimeSpan operator+(const COleDateTimeSpan& other) const noexcept;
    COleDateTimeSpan operator-(const COleDateTimeSpan& other) const noexcept;
    COleDateTimeSpan operator-() const noexcept;
    COleDateTimeSpan& operator+=(const COleDateTimeSpan& other) noexcept { return *this = *this + other; }
    COleDateTimeSpan& operator-=(const COleDateTimeSpan& other) noexcept { return *this = *this - other; }

    bool operator==(const COleDateTimeSpan& other) const noexcept {
        return m_status == other.m_status && m_span == other.m_span;
    }
    bool operator!=(const COleDateTimeSpan& other) const noexcept { return !(*this == other); }
    bool operator<(const COleDateTimeSpan& other) const noexcept { return m_span < other.m_span; }
    bool operator>(const COleDateTimeSpan& other) const noexcept { return other < *this; }
    bool operator<=(const COleDateTimeSpan& other) const noexcept { return !(other < *this); }
    bool operator>=(const COleDateTimeSpan& other) const noexcept { return !(*this < other); }

    operator double() const noexcept { return m_span; }

    double m_span = 0;  // days
    DateTimeSpanStatus m_status = valid;
};

class BRINDLE_API COleDateTime {
  public:
    enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

    COleDateTime() noexcept = default;  // 1899-12-30 00:00, valid
    // Taken as it stands; invalid when it lies outside the dates there are.
    explicit COleDateTime(double days) noexcept;
    COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept;
    // A time stamp is UTC; the offset makes it the local time wanted. Fractions of a second are cut off.
    explicit COleDateTime(const FILETIME& time, int utcOffsetSeconds = 0) noexcept;
    explicit COleDateTime(const brindle::LocalTime& time) noexcept;

    DateTimeStatus GetStatus() const noexcept { return m_status; }
    void SetStatus(DateTimeStatus status) noexcept { m_status = status; }

    // Sets the date and returns the status: valid, or invalid when a part is out of its range (year 100 to
    // 9999, a day the month does not have, hour 24 ...); the date is then 0.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept;
    int SetDate(int year, int month, int day) noexcept { return SetDateTime(year, month, day, 0, 0, 0); }
    int SetTime(int hour, int minute, int second) noexcept {
        return SetDateTime(1899, 12, 30, hour, minute, second);
    }

    // The parts, rounded to the nearest second; each is -1 when the date is not valid.
    int GetYear() const noexcept;
    int GetMonth() const noexcept;
    int GetDay() const noexcept;
    int GetHour() const noexcept;
    int GetMinute() const noexcept;
    int GetSecond() const noexcept;
    int GetDayOfWeek() const noexcept;  // 1 = Sunday
    int GetDayOfYear() const noexcept;  // 1 = 1 January
    // All parts at once. False, and `out` unchanged, when the date is not valid.
    bool GetAsLocalTime(brindle::LocalTime& out) const noexcept;

    // The date moved on the line of time. Null when an operand is, else invalid when an operand is or the
    // result lies outside the dates there are.
    COleDateTime operator+(const COleDateTimeSpan& span) const noexcept;
    COleDateTime operator-(const COleDateTimeSpan& span) const noexcept;
    COleDateTime& operator+=(const COleDateTimeSpan& span) noexcept { return *this = *this + span; }
    COleDateTime& operator-=(const COleDateTimeSpan& span) noexcept { return *this = *this - span; }
    COleDateTimeSpan operator-(const COleDateTime& other) const noexcept;

    bool operator==(const COleDateTime& other) const noexcept {
        return m_status == other.m_status && m_dt == other.m_dt;
    }
    bool operator!=(const COleDateTime& other) const noexcept { return !(*this == other); }
    // The order on the line of time; the status is not looked at.
    bool operator<(const COleDateTime& other) const noexcept { return Linear(m_dt) < Linear(other.m_dt); }
    bool operator>(const COleDateTime& other) const noexcept { return other < *this; }
    bool operator<=(const COleDateTime& other) const noexcept { return !(other < *this); }
    bool operator>=(const COleDateTime& other) const noexcept { return !(*this < other); }

    operator double() const noexcept { return m_dt; }

    // A date's days as evenly running time, and back: the fraction counts forward or along with the sign.
    static double Linear(double date) noexcept;
    static double FromLinear(double days) noexcept;

    double m_dt = 0;  // days, as told above
    DateTimeStatus m_status = valid;
};
