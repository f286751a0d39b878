// FILETIME: the platform's time stamp, 100-nanosecond steps since 1601-01-01 UTC in two 32-bit words. Thread: any;
// values.
#pragma once

#include <cstdint>

struct FILETIME {
    std::uint32_t dwLowDateTime;
    std::uint32_t dwHighDateTime;
};

namespace brindle {

// The two halves as one number and back: 100-nanosecond steps since 1601-01-01 UTC.
constexpr std::uint64_t FileTimeToTicks(const FILETIME& time) noexcept {
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}
constexpr FILETIME TicksToFileTime(std::uint64_t ticks) noexcept {
    return {static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
}

constexpr std::uint64_t kTicksPerMillisecond = 10'000;
constexpr std::uint64_t kTicksPerSecond = 10'000'000;
// 1970-01-01 UTC, seconds after 1601-01-01 UTC.
constexpr std::int64_t kUnixEpochSeconds = 11'644'473'600;

}  // namespace brindle
