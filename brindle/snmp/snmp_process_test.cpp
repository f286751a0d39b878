// The SNMP functions in processes of their own: what starting them touches, how a process ends meanwhile, what happens
// when there are no threads or many.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "testing/scripted_agent.h"
#include "testing/snmpd_process.h"

namespace brindle {
namespace {

using testing::ScriptedAgent;
using testing::SnmpdProcess;

constexpr const char* kOid = "1.3.6.1.2.1.1.5.0";

// Exit code of a shell line; -1 when a signal ended it.
int RunShell(const std::string& line) {
    const int status = std::system(line.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
std::string Probe(const std::string& what, const std::string& agent, const std::string& more) {
    return std::string(BRINDLE_SNMP_PROBE " ") + what + " " + agent + " " + more;
}
std::string TemporaryFile(const char* name) {
    return (std::filesystem::temp_directory_path() / name).string();
}

#ifdef BRINDLE_PLAIN_CODE
// System calls on files, and everything written, from the first call on.
std::vector<std::string> CallsAfterTheBeginning(const std::string& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    bool begun = false;
    for (std::string line; std::getline(stream, line);) {
        // strace's own notes: a thread's end, and one it was not yet following when the process ended.
        const bool note =
            line.find("+++ exited") != std::string::npos || line.find(" <detached") != std::string::npos;
        if (begun && !note) lines.push_back(line);
        begun = begun || line.find("/snmp-begins") != std::string::npos;
    }
    EXPECT_TRUE(begun);
    return lines;
}

TEST(SnmpProcess, StartingTouchesNoFileAndPrintsNothing) {
    const std::string trace = TemporaryFile("snmp_trace");
    ASSERT_EQ(RunShell("command -v strace >/dev/null"), 0) << "strace is not installed";
    // Containers often forbid tracing; that is not this library's to mend.
    if (RunShell("strace -o /dev/null true 2>/dev/null") != 0)
        GTEST_SKIP() << "this process may not trace others";
    const SnmpdProcess agent;
    ASSERT_TRUE(agent.IsRunning());
    const std::string strace = "strace -f -qq -e trace=%file,write,writev,creat -o '" + trace + "' ";
    ASSERT_EQ(RunShell(strace + Probe("get", agent.Address(), kOid)), 0);
    EXPECT_THAT(CallsAfterTheBeginning(trace), ::testing::IsEmpty());
}

TEST(SnmpProcess, WithoutAThreadTheCallSaysSoAndNobodyIsCalled) {
    const SnmpdProcess agent;
    ASSERT_TRUE(agent.IsRunning());
    EXPECT_EQ(RunShell(Probe("limit", agent.Address(), kOid)), 0);
}
#endif

TEST(SnmpProcess, MayEndWhileRequestsArePending) {
    const ScriptedAgent silent;
    const ScriptedAgent quick([](const testing::SnmpRequestPacket& request) {
        return ScriptedAgent::Packets{testing::SnmpAnswerPacket(request).Bytes()};
    });
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(RunShell(Probe("exit", silent.Address(), "64")), 0) << round;
        EXPECT_EQ(RunShell(Probe("exit", quick.Address(), "64")), 0) << round;
    }
}

TEST(SnmpProcess, WorksOnDescriptorsAboveSelectsLimit) {
    const SnmpdProcess agent;
    ASSERT_TRUE(agent.IsRunning());
    EXPECT_EQ(RunShell("ulimit -n 2048; " + Probe("high", agent.Address(), kOid)), 0);
}

TEST(SnmpProcess, AThousandRequestsToNobodyAllCallBack) {
    const ScriptedAgent silent;
    const std::string output = TemporaryFile("snmp_many");
    ASSERT_EQ(
        RunShell("ulimit -n 2048; " + Probe("many", silent.Address(), "1000 200 1") + " >'" + output + "'"),
        0);
    std::ifstream stream(output);
    int timeOuts = 0;
    stream >> timeOuts;
    EXPECT_EQ(timeOuts, 1000);
}

}  // namespace
}  // namespace brindle
