#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "brindle/macro/command_line.h"
#include "brindle/macro/recording_data_test.h"

namespace {

using brindle::testing::RecordingData;
using brindle::testing::ScopedData;

constexpr FullAddress_t kCaller = {0x0A0B, 0x0C, 0x0D};

struct FieldRow {
    const char* label;
    const FullAddress_t* caller;
    const char* line;
    const char* expected;
    const char* calls;  // name@address of each field
};

TEST(HashFields, Rows) {
    const FieldRow rows[] = {
        {"no hash", &kCaller, "plain", "plain", ""},
        {"a single hash stays", &kCaller, "a#b", "a#b", ""},
        {"a hash alone", &kCaller, "#", "#", ""},
        {"a field", &kCaller, "x#Name#y", "x<Name>y", "Name@0A0B:0C:0D;"},
        {"an empty field", &kCaller, "##", "<>", "@0A0B:0C:0D;"},
        {"two fields", &kCaller, "#A##B#", "<A><B>", "A@0A0B:0C:0D;B@0A0B:0C:0D;"},
        {"text between", &kCaller, "1#A#2#B#3", "1<A>2<B>3", "A@0A0B:0C:0D;B@0A0B:0C:0D;"},
        {"an odd one at the end stays", &kCaller, "#A#b#c", "<A>b#c", "A@0A0B:0C:0D;"},
        {"three in a row", &kCaller, "###", "<>#", "@0A0B:0C:0D;"},
        {"no caller", nullptr, "#A#", "<A>", "A@0000:00:00;"},
        {"an address", &kCaller, "x#0001:02:03,Name#y", "x<Name>y", "Name@0001:02:03;"},
        {"an address without caller", nullptr, "#0001:02:03,Name#", "<Name>", "Name@0001:02:03;"},
        {"no address: the whole body is the name", &kCaller, "x#zz,Name#y", "x<zz,Name>y",
         "zz,Name@0A0B:0C:0D;"},
        {"nothing before the comma", &kCaller, "#,Name#", "<,Name>", ",Name@0A0B:0C:0D;"},
        {"an empty name", &kCaller, "#1:2:3,#", "<>", "@0001:02:03;"},
        {"only the first comma divides", &kCaller, "#1:2:3,a,b#", "<a,b>", "a,b@0001:02:03;"},
        {"an address without comma is a name", &kCaller, "#1:2:3#", "<1:2:3>", "1:2:3@0A0B:0C:0D;"},
        {"open net", &kCaller, "#?:02:03,N#", "<N>", "N@0A0B:02:03;"},
        {"open unit", &kCaller, "#1:?:3,N#", "<N>", "N@0001:0C:03;"},
        {"open port", &kCaller, "#1:2:?,N#", "<N>", "N@0001:02:0D;"},
        {"all open", &kCaller, "#::,N#", "<N>", "N@0A0B:0C:0D;"},
        {"open parts without caller are 0", nullptr, "#?:2:?,N#", "<N>", "N@0000:02:00;"},
        {"an address holds for its field only", &kCaller, "#1:2:3,A##B#", "<A><B>",
         "A@0001:02:03;B@0A0B:0C:0D;"},
        {"parts out of range are cut", &kCaller, "#?:1FF:2,N#", "<N>", "N@0A0B:FF:02;"},
    };
    for (const FieldRow& row : rows) {
        SCOPED_TRACE(row.label);
        RecordingData data;
        const ScopedData registered(&data);
        CStringA line = row.line;
        FormatCommandLine(line, row.caller, nullptr, nullptr, nullptr, nullptr, 0);
        EXPECT_EQ(line, row.expected);
        EXPECT_EQ(data.calls, row.calls);
    }
}

TEST(HashFields, StayWithoutHost) {
    CStringA line = "x#Name#y";
    FormatCommandLine(line, &kCaller, nullptr, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(line, "x#Name#y");
}

class LoudData final : public IBrindleData {
  public:
    int GetAddressStatus(const FullAddress_t*) override { return 0; }
    CStringA GetHashFieldValue(const FullAddress_t*, const char*) override { return "#A#"; }
    void WriteCommandLog(const char*) override {}
    int SelectActions(CCommandBehaviourList&, int, brindle::eHostType) override { return 0; }
};

TEST(HashFields, AnswersAreNotSearchedAgain) {
    LoudData data;
    const ScopedData registered(&data);
    CStringA line = "#x##y";
    FormatCommandLine(line, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(line, "#A##y");
}

TEST(HashFields, ContainsHashField) {
    struct Row {
        const char* text;
        int expected;
    };
    const Row rows[] = {{"", 0},   {"a", 0},   {"#", 0},     {"a#b", 0},
                        {"##", 1}, {"#a#", 1}, {"a#b#c", 1}, {"###", 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(ContainsHashField(row.text), row.expected);
    }
}

struct ExtractRow {
    const char* label;
    const char* text;
    std::vector<std::uint32_t> expected;
};

TEST(HashFields, ExtractAddresses) {
    const ExtractRow rows[] = {
        {"empty", "", {}},
        {"no hash", "1:2:3,A", {}},
        {"one address, one plain name", "#0001:02:03,A# #B#", {0x00010203}},
        {"two addresses", "#1:2:3,A##FFFF:FF:FF,B#", {0x00010203, 0xFFFFFFFF}},
        {"the same address twice", "#1:2:3,A##1:2:3,B#", {0x00010203, 0x00010203}},
        {"no comma", "#1:2:3#", {}},
        {"no address", "#zz,A#", {}},
        {"a field without anything in it", "###1:2:3,A#", {0x00010203}},
        {"between the fields", "#a#1:2:3,b#c#", {}},
        {"open parts are 0", "#?:2:?,A#", {0x00000200}},
        {"all open", "#::,A#", {0}},
        {"an uncut unit spills", "#?:1FF:2,A#", {0x0001FF02}},
        {"an uncut unit of more than 16 bits", "#?:12345:0,A#", {0x01234500}},
        {"an uncut net loses its high bits", "#12345:?:0,A#", {0x23450000}},
        {"an uncut port spills", "#?:1:1FF,A#", {0x000001FF}},
    };
    for (const ExtractRow& row : rows) {
        SCOPED_TRACE(row.label);
        CDWordArray out;
        out.Add(7);
        ExtractAddressesFromHashFields(row.text, out);
        std::vector<std::uint32_t> expected = {7};
        expected.insert(expected.end(), row.expected.begin(), row.expected.end());
        EXPECT_EQ(std::vector<std::uint32_t>(out.begin(), out.end()), expected);
    }
}

// True when the call is still running after some time in which it could have scanned the text very often.
bool NeverReturns(const char* text) {
    const pid_t child = fork();
    if (child == 0) {
        CDWordArray out;
        ExtractAddressesFromHashFields(text, out);
        _exit(0);
    }
    int status = 0;
    bool ended = false;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(300);
    while (!ended && std::chrono::steady_clock::now() < deadline) {
        ended = waitpid(child, &status, WNOHANG) == child;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    if (ended) return false;
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return true;
}

TEST(HashFields, ExtractNeverReturnsFromAnUnpairedHash_Deliberate) {
    EXPECT_TRUE(NeverReturns("#0001:02:03,A# #B"));
    EXPECT_TRUE(NeverReturns("#"));
    EXPECT_FALSE(NeverReturns("#A# B"));
}

}  // namespace
