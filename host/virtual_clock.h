// VirtualClock: the clock of a fast run. It stands still until the run moves it to the next moment at which
// something is due, and its zone is UTC, so that a run gives the same lines on every machine and every day.
#pragma once

#include <brindle/platform/clock.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace brindle::host {

class VirtualClock final : public Clock {
  public:
    // 2024-01-01 08:00:00, a Monday: when runs begin unless their site says otherwise.
    static constexpr std::int64_t kDefaultStart = 1'704'096'000;

    explicit VirtualClock(std::int64_t startUnixSeconds) noexcept : m_start(startUnixSeconds) {}

    std::uint64_t SystemTicks() override;
    std::uint64_t MonotonicMilliseconds() override { return m_elapsed; }
    bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override;
    TimeZone StandardZone() override { return {"UTC", 0}; }

    // Milliseconds since the start of the run; time never goes back.
    std::uint64_t Elapsed() const noexcept { return m_elapsed; }
    void MoveTo(std::uint64_t elapsed) noexcept {
        if (elapsed > m_elapsed) m_elapsed = elapsed;
    }

  private:
    std::int64_t m_start;
    std::uint64_t m_elapsed = 0;
};

// Reads "YYYY-MM-DD HH:MM:SS" (UTC, years 1970 to 2999) as seconds since 1970-01-01. False, `unixSeconds`
// unchanged, when the text is anything else.
bool ParseMoment(std::string_view text, std::int64_t& unixSeconds);

}  // namespace brindle::host
