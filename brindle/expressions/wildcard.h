// Wildcard: the pattern match behind "=" between texts. "%" stands for any text; other characters of the classic
// pattern language keep their meaning (docs/rules.md). Bytes are compared as unsigned. Safe to use from several
// threads. Tests: wildcard_test.cpp.
#pragma once

#include <cstddef>
#include <string_view>

namespace brindle {

enum class WildcardResult {
    kMatch,
    kNoMatch,
    kNoPattern,  // the pattern does not compile, or is too large for this text
};

// Limits of patterns that need the engine.
inline constexpr std::size_t kMaxPatternLength = 4096;
inline constexpr std::size_t kMaxPatternDepth = 100;
inline constexpr std::size_t kMaxPatternWork = std::size_t{1} << 26;  // pattern length times text length

// Whether the pattern matches the whole text.
WildcardResult MatchWildcard(std::string_view text, std::string_view pattern);

// Whether "%" is the only special character of the pattern; it is then matched without an engine.
bool IsPlainPattern(std::string_view pattern) noexcept;

}  // namespace brindle
