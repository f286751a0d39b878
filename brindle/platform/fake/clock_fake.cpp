#include "brindle/platform/fake/clock_fake.h"

#include <chrono>

#include "brindle/framework/file_time.h"

namespace brindle {
namespace {

constexpr std::int64_t kStart = 1'577'836'800;  // 2020-01-01 00:00:00 UTC
constexpr std::int64_t kSecondsPerDay = 86'400;
// What years of four digits can hold; a fake needs no more.
constexpr std::int64_t kFirstSecond = -62'167'219'200;  // 0000-01-01
constexpr std::int64_t kLastSecond = 253'402'300'799;   // 9999-12-31

std::uint64_t TicksOf(std::int64_t unixSeconds) {
    return static_cast<std::uint64_t>(unixSeconds + kUnixEpochSeconds) * kTicksPerSecond;
}

}  // namespace

FakeClock::FakeClock() noexcept : m_ticks(TicksOf(kStart)) {}

void FakeClock::SetUnixSeconds(std::int64_t seconds) noexcept {
    m_ticks = TicksOf(seconds);
}

void FakeClock::AdvanceMilliseconds(std::uint64_t milliseconds) noexcept {
    m_ticks += milliseconds * kTicksPerMillisecond;
    m_monotonic += milliseconds;
}

bool FakeClock::ToLocalTime(std::int64_t unixSeconds, LocalTime& out) {
    if (m_failLocalTime || unixSeconds < kFirstSecond || unixSeconds > kLastSecond) return false;
    const std::int64_t local = unixSeconds + m_offset;
    const std::int64_t dayNumber = (local >= 0 ? local : local - kSecondsPerDay + 1) / kSecondsPerDay;
    const std::int64_t inDay = local - dayNumber * kSecondsPerDay;

    const std::chrono::sys_days date{std::chrono::days{static_cast<int>(dayNumber)}};
    const std::chrono::year_month_day ymd{date};
    const std::chrono::sys_days newYear{ymd.year() / std::chrono::January / 1};
    out.year = static_cast<int>(ymd.year());
    out.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
    out.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
    out.hour = static_cast<int>(inDay / 3600);
    out.minute = static_cast<int>(inDay / 60 % 60);
    out.second = static_cast<int>(inDay % 60);
    out.weekday = static_cast<int>(std::chrono::weekday{date}.c_encoding());
    out.yearDay = static_cast<int>((date - newYear).count());
    out.utcOffsetSeconds = m_offset;
    return true;
}

}  // namespace brindle
