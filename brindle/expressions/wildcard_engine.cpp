// Compiles translated patterns and keeps the last few compiled. Entry point: MatchWithEngine. Tests:
// wildcard_test.cpp.
#include "brindle/expressions/wildcard_engine.h"

#include <algorithm>
#include <array>
#include <locale>
#include <memory>
#include <mutex>
#include <optional>
#include <regex>
#include <string>

#include "brindle/expressions/wildcard_translate.h"

namespace brindle {
namespace {

// Null: the pattern does not compile.
using Compiled = std::shared_ptr<const std::regex>;

Compiled Compile(std::string_view pattern) {
    std::string translated;
    if (!TranslateWildcard(pattern, translated)) return nullptr;
    try {
        auto expression = std::make_shared<std::regex>();
        expression->imbue(std::locale::classic());
        expression->assign(translated, std::regex::ECMAScript | std::regex_constants::__polynomial);
        return expression;
    } catch (const std::regex_error&) {
        return nullptr;
    }
}

// The patterns used last, newest first. A station has few patterns; a search through 16 costs less than hashing.
class PatternCache {
  public:
    // The engine converts characters through the classic locale, whose tables are filled when first used and without a
    // lock: filled here, they are only read by the threads that compile and match.
    PatternCache() {
        const auto& characters = std::use_facet<std::ctype<char>>(std::locale::classic());
        for (int byte = 0; byte < 256; ++byte) characters.narrow(static_cast<char>(byte), ' ');
        characters.widen('_');
    }

    Compiled Get(std::string_view pattern) {
        if (std::optional<Compiled> known = Find(pattern)) return *std::move(known);
        Compiled compiled = Compile(pattern);
        Insert(pattern, compiled);
        return compiled;
    }

  private:
    struct Entry {
        std::string pattern;
        Compiled compiled;
    };

    std::optional<Compiled> Find(std::string_view pattern) {
        const std::lock_guard lock(m_mutex);
        const auto end = m_entries.begin() + static_cast<std::ptrdiff_t>(m_count);
        const auto found = std::find_if(m_entries.begin(), end,
                                        [&](const Entry& entry) { return entry.pattern == pattern; });
        if (found == end) return std::nullopt;
        std::rotate(m_entries.begin(), found, found + 1);
        return m_entries.front().compiled;
    }

    void Insert(std::string_view pattern, const Compiled& compiled) {
        Entry entry{std::string(pattern), compiled};
        const std::lock_guard lock(m_mutex);
        if (m_count < m_entries.size()) ++m_count;
        const auto end = m_entries.begin() + static_cast<std::ptrdiff_t>(m_count);
        std::rotate(m_entries.begin(), end - 1, end);
        std::swap(m_entries.front(), entry);  // the oldest is destroyed behind the lock
    }

    std::mutex m_mutex;
    std::array<Entry, 16> m_entries;
    std::size_t m_count = 0;
};

PatternCache& Cache() {
    static PatternCache& cache = *new PatternCache;  // never destroyed: worker threads may outlive main
    return cache;
}

}  // namespace

WildcardResult MatchWithEngine(std::string_view text, std::string_view pattern) {
    if (pattern.size() > kMaxPatternLength || text.size() > kMaxPatternWork / pattern.size())
        return WildcardResult::kNoPattern;
    const Compiled compiled = Cache().Get(pattern);
    if (!compiled) return WildcardResult::kNoPattern;
    try {
        const bool matches = std::regex_match(text.data(), text.data() + text.size(), *compiled);
        return matches ? WildcardResult::kMatch : WildcardResult::kNoMatch;
    } catch (const std::regex_error&) {
        return WildcardResult::kNoPattern;
    }
}

}  // namespace brindle
