#include "brindle/expressions/wildcard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "brindle/expressions/byte_set.h"
#include "brindle/expressions/wildcard_engine.h"
#include "brindle/expressions/wildcard_translate.h"
#include "testing/slow_pattern.h"

namespace {

using brindle::MatchWildcard;
using brindle::WildcardResult;
using brindle::testing::SlowPattern;

constexpr auto kYes = WildcardResult::kMatch;
constexpr auto kNo = WildcardResult::kNoMatch;
constexpr auto kNone = WildcardResult::kNoPattern;

struct Row {
    std::string text;
    std::string pattern;
    WildcardResult expected;
};

const std::string kZero(1, '\0');

TEST(Wildcard, PlainPatterns) {
    const Row rows[] = {
        {"Camera 1", "Cam%", kYes},
        {"camera 1", "Cam%", kNo},
        {"Cam", "Cam%", kYes},
        {"ABC", "A%", kYes},
        {"xA", "A%", kNo},
        {"xA", "%A", kYes},
        {"Ax", "%A", kNo},
        {"", "", kYes},
        {"", "%", kYes},
        {"x", "", kNo},
        {"anything", "%", kYes},
        {"anything", "%%%", kYes},
        {"abcabd", "%ab%d", kYes},
        {"abc", "%b%b%", kNo},
        {"abab", "ab%ab", kYes},
        {"aba", "ab%ba", kNo},
        {"axbyc", "a%b%c", kYes},
        {"axyc", "a%b%c", kNo},
        {"a\nb\r" + kZero, "a%" + kZero, kYes},
        {"caf\xE9", "caf\xE9", kYes},
        {"a b", "a b", kYes},
        {"one two three", "%one%two%three%", kYes},
        {"one three two", "%one%two%three%", kNo},
        {std::string(40, 'a') + "b" + std::string(40, 'a'), "%" + std::string(30, 'a') + "b%", kYes},
        {std::string(20, 'a') + "b" + std::string(20, 'a'), "%" + std::string(30, 'a') + "%", kNo},
        {std::string(20, 'a') + "b", "%" + std::string(20, 'a') + "b%b%", kNo},
        {std::string(20, 'a') + "bb", "%" + std::string(20, 'a') + "b%b%", kYes},
        {"xabcabcabcabcabcabcabdx", "%abcabcabcabcabcabd%", kYes},
        {"aabab" + std::string(17, 'c'), "%aab" + std::string(17, 'c') + "%", kNo},
        {"aabaab" + std::string(17, 'c'), "%aab" + std::string(17, 'c') + "%", kYes},
        {"ab", "a%b%b", kNo},
        {"abb", "a%b%b", kYes},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE("\"" + row.text + "\" = \"" + row.pattern + "\"");
        EXPECT_TRUE(brindle::IsPlainPattern(row.pattern));
        EXPECT_EQ(MatchWildcard(row.text, row.pattern), row.expected);
        EXPECT_EQ(SlowPattern(row.pattern).Matches(row.text), row.expected == kYes);
        if (row.pattern.size() > 0) {  // the engine is of the same opinion
            EXPECT_EQ(brindle::MatchWithEngine(row.text, row.pattern), row.expected);
        }
    }
}

TEST(Wildcard, EveryOtherSpecialCharacterNeedsTheEngine) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string pattern(1, static_cast<char>(byte));
        const bool special = byte != 0 && std::string("\\.*+?()[]{}^$|").find(pattern) != std::string::npos;
        EXPECT_EQ(brindle::IsPlainPattern(pattern), !special) << byte;
    }
}

TEST(Wildcard, PatternLanguage) {
    const Row rows[] = {
        {"abc", "a.c", kYes},
        {"ac", "a.c", kNo},
        {"a\nc", "a.c", kYes},
        {"a" + kZero + "c", "a.c", kYes},
        {"a\xFF"
         "c",
         "a.c", kYes},
        {"a\r\n" + kZero + "c", "a%[c]", kYes},
        {"a", "a|b", kYes},
        {"b", "a|b", kYes},
        {"ab", "a|b", kNo},
        {"", "a|", kYes},
        {"abab", "(ab)*", kYes},
        {"abab", "{ab}*", kYes},
        {"abab", "{ab}+", kYes},
        {"aaa", "a{2}", kNo},  // braces are groups, not counts
        {"a2", "a{2}", kYes},
        {"ab", "{a}(b)", kYes},
        {"ab", "{a(b})", kNone},
        {"a", "(a", kNone},
        {"a", "a)", kNone},
        {"a", "{a", kNone},
        {"a", "a}", kNone},
        {"a", "[a", kNone},
        {"a]", "a]", kYes},
        {"aaa", "a+", kYes},
        {"", "a+", kNo},
        {"ab", "ab?", kYes},
        {"a", "ab?", kYes},
        {"a", "*a", kNone},
        {"a", "+", kNone},
        {"a", "(?a)", kNone},
        {"a", "(?:a)", kYes},
        {"a", "(?=a)a", kNone},
        {"a", "(?!b)a", kNone},
        {"aa", "(a)\\1", kNone},
        {"aa", "a\\9", kNone},
        {"a$", "a\\", kYes},  // the backslash takes the "$" that every pattern ends with
        {"a", "^a$", kYes},
        {"ab", "a^b", kNo},
        {"a", "()a", kYes},
        {"a.b", "a\\.b", kYes},
        {"axb", "a\\.b", kNo},
        {"a%b", "a[%]b", kNo},  // "%" becomes ".*" in a class too
        {"a.b", "a[%]b", kYes},
        {"a*b", "a[%]b", kYes},
        {"a..", "a\\%", kYes},  // ... and behind a backslash
        {"7", "\\a", kYes},
        {"x", "\\a", kYes},
        {"_", "\\a", kNo},
        {"\xE9", "\\a", kNo},
        {" ", "\\b", kYes},
        {"\t", "\\b", kYes},
        {"\n", "\\b", kNo},
        {"x", "\\c", kYes},
        {"7", "\\c", kNo},
        {"7", "\\d", kYes},
        {"x", "\\d", kNo},
        {"f", "\\h", kYes},
        {"g", "\\h", kNo},
        {"\n", "\\n", kYes},
        {"\r\n", "\\n", kYes},
        {"\r", "\\n", kYes},
        {"n", "\\n", kNo},
        {"\"a b\"", "\\q", kYes},
        {"'a b'", "\\q", kYes},
        {"'a b\"", "\\q", kNo},
        {"''", "\\q", kYes},
        {"word", "\\w", kYes},
        {"word1", "\\w", kNo},
        {"", "\\w", kNo},
        {"", "\\w?", kYes},
        {"ab12", "\\w\\z", kYes},
        {"12a", "\\z", kNo},
        {"12 34", "(\\z )*\\z", kYes},
        {"a", "[abc]", kYes},
        {"d", "[abc]", kNo},
        {"d", "[^abc]", kYes},
        {"\n", "[^abc]", kYes},
        {"b", "[a-c]", kYes},
        {"-", "[a-]", kYes},
        {"a", "[a-\\d]", kYes},
        {"-", "[a-\\d]", kYes},
        {"5", "[a-\\d]", kYes},
        {"b", "[a-\\d]", kNo},
        {"-", "[-a]", kYes},
        {"-", "[a-b-c]", kYes},
        {"c", "[a-b-c]", kYes},
        {"a", "[c-a]", kNone},
        {"\xE9", "[\xE0-\xFF]", kYes},
        {"\xE9", "[a-\xFF]", kYes},
        {"\xE9", "[a-z]", kNo},
        {"a", "[\xFF-a]", kNone},
        {"", "[]", kNo},
        {"a", "[]", kNo},
        {"a", "[^]", kYes},
        {"]", "[\\]]", kYes},
        {"5", "[\\d]", kYes},
        {"x", "[\\d\\c]", kYes},
        {"-", "[\\d-x]", kYes},
        {"-", "[x-\\d]", kYes},
        {"\r", "[\\n]", kYes},
        {"\n", "[\\n]", kYes},
        {"w", "[\\w]", kYes},
        {"3", "[\\z]", kYes},
        {"q", "[\\q]", kYes},
        {"x", "[\\1]", kNone},
        {"x", "[[:alpha:]]", kYes},
        {"3", "[[:alpha:][:digit:]]", kYes},
        {"3", "[^[:alpha:]]", kYes},
        {"x", "[[:nothing:]]", kNone},
        {"x", "[[:alpha]", kNone},
        {"b", "[[.a.]-[=c=]]", kYes},
        {"b", "[[.ab.]]", kNone},
        {" ", "\\s", kYes},
        {"x", "\\S", kYes},
        {"x", "\\D", kYes},
        {"-", "\\W", kYes},
        {"\t\v\f\r" + kZero, "\\t\\v\\f\\r\\0", kYes},
        {"A\xFF", "\\x41\\u00ff", kYes},
        {"\xAA\xFA", "\\xaa\\xFA", kYes},
        {"A", "\\x4", kNone},
        {"A", "\\xg1", kNone},
        {"A", "\\u0141", kNone},
        {"ab", "a\\Bb", kYes},
        {"a-", "a\\B-", kNo},
        {"e", "\\e", kYes},
        {"aaa", "a*?a", kYes},
        {"aaa", "a**", kYes},
        {"a", "[[]a", kNo},
        {"[a", "[[]a", kYes},
        {"a[", "a[[", kNone},
        {"^", "[\\^]", kYes},
        {"\\", "[\\\\]", kYes},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE("\"" + row.text + "\" = \"" + row.pattern + "\"");
        EXPECT_EQ(MatchWildcard(row.text, row.pattern), row.expected);
    }
}

TEST(Wildcard, LimitsOfTheEngine) {
    const std::string atLimit = "." + std::string(brindle::kMaxPatternLength - 1, 'a');
    EXPECT_EQ(MatchWildcard(std::string(brindle::kMaxPatternLength, 'a'), atLimit), kYes);
    EXPECT_EQ(MatchWildcard("a", atLimit + "a"), kNone);
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '(') + "a" + std::string(depth, ')');
    };
    EXPECT_EQ(MatchWildcard("a", nested(brindle::kMaxPatternDepth)), kYes);
    EXPECT_EQ(MatchWildcard("a", nested(brindle::kMaxPatternDepth + 1)), kNone);
    const std::string pattern = "[ab]%" + std::string(1019, 'a');  // 1,024 characters
    EXPECT_EQ(MatchWildcard(std::string((brindle::kMaxPatternWork >> 10) + 1, 'a'), pattern), kNone);
    EXPECT_EQ(MatchWildcard(std::string(brindle::kMaxPatternWork / 4, 'a'), "[b]%"), kNo);
    EXPECT_EQ(MatchWildcard(std::string(brindle::kMaxPatternWork / 4 + 1, 'a'), "[b]%"), kNone);
}

TEST(Wildcard, WorstPatternsEndCleanly) {
    EXPECT_EQ(MatchWildcard(std::string(30000, 'a'), "(a|b)*c"), kNo);
    EXPECT_EQ(MatchWildcard(std::string(20, 'a'), "(a*)*b"), kNo);
    EXPECT_EQ(MatchWildcard(std::string(300, 'a'), "((((a*)*)*)*)*b"), kNo);
    for (const char* piece : {"a*", "a?", "\\q", "[ab]", "a|", "\\w", "()", "%", "."}) {
        std::string pattern = "()";
        while (pattern.size() + std::string_view(piece).size() <= brindle::kMaxPatternLength)
            pattern += piece;
        SCOPED_TRACE(piece);
        EXPECT_NE(MatchWildcard("aaaaaaaa", pattern), kNone);
    }
    EXPECT_EQ(MatchWildcard("a", "a" + std::string(4095, '*')), kYes);
    std::string deep;
    for (int i = 0; i < 100; ++i) deep += "(a*|";
    EXPECT_NE(MatchWildcard("aaaa", deep + std::string(100, ')')), kNone);
}

TEST(Wildcard, PlainPatternsHaveNoLimitAndTakeLinearTime) {
    const std::string text(10 << 20, 'a');
    EXPECT_EQ(MatchWildcard(text, "%b"), kNo);
    EXPECT_EQ(MatchWildcard(text, "%" + std::string(100000, 'a') + "b%"), kNo);
    EXPECT_EQ(MatchWildcard(text, "a%a%a%a%a%a"), kYes);
    std::string many;
    for (int i = 0; i < 500000; ++i) many += "a%";
    EXPECT_EQ(MatchWildcard(text, many), kYes);
}

TEST(Wildcard, CacheServesSeveralThreads) {
    std::atomic<int> wrong{0};
    const auto work = [&wrong](unsigned seed) {
        for (unsigned i = 0; i < 300; ++i) {
            const std::string word = "w" + std::to_string((seed + i) % 23);  // more patterns than it holds
            if (MatchWildcard(word, "[w]" + word.substr(1)) != kYes) ++wrong;
            if (MatchWildcard(word, "(" + word) != kNone) ++wrong;
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 4; ++i) threads.emplace_back(work, i * 7);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(Wildcard, RandomPatternsAgainstSlowOnes) {
    std::mt19937 random(4242);
    const std::vector<std::string> pieces = {
        "a",   "b",   "1",    " ",    ".",      "%",   "*",   "+",   "?",     "(",    ")",   "{",
        "}",   "|",   "[ab]", "[^a]", "[a-c1]", "\\a", "\\b", "\\c", "\\d",   "\\h",  "\\q", "\\w",
        "\\z", "\\.", "\\D",  "\\S",  "\\W",    "\\s", "^",   "$",   "(a|b)", "{ab}*"};
    const std::string alphabet = "ab1 .'\"";
    int matches = 0;
    int invalid = 0;
    for (int i = 0; i < 8000; ++i) {
        std::string pattern;
        for (auto n = random() % 7; n > 0; --n) pattern += pieces[random() % pieces.size()];
        if (random() % 50 == 0) pattern += "\\";
        std::string text;
        for (auto n = random() % 7; n > 0; --n) text += alphabet[random() % alphabet.size()];
        const SlowPattern slow(pattern);
        const WildcardResult expected = !slow.IsValid() ? kNone : slow.Matches(text) ? kYes : kNo;
        ASSERT_EQ(MatchWildcard(text, pattern), expected) << "\"" << text << "\" = \"" << pattern << "\"";
        matches += expected == kYes;
        invalid += expected == kNone;
    }
    EXPECT_GT(matches, 300);
    EXPECT_GT(invalid, 300);
}

TEST(WildcardTranslate, Texts) {
    struct TranslateRow {
        const char* pattern;
        const char* expected;  // null: does not compile
    };
    const TranslateRow rows[] = {
        {"a b1", "^a b1$"},
        {"%", "^[\\x00-\\x7f\\x80-\\xff]*$"},
        {"(a){b}", "^(?:a)(?:b)$"},
        {"\\d", "^[\\x30-\\x39]$"},
        {"-", "^[\\x2d]$"},
        {"[]", "^[^\\x00-\\x7f\\x80-\\xff]$"},
        {"[^a]", "^[\\x00-\\x60\\x62-\\x7f\\x80-\\xff]$"},
        {"(", nullptr},
    };
    for (const TranslateRow& row : rows) {
        SCOPED_TRACE(row.pattern);
        std::string out;
        EXPECT_EQ(brindle::TranslateWildcard(row.pattern, out), row.expected != nullptr);
        if (row.expected) {
            EXPECT_EQ(out, row.expected);
        }
    }
}

TEST(WildcardTranslate, NamedClassesAreThoseOfAscii) {
    struct NameRow {
        const char* name;
        int members;
    };
    const NameRow rows[] = {{"alnum", 62}, {"alpha", 52}, {"blank", 2},  {"cntrl", 33}, {"d", 10},
                            {"digit", 10}, {"graph", 94}, {"lower", 26}, {"print", 95}, {"punct", 32},
                            {"s", 6},      {"space", 6},  {"upper", 26}, {"w", 63},     {"xdigit", 22}};
    for (const NameRow& row : rows) {
        SCOPED_TRACE(row.name);
        brindle::ByteSet set;
        ASSERT_TRUE(brindle::ByteSet::OfName(row.name, set));
        int members = 0;
        for (int byte = 0; byte < 256; ++byte) members += set.Contains(static_cast<unsigned char>(byte));
        EXPECT_EQ(members, row.members);
    }
}

}  // namespace
