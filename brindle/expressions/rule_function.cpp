// Function calls. Entry point: CallFunction. Tests: rule_compute_test.cpp.
#include <array>

#include "brindle/expressions/rule_compute.h"
#include "brindle/framework/number_text.h"
#include "brindle/platform/clock.h"

namespace brindle {
namespace {

using Literal = CCalculator::Literal;

// The local time now, to the second; no date when the clock cannot tell it.
COleDateTime CurrentDate() {
    LocalTime now;
    COleDateTime date;
    if (!CurrentClock().ToLocalTime(UnixSeconds(), now)) {
        date.SetStatus(COleDateTime::invalid);
        return date;
    }
    date.SetDateTime(now.year, now.month, now.day, now.hour, now.minute, now.second < 60 ? now.second : 59);
    return date;
}

// The numbers behind "(" and behind each "," after it; how many there are, also when that is more than wanted.
template <std::size_t Wanted>
std::size_t ReadArguments(std::string_view call, std::array<int, Wanted>& numbers) {
    std::size_t count = 0;
    std::size_t at = call.find('(');
    while (at != std::string_view::npos) {
        call.remove_prefix(at + 1);
        if (count < Wanted) numbers[count] = ReadInt(call);
        ++count;
        at = call.find(',');
    }
    return count;
}

RuleValue TimeSpan(std::string_view call) {
    std::array<int, 4> parts{};  // days, hours, minutes, seconds
    if (ReadArguments(call, parts) != parts.size()) return EmptyValue();
    const COleDateTimeSpan span(parts[0], parts[1], parts[2], parts[3]);
    return RuleValue::OfDouble(span.GetTotalSeconds(), Literal::TimeSpan);
}

}  // namespace

RuleValue CallFunction(std::string_view call) {
    if (call.starts_with("DATE")) return RuleValue::OfDate(CurrentDate());
    if (call.starts_with("TIMESPAN")) return TimeSpan(call);
    return EmptyValue();
}

}  // namespace brindle
