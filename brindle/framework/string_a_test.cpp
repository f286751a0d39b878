// CStringA: the table of operations, zero bytes, null texts, clamping, and arguments inside the string itself.
#include "brindle/framework/string_a.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "brindle/framework/letter_case.h"

namespace {

using namespace std::string_literals;

constexpr const char* kNull = nullptr;
constexpr int kMany = std::numeric_limits<int>::max();
constexpr int kFew = std::numeric_limits<int>::min();

const std::string kZeros = "ab\0cd\0ef"s;

TEST(StringA, Construction) {
    struct Row {
        const char* label;
        CStringA text;
        std::string expected;
    };
    const Row rows[] = {
        {"default", CStringA(), ""},
        {"text", CStringA("abc"), "abc"},
        {"null text", CStringA(kNull), ""},
        {"length", CStringA("abcdef", 3), "abc"},
        {"length with zeros", CStringA("a\0b", 3), "a\0b"s},
        {"length 0", CStringA("abc", 0), ""},
        {"negative length", CStringA("abc", -1), ""},
        {"null with a length", CStringA(kNull, 3), ""},
        {"std::string", CStringA("abc"s), "abc"},
        {"std::string with zeros", CStringA(kZeros), kZeros},
        {"view", CStringA(std::string_view("abc").substr(1)), "bc"},
        {"character", CStringA('x'), "x"},
        {"repeated", CStringA('x', 3), "xxx"},
        {"repeated 0 times", CStringA('x', 0), ""},
        {"repeated -1 times", CStringA('x', -1), ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.text.str(), row.expected);
        EXPECT_EQ(row.text.GetLength(), static_cast<int>(row.expected.size()));
        EXPECT_EQ(row.text.IsEmpty(), row.expected.empty());
    }
}

TEST(StringA, MovesLeaveTheSourceUsable) {
    CStringA source("a text that is longer than any small buffer");
    const CStringA moved(std::move(source));
    EXPECT_EQ(moved, "a text that is longer than any small buffer");
    source = "again";
    EXPECT_EQ(source, "again");
    std::string plain = "another text that is longer than any buffer";
    source = std::move(plain);
    EXPECT_EQ(source, "another text that is longer than any buffer");
}

TEST(StringA, AssignmentAndConversion) {
    CStringA text;
    text = "abc";
    EXPECT_EQ(text.str(), "abc");
    text = kNull;
    EXPECT_EQ(text.str(), "");
    text = kZeros;
    EXPECT_EQ(text.str(), kZeros);
    EXPECT_STREQ(text, "ab") << "text ends at the first zero byte";
    EXPECT_STREQ(text.GetString(), "ab");
    EXPECT_EQ(text.GetLength(), 8);
    EXPECT_EQ(text.view(), kZeros);
    text = 'x';
    EXPECT_EQ(text.str(), "x");
    text.str() += "yz";
    EXPECT_EQ(text, "xyz");
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
    const char* const own = (text = "abcdef").GetString() + 3;
    text = own;
    EXPECT_EQ(text, "def") << "assigned from inside itself";
}

TEST(StringA, CharactersByIndex) {
    CStringA text("abc");
    EXPECT_EQ(text.GetAt(0), 'a');
    EXPECT_EQ(text[2], 'c');
    for (const int outside : {-1, 3, kMany, kFew}) {
        SCOPED_TRACE(outside);
        EXPECT_EQ(text.GetAt(outside), '\0');
        text.SetAt(outside, 'x');
        EXPECT_EQ(text, "abc");
    }
    text.SetAt(1, 'x');
    EXPECT_EQ(text, "axc");
}

// One operation applied to a text.
struct Change {
    const char* label;
    std::string before;
    std::function<void(CStringA&)> change;
    std::string after;
};

void ExpectChanges(const std::vector<Change>& rows) {
    for (const Change& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA text(row.before);
        row.change(text);
        EXPECT_EQ(text.str(), row.after);
    }
}

TEST(StringA, Appending) {
    ExpectChanges({
        {"text", "ab", [](CStringA& s) { s += "cd"; }, "abcd"},
        {"null", "ab", [](CStringA& s) { s += kNull; }, "ab"},
        {"string with zeros", "x", [](CStringA& s) { s += CStringA(kZeros); }, "x" + kZeros},
        {"std::string with zeros", "x", [](CStringA& s) { s += kZeros; }, "x" + kZeros},
        {"character", "ab", [](CStringA& s) { s += 'c'; }, "abc"},
        {"itself", "ab", [](CStringA& s) { s += s; }, "abab"},
        {"its own text", "ab", [](CStringA& s) { s += s.GetString() + 1; }, "abb"},
        {"behind zeros", kZeros, [](CStringA& s) { s += "g"; }, kZeros + "g"},
        {"Append", "ab", [](CStringA& s) { s.Append("cd"); }, "abcd"},
        {"Append null", "ab", [](CStringA& s) { s.Append(kNull); }, "ab"},
        {"Append with a length", "ab", [](CStringA& s) { s.Append("c\0d", 3); }, "abc\0d"s},
        {"Append with length -1", "ab", [](CStringA& s) { s.Append("cd", -1); }, "ab"},
        {"Append null with a length", "ab", [](CStringA& s) { s.Append(kNull, 2); }, "ab"},
        {"AppendChar", "ab", [](CStringA& s) { s.AppendChar('\0'); }, "ab\0"s},
    });
}

TEST(StringA, Joining) {
    const CStringA a(kZeros);
    EXPECT_EQ((a + a).str(), kZeros + kZeros);
    EXPECT_EQ((a + "x").str(), kZeros + "x");
    EXPECT_EQ(("x" + a).str(), "x" + kZeros);
    EXPECT_EQ((a + kNull).str(), kZeros);
    EXPECT_EQ((kNull + a).str(), kZeros);
    EXPECT_EQ((a + "x"s).str(), kZeros + "x");
    EXPECT_EQ(("x"s + a).str(), "x" + kZeros);
    EXPECT_EQ((a + 'x').str(), kZeros + "x");
    EXPECT_EQ(('x' + a).str(), "x" + kZeros);
    const CStringA chained = CStringA("1") + ":" + CStringA("2") + ':' + "3"s;
    EXPECT_EQ(chained, "1:2:3");
}

TEST(StringA, Equality) {
    const CStringA text("abc");
    EXPECT_TRUE(text == "abc" && "abc" == text && text == "abc"s && text == CStringA("abc"));
    EXPECT_TRUE(text != "abd" && "abd" != text && text != "abd"s && text != CStringA("ABC"));
    EXPECT_TRUE(CStringA() == kNull && CStringA("") == "" && text != kNull);
    EXPECT_TRUE(CStringA(kZeros) == kZeros);
    EXPECT_TRUE(CStringA(kZeros) != "ab") << "equality sees the whole string";
}

int Sign(int value) {
    return value < 0 ? -1 : value > 0 ? 1 : 0;
}

TEST(StringA, Order) {
    struct Row {
        const char* label;
        std::string a;
        const char* b;
        int compare;
        int compareNoCase;
    };
    const Row rows[] = {
        {"equal", "abc", "abc", 0, 0},
        {"first difference", "abc", "abd", -1, -1},
        {"shorter first", "ab", "abc", -1, -1},
        {"longer last", "abc", "ab", 1, 1},
        {"null reads as empty", "a", nullptr, 1, 1},
        {"empty and null", "", nullptr, 0, 0},
        {"case", "ABC", "abc", -1, 0},
        {"letters fold to lower case", "a_", "aB", 1, -1},
        {"bytes are unsigned", "\xE9", "z", 1, 1},
        {"accents fold", "\xC9t\xE9", "\xE9T\xC9", -1, 0},
        {"ends at a zero byte", kZeros, "ab", 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const CStringA a(row.a);
        EXPECT_EQ(Sign(a.Compare(row.b)), row.compare);
        EXPECT_EQ(Sign(a.CompareNoCase(row.b)), row.compareNoCase);
    }
    EXPECT_TRUE(CStringA("a") < CStringA("b") && CStringA("b") > CStringA("a"));
    EXPECT_TRUE(CStringA("a") <= CStringA("a") && CStringA("a") >= CStringA("a"));
    EXPECT_TRUE(CStringA("z") < CStringA("\xE9")) << "unsigned";
    EXPECT_TRUE(CStringA("ab") < CStringA(kZeros)) << "the whole string counts";
    EXPECT_EQ(std::set<CStringA>({"b", "a", "B"}).begin()->str(), "B");
    std::unordered_map<CStringA, int> hashed;
    hashed[CStringA(kZeros)] = 1;
    EXPECT_EQ(hashed.count("ab"), 0u);
    EXPECT_EQ(hashed.count(kZeros), 1u);
}

TEST(StringA, Parts) {
    const CStringA text("abcdef");
    struct Row {
        const char* label;
        CStringA actual;
        const char* expected;
    };
    const Row rows[] = {
        {"Mid", text.Mid(2), "cdef"},
        {"Mid 0", text.Mid(0), "abcdef"},
        {"Mid at the end", text.Mid(6), ""},
        {"Mid behind the end", text.Mid(7), ""},
        {"Mid of the largest", text.Mid(kMany), ""},
        {"Mid negative", text.Mid(-2), "abcdef"},
        {"Mid with a count", text.Mid(1, 3), "bcd"},
        {"Mid with too large a count", text.Mid(4, 3), "ef"},
        {"Mid with the largest of both", text.Mid(kMany, kMany), ""},
        {"Mid with the largest count", text.Mid(1, kMany), "bcdef"},
        {"Mid with count 0", text.Mid(1, 0), ""},
        {"Mid with a negative count", text.Mid(1, -1), ""},
        {"Mid negative, with a count", text.Mid(-2, 3), "abc"},
        {"Left", text.Left(2), "ab"},
        {"Left of all", text.Left(9), "abcdef"},
        {"Left negative", text.Left(-1), ""},
        {"Right", text.Right(2), "ef"},
        {"Right of all", text.Right(9), "abcdef"},
        {"Right negative", text.Right(kFew), ""},
        {"SpanIncluding", text.SpanIncluding("cba"), "abc"},
        {"SpanIncluding nothing", text.SpanIncluding("x"), ""},
        {"SpanIncluding everything", text.SpanIncluding("abcdef"), "abcdef"},
        {"SpanIncluding null", text.SpanIncluding(kNull), ""},
        {"SpanExcluding", text.SpanExcluding("ed"), "abc"},
        {"SpanExcluding nothing found", text.SpanExcluding("x"), "abcdef"},
        {"SpanExcluding null", text.SpanExcluding(kNull), "abcdef"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.actual, row.expected);
    }
    EXPECT_EQ(CStringA(kZeros).Mid(1, 3).str(), "b\0c"s);
    EXPECT_EQ(CStringA(kZeros).Right(3).str(), "\0ef"s);
}

TEST(StringA, Tokens) {
    struct Row {
        const char* label;
        std::string text;
        const char* separators;
        std::vector<std::string> tokens;
    };
    const Row rows[] = {
        {"several", "a;b;c", ";", {"a", "b", "c"}},
        {"empty ones are skipped", ";;a;;b;", ";", {"a", "b"}},
        {"several separators", "a, b;c", ";, ", {"a", "b", "c"}},
        {"none", "abc", ";", {"abc"}},
        {"empty text", "", ";", {}},
        {"separators only", ";;;", ";", {}},
        {"no separators", "a;b", "", {"a;b"}},
        {"null separators", "a;b", nullptr, {"a;b"}},
        {"zero bytes are text", kZeros, "d", {"ab\0c"s, "\0ef"s}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const CStringA text(row.text);
        std::vector<std::string> tokens;
        int position = 0;
        for (CStringA token = text.Tokenize(row.separators, position); position >= 0;
             token = text.Tokenize(row.separators, position)) {
            tokens.push_back(token.str());
            ASSERT_LE(tokens.size(), 10u);
        }
        EXPECT_EQ(tokens, row.tokens);
        EXPECT_EQ(text.Tokenize(row.separators, position), "") << "the end is the end";
        EXPECT_EQ(position, -1);
    }
    int behind = kMany;
    EXPECT_EQ(CStringA("a;b").Tokenize(";", behind), "");
    EXPECT_EQ(behind, -1);
}

TEST(StringA, Searches) {
    const CStringA text("abcabc");
    const CStringA zeros(kZeros);
    struct Row {
        const char* label;
        int actual;
        int expected;
    };
    const Row rows[] = {
        {"character", text.Find('b'), 1},
        {"character from", text.Find('b', 2), 4},
        {"character at the start", text.Find('b', 4), 4},
        {"character missing", text.Find('x'), -1},
        {"character from behind the end", text.Find('a', 7), -1},
        {"character from the largest", text.Find('a', kMany), -1},
        {"character from a negative start", text.Find('b', -5), 1},
        {"text", text.Find("bc"), 1},
        {"text from", text.Find("bc", 2), 4},
        {"text missing", text.Find("cb"), -1},
        {"text from a negative start", text.Find("bc", kFew), 1},
        {"text from behind the end", text.Find("c", 7), -1},
        {"empty text", text.Find(""), 0},
        {"empty text from", text.Find("", 3), 3},
        {"empty text at the end", text.Find("", 6), 6},
        {"empty text behind the end", text.Find("", 7), -1},
        {"null text", text.Find(kNull), 0},
        {"backwards", text.ReverseFind('b'), 4},
        {"backwards missing", text.ReverseFind('x'), -1},
        {"one of", text.FindOneOf("xcb"), 1},
        {"one of none", text.FindOneOf("xyz"), -1},
        {"one of null", text.FindOneOf(kNull), -1},
        {"character behind a zero", zeros.Find('d'), 4},
        {"zero itself", zeros.Find('\0', 3), 5},
        {"backwards over a zero", zeros.ReverseFind('\0'), 5},
        {"text stops at a zero", zeros.Find("cd"), -1},
        {"text from behind a zero", zeros.Find("cd", 3), 3},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.actual, row.expected);
    }
}

TEST(StringA, Changes) {
    ExpectChanges({
        {"upper", "abc\xE4\xF7\xFF\x9A.", [](CStringA& s) { s.MakeUpper(); }, "ABC\xC4\xF7\x9F\x8A."},
        {"lower", "ABC\xC4\xD7\x9F\x8A.", [](CStringA& s) { s.MakeLower(); }, "abc\xE4\xD7\xFF\x9A."},
        {"upper over zeros", kZeros, [](CStringA& s) { s.MakeUpper(); }, "AB\0CD\0EF"s},
        {"reverse", kZeros, [](CStringA& s) { s.MakeReverse(); }, "fe\0dc\0ba"s},
        {"trim", " \t\n\v\f\rab \t\n\v\f\r", [](CStringA& s) { s.Trim(); }, "ab"},
        {"trim inner blanks stay", " a b ", [](CStringA& s) { s.Trim(); }, "a b"},
        {"trim all", "  \t", [](CStringA& s) { s.Trim(); }, ""},
        {"trim nothing", "", [](CStringA& s) { s.Trim(); }, ""},
        {"trim keeps a no-break space", "\xA0 a", [](CStringA& s) { s.Trim(); }, "\xA0 a"},
        {"trim left", "  a ", [](CStringA& s) { s.TrimLeft(); }, "a "},
        {"trim left all", "   ", [](CStringA& s) { s.TrimLeft(); }, ""},
        {"trim right", " a  ", [](CStringA& s) { s.TrimRight(); }, " a"},
        {"trim right all", "   ", [](CStringA& s) { s.TrimRight(); }, ""},
        {"trim a character", "xxaxx", [](CStringA& s) { s.Trim('x'); }, "a"},
        {"trim left a character", "xxaxx", [](CStringA& s) { s.TrimLeft('x'); }, "axx"},
        {"trim right a character", "xxaxx", [](CStringA& s) { s.TrimRight('x'); }, "xxa"},
        {"trim a set", "<>a<>", [](CStringA& s) { s.Trim("<>"); }, "a"},
        {"trim left a set", "<>a<>", [](CStringA& s) { s.TrimLeft("<>"); }, "a<>"},
        {"trim right a set", "<>a<>", [](CStringA& s) { s.TrimRight("<>"); }, "<>a"},
        {"trim null", " a ", [](CStringA& s) { s.Trim(kNull); }, " a "},
        {"trim its own text", "ab", [](CStringA& s) { s.Trim(s.GetString()); }, ""},
        {"truncate", "abc", [](CStringA& s) { s.Truncate(2); }, "ab"},
        {"truncate never grows", "abc", [](CStringA& s) { s.Truncate(9); }, "abc"},
        {"truncate negative", "abc", [](CStringA& s) { s.Truncate(-1); }, ""},
        {"swap", "abc",
         [](CStringA& s) {
             CStringA other("x");
             s.Swap(other);
         },
         "x"},
    });
}

// Operations that return a number and change the text.
struct Counted {
    const char* label;
    std::string before;
    std::function<int(CStringA&)> change;
    int result;
    std::string after;
};

void ExpectCounted(const std::vector<Counted>& rows) {
    for (const Counted& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA text(row.before);
        EXPECT_EQ(row.change(text), row.result);
        EXPECT_EQ(text.str(), row.after);
    }
}

TEST(StringA, Replacing) {
    ExpectCounted({
        {"character", "abab", [](CStringA& s) { return s.Replace('a', 'x'); }, 2, "xbxb"},
        {"character missing", "abab", [](CStringA& s) { return s.Replace('c', 'x'); }, 0, "abab"},
        {"character by itself", "abab", [](CStringA& s) { return s.Replace('a', 'a'); }, 0, "abab"},
        {"zero bytes", kZeros, [](CStringA& s) { return s.Replace('\0', '.'); }, 2, "ab.cd.ef"},
        {"text", "aXbXc", [](CStringA& s) { return s.Replace("X", "--"); }, 2, "a--b--c"},
        {"text by nothing", "aXbXc", [](CStringA& s) { return s.Replace("X", ""); }, 2, "abc"},
        {"text by null", "aXbXc", [](CStringA& s) { return s.Replace("X", kNull); }, 2, "abc"},
        {"empty text", "abc", [](CStringA& s) { return s.Replace("", "x"); }, 0, "abc"},
        {"null text", "abc", [](CStringA& s) { return s.Replace(kNull, "x"); }, 0, "abc"},
        {"case counts", "abc", [](CStringA& s) { return s.Replace("B", "x"); }, 0, "abc"},
        {"from left to right", "aaa", [](CStringA& s) { return s.Replace("aa", "b"); }, 1, "ba"},
        {"the replacement is not searched", "aa", [](CStringA& s) { return s.Replace("a", "aa"); }, 2,
         "aaaa"},
        {"whole text", "aa", [](CStringA& s) { return s.Replace("aa", "b"); }, 1, "b"},
        {"behind zero bytes", kZeros, [](CStringA& s) { return s.Replace("cd", "x"); }, 1, "ab\0x\0ef"s},
        {"its own text by itself twice", "ab",
         [](CStringA& s) { return s.Replace(s.GetString() + 1, s.GetString()); }, 1, "aab"},
        {"remove", "abcabc", [](CStringA& s) { return s.Remove('b'); }, 2, "acac"},
        {"remove missing", "abc", [](CStringA& s) { return s.Remove('x'); }, 0, "abc"},
        {"remove zero bytes", kZeros, [](CStringA& s) { return s.Remove('\0'); }, 2, "abcdef"},
    });
}

TEST(StringA, InsertingAndDeleting) {
    ExpectCounted({
        {"insert", "ad", [](CStringA& s) { return s.Insert(1, "bc"); }, 4, "abcd"},
        {"insert first", "b", [](CStringA& s) { return s.Insert(0, "a"); }, 2, "ab"},
        {"insert at the end", "a", [](CStringA& s) { return s.Insert(1, "b"); }, 2, "ab"},
        {"insert behind the end", "a", [](CStringA& s) { return s.Insert(99, "b"); }, 2, "ab"},
        {"insert negative", "b", [](CStringA& s) { return s.Insert(-9, "a"); }, 2, "ab"},
        {"insert null", "a", [](CStringA& s) { return s.Insert(0, kNull); }, 1, "a"},
        {"insert its own text", "ab", [](CStringA& s) { return s.Insert(1, s.GetString()); }, 4, "aabb"},
        {"insert a character", "ac", [](CStringA& s) { return s.Insert(1, 'b'); }, 3, "abc"},
        {"insert a character behind the end", "a", [](CStringA& s) { return s.Insert(9, 'b'); }, 2, "ab"},
        {"insert a character negative", "b", [](CStringA& s) { return s.Insert(-9, 'a'); }, 2, "ab"},
        {"delete one", "abc", [](CStringA& s) { return s.Delete(1); }, 2, "ac"},
        {"delete several", "abcd", [](CStringA& s) { return s.Delete(1, 2); }, 2, "ad"},
        {"delete too many", "abc", [](CStringA& s) { return s.Delete(1, kMany); }, 1, "a"},
        {"delete behind the end", "abc", [](CStringA& s) { return s.Delete(3); }, 3, "abc"},
        {"delete from the largest", "abc", [](CStringA& s) { return s.Delete(kMany, kMany); }, 3, "abc"},
        {"delete negative", "abc", [](CStringA& s) { return s.Delete(-1, 1); }, 2, "bc"},
        {"delete a negative count", "abc", [](CStringA& s) { return s.Delete(0, -1); }, 3, "abc"},
    });
}

TEST(StringA, Buffers) {
    CStringA text("abc");
    char* buffer = text.GetBuffer(10);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(buffer[10], '\0');
    for (int i = 0; i < 10; ++i) buffer[i] = 'x';
    text.ReleaseBuffer(4);
    EXPECT_EQ(text, "xxxx");
    buffer = text.GetBuffer();
    buffer[2] = '\0';
    text.ReleaseBuffer();
    EXPECT_EQ(text.str(), "xx");
    text.GetBuffer(-5);
    text.ReleaseBuffer(99);
    EXPECT_EQ(text.str(), "xx") << "never more than the buffer holds";
}

TEST(StringA, Formatting) {
    CStringA text;
    text.Format("%04X:%02X %s", 0x12u, 3u, "abc");
    EXPECT_EQ(text, "0012:03 abc");
    text.AppendFormat(" %d", -5);
    EXPECT_EQ(text, "0012:03 abc -5");
    text.Format("<%s>", text.GetString());
    EXPECT_EQ(text, "<0012:03 abc -5>") << "an argument may be the text itself";
    text.AppendFormat("%s", text.GetString());
    EXPECT_EQ(text, "<0012:03 abc -5><0012:03 abc -5>");
    text.Format("%s", CStringA(kZeros).GetString());
    EXPECT_EQ(text.str(), "ab") << "an argument ends at its first zero byte";
}

TEST(StringA, LettersFoldByTheCodePage) {
    const auto previous = brindle::SetLetterCaseRule(brindle::LetterCaseRule::kAsciiOnly);
    CStringA text("a\xC3\xA9");
    EXPECT_EQ(text.MakeUpper(), "A\xC3\xA9");
    EXPECT_EQ(text.CompareNoCase("a\xC3\xA9"), 0);
    EXPECT_NE(CStringA("\xC9").CompareNoCase("\xE9"), 0);
    brindle::SetLetterCaseRule(previous);
    EXPECT_EQ(CStringA("\xC9").CompareNoCase("\xE9"), 0);
}

}  // namespace
