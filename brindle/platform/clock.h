// Clock: the one source of time. A host may install its own (a virtual clock that jumps, a clock that stands
// still); otherwise the system's is used. Every operation may be called from any thread at any time.
#pragma once

#include <cstdint>
#include <string>

#include "brindle/framework/export.h"
#include "brindle/framework/local_time.h"

namespace brindle {

// A time zone outside daylight saving.
struct TimeZone {
    std::string name;          // as the system names it ("CET"); may be empty
    int utcOffsetSeconds = 0;  // east of Greenwich is positive
};

class Clock {
  public:
    // System time in 100-nanosecond steps since 1601-01-01 UTC. May jump when the system's clock is set.
    virtual std::uint64_t SystemTicks() = 0;
    // Milliseconds since some fixed moment; never goes back.
    virtual std::uint64_t MonotonicMilliseconds() = 0;
    // Breaks seconds since 1970-01-01 UTC down in the local time zone. False, and `out` unchanged, when the
    // moment cannot be expressed (the year does not fit, the zone is unknown).
    virtual bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) = 0;
    // The local time zone as it stands at present, outside daylight saving. A zone that is unknown counts as UTC.
    virtual TimeZone StandardZone() = 0;

  protected:
    ~Clock() = default;  // never destroyed through this interface
};

// The installed clock, or the system's.
BRINDLE_API Clock& CurrentClock() noexcept;
// Installs a clock (not owned; it must outlive its use; null: the system's again). Returns the one installed
// before, or null.
BRINDLE_API Clock* SetClock(Clock* clock) noexcept;

// System time in milliseconds since 1601-01-01 UTC, and in seconds since 1970-01-01 UTC.
BRINDLE_API std::uint64_t SystemMilliseconds();
BRINDLE_API std::int64_t UnixSeconds();

}  // namespace brindle
