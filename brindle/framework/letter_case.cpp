// Letter case by table. Two pairs of tables are made at compile time; an atomic pointer tells which one
// counts. Entry points: ToUpper, ToLower, CompareNoCase. Tests: letter_case_test.cpp.
#include "brindle/framework/letter_case.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace brindle {
namespace {

struct CaseTables {
    std::array<char, 256> upper{};
    std::array<char, 256> lower{};

    constexpr explicit CaseTables(LetterCaseRule rule) {
        for (unsigned i = 0; i < 256; ++i) upper[i] = lower[i] = static_cast<char>(i);
        PairRange('A', 'Z', 'a');
        if (rule == LetterCaseRule::kAsciiOnly) return;
        PairRange(0xC0, 0xD6, 0xE0);  // A grave to O diaeresis
        PairRange(0xD8, 0xDE, 0xF8);  // O slash to thorn; the signs D7 and F7 between are no letters
        PairRange(0x8A, 0x8A, 0x9A);  // S caron
        PairRange(0x8C, 0x8C, 0x9C);  // OE
        PairRange(0x8E, 0x8E, 0x9E);  // Z caron
        PairRange(0x9F, 0x9F, 0xFF);  // Y diaeresis
    }
    constexpr void PairRange(unsigned firstUpper, unsigned lastUpper, unsigned firstLower) {
        for (unsigned i = 0; i <= lastUpper - firstUpper; ++i) {
            lower[firstUpper + i] = static_cast<char>(firstLower + i);
            upper[firstLower + i] = static_cast<char>(firstUpper + i);
        }
    }
};

constexpr CaseTables kWindows1252Tables{LetterCaseRule::kWindows1252};
constexpr CaseTables kAsciiTables{LetterCaseRule::kAsciiOnly};

constinit std::atomic<const CaseTables*> g_tables{&kWindows1252Tables};

const CaseTables& Tables() noexcept {
    return *g_tables.load(std::memory_order_relaxed);
}

}  // namespace

LetterCaseRule SetLetterCaseRule(LetterCaseRule rule) noexcept {
    const CaseTables* next = rule == LetterCaseRule::kAsciiOnly ? &kAsciiTables : &kWindows1252Tables;
    return g_tables.exchange(next) == &kAsciiTables ? LetterCaseRule::kAsciiOnly
                                                    : LetterCaseRule::kWindows1252;
}

char ToUpper(char character) noexcept {
    return Tables().upper[static_cast<unsigned char>(character)];
}

char ToLower(char character) noexcept {
    return Tables().lower[static_cast<unsigned char>(character)];
}

int CompareNoCase(std::string_view a, std::string_view b) noexcept {
    const CaseTables& tables = Tables();
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int left = static_cast<unsigned char>(tables.lower[static_cast<unsigned char>(a[i])]);
        const int right = static_cast<unsigned char>(tables.lower[static_cast<unsigned char>(b[i])]);
        if (left != right) return left < right ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool EqualNoCase(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() && CompareNoCase(a, b) == 0;
}

bool StartsWithNoCase(std::string_view text, std::string_view start) noexcept {
    return text.size() >= start.size() && EqualNoCase(text.substr(0, start.size()), start);
}

}  // namespace brindle
