// Schedule: when a time based trigger fires: every so many seconds, or once a day at a time of day, either
// also limited to some days of the week. Days and times of day are local time of the clock service.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace brindle::host {

// A time of day, "HH:MM" or "HH:MM:SS".
class TimeOfDay {
  public:
    // Returns why the text cannot be read, or an empty text; an empty text means no time of day.
    std::string Parse(std::string_view text);
    std::string Text() const;
    bool IsSet() const noexcept { return m_second >= 0; }
    int Second() const noexcept { return m_second; }  // of the day

  private:
    int m_second = -1;
};

// Days of the week, "Mon,Wed-Fri"; an empty text means every day.
class Weekdays {
  public:
    std::string Parse(std::string_view text);
    std::string Text() const;
    bool Contains(int weekday) const noexcept { return m_mask == 0 || (m_mask >> weekday & 1U) != 0; }

  private:
    unsigned m_mask = 0;  // bit 0: Sunday
};

struct Schedule {
    static constexpr int kSecondsPerDay = 86'400;
    static constexpr int kLongestPeriod = 1'000'000;  // times 1000 it still is a 32-bit number

    int every = 0;  // seconds; 0: not periodic
    TimeOfDay at;
    Weekdays days;

    bool IsEmpty() const noexcept { return every <= 0 && !at.IsSet(); }
    // Seconds, at least 1, from the present time of the clock service until the schedule comes next; periods
    // count from `start` (seconds since 1970-01-01 UTC). 0 when the schedule is empty; one day when the local
    // time cannot be told, so that a running schedule asks again later.
    int SecondsToNext(std::int64_t start) const;

  private:
    int NextPeriod(std::int64_t now, std::int64_t start) const;
    int NextTimeOfDay(std::int64_t now) const;
};

}  // namespace brindle::host
