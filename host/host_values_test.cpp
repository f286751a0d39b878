// The small values the host's files are made of: numbers, sets, patterns, times, attributes, INI texts.
#include <gtest/gtest.h>

#include <string>

#include "host/address_pattern.h"
#include "host/attribute.h"
#include "host/host_files.h"
#include "host/ini_text.h"
#include "host/number_set.h"
#include "host/text_pattern.h"
#include "host/virtual_clock.h"
#include "host/words.h"

namespace brindle::host {
namespace {

TEST(Words, IntegersAreWholeTextsOf32Bits) {
    struct Row {
        const char* label;
        const char* text;
        bool ok;
        int value;
    };
    const Row rows[] = {{"zero", "0", true, 0},
                        {"negative", "-12", true, -12},
                        {"largest", "2147483647", true, 2147483647},
                        {"smallest", "-2147483648", true, -2147483647 - 1},
                        {"one more", "2147483648", false, 7},
                        {"empty", "", false, 7},
                        {"blank in front", " 1", false, 7},
                        {"plus", "+1", false, 7},
                        {"tail", "1x", false, 7},
                        {"hexadecimal", "0x10", false, 7}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        int value = 7;
        EXPECT_EQ(ParseInt(row.text, value), row.ok);
        EXPECT_EQ(value, row.value);
    }
}

TEST(Words, RealNumbersAreFiniteWithAPoint) {
    double value = 7;
    EXPECT_TRUE(ParseReal("-12.5", value));
    EXPECT_EQ(value, -12.5);
    for (const char* text : {"", "1,5", "nan", "inf", "1e999", "1.5x", " 1"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(ParseReal(text, value));
        EXPECT_EQ(value, -12.5);
    }
    EXPECT_EQ(RealText(0.1), "0.1");
    EXPECT_EQ(RealText(48.2F), "48.2");
}

TEST(Words, SplitTrimsAndKeepsEmptyParts) {
    EXPECT_TRUE(Split("", ',').empty());
    EXPECT_EQ(Split(" a ,, b", ','), (std::vector<std::string_view>{"a", "", "b"}));
    EXPECT_EQ(Replaced("aXbX", "X", "XX"), "aXXbXX");
    EXPECT_EQ(Replaced("ab", "", "x"), "ab");
    EXPECT_TRUE(SameWord("TRUE", "true"));
    EXPECT_FALSE(SameWord("a", "ab"));
}

TEST(NumberSet, ReadsNumbersAndRanges) {
    struct Row {
        const char* text;
        const char* written;  // null: cannot be read
        int in, out;
    };
    const Row rows[] = {{"", "", -5, 0},
                        {"3", "3", 3, 4},
                        {"1, 3-5 ,8-", "1,3-5,8-", 9, 6},
                        {"-5", "-5", -5, 5},
                        {"-5--2", "-5--2", -3, 0},
                        {"-1-1", "-1-1", 0, 2},
                        {"5-3", nullptr, 0, 0},
                        {"a", nullptr, 0, 0},
                        {"1,,2", nullptr, 0, 0},
                        {"1-2-3", nullptr, 0, 0},
                        {"99999999999", nullptr, 0, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        NumberSet set;
        const std::string why = set.Parse(row.text);
        EXPECT_EQ(why.empty(), row.written != nullptr) << why;
        if (!row.written) {
            EXPECT_TRUE(set.IsAll()) << "a failure leaves the set as it was";
            continue;
        }
        EXPECT_EQ(set.Text(), row.written);
        EXPECT_TRUE(set.Contains(row.in));
        EXPECT_EQ(set.Contains(row.out), set.IsAll());
    }
}

TEST(AddressPattern, MatchesWhatItNames) {
    struct Row {
        const char* pattern;
        const char* address;  // null: none at all
        bool matches;
    };
    const Row rows[] = {{"", nullptr, true},
                        {"", "0001:02:03", true},
                        {"0001:02:03", "0001:02:03", true},
                        {"0001:02:03", "0001:02:04", false},
                        {"0001:?:03", "0001:99:03", true},
                        {"0001:?:03", "0002:99:03", false},
                        {"0001:02:", "0001:02:FF", true},
                        {"0000:00:00", nullptr, false},
                        {"0001:02:03", "0001:02:?", false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.pattern) + " and " + (row.address ? row.address : "none"));
        AddressPattern pattern;
        EXPECT_EQ(pattern.Parse(row.pattern), "");
        CAddressOv address;
        if (row.address) address.SetAddress(row.address);
        EXPECT_EQ(pattern.Matches(address), row.matches);
    }
    AddressPattern pattern;
    EXPECT_EQ(pattern.Parse("1:?:3"), "");
    EXPECT_EQ(pattern.Text(), "0001:?:03");
    EXPECT_NE(pattern.Parse("nonsense"), "");
    EXPECT_EQ(pattern.Text(), "0001:?:03") << "a failure leaves the pattern as it was";
    EXPECT_EQ(pattern.Completed(CAddressOv(9, 8, 7)).GetDWord(), 0x00010803U);
}

TEST(TextPattern, StarsAndQuestionMarks) {
    struct Row {
        const char* pattern;
        const char* text;
        bool matches;
    };
    const Row rows[] = {{"", "anything", true},    {"=", "", true},          {"=", "x", false},
                        {"Fan*", "Fan 2", true},   {"Fan*", "fan 2", false}, {"*lost", "power lost", true},
                        {"*a*b*", "xxaxxb", true}, {"a?c", "abc", true},     {"a?c", "ac", false},
                        {"**", "", true},          {"?", "", false},         {"abc", "abcd", false},
                        {"*ab", "aab", true},      {"a*", "a", true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.pattern) + " and " + row.text);
        EXPECT_EQ(TextPattern(row.pattern).Matches(row.text), row.matches);
    }
    std::string stars;
    for (int i = 0; i < 200; ++i) stars += "*a";
    EXPECT_FALSE(TextPattern(stars + "b").Matches(std::string(2000, 'a'))) << "and it comes back";
}

TEST(Attribute, EveryKindReadsWritesAndKeepsItsValueOnFailure) {
    CStringA text = "t";
    int number = 5;
    int choice = 1;
    bool flag = true;
    std::optional<double> real = 1.5;
    struct Row {
        Attribute attribute;
        const char* before;
        const char* good;
        const char* after;
        const char* bad;  // null: everything can be read
    };
    const Row rows[] = {{TextAttribute("T", text), "t", "a b", "a b", nullptr},
                        {NumberAttribute("N", number, 0, 10), "5", " 10 ", "10", "11"},
                        {NumberAttribute("N", number, 0, 10), "10", "0", "0", "x"},
                        {RealAttribute("R", real), "1.5", "-2.25", "-2.25", "1,5"},
                        {FlagAttribute("F", flag), "TRUE", "off", "FALSE", "maybe"},
                        {FlagAttribute("F", flag), "FALSE", "1", "TRUE", ""},
                        {ChoiceAttribute("C", choice, {"A", "B"}), "B", "a", "A", "C"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.attribute.name + " " + row.good);
        EXPECT_EQ(row.attribute.text(), row.before);
        EXPECT_EQ(row.attribute.parse(row.good), "");
        EXPECT_EQ(row.attribute.text(), row.after);
        if (!row.bad) continue;
        EXPECT_NE(row.attribute.parse(row.bad), "");
        EXPECT_EQ(row.attribute.text(), row.after);
    }
}

TEST(IniText, ReadsSectionsKeysAndComments) {
    Problems problems;
    const IniText ini("\xEF\xBB\xBF; note\r\n[ One ]\r\nKey = a = b \r\nEmpty=\n\n# note\n[Two]\nk=v",
                      "f.ini", problems);
    EXPECT_TRUE(problems.empty());
    ASSERT_EQ(ini.Sections().size(), 2U);
    const IniSection* one = ini.Find("ONE");
    ASSERT_TRUE(one);
    EXPECT_EQ(one->line, 2U);
    ASSERT_TRUE(one->Find("key"));
    EXPECT_EQ(one->Find("key")->value, "a = b");
    EXPECT_EQ(one->Find("key")->line, 3U);
    EXPECT_EQ(one->Find("Empty")->value, "");
    EXPECT_FALSE(one->Find("k"));
    EXPECT_FALSE(ini.Find("Three"));
}

TEST(IniText, ReportsWhatItCannotRead) {
    struct Row {
        const char* label;
        const char* text;
        std::uint32_t line;
        const char* problem;
    };
    const Row rows[] = {{"no section yet", "a=b", 1, "before any section"},
                        {"no equals sign", "[s]\nab", 2, "neither"},
                        {"no key", "[s]\n=b", 2, "neither"},
                        {"section not closed", "[s", 1, "not a section"},
                        {"section without a name", "[ ]", 1, "not a section"},
                        {"section twice", "[s]\n[S]", 2, "comes twice"},
                        {"key twice", "[s]\na=1\nA=2", 3, "comes twice"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Problems problems;
        const IniText ini(row.text, "f.ini", problems);
        ASSERT_EQ(problems.size(), 1U);
        EXPECT_EQ(problems[0].Place(), "f.ini:" + std::to_string(row.line) + ":1");
        EXPECT_NE(problems[0].text.find(row.problem), std::string::npos) << problems[0].text;
    }
    Problems problems;
    const IniText first("[s]\na=1\na=2\n[s]\na=3", "f", problems);
    EXPECT_EQ(first.Find("s")->Find("a")->value, "1") << "the first one counts";
}

TEST(IniText, HasALimitOfLines) {
    Problems problems;
    const IniText ini(std::string(IniText::kMostLines + 5, '\n'), "f", problems);
    EXPECT_EQ(problems.size(), 1U);
}

TEST(VirtualClock, ReadsMoments) {
    std::int64_t moment = 7;
    EXPECT_TRUE(ParseMoment("2024-01-01 08:00:00", moment));
    EXPECT_EQ(moment, VirtualClock::kDefaultStart);
    for (const char* text : {"", "2024-01-01", "2024-02-30 00:00:00", "2024-13-01 00:00:00",
                             "1969-01-01 00:00:00", "2024-01-01 24:00:00", "2024-01-01T08:00:00",
                             "2024-01-0a 08:00:00", "-024-01-01 08:00:00", "2024-01-01 08:00:00 "}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(ParseMoment(text, moment));
        EXPECT_EQ(moment, VirtualClock::kDefaultStart);
    }
}

TEST(VirtualClock, StandsStillAndNeverGoesBack) {
    VirtualClock clock(0);
    EXPECT_EQ(clock.SystemTicks(), 116'444'736'000'000'000U);
    clock.MoveTo(1500);
    clock.MoveTo(1000);
    EXPECT_EQ(clock.MonotonicMilliseconds(), 1500U);
    EXPECT_EQ(clock.SystemTicks(), 116'444'736'015'000'000U);
    LocalTime time;
    EXPECT_TRUE(clock.ToLocalTime(951'782'400, time));  // 2000-02-29 00:00:00
    EXPECT_EQ(time.month, 2);
    EXPECT_EQ(time.day, 29);
    EXPECT_EQ(time.utcOffsetSeconds, 0);
    EXPECT_FALSE(clock.ToLocalTime(INT64_MAX, time));
}

TEST(HostFiles, JoinsPaths) {
    EXPECT_EQ(InFolder("site", "a.xml"), "site/a.xml");
    EXPECT_EQ(InFolder("site/", "a.xml"), "site/a.xml");
    EXPECT_EQ(InFolder("", "a.xml"), "a.xml");
    EXPECT_EQ(InFolder("site", "/a.xml"), "/a.xml");
    EXPECT_EQ(InFolder("site", "\\a.xml"), "\\a.xml");
    EXPECT_EQ(InFolder("site", "C:\\a.xml"), "C:\\a.xml");
    std::string bytes;
    EXPECT_EQ(ReadSiteFile("/", bytes), "is a folder");
    EXPECT_NE(ReadSiteFile("/no such file", bytes), "");
    EXPECT_EQ(TextFromUtf8("\xE2\x82\xAC"), "\x80");
    EXPECT_EQ(TextToUtf8("\x80"), "\xE2\x82\xAC");
}

}  // namespace
}  // namespace brindle::host
