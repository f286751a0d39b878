// The clock's slot, and the two forms of system time the library speaks in.
#include "brindle/platform/clock.h"

#include "brindle/framework/file_time.h"
#include "brindle/platform/backend.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<Clock> g_clock;
}

Clock& CurrentClock() noexcept {
    return g_clock.GetOr(BackendClock());
}
Clock* SetClock(Clock* clock) noexcept {
    return g_clock.Set(clock);
}

std::uint64_t SystemMilliseconds() {
    return CurrentClock().SystemTicks() / kTicksPerMillisecond;
}

std::int64_t UnixSeconds() {
    return static_cast<std::int64_t>(CurrentClock().SystemTicks() / kTicksPerSecond) - kUnixEpochSeconds;
}

}  // namespace brindle
