// brindle run while its files are edited, in real time: a process that reads events from a pipe and answers into a
// file, and an editor that saves in every way.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

#include "apps/brindle/tool_test_process.h"
#include "testing/saving_ways.h"

namespace brindle::testing {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

std::string List(const std::string& text) {
    return "<BehaviourList>\n<Behaviour><TriggerList><PollTrigger/></TriggerList><ActionList>"
           "<WriteLogAction Text='" +
           text + "'/></ActionList></Behaviour>\n</BehaviourList>\n";
}

class ToolReload : public ::testing::Test {
  protected:
    ToolReload() {
        std::string pattern = fs::temp_directory_path() / "brindle_tool_reload_XXXXXX";
        m_folder = ::mkdtemp(pattern.data());
        fs::create_directories(m_folder / "behaviours");
        std::ofstream(m_folder / "site.ini") << "[Site]\nName=Test\nVariables=variables.xml\n[Object a]\n";
        std::ofstream(m_folder / "variables.xml")
            << "<Variables><variable name='Who' value='desk'/></Variables>";
        std::ofstream(Behaviours()) << List("zero");
        ::signal(SIGPIPE, SIG_IGN);  // a tool that ended early shows in what it wrote
        EXPECT_EQ(::mkfifo((m_folder / "events").c_str(), 0600), 0);
        m_run = std::thread([this] {
            const std::string in = m_folder.string();
            m_result = RunShell("brindle run '" + in + "' --events - <'" + in + "/events' >'" + in +
                                "/out' 2>'" + in + "/err'");
        });
        m_events = ::open((m_folder / "events").c_str(), O_WRONLY | O_CLOEXEC);
    }
    ~ToolReload() override {
        End();
        fs::remove_all(m_folder);
    }
    fs::path Behaviours() const { return m_folder / "behaviours" / "a.xml"; }
    std::string Read(const char* name) const {
        std::ifstream file(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static std::size_t Lines(const std::string& text) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }
    // Polls the station until a file holds the text; how long that took, and negative when it never came.
    std::chrono::milliseconds PollUntil(const char* name, const std::string& text) {
        const auto begin = Clock::now();
        const std::string poll = "{\"kind\":\"poll\"}\n";
        while (Clock::now() - begin < std::chrono::seconds(20)) {
            const std::size_t before = Lines(Read("out"));
            if (::write(m_events, poll.data(), poll.size()) < 0) break;
            // The poll and its answer.
            while (Lines(Read("out")) < before + 2 && Clock::now() - begin < std::chrono::seconds(20))
                std::this_thread::yield();
            if (Read(name).find(text) != std::string::npos)
                return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        }
        return std::chrono::milliseconds(-1);
    }
    void End() {
        if (m_events >= 0) ::close(std::exchange(m_events, -1));
        if (m_run.joinable()) m_run.join();
    }

    fs::path m_folder;
    int m_events = -1;
    ToolResult m_result;
    std::thread m_run;
};

TEST_F(ToolReload, EveryWayOfSavingChangesTheAnswers) {
    ASSERT_GE(PollUntil("out", "zero").count(), 0);
    for (const SavingWay& way : kSavingWays) {
        SCOPED_TRACE(way.label);
        const std::string text = std::string("saved ") + way.label;
        SaveBy(way.way, Behaviours(), List(text));
        const auto took = PollUntil("out", text);
        ASSERT_GE(took.count(), 0) << Read("out") << Read("err");
        RecordProperty(way.label, static_cast<int>(took.count()));
    }
    SaveBy(Saving::kTruncateAndWrite, m_folder / "variables.xml",
           "<Variables><variable name='Who' value='night desk'/></Variables>");
    ASSERT_GE(PollUntil("out", "variables.xml, 1 set, 0 removed").count(), 0) << Read("out");
    SaveBy(Saving::kRenameOver, Behaviours(), List("for {Who}"));
    EXPECT_GE(PollUntil("out", "for night desk").count(), 0) << Read("out");
    End();
    EXPECT_EQ(m_result.code, 0);
    EXPECT_EQ(Read("err"), "");
}

TEST_F(ToolReload, ABrokenEditIsOneLineAndChangesNothing) {
    ASSERT_GE(PollUntil("out", "zero").count(), 0);
    SaveBy(Saving::kRenameOver, Behaviours(), "<BehaviourList>\n<Behaviour>\n<Trigger");
    ASSERT_GE(PollUntil("err", "\n").count(), 0);
    SaveBy(Saving::kRenameOver, Behaviours(), List("mended"));
    ASSERT_GE(PollUntil("out", "mended").count(), 0);
    End();
    const std::string errors = Read("err");
    EXPECT_EQ(Lines(errors), 1u) << errors;
    EXPECT_NE(errors.find("brindle: " + Behaviours().string() + ":3:"), std::string::npos) << errors;
    EXPECT_NE(errors.find("what was read before stays in use"), std::string::npos) << errors;
    EXPECT_NE(Read("out").find("reload"), std::string::npos);
}

}  // namespace
}  // namespace brindle::testing
