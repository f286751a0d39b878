// FakeClock: a clock that stands still until a test moves it. Local time is UTC plus a settable offset,
// of which a settable part is daylight saving.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "brindle/platform/clock.h"

namespace brindle {

class FakeClock final : public Clock {
  public:
    // Starts at 2020-01-01 00:00:00 UTC.
    FakeClock() noexcept;
    std::uint64_t SystemTicks() override { return m_ticks; }
    std::uint64_t MonotonicMilliseconds() override { return m_monotonic; }
    bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override;
    TimeZone StandardZone() override { return {m_zone, m_offset - m_daylightSaving}; }

    void SetUnixSeconds(std::int64_t seconds) noexcept;
    void AdvanceMilliseconds(std::uint64_t milliseconds) noexcept;
    void SetUtcOffset(int seconds) noexcept { m_offset = seconds; }
    // How much of the offset is daylight saving, and the name of the zone.
    void SetDaylightSaving(int seconds) noexcept { m_daylightSaving = seconds; }
    void SetZoneName(std::string name) { m_zone = std::move(name); }
    void FailLocalTime(bool fail) noexcept { m_failLocalTime = fail; }

  private:
    std::uint64_t m_ticks;
    std::uint64_t m_monotonic = 0;
    int m_offset = 0;
    int m_daylightSaving = 0;
    std::string m_zone = "UTC";
    bool m_failLocalTime = false;
};

}  // namespace brindle
