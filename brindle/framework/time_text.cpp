// strftime without a locale. One pass over the format; a conversion that stands for several others is a
// format of its own. Entry point: FormatTime. Tests: time_text_test.cpp.
#include "brindle/framework/time_text.h"

#include <array>
#include <cstdlib>

namespace brindle {
namespace {

constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 12> kMonths = {"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr std::size_t kShortName = 3;

struct IsoWeek {
    int year;
    int week;
};

// Week 1 is the one with the year's first Thursday; weeks begin on Monday.
IsoWeek IsoWeekOf(const LocalTime& time) noexcept {
    const int fromMonday = (time.weekday + 6) % 7;
    const int thursday = time.yearDay - fromMonday + 3;  // day of the year of this week's Thursday
    if (thursday < 0) {
        const int daysBefore = IsLeapYear(time.year - 1) ? 366 : 365;
        return {time.year - 1, (thursday + daysBefore) / 7 + 1};
    }
    const int days = IsLeapYear(time.year) ? 366 : 365;
    if (thursday >= days) return {time.year + 1, 1};
    return {time.year, thursday / 7 + 1};
}

bool InRange(const LocalTime& time) noexcept {
    const auto within = [](int value, int low, int high) { return value >= low && value <= high; };
    return within(time.year, 0, 9999) && within(time.month, 1, 12) && within(time.day, 1, 31) &&
           within(time.hour, 0, 23) && within(time.minute, 0, 59) && within(time.second, 0, 60) &&
           within(time.weekday, 0, 6) && within(time.yearDay, 0, 365);
}

class TimeFormatter {
  public:
    TimeFormatter(const LocalTime& time, std::string_view zoneName) : m_time(time), m_zoneName(zoneName) {}

    // False for a conversion that is none; `plain` drops leading zeros.
    bool Append(std::string_view format, bool plain = false) {
        for (std::size_t at = 0; at < format.size(); ++at) {
            if (format[at] != '%') {
                m_out += format[at];
                continue;
            }
            bool alternative = plain;
            if (++at < format.size() && format[at] == '#') {
                alternative = true;
                ++at;
            }
            if (at < format.size() && (format[at] == 'E' || format[at] == 'O')) ++at;
            if (at == format.size()) return false;
            if (!AppendName(format[at]) && !AppendNumber(format[at], alternative) &&
                !AppendCompound(format[at], alternative))
                return false;
        }
        return true;
    }

    std::string Take() { return std::move(m_out); }

  private:
    // A number padded to `width`; `plain` leaves the padding out.
    bool Number(int value, std::size_t width, bool plain, char padding = '0') {
        const std::string digits = std::to_string(value);
        if (!plain && digits.size() < width) m_out.append(width - digits.size(), padding);
        m_out += digits;
        return true;
    }

    bool Text(std::string_view text) {
        m_out += text;
        return true;
    }

    bool Offset() {
        const int minutes = std::abs(m_time.utcOffsetSeconds) / 60;
        m_out += m_time.utcOffsetSeconds < 0 ? '-' : '+';
        Number(minutes / 60, 2, false);
        return Number(minutes % 60, 2, false);
    }

    bool AppendName(char conversion) {
        const std::string_view weekday = kWeekdays[static_cast<std::size_t>(m_time.weekday)];
        const std::string_view month = kMonths[static_cast<std::size_t>(m_time.month - 1)];
        switch (conversion) {
            case 'a':
                return Text(weekday.substr(0, kShortName));
            case 'A':
                return Text(weekday);
            case 'b':
            case 'h':
                return Text(month.substr(0, kShortName));
            case 'B':
                return Text(month);
            case 'p':
                return Text(m_time.hour < 12 ? "AM" : "PM");
            case 'n':
                return Text("\n");
            case 't':
                return Text("\t");
            case 'z':
                return Offset();
            case 'Z':
                return Text(m_zoneName);
            case '%':
                return Text("%");
            default:
                return false;
        }
    }

    bool AppendNumber(char conversion, bool plain) {
        const int fromMonday = (m_time.weekday + 6) % 7;
        switch (conversion) {
            case 'C':
                return Number(m_time.year / 100, 2, plain);
            case 'd':
                return Number(m_time.day, 2, plain);
            case 'e':
                return Number(m_time.day, 2, plain, ' ');
            case 'g':
                return Number(IsoWeekOf(m_time).year % 100, 2, plain);
            case 'G':
                return Number(IsoWeekOf(m_time).year, 4, plain);
            case 'H':
                return Number(m_time.hour, 2, plain);
            case 'I':
                return Number((m_time.hour + 11) % 12 + 1, 2, plain);
            case 'j':
                return Number(m_time.yearDay + 1, 3, plain);
            case 'm':
                return Number(m_time.month, 2, plain);
            case 'M':
                return Number(m_time.minute, 2, plain);
            case 'S':
                return Number(m_time.second, 2, plain);
            case 'u':
                return Number(fromMonday + 1, 1, plain);
            case 'U':
                return Number((m_time.yearDay + 7 - m_time.weekday) / 7, 2, plain);
            case 'V':
                return Number(IsoWeekOf(m_time).week, 2, plain);
            case 'w':
                return Number(m_time.weekday, 1, plain);
            case 'W':
                return Number((m_time.yearDay + 7 - fromMonday) / 7, 2, plain);
            case 'y':
                return Number(m_time.year % 100, 2, plain);
            case 'Y':
                return Number(m_time.year, 4, plain);
            default:
                return false;
        }
    }

    bool AppendCompound(char conversion, bool plain) {
        switch (conversion) {
            case 'c':
                return plain ? Append("%A, %B %d, %Y %H:%M:%S") : Append("%a %b %e %H:%M:%S %Y");
            case 'D':
                return Append("%m/%d/%y", plain);
            case 'F':
                return Append("%Y-%m-%d", plain);
            case 'r':
                return Append("%I:%M:%S %p", plain);
            case 'R':
                return Append("%H:%M", plain);
            case 'T':
                return Append("%H:%M:%S", plain);
            case 'x':
                return plain ? Append("%A, %B %d, %Y") : Append("%m/%d/%y");
            case 'X':
                return Append("%H:%M:%S");
            default:
                return false;
        }
    }

    const LocalTime& m_time;
    std::string_view m_zoneName;
    std::string m_out;
};

}  // namespace

std::string FormatTime(const LocalTime& time, std::string_view format, std::size_t size,
                       std::string_view zoneName) {
    if (!InRange(time)) return {};
    TimeFormatter formatter(time, zoneName);
    if (!formatter.Append(format)) return {};
    std::string text = formatter.Take();
    return text.size() < size ? text : std::string();
}

}  // namespace brindle
