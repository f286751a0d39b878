// Texts of Orvane::Utils, row by row.
#include "brindle/util/utils.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "brindle/platform/backend.h"
#include "brindle/platform/code_page.h"
#include "brindle/util/my_char_replacer.h"

namespace Orvane {
namespace {

static_assert(!std::is_default_constructible_v<Utils> && !std::is_destructible_v<Utils>,
              "nobody makes one: its operations are all static");

using std::string_literals::operator""s;

TEST(Utils, CorrectLineBreaks) {
    struct Row {
        const char* label;
        std::string text;
        std::string expected;
    };
    const Row rows[] = {
        {"empty", "", ""},
        {"no break", "a", "a"},
        {"worked example", "a\r\r\nb\nc", "a\r\nb\r\nc"},
        {"right already", "a\r\nb\r\n", "a\r\nb\r\n"},
        {"feeds only", "\n\n", "\r\n\r\n"},
        {"many returns", "\r\r\r\r\n", "\r\n"},
        {"returns elsewhere", "a\rb\r\nc\r", "a\rb\r\nc\r"},
        {"returns at the end stay", "a\n\r\r", "a\r\n\r\r"},
        {"zero byte", "a\0\nb"s, "a\0\r\nb"s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA text = row.text;
        Utils::CorrectLineBreaks(text);
        EXPECT_EQ(text, row.expected);
        Utils::CorrectLineBreaks(text);
        EXPECT_EQ(text, row.expected) << "a second time changes nothing";
    }
}

TEST(Utils, IsInteger) {
    struct Row {
        std::string text;
        bool expected;
    };
    const Row rows[] = {
        {"-", false},
        {"+12", true},
        {"12a", false},
        {"", false},
        {"0", true},
        {"-7", true},
        {"+", false},
        {" 1", false},
        {"1 ", false},
        {"--1", false},
        {"0x10", false},
        {"007", true},
        {"99999999999999999999", true},
        {"1.0", false},
        {"1\0"s, false},
        {"a", false},
    };
    for (const Row& row : rows) EXPECT_EQ(Utils::IsInteger(row.text), row.expected) << row.text;
}

TEST(Utils, ReplaceInvalidCharsInFileName) {
    struct Row {
        const char* label;
        const char* path;
        const char* expected;
    };
    const Row rows[] = {
        {"worked example", "C:\\dir\\a:b?.txt", "C:\\dir\\a_b_.txt"},
        {"bare name: kept as it is", "a:b.txt", "a:b.txt"},
        {"nothing else in the name: kept as it is", "C:\\dir\\???", "C:\\dir\\???"},
        {"empty", "", ""},
        {"no name", "C:\\dir\\", "C:\\dir\\"},
        {"all seven", "/a:|?\"<>*b", "/a_______b"},
        {"the last separator counts", "a?/b?\\c?", "a?/b?\\c_"},
        {"slash last", "a\\b:/c:", "a\\b:/c_"},
        {"controls stay", "/a\t\x01\x1F:", "/a\t\x01\x1F_"},
        {"high bytes stay", "/\xE9\xFF*", "/\xE9\xFF_"},
        {"nothing to do", "/a.txt", "/a.txt"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA path = row.path;
        Utils::ReplaceInvalidCharsInFileName(path);
        EXPECT_EQ(path, row.expected);
    }
}

TEST(Utils, SplitAddressFromPort) {
    struct Row {
        const char* text;
        bool found;
        const char* address;
        int port;
    };
    const Row rows[] = {
        {"161@10.0.0.5", true, "10.0.0.5", 161},
        {"10.0.0.5:161", true, "10.0.0.5", 161},
        {"10.0.0.5@161", true, "10.0.0.5", 161},
        {"host@x", true, "host", 0},
        {"host", false, "before", 7},
        {"", false, "before", 7},
        {"@", true, "", 0},
        {":", true, "", 0},
        {"161:host", true, "host", 161},  // a number before the colon is the port as well
        {"10:20", true, "20", 10},        // kept: the left one counts
        {"a:b@c", true, "a:b", 0},        // "@" goes before ":"
        {"fe80::1", true, "fe80", 0},     // the first ":"
        {"+5@h", true, "h", 5},
        {"-5@h", true, "h", -5},
        {"h: 80x", true, "h", 80},
        {"h:99999999999", true, "h", 2147483647},
        {"1 @h", true, "1 ", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        CStringA address = "before";
        int port = 7;
        EXPECT_EQ(Utils::SplitAddressFromPort(row.text, address, port), row.found);
        EXPECT_EQ(address, row.address);
        EXPECT_EQ(port, row.port);
    }
    CStringA same = "host:1";
    int port = 0;
    EXPECT_TRUE(Utils::SplitAddressFromPort(same, same, port)) << "the output may be the input";
    EXPECT_EQ(same, "host");
    EXPECT_EQ(port, 1);
}

TEST(Utils, StripCharacters) {
    struct Row {
        const char* label;
        std::string text;
        const char* chars;
        char replacement;
        bool stripControls;
        char controlReplacement;
        const char* keepControls;
        std::string expected;
        int count;
    };
    const Row rows[] = {
        {"worked example",
         "a\tb\x01"
         "c",
         "", 0, true, 0, "\t", "a\tbc", 1},
        {"removed", "banana", "an", 0, false, 0, "", "b", 5},
        {"replaced", "banana", "an", '-', false, 0, "", "b-----", 5},
        {"replaced by itself counts", "aa", "a", 'a', false, 0, "", "aa", 2},
        {"controls untouched", "\x01\x1F", "", 0, false, '_', "", "\x01\x1F", 0},
        {"controls replaced", "\x01 \x1F\x20", "", 0, true, '_', "", "_ _\x20", 2},
        {"the set goes before the controls", "\t\n", "\t", 'T', true, 'C', "\t", "TC", 2},
        {"bytes from 128 are negative and stay", "\x80\x9F\xFF\x7F", "", 0, true, 0, "", "\x80\x9F\xFF\x7F",
         0},
        {"bytes from 128 in the set",
         "\x80"
         "a\xFF",
         "\xFF\x80", 0, true, 0, "", "a", 2},
        {"a zero byte stays", "a\0b"s, "", 0, true, 0, "", "a\0b"s, 0},
        {"empty", "", "abc", 0, true, 0, "", "", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA text = row.text;
        EXPECT_EQ(Utils::StripCharacters(text, row.chars, row.replacement, row.stripControls,
                                         row.controlReplacement, row.keepControls),
                  row.count);
        EXPECT_EQ(text, row.expected);
    }
    CStringA same = "abc";
    EXPECT_EQ(Utils::StripCharacters(same, same, 0, false, 0, ""), 3) << "the set may be the text";
    EXPECT_EQ(same, "");
}

TEST(Utils, ReplacerVerdicts) {
    MyCharReplacer removing("x", 0, true, 0, "\n");
    MyCharReplacer replacing("x", 'y', true, '?', "\n");
    struct Row {
        char c;
        int removing;
        int replacing;
        char out;  // of the replacing one; ' ' where it is not touched
    };
    const Row rows[] = {
        {'x', kRemoveElement, kReplaceElement, 'y'},    {'a', kKeepElement, kKeepElement, ' '},
        {'\x01', kRemoveElement, kReplaceElement, '?'}, {'\n', kKeepElement, kKeepElement, ' '},
        {'\0', kKeepElement, kKeepElement, ' '},        {'\x20', kKeepElement, kKeepElement, ' '},
        {'\x80', kKeepElement, kKeepElement, ' '}};
    for (const Row& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.c));
        char out = ' ';
        EXPECT_EQ(removing(row.c, out), row.removing);
        EXPECT_EQ(out, ' ');
        EXPECT_EQ(replacing(row.c, out), row.replacing);
        EXPECT_EQ(out, row.out);
    }
}

TEST(Utils, Utf8) {
    struct Row {
        const char* label;
        std::string utf8;
        std::string bytes;
    };
    const Row rows[] = {
        {"empty", "", ""},
        {"ASCII", "abc", "abc"},
        {"letters", "\xC3\xA9\xC3\x9F", "\xE9\xDF"},
        {"the code page's own", "\xE2\x82\xAC\xE2\x80\x9C", "\x80\x93"},
        {"unassigned bytes are C1", "\xC2\x81", "\x81"},
        {"zero byte", "\xC3\xA9\0x"s, "\xE9\0x"s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA out = "before";
        Utils::FromUTF8(row.utf8, out);
        EXPECT_EQ(out, row.bytes);
        Utils::ToUTF8(row.bytes, out);
        EXPECT_EQ(out, row.utf8);
        CStringA same = row.utf8;
        Utils::FromUTF8(same, same);
        EXPECT_EQ(same, row.bytes) << "the output may be the input";
        Utils::ToUTF8(same, same);
        EXPECT_EQ(same, row.utf8);
    }
}

TEST(Utils, FromUtf8PassesWhatItCannotConvert) {
    for (const char* text : {"\xE9t\xE9", "\xC3", "a\xC3(", "\xE4\xB8\xAD", "\xC3\xA9 and \xE4\xB8\xAD",
                             "\xED\xA0\x80", "\xC0\x80", "\xF4\x90\x80\x80"}) {
        SCOPED_TRACE(text);
        CStringA out;
        Utils::FromUTF8(text, out);
        EXPECT_EQ(out, text);
    }
}

class SelectedCodePage {
  public:
    explicit SelectedCodePage(unsigned number) : m_ok(brindle::CurrentCodePage().Select(number)) {}
    SelectedCodePage(const SelectedCodePage&) = delete;
    SelectedCodePage& operator=(const SelectedCodePage&) = delete;
    ~SelectedCodePage() { brindle::CurrentCodePage().Select(brindle::kCodePageWindows1252); }
    bool ok() const { return m_ok; }

  private:
    bool m_ok;
};

TEST(Utils, Utf8UnderOtherCodePages) {
    CStringA out;
    {
        const SelectedCodePage utf8(brindle::kCodePageUtf8);
        ASSERT_TRUE(utf8.ok());
        for (const char* text : {"\xC3\xA9", "\xE4\xB8\xAD", "\xEF\xBF\xBD", "\xFF"}) {
            SCOPED_TRACE(text);
            Utils::FromUTF8(text, out);
            EXPECT_EQ(out, text);
            Utils::ToUTF8(text, out);
            EXPECT_EQ(out, text);
        }
    }
    const SelectedCodePage cyrillic(1251);
    ASSERT_TRUE(cyrillic.ok());
    Utils::ToUTF8("\xC4\xE0", out);
    EXPECT_EQ(out, "\xD0\x94\xD0\xB0");
    Utils::ToUTF8("\xC4\x98", out);
    EXPECT_EQ(out, "\xC4\x98") << "98 is no character of 1251: the text passes unchanged";
}

TEST(Utils, TrimRight) {
    struct Row {
        std::string text;
        std::string set;
        std::string expected;
    };
    const Row rows[] = {
        {"abc  ", " ", "abc"}, {"a b", " ", "a b"},    {"   ", " ", ""},
        {"", " ", ""},         {"abcba", "ab", "abc"}, {"abc", "", "abc"},
        {" a", " ", " a"},     {"a\0\0"s, "\0"s, "a"}, {"a\xE9\xE9", "\xE9", "a"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        CStringA text = row.text;
        Utils::TrimRight(text, CStringA(row.set));
        EXPECT_EQ(text, row.expected);
    }
    CStringA text = "x\\\\";
    Utils::TrimRight(text, '\\');
    EXPECT_EQ(text, "x");
    CStringA zeros("a\0\0"s);
    Utils::TrimRight(zeros, '\0');
    EXPECT_EQ(zeros, "a");
}

}  // namespace
}  // namespace Orvane
