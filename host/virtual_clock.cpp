// The clock of fast runs. Tests: host_values_test.cpp.
#include "host/virtual_clock.h"

#include <brindle/framework/file_time.h>
#include <brindle/framework/local_time.h>

#include "host/schedule.h"
#include "host/words.h"

namespace brindle::host {

namespace {

constexpr std::int64_t kFurthest = 250'000'000'000;  // seconds; years up to some 9890

}  // namespace

std::uint64_t VirtualClock::SystemTicks() {
    return static_cast<std::uint64_t>(m_start + kUnixEpochSeconds) * kTicksPerSecond +
           m_elapsed * kTicksPerMillisecond;
}

bool VirtualClock::ToLocalTime(std::int64_t unixSeconds, LocalTime& out) {
    if (unixSeconds < -kUnixEpochSeconds || unixSeconds > kFurthest) return false;
    out = BreakDownUtc(unixSeconds);
    return true;
}

bool ParseMoment(std::string_view text, std::int64_t& unixSeconds) {
    const auto number = [&](std::size_t at, std::size_t count, int& value) {
        return text[at] != '-' && ParseInt(text.substr(at, count), value);
    };
    int year = 0;
    int month = 0;
    int day = 0;
    TimeOfDay time;
    if (text.size() != 19 || text[4] != '-' || text[7] != '-' || text[10] != ' ') return false;
    if (!number(0, 4, year) || !number(5, 2, month) || !number(8, 2, day)) return false;
    if (year < 1970 || year > 2999 || day < 1 || day > DaysInMonth(year, month)) return false;
    if (!time.Parse(text.substr(11)).empty() || !time.IsSet()) return false;
    unixSeconds = DaysFromDate({year, month, day}) * std::int64_t{Schedule::kSecondsPerDay} + time.Second();
    return true;
}

}  // namespace brindle::host
