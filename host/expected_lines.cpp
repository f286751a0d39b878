// The comparison behind --expect. Tests: site_test.cpp.
#include "host/expected_lines.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "host/line_matching.h"
#include "host/words.h"

namespace brindle::host {

namespace {

constexpr std::size_t kContext = 2;  // equal lines shown around differences

using Json = nlohmann::json;  // its objects do not depend on the order of keys

struct BothSides {
    std::vector<Json> expected;
    std::vector<Json> actual;
};

std::vector<std::string> DifferingKeys(const Json& one, const Json& other) {
    std::vector<std::string> keys;
    if (!one.is_object() || !other.is_object()) return keys;
    for (const auto& [key, value] : one.items())
        if (!other.contains(key) || other[key] != value) keys.push_back(key);
    return keys;
}

// The lines of both sides between two pairs of equal lines, a missing line next to the added one that stands
// in its place.
void AppendGap(const BothSides& sides, const std::vector<ExpectedLine>& expected,
               const std::vector<RunRecord>& actual, std::size_t e, std::size_t eEnd, std::size_t a,
               std::size_t aEnd, std::vector<LineChange>& changes) {
    for (; e < eEnd || a < aEnd; ++e, ++a) {
        const bool both = e < eEnd && a < aEnd;
        if (e < eEnd)
            changes.push_back(
                {LineChange::kMissing, expected[e].line, RecordLine(expected[e].record),
                 both ? DifferingKeys(sides.expected[e], sides.actual[a]) : std::vector<std::string>()});
        if (a < aEnd)
            changes.push_back(
                {LineChange::kAdded, a + 1, RecordLine(actual[a]),
                 both ? DifferingKeys(sides.actual[a], sides.expected[e]) : std::vector<std::string>()});
    }
}

// Leaves only differences and the lines near them.
std::vector<LineChange> NearDifferences(const std::vector<LineChange>& all) {
    std::vector<bool> keep(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].what == LineChange::kSame) continue;
        const std::size_t first = i > kContext ? i - kContext : 0;
        for (std::size_t k = first; k < std::min(all.size(), i + kContext + 1); ++k) keep[k] = true;
    }
    std::vector<LineChange> shown;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (keep[i]) shown.push_back(all[i]);
    return shown;
}

}  // namespace

std::string ReadExpected(const std::string& utf8, std::vector<ExpectedLine>& expected, std::size_t& line) {
    line = 0;
    std::string_view rest = utf8;
    while (!rest.empty()) {
        ++line;
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view text = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (text.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        RunRecord record = RunRecord::parse(text, nullptr, false);
        if (record.is_discarded()) return "is not JSON";
        expected.push_back({line, std::move(record)});
    }
    return {};
}

std::vector<LineChange> CompareLines(const std::vector<ExpectedLine>& expected,
                                     const std::vector<RunRecord>& actual) {
    BothSides sides;
    for (const ExpectedLine& line : expected) sides.expected.emplace_back(line.record);
    for (const RunRecord& record : actual) sides.actual.emplace_back(record);
    auto pairs = LineMatcher(sides.expected, sides.actual).Match();
    pairs.emplace_back(expected.size(), actual.size());
    std::vector<LineChange> all;
    std::size_t e = 0;
    std::size_t a = 0;
    for (const auto& [nextExpected, nextActual] : pairs) {
        AppendGap(sides, expected, actual, e, nextExpected, a, nextActual, all);
        if (nextExpected < expected.size())
            all.push_back({LineChange::kSame,
                           expected[nextExpected].line,
                           RecordLine(expected[nextExpected].record),
                           {}});
        e = nextExpected + 1;
        a = nextActual + 1;
    }
    return NearDifferences(all);
}

}  // namespace brindle::host
