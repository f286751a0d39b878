#include "brindle/macro/command_line.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/address/full_address.h"
#include "brindle/macro/brindle_data.h"
#include "brindle/macro/recording_data_test.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"

namespace {

using brindle::testing::RecordingData;
using brindle::testing::ScopedData;
using brindle::testing::ScopedHook;

constexpr FullAddress_t kAddress = {0x0001, 0x02, 0x03};

// One call; what is left out is absent.
struct Call {
    const FullAddress_t* address = nullptr;
    const char* path = nullptr;
    const char* caption = nullptr;
    const char* text = nullptr;
    const char* help = nullptr;
    int status = 0;
    const char* r = nullptr;
    int n = -1;
    int q = -1;

    std::string operator()(const CStringA& line) const {
        CStringA expanded = line;
        FormatCommandLineEx(expanded, address, path, caption, text, help, status, r, n, q);
        return expanded.str();
    }
};

// Sunday 2026-03-01 04:05:06 local time, one hour and a half ahead of UTC.
class CommandLine : public ::testing::Test {
  protected:
    CommandLine() {
        m_clock.SetUnixSeconds(1'772'332'506);
        m_clock.SetUtcOffset(90 * 60);
    }
    brindle::FakeClock m_clock;
    brindle::ScopedService<brindle::Clock> m_installed{&brindle::SetClock, m_clock};
};

struct Row {
    const char* label;
    Call call;
    const char* line;
    const char* expected;
};

void Check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.call(row.line), row.expected);
    }
}

TEST_F(CommandLine, PercentStage) {
    Check({
        {"empty", {}, "", ""},
        {"no field", {}, "plain text", "plain text"},
        {"the escaped percent survives", {.status = 2}, "100%% done %i", "100% done 2"},
        {"an escaped field", {.caption = "X"}, "%%c %c", "%c X"},
        {"three percents", {.caption = "X"}, "%%%c", "%X"},
        {"four percents", {.caption = "X"}, "%%%%c", "%%c"},
        {"percent at the end", {}, "50%", "50%"},
        {"two percents at the end", {}, "50%%", "50%"},
        {"unknown letters stay", {.caption = "X"}, "%x %S %C %d %1 % ", "%x %S %C %d %1 % "},
        {"all arguments absent",
         {},
         "%n %q %a %N %U %P %p %c %t %h %j %v %r",
         "%n %q %a %N %U %P %p %c %t %h %j %v %r"},
        {"all arguments",
         {&kAddress, "C:\\S", "Cap", "Txt", "Hlp", 1, "Are", 5, 7},
         "%n %q %a %N %U %P %p %c %t %h %i %s %r",
         "5 7 0001:02:03 0001 02 03 C:\\S Cap Txt Hlp 1 Green Are"},
        {"every occurrence", {.caption = "X"}, "%c%c-%c", "XX-X"},
        {"empty texts are given", {.path = "", .caption = "", .text = "", .r = ""}, "[%p%c%t%r]", "[]"},
        {"n and q of 0", {.n = 0, .q = 0}, "%n%q", "00"},
        {"n and q below -1", {.n = -2, .q = -2147483647 - 1}, "%n %q", "-2 -2147483648"},
        {"status is always there", {.status = -2147483647 - 1}, "%i", "-2147483648"},
    });
}

TEST_F(CommandLine, AddressFields) {
    const FullAddress_t high = {0xABCD, 0xEF, 0x0A};
    Check({
        {"upper case, zero-padded", {&high}, "%a %N %U %P", "ABCD:EF:0A ABCD EF 0A"},
        {"zeros", {&kAddress}, "%N%U%P", "00010203"},
    });
}

TEST_F(CommandLine, HelpIsTiedToText_Deliberate) {
    Check({
        {"no text", {.help = "H"}, "%h", "%h"},
        {"text and help", {.text = "T", .help = "H"}, "%h", "H"},
        {"text without help", {.text = "T"}, "[%h]", "[]"},
        {"no text, no help", {}, "%h", "%h"},
    });
}

TEST_F(CommandLine, StatusColours) {
    struct Colour {
        int status;
        const char* expected;
    };
    const Colour rows[] = {{-5, "Black"}, {0, "Black"}, {1, "Green"}, {2, "Yellow"}, {3, "Red"}, {7, "Red"}};
    for (const Colour& row : rows) {
        SCOPED_TRACE(row.status);
        EXPECT_EQ(Call{.status = row.status}("%s"), row.expected);
        RecordingData data;
        data.status = row.status;
        const ScopedData registered(&data);
        EXPECT_EQ(Call{.address = &kAddress}("%v %j"), row.expected + (" " + std::to_string(row.status)));
    }
}

TEST_F(CommandLine, HostStatusNeedsHostAndAddress) {
    EXPECT_EQ(Call{.address = &kAddress}("%j %v"), "%j %v") << "no host";
    RecordingData data;
    data.status = 2;
    const ScopedData registered(&data);
    EXPECT_EQ(Call{}("%j %v"), "%j %v") << "no address";
    EXPECT_EQ(Call{.address = &kAddress}("%i"), "0");
    EXPECT_EQ(data.calls, "") << "not asked when there is no such field";
    EXPECT_EQ(Call{.address = &kAddress}("%j %v %j"), "2 Yellow 2");
    EXPECT_EQ(data.calls, "status 0001:02:03;") << "asked once";
}

TEST_F(CommandLine, DateTokens) {
    Check({
        {"day", {}, "%dd%", "01"},
        {"month", {}, "%MM%", "03"},
        {"year", {}, "%yyyy%", "2026"},
        {"short weekday", {}, "%ddd%", "Sun"},
        {"weekday", {}, "%dddd%", "Sunday"},
        {"short month", {}, "%MMM%", "Mar"},
        {"month name", {}, "%MMMM%", "March"},
        {"zone", {}, "%z%", "+0130"},
        {"hour", {}, "%H%", "04"},
        {"minute", {}, "%m%", "05"},
        {"second", {}, "%s%", "06"},
        {"a file name", {}, "log_%yyyy%-%MM%-%dd%.txt", "log_2026-03-01.txt"},
        {"an escaped percent ends no token", {.status = 1}, "%s%%s %S", "Green%s %S"},
        {"second, then status colour", {.status = 1}, "%s% %s", "06 Green"},
        {"wrong number of letters", {}, "%d% %ddddd% %M% %yy% %HH%", "%d% %ddddd% %M% %yy% %HH%"},
        {"case counts", {}, "%DD% %Z% %h%", "%DD% %Z% %h%"},
        {"mixed letters", {}, "%dM% %ddM%", "%dM% %ddM%"},
    });
}

// Two tokens that share a "%": the one that comes first in the order of replacement gets it.
TEST_F(CommandLine, DateTokensInOrder) {
    Check({
        {"left one first", {}, "%dd%MM%", "01MM%"},
        {"right one first", {}, "%MM%dd%", "%MM01"},
        {"the same twice", {}, "%dd%dd%", "01dd%"},
        {"three", {}, "%s%H%m%", "Black04m%"},
        {"second loses its percent and is a colour", {.status = 3}, "%s%H%", "Red04"},
        {"a closing percent that is escaped", {.status = 3}, "%s%%", "Red%"},
        {"a closing percent behind an escaped one", {.status = 3}, "%s%%%i", "Red%3"},
        {"an opening percent behind an escaped one", {}, "%%%dd%", "%01"},
        {"a field, then a token", {.caption = "X"}, "%c%H%", "X04"},
        {"a token, then a letter", {.caption = "X"}, "%H%c", "04c"},
    });
}

TEST_F(CommandLine, ReplacedTextTakesPartInLaterFields) {
    Check({
        {"a caption brings a later field", {.caption = "[%t]", .text = "T"}, "%c", "[T]"},
        {"a text does not bring an earlier field", {.caption = "C", .text = "[%c]"}, "%t", "[%c]"},
        {"nor itself", {.caption = "%c"}, "%c", "%c"},
        {"a caption completes a later field", {.caption = "%", .text = "T"}, "%ct", "T"},
        {"a caption with an escaped percent stays", {.caption = "%%"}, "%c", "%%"},
        {"the parts make a field", {.path = "%", .caption = "r", .r = "R"}, "%p%c", "R"},
        {"no date token from a caption", {.caption = "%dd%"}, "%c", "%dd%"},
        {"path, caption, text, help, r", {nullptr, "%c", "%t", "%h", "%r", 0, "end"}, "%p", "end"},
        {"status colour from r is too late", {.r = "%s"}, "%r", "%s"},
        {"marker bytes in a caption become a percent", {.caption = "\x03\x02\x01"}, "%c", "%"},
        {"marker bytes in the line become a percent", {}, "\x03\x02\x01%i", "%0"},
        {"marker bytes without any percent stay", {}, "\x03\x02\x01", "\x03\x02\x01"},
        {"a marker put together", {.caption = "\x03\x02"}, "%c\x01", "%"},
    });
}

TEST_F(CommandLine, RelativePaths) {
    Check({
        {"made relative to the path", {.path = "C:\\Schem"}, ".\\tool.exe", "C:\\Schem\\.\\tool.exe"},
        {"no path", {}, ".\\tool.exe", "\\.\\tool.exe"},
        {"only the first character counts", {.path = "P"}, "a.b", "a.b"},
        {"dot alone", {.path = "P"}, ".", "P\\."},
        {"two dots", {.path = "P"}, "..\\x", "P\\..\\x"},
        {"after the fields", {.path = "P", .caption = ".x"}, "%c", "P\\.x"},
        {"fields in the path are not replaced", {.path = "%c", .caption = "C"}, ".x", "%c\\.x"},
        {"nothing left", {.path = "P", .caption = ""}, "%c", ""},
    });
}

TEST_F(CommandLine, HashStageRunsLast) {
    RecordingData data;
    const ScopedData registered(&data);
    Check({
        {"a hash in a caption does not count", {.caption = "#A#"}, "%c", "#A#"},
        {"but is used when the line had one", {.caption = "#A#"}, "%c#", "<A>#"},
        {"the path of a relative line is searched too", {.path = "#P#"}, ".#", "<P>\\.#"},
        {"fields inside a hash field", {.caption = "Name"}, "#%c#", "<Name>"},
        {"what the host answers is final", {.caption = "C"}, "#%%c#", "<%c>"},
    });
}

void BracketsHook(CStringA& line) {
    line = "[" + line + "]";
}
void PercentHook(CStringA& line) {
    line += "%i";
}
void HashHook(CStringA& line) {
    line = "#H#";
}
void RemoveHook(CStringA& line) {
    line.Empty();
}

TEST_F(CommandLine, HookComesFirst) {
    RecordingData data;
    const ScopedData registered(&data);
    {
        const ScopedHook hook(&BracketsHook);
        EXPECT_EQ(Call{.caption = "C"}("%c"), "[C]");
        EXPECT_EQ(Call{.path = "P"}("."), "[.]") << "the first character is the hook's";
    }
    {
        const ScopedHook hook(&PercentHook);
        EXPECT_EQ(Call{}("a"), "a0") << "a percent that only the hook brought counts";
    }
    {
        const ScopedHook hook(&HashHook);
        EXPECT_EQ(Call{}("x"), "<H>") << "and so does a hash";
    }
    {
        const ScopedHook hook(&RemoveHook);
        EXPECT_EQ(Call{}("#x# %i"), "");
    }
    EXPECT_EQ(Call{}("x"), "x");
}

TEST_F(CommandLine, AttachReturnsThePreviousHook) {
    EXPECT_EQ(AttachPreFormatHook(&BracketsHook), nullptr);
    EXPECT_EQ(AttachPreFormatHook(&PercentHook), &BracketsHook);
    EXPECT_EQ(AttachPreFormatHook(nullptr), &PercentHook);
    EXPECT_EQ(AttachPreFormatHook(nullptr), nullptr);
}

TEST_F(CommandLine, WithoutPercentTheLineIsNotTouched) {
    m_clock.FailLocalTime(true);
    Check({{"no percent, no clock", {.caption = "C"}, "c s i dd", "c s i dd"}});
}

TEST_F(CommandLine, LocalTimeFailureIsRaised) {
    m_clock.FailLocalTime(true);
    const ScopedHook hook(&BracketsHook);
    for (const char* line : {"%dd%", "%c", "%", "%%"}) {
        SCOPED_TRACE(line);
        CStringA expanded = line;
        EXPECT_THROW(FormatCommandLine(expanded, nullptr, nullptr, "C", nullptr, nullptr, 0),
                     std::invalid_argument);
        EXPECT_EQ(expanded, "[" + CStringA(line) + "]");
    }
}

class StrangeYearClock final : public brindle::Clock {
  public:
    std::uint64_t SystemTicks() override { return 0; }
    std::uint64_t MonotonicMilliseconds() override { return 0; }
    bool ToLocalTime(std::int64_t, brindle::LocalTime& out) override {
        out.year = 10'000;
        return true;
    }
    brindle::TimeZone StandardZone() override { return {}; }
};

// A conversion that fails gives nothing, and what stood around the token comes together.
TEST(CommandLineDate, FailedConversionGivesAnEmptyText) {
    StrangeYearClock clock;
    const brindle::ScopedService<brindle::Clock> installed(&brindle::SetClock, clock);
    Check({
        {"nothing", {}, "[%yyyy%]", "[]"},
        {"a later token comes together", {}, "[%M%dd%M%]", "[]"},
        {"a field comes together", {.status = 2}, "%%dd%i", "%dd2"},
    });
}

TEST_F(CommandLine, ShortFormLeavesOutRNQ) {
    CStringA line = "%c %r %n %q %i";
    FormatCommandLine(line, &kAddress, "P", "C", "T", "H", 3);
    EXPECT_EQ(line, "C %r %n %q 3");
}

TEST_F(CommandLine, TextsEndAtTheirFirstZeroByte) {
    CStringA line = std::string("a\0%c", 4);
    FormatCommandLine(line, nullptr, nullptr, "C\0D", nullptr, nullptr, 0);
    EXPECT_EQ(line.str(), std::string("a\0C", 3));
}

TEST_F(CommandLine, GrowthIsLimited) {
    const auto repeat = [](const char* field, int count) {
        std::string text;
        while (count-- > 0) text += field;
        return text;
    };
    const std::string path = repeat("%c", 1000);
    const std::string caption = repeat("%t", 1000);
    const std::string text = repeat("%r", 1000);
    const Call call{.path = path.c_str(), .caption = caption.c_str(), .text = text.c_str(), .r = "x"};
    EXPECT_EQ(call("%p").size(), 2u * 1000 * 1000) << "the third level would be too long and stays";
    const std::string plain(8192, 'x');
    EXPECT_EQ(Call{.caption = plain.c_str()}(repeat("%c", 4096)).size(), 2u * 4096);
}

TEST_F(CommandLine, HostExceptionsPassThrough) {
    RecordingData data;
    data.fail = true;
    const ScopedData registered(&data);
    CStringA line = "%c #A#";
    EXPECT_THROW(FormatCommandLine(line, &kAddress, nullptr, "C", nullptr, nullptr, 0), std::runtime_error);
    EXPECT_EQ(line, "C #A#");
    line = "%c %j";
    EXPECT_THROW(FormatCommandLine(line, &kAddress, nullptr, "C", nullptr, nullptr, 0), std::runtime_error);
    EXPECT_EQ(line, "%c %j");
}

TEST(BrindleData, IsRegisteredAndReplaced) {
    RecordingData first, second;
    RegisterIBrindleData(&first);
    EXPECT_EQ(brindle::RegisteredBrindleData(), &first);
    RegisterIBrindleData(&second);
    EXPECT_EQ(brindle::RegisteredBrindleData(), &second);
    RegisterIBrindleData(nullptr);
    EXPECT_EQ(brindle::RegisteredBrindleData(), nullptr);
    EXPECT_EQ(first.calls + second.calls, "") << "registration calls nothing";
}

// The order of virtual operations is part of the binary interface.
TEST(BrindleData, SlotOrder) {
    using SlotOf = std::ptrdiff_t;
    const auto slot = [](auto member) {
        static_assert(sizeof member == 2 * sizeof(SlotOf));
        SlotOf words[2];
        std::memcpy(words, &member, sizeof words);
        return (words[0] - 1) / static_cast<SlotOf>(sizeof(void*));
    };
    EXPECT_EQ(slot(&IBrindleData::GetAddressStatus), 0);
    EXPECT_EQ(slot(&IBrindleData::GetHashFieldValue), 1);
    EXPECT_EQ(slot(&IBrindleData::WriteCommandLog), 2);
    EXPECT_EQ(slot(&IBrindleData::SelectActions), 3);
}

}  // namespace
