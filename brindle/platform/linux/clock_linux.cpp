// The Linux clock: CLOCK_REALTIME, CLOCK_MONOTONIC and localtime_r.
//
// Cannot: tell a change of the zone's own file while the process runs (a host that changes TZ calls tzset); name
// the standard time of a zone that is on daylight saving all year (what it has now is then taken for it).
#include <time.h>

#include <ctime>

#include "brindle/framework/file_time.h"
#include "brindle/platform/backend.h"

namespace brindle {
namespace {

std::uint64_t NanosecondsToMilliseconds(long nanoseconds) {
    return static_cast<std::uint64_t>(nanoseconds) / 1'000'000;
}

class LinuxClock final : public Clock {
  public:
    std::uint64_t SystemTicks() override {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        const auto seconds = static_cast<std::uint64_t>(now.tv_sec + kUnixEpochSeconds);
        return seconds * kTicksPerSecond + static_cast<std::uint64_t>(now.tv_nsec) / 100;
    }

    std::uint64_t MonotonicMilliseconds() override {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return static_cast<std::uint64_t>(now.tv_sec) * 1000 + NanosecondsToMilliseconds(now.tv_nsec);
    }

    bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override {
        const time_t seconds = unixSeconds;
        tm local{};
        if (!localtime_r(&seconds, &local)) return false;
        out.year = local.tm_year + 1900;
        out.month = local.tm_mon + 1;
        out.day = local.tm_mday;
        out.hour = local.tm_hour;
        out.minute = local.tm_min;
        out.second = local.tm_sec;
        out.weekday = local.tm_wday;
        out.yearDay = local.tm_yday;
        out.utcOffsetSeconds = static_cast<int>(local.tm_gmtoff);
        return true;
    }

    // The system tells the zone of a moment, so the nearest moment without daylight saving is asked.
    TimeZone StandardZone() override {
        constexpr time_t kMonth = 30 * 24 * 3600;
        constexpr int kMonths = 12;
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        tm local{};
        if (!localtime_r(&now.tv_sec, &local)) return {"UTC", 0};
        for (int month = 1; local.tm_isdst > 0 && month <= kMonths; ++month) {
            const time_t then = now.tv_sec + month * kMonth;
            tm other{};
            if (localtime_r(&then, &other) && other.tm_isdst == 0) local = other;
        }
        return {local.tm_zone ? local.tm_zone : "", static_cast<int>(local.tm_gmtoff)};
    }
};

}  // namespace

Clock& BackendClock() noexcept {
    constinit static LinuxClock clock;
    return clock;
}

}  // namespace brindle
