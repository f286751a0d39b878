// Schedule arithmetic. Local days are taken from the clock service; a change of the zone's offset between now
// and then is made good by the difference of the two offsets. Tests: schedule_test.cpp.
#include "host/schedule.h"

#include <brindle/platform/clock.h>

#include "host/words.h"

namespace brindle::host {

namespace {

constexpr const char* kDayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr int kDays = 7;

int DayNumber(std::string_view name) noexcept {
    for (int day = 0; day < kDays; ++day)
        if (SameWord(name, kDayNames[day])) return day;
    return -1;
}

int SecondOfDay(const LocalTime& time) noexcept {
    return (time.hour * 60 + time.minute) * 60 + time.second;
}

bool TwoDigits(std::string_view text, int limit, int& value) noexcept {
    return text.size() == 2 && text[0] != '-' && ParseInt(text, value) && value < limit;
}

void AppendTwoDigits(std::string& text, int value) {
    text += static_cast<char>('0' + value / 10);
    text += static_cast<char>('0' + value % 10);
}

}  // namespace

std::string TimeOfDay::Parse(std::string_view text) {
    text = Trimmed(text);
    if (text.empty()) {
        m_second = -1;
        return {};
    }
    const auto parts = Split(text, ':');
    int hour = 0;
    int minute = 0;
    int second = 0;
    if ((parts.size() != 2 && parts.size() != 3) || !TwoDigits(parts[0], 24, hour) ||
        !TwoDigits(parts[1], 60, minute) || (parts.size() == 3 && !TwoDigits(parts[2], 60, second)))
        return "\"" + std::string(text) + "\" is not a time of day such as 08:30:00";
    m_second = (hour * 60 + minute) * 60 + second;
    return {};
}

std::string TimeOfDay::Text() const {
    std::string text;
    if (!IsSet()) return text;
    AppendTwoDigits(text, m_second / 3600);
    text += ':';
    AppendTwoDigits(text, m_second / 60 % 60);
    text += ':';
    AppendTwoDigits(text, m_second % 60);
    return text;
}

std::string Weekdays::Parse(std::string_view text) {
    unsigned mask = 0;
    for (const std::string_view part : Split(Trimmed(text), ',')) {
        const std::size_t dash = part.find('-');
        const int first = DayNumber(Trimmed(part.substr(0, dash)));
        const int last = dash == std::string_view::npos ? first : DayNumber(Trimmed(part.substr(dash + 1)));
        if (first < 0 || last < 0) return "\"" + std::string(part) + "\" is not a day such as Mon or Mon-Fri";
        for (int day = first;; day = (day + 1) % kDays) {
            mask |= 1U << day;
            if (day == last) break;
        }
    }
    m_mask = mask;
    return {};
}

std::string Weekdays::Text() const {
    std::string text;
    for (int i = 1; m_mask != 0 && i <= kDays; ++i) {  // the week begins on Monday
        if ((m_mask >> (i % kDays) & 1U) == 0) continue;
        if (!text.empty()) text += ',';
        text += kDayNames[i % kDays];
    }
    return text;
}

int Schedule::SecondsToNext(std::int64_t start) const {
    if (IsEmpty()) return 0;
    const std::int64_t now = UnixSeconds();
    return at.IsSet() ? NextTimeOfDay(now) : NextPeriod(now, start);
}

int Schedule::NextPeriod(std::int64_t now, std::int64_t start) const {
    const std::int64_t elapsed = now - start;
    const int delay = elapsed < 0 ? every : static_cast<int>(every - elapsed % every);
    LocalTime then;
    if (!CurrentClock().ToLocalTime(now + delay, then)) return kSecondsPerDay;
    if (days.Contains(then.weekday)) return delay;
    // Not on that day: at the midnight that begins the next day in the set.
    LocalTime begin;
    int wait = delay;
    for (int day = 1; day <= kDays; ++day) {
        if (!days.Contains((then.weekday + day) % kDays)) continue;
        wait = delay + day * kSecondsPerDay - SecondOfDay(then);
        if (!CurrentClock().ToLocalTime(now + wait, begin)) return kSecondsPerDay;
        wait += then.utcOffsetSeconds - begin.utcOffsetSeconds;
        break;
    }
    return wait;
}

int Schedule::NextTimeOfDay(std::int64_t now) const {
    LocalTime today;
    if (!CurrentClock().ToLocalTime(now, today)) return kSecondsPerDay;
    for (int day = 0; day <= kDays + 1; ++day) {
        if (!days.Contains((today.weekday + day) % kDays)) continue;
        int wait = day * kSecondsPerDay + at.Second() - SecondOfDay(today);
        LocalTime then;
        if (!CurrentClock().ToLocalTime(now + wait, then)) return kSecondsPerDay;
        wait += today.utcOffsetSeconds - then.utcOffsetSeconds;
        if (wait > 0) return wait;
    }
    return kSecondsPerDay;
}

}  // namespace brindle::host
