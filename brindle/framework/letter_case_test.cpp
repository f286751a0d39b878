// Letter case: the whole table of both rules, and the comparisons.
#include "brindle/framework/letter_case.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace brindle;
using namespace std::string_literals;

class RuleFor {
  public:
    explicit RuleFor(LetterCaseRule rule) : m_previous(SetLetterCaseRule(rule)) {}
    ~RuleFor() { SetLetterCaseRule(m_previous); }

  private:
    LetterCaseRule m_previous;
};

// Every byte that has another upper-case form, with that form.
std::string Folding(char (*fold)(char)) {
    std::string out;
    for (int i = 0; i < 256; ++i) {
        const char c = static_cast<char>(i);
        if (fold(c) != c) (out += c) += fold(c);
    }
    return out;
}

TEST(LetterCase, Windows1252) {
    const RuleFor rule(LetterCaseRule::kWindows1252);
    EXPECT_EQ(
        Folding(ToUpper),
        "aAbBcCdDeEfFgGhHiIjJkKlLmMnNoOpPqQrRsStTuUvVwWxXyYzZ"
        "\x9A\x8A\x9C\x8C\x9E\x8E"
        "\xE0\xC0\xE1\xC1\xE2\xC2\xE3\xC3\xE4\xC4\xE5\xC5\xE6\xC6\xE7\xC7\xE8\xC8\xE9\xC9\xEA\xCA\xEB\xCB"
        "\xEC\xCC\xED\xCD\xEE\xCE\xEF\xCF\xF0\xD0\xF1\xD1\xF2\xD2\xF3\xD3\xF4\xD4\xF5\xD5\xF6\xD6"
        "\xF8\xD8\xF9\xD9\xFA\xDA\xFB\xDB\xFC\xDC\xFD\xDD\xFE\xDE\xFF\x9F");
    for (int i = 0; i < 256; ++i) {
        const char c = static_cast<char>(i);
        SCOPED_TRACE(i);
        EXPECT_TRUE(ToUpper(c) == c || ToLower(ToUpper(c)) == c);
        EXPECT_TRUE(ToLower(c) == c || ToUpper(ToLower(c)) == c);
        EXPECT_TRUE(ToUpper(c) == c || ToLower(c) == c);
    }
}

TEST(LetterCase, AsciiOnly) {
    const RuleFor rule(LetterCaseRule::kAsciiOnly);
    EXPECT_EQ(Folding(ToUpper), "aAbBcCdDeEfFgGhHiIjJkKlLmMnNoOpPqQrRsStTuUvVwWxXyYzZ");
    EXPECT_EQ(Folding(ToLower), "AaBbCcDdEeFfGgHhIiJjKkLlMmNnOoPpQqRrSsTtUuVvWwXxYyZz");
}

TEST(LetterCase, SettingReturnsTheRuleBefore) {
    const RuleFor rule(LetterCaseRule::kWindows1252);
    EXPECT_EQ(SetLetterCaseRule(LetterCaseRule::kAsciiOnly), LetterCaseRule::kWindows1252);
    EXPECT_EQ(SetLetterCaseRule(LetterCaseRule::kWindows1252), LetterCaseRule::kAsciiOnly);
}

TEST(LetterCase, Comparing) {
    const RuleFor rule(LetterCaseRule::kWindows1252);
    struct Row {
        const char* label;
        std::string a, b;
        int order;
    };
    const Row rows[] = {
        {"equal", "Abc", "aBC", 0},
        {"less", "abc", "ABD", -1},
        {"greater", "B", "a", 1},
        {"shorter", "ab", "ABC", -1},
        {"empty", "", "", 0},
        {"empty first", "", "a", -1},
        {"accents", "\xC9", "\xE9", 0},
        {"unsigned bytes", "\xE9", "z", 1},
        {"zero bytes", "a\0b"s, "A\0B"s, 0},
        {"behind a zero", "a\0b"s, "a\0c"s, -1},
        {"lower-case forms", "_", "B", -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(CompareNoCase(row.a, row.b), row.order);
        EXPECT_EQ(CompareNoCase(row.b, row.a), -row.order);
        EXPECT_EQ(EqualNoCase(row.a, row.b), row.order == 0);
    }
    EXPECT_TRUE(StartsWithNoCase("Hello", "hEL"));
    EXPECT_TRUE(StartsWithNoCase("Hello", ""));
    EXPECT_FALSE(StartsWithNoCase("Hel", "hell"));
    EXPECT_FALSE(StartsWithNoCase("Help", "hell"));
}

TEST(LetterCase, CharacterTests) {
    EXPECT_TRUE(IsSpace(' ') && IsSpace('\t') && IsSpace('\n') && IsSpace('\v') && IsSpace('\f') &&
                IsSpace('\r'));
    EXPECT_FALSE(IsSpace('\0') || IsSpace('\x08') || IsSpace('\x0E') || IsSpace('\xA0'));
    EXPECT_TRUE(IsDigit('0') && IsDigit('9'));
    EXPECT_FALSE(IsDigit('/') || IsDigit(':') || IsDigit('\xB2'));
    EXPECT_TRUE(IsAsciiLetter('a') && IsAsciiLetter('Z'));
    EXPECT_FALSE(IsAsciiLetter('@') || IsAsciiLetter('[') || IsAsciiLetter('`') || IsAsciiLetter('\xE9'));
}

}  // namespace
