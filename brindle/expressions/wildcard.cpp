// Plain patterns are matched here, piece by piece between their "%", in time that grows with the text's length
// only; all others go to the engine (wildcard_engine.h). Entry point: MatchWildcard. Tests: wildcard_test.cpp.
#include "brindle/expressions/wildcard.h"

#include <array>
#include <cstring>
#include <vector>

#include "brindle/expressions/wildcard_engine.h"

namespace brindle {
namespace {

enum CharacterKind : char { kOrdinary, kPercent, kSpecial };

consteval std::array<CharacterKind, 256> MakeKinds() noexcept {
    std::array<CharacterKind, 256> table{};
    for (const char c : std::string_view("\\.*+?()[]{}^$|")) table[static_cast<unsigned char>(c)] = kSpecial;
    table['%'] = kPercent;
    return table;
}
constexpr std::array<CharacterKind, 256> kKinds = MakeKinds();

// A plain pattern: where its first and last "%" stand, npos without one.
struct PlainPattern {
    std::string_view text;
    std::size_t first = std::string_view::npos;
    std::size_t last = std::string_view::npos;
};

CharacterKind KindOf(char c) noexcept {
    return kKinds[static_cast<unsigned char>(c)];
}

std::size_t SkipOrdinary(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && KindOf(text[at]) == kOrdinary) ++at;
    return at;
}

// False when the pattern is not plain.
bool ReadPlainPattern(std::string_view text, PlainPattern& pattern) noexcept {
    pattern.text = text;
    std::size_t at = SkipOrdinary(text, 0);
    if (at < text.size()) pattern.first = at;
    for (; at < text.size(); at = SkipOrdinary(text, at + 1)) {
        if (KindOf(text[at]) == kSpecial) return false;
        pattern.last = at;
    }
    return true;
}

// A piece up to this length is searched by comparing it everywhere.
constexpr std::size_t kShortPiece = 16;

// For each length of a match begun, how much of it remains when the next character does not fit.
std::vector<std::size_t> MakeFallback(std::string_view piece) {
    std::vector<std::size_t> fallback(piece.size() + 1, 0);
    for (std::size_t i = 1, matched = 0; i < piece.size(); ++i) {
        while (matched > 0 && piece[i] != piece[matched]) matched = fallback[matched];
        if (piece[i] == piece[matched]) ++matched;
        fallback[i + 1] = matched;
    }
    return fallback;
}

// The offset behind the first occurrence of a piece, or npos; linear also for pieces that nearly occur everywhere.
std::size_t FindEnd(std::string_view text, std::string_view piece) {
    if (piece.size() <= kShortPiece) {
        const std::size_t at = text.find(piece);
        return at == std::string_view::npos ? at : at + piece.size();
    }
    const std::vector<std::size_t> fallback = MakeFallback(piece);
    std::size_t matched = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        while (matched > 0 && text[i] != piece[matched]) matched = fallback[matched];
        if (text[i] == piece[matched]) ++matched;
        if (matched == piece.size()) return i + 1;
    }
    return std::string_view::npos;
}

// Whether the pieces, each behind a "%", stand in the text one after the other; each is found as early as possible.
bool ContainsPieces(std::string_view text, std::string_view pieces) {
    while (!pieces.empty()) {
        pieces.remove_prefix(1);
        const std::string_view piece = pieces.substr(0, pieces.find('%'));
        pieces.remove_prefix(piece.size());
        const std::size_t end = FindEnd(text, piece);
        if (end == std::string_view::npos) return false;
        text.remove_prefix(end);
    }
    return true;
}

// What stands before the first "%" begins the text, what stands behind the last one ends it, the rest lies between.
bool Matches(std::string_view text, const PlainPattern& pattern) {
    if (pattern.first == std::string_view::npos) return text == pattern.text;
    const std::string_view head = pattern.text.substr(0, pattern.first);
    const std::string_view tail = pattern.text.substr(pattern.last + 1);
    if (text.size() < head.size() + tail.size() || !text.starts_with(head) || !text.ends_with(tail))
        return false;
    if (pattern.first == pattern.last) return true;
    text = text.substr(head.size(), text.size() - head.size() - tail.size());
    return ContainsPieces(text, pattern.text.substr(pattern.first, pattern.last - pattern.first));
}

}  // namespace

bool IsPlainPattern(std::string_view pattern) noexcept {
    PlainPattern plain;
    return ReadPlainPattern(pattern, plain);
}

WildcardResult MatchWildcard(std::string_view text, std::string_view pattern) {
    PlainPattern plain;
    if (!ReadPlainPattern(pattern, plain)) return MatchWithEngine(text, pattern);
    return Matches(text, plain) ? WildcardResult::kMatch : WildcardResult::kNoMatch;
}

}  // namespace brindle
