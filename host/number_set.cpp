// The set of numbers of a state or zone condition. Tests: host_values_test.cpp.
#include "host/number_set.h"

#include <limits>

#include "host/words.h"

namespace brindle::host {

namespace {

constexpr int kNoEnd = std::numeric_limits<int>::max();

}  // namespace

bool NumberSet::ParseRange(std::string_view text, Range& range) noexcept {
    const std::size_t dash = text.find('-', 1);  // one in front is a sign
    if (text.empty() || dash == std::string_view::npos) {
        if (!ParseInt(text, range.first)) return false;
        range.last = range.first;
        return true;
    }
    const std::string_view last = Trimmed(text.substr(dash + 1));
    range.last = kNoEnd;
    if (!ParseInt(Trimmed(text.substr(0, dash)), range.first)) return false;
    return (last.empty() || ParseInt(last, range.last)) && range.first <= range.last;
}

std::string NumberSet::Parse(std::string_view text) {
    std::vector<Range> ranges;
    for (const std::string_view part : Split(Trimmed(text), ',')) {
        Range range{};
        if (!ParseRange(part, range))
            return "\"" + std::string(part) + "\" is not a number or a range such as 3-5";
        ranges.push_back(range);
    }
    m_ranges = std::move(ranges);
    return {};
}

std::string NumberSet::Text() const {
    std::string text;
    for (const Range& range : m_ranges) {
        if (!text.empty()) text += ',';
        text += std::to_string(range.first);
        if (range.last == range.first) continue;
        text += '-';
        if (range.last != kNoEnd) text += std::to_string(range.last);
    }
    return text;
}

bool NumberSet::Contains(int number) const noexcept {
    for (const Range& range : m_ranges)
        if (number >= range.first && number <= range.last) return true;
    return m_ranges.empty();
}

}  // namespace brindle::host
