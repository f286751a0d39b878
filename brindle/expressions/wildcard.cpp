// Plain patterns are matched here, piece by piece between their "%", in time that grows with the text's length
// only; all others go to the engine (wildcard_engine.h). Entry point: MatchWildcard. Tests: wildcard_test.cpp.
#include "brindle/expressions/wildcard.h"

#include <array>
#include <cstring>
#include <vector>

#include "brindle/expressions/wildcard_engine.h"

namespace brindle {
namespace {

constexpr std::array<bool, 256> MakeSpecialTable() noexcept {
    std::array<bool, 256> table{};
    for (const char c : std::string_view("\\.*+?()[]{}^$|")) table[static_cast<unsigned char>(c)] = true;
    return table;
}
constexpr std::array<bool, 256> kSpecial = MakeSpecialTable();

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

}  // namespace

bool IsPlainPattern(std::string_view pattern) noexcept {
    for (const char c : pattern)
        if (kSpecial[static_cast<unsigned char>(c)]) return false;
    return true;
}

// What stands before the first "%" begins the text, what stands behind the last one ends it, and the pieces
// between are found one after the other, each as early as possible.
bool MatchPlainPattern(std::string_view text, std::string_view pattern) {
    const std::size_t first = pattern.find('%');
    if (first == std::string_view::npos) return text == pattern;
    const std::size_t last = pattern.rfind('%');
    const std::string_view head = pattern.substr(0, first);
    const std::string_view tail = pattern.substr(last + 1);
    if (text.size() < head.size() + tail.size()) return false;
    if (text.substr(0, head.size()) != head || text.substr(text.size() - tail.size()) != tail) return false;
    text = text.substr(head.size(), text.size() - head.size() - tail.size());
    std::string_view pieces = pattern.substr(first, last - first);  // "%piece%piece"
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

WildcardResult MatchWildcard(std::string_view text, std::string_view pattern) {
    if (!IsPlainPattern(pattern)) return MatchWithEngine(text, pattern);
    return MatchPlainPattern(text, pattern) ? WildcardResult::kMatch : WildcardResult::kNoMatch;
}

}  // namespace brindle
