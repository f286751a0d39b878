// Times as numbers and texts. Tests: utils_time_test.cpp.
#include <limits>
#include <stdexcept>
#include <string_view>

#include "brindle/framework/local_time.h"
#include "brindle/framework/number_text.h"
#include "brindle/framework/time_text.h"
#include "brindle/platform/clock.h"
#include "brindle/util/utils.h"

namespace Orvane {
namespace {

constexpr char kDefaultFormat[] = "%a %b %d %H:%M:%S %Y";
constexpr std::size_t kTimeStringSize = 128;  // with the terminating zero
constexpr std::string_view kConversions = "aAbBcCdDHIjmMpSUwWxXyYzZ%";
constexpr std::int64_t kSecondsPerDay = 86'400;

// The six fields of a date and time, in the order of their text.
struct Fields {
    std::int32_t year = 0;
    std::int32_t month = 0;
    std::int32_t day = 0;
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
};

bool ScanFields(std::string_view text, Fields& fields) {
    struct Step {
        std::int32_t Fields::*field;
        char before;  // '\0': nothing
    };
    constexpr Step kSteps[] = {{&Fields::year, '\0'}, {&Fields::month, '-'},  {&Fields::day, '-'},
                               {&Fields::hour, 'T'},  {&Fields::minute, ':'}, {&Fields::second, ':'}};
    for (const Step& step : kSteps) {
        if (step.before != '\0') {
            if (!text.starts_with(step.before)) return false;
            text.remove_prefix(1);
        }
        if (!brindle::ScanInt(text, fields.*step.field)) return false;
    }
    return true;
}

// mktime without daylight saving, on the range the platform's has: 1970 to 3000.
std::int64_t MakeTime(const Fields& fields) {
    constexpr std::int64_t kFailed = -1;
    const std::int64_t lastSecond = brindle::DaysFromDate({3001, 1, 1}) * kSecondsPerDay - 1;
    const std::int64_t months = std::int64_t{fields.year} * 12 + fields.month - 1;
    const std::int64_t month = (months % 12 + 12) % 12;
    const std::int64_t year = (months - month) / 12;
    const std::int64_t days = brindle::DaysFromDate({year, static_cast<int>(month) + 1, 1}) + fields.day - 1;
    const std::int64_t local = days * kSecondsPerDay + std::int64_t{fields.hour} * 3600 +
                               std::int64_t{fields.minute} * 60 + fields.second;
    const std::int64_t time = local - brindle::CurrentClock().StandardZone().utcOffsetSeconds;
    return time < 0 || time > lastSecond ? kFailed : time;
}

// Whether every "%" begins a conversion; each "%" is looked at, also the second one of "%%".
bool IsTimebased(std::string_view path) {
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] != '%') continue;
        if (i + 1 == path.size() || kConversions.find(path[i + 1]) == std::string_view::npos) return false;
    }
    return true;
}

}  // namespace

std::int64_t Utils::FileTimeToUnixTime(const FILETIME* time) {
    constexpr std::uint64_t kEpoch =
        static_cast<std::uint64_t>(brindle::kUnixEpochSeconds) * brindle::kTicksPerSecond;
    const std::uint64_t ticks = brindle::FileTimeToTicks(*time);
    if (ticks >= kEpoch) return static_cast<std::int64_t>((ticks - kEpoch) / brindle::kTicksPerSecond);
    return -static_cast<std::int64_t>((kEpoch - ticks) / brindle::kTicksPerSecond);
}

unsigned long Utils::GetLocalTime32() {
    const std::int64_t now = brindle::UnixSeconds();
    brindle::LocalTime local;
    if (!brindle::CurrentClock().ToLocalTime(now, local))
        throw std::invalid_argument("the present time cannot be expressed as local time");
    return static_cast<std::uint32_t>(now + local.utcOffsetSeconds);
}

CStringA Utils::GetTimeString32(unsigned long t, const char* format) {
    if (t > std::numeric_limits<std::uint32_t>::max())
        throw std::invalid_argument("the time has more than 32 bits");
    const brindle::TimeZone zone = brindle::CurrentClock().StandardZone();
    brindle::LocalTime time = brindle::BreakDownUtc(static_cast<std::int64_t>(t));
    time.utcOffsetSeconds = zone.utcOffsetSeconds;
    return brindle::FormatTime(time, format ? format : kDefaultFormat, kTimeStringSize, zone.name);
}

bool Utils::ParseDateTimeString(const CStringA& s, std::int64_t& t) {
    Fields fields;
    if (!ScanFields(s.view(), fields)) return false;
    t = MakeTime(fields);
    return true;
}

CStringA Utils::ResolveTimebasedPath(const CStringA& path) {
    return IsTimebased(path.view()) ? GetTimeString32(GetLocalTime32(), path.GetString()) : path;
}

}  // namespace Orvane
