// FakeClock: a clock that stands still until a test moves it. Local time is UTC plus a settable offset.
#pragma once

#include <cstdint>

#include "brindle/platform/clock.h"

namespace brindle {

class FakeClock final : public Clock {
  public:
    // Starts at 2020-01-01 00:00:00 UTC.
    FakeClock() noexcept;
    std::uint64_t SystemTicks() override { return m_ticks; }
    std::uint64_t MonotonicMilliseconds() override { return m_monotonic; }
    bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override;

    void SetUnixSeconds(std::int64_t seconds) noexcept;
    void AdvanceMilliseconds(std::uint64_t milliseconds) noexcept;
    void SetUtcOffset(int seconds) noexcept { m_offset = seconds; }
    void FailLocalTime(bool fail) noexcept { m_failLocalTime = fail; }

  private:
    std::uint64_t m_ticks;
    std::uint64_t m_monotonic = 0;
    int m_offset = 0;
    bool m_failLocalTime = false;
};

}  // namespace brindle
