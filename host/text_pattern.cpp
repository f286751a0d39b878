// Text conditions with "*" and "?". On a mismatch only the last "*" is tried again one character further on,
// so that the time is at most the product of the two lengths and nothing recurses. Tests:
// host_values_test.cpp.
#include "host/text_pattern.h"

namespace brindle::host {

namespace {

bool MatchesWildcards(std::string_view pattern, std::string_view text) noexcept {
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t star = std::string_view::npos;
    std::size_t retry = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            retry = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++retry;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

}  // namespace

bool TextPattern::Matches(std::string_view text) const noexcept {
    if (m_text.empty()) return true;
    if (m_text == "=") return text.empty();
    return MatchesWildcards(m_text, text);
}

}  // namespace brindle::host
