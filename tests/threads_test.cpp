// Behaviour lists driven by one thread, as docs/threads.md has it, while monitors, SNMP requests to a real agent and
// everything else that may be called from any thread run beside it. Proves little by itself, and much under the thread
// sanitizer.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "brindle/expressions/prepared_rule.h"
#include "brindle/macro/ini_string.h"
#include "brindle/platform/files.h"
#include "brindle/platform/ini_store.h"
#include "brindle/snmp/snmp.h"
#include "brindle/util/file_monitor.h"
#include "brindle/variables/variable_manager.h"
#include "testing/behaviour_kit.h"
#include "testing/saving_ways.h"
#include "testing/scripted_agent.h"
#include "testing/snmpd_process.h"

namespace {

using namespace brindle::testing;
using Moment = std::chrono::steady_clock::time_point;

constexpr int kEnough = 20;  // of each thing that other threads do

// What other threads hand over to the engine's.
class Inbox {
  public:
    void Put(int type) {
        const std::lock_guard lock(m_mutex);
        m_types.push_back(type);
    }
    std::vector<int> Take() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_types, {});
    }

  private:
    std::mutex m_mutex;
    std::vector<int> m_types;
};

enum EventType { kFileChanged = 1, kSnmpAnswered = 2 };

class Watcher final : public FileMonitor::Handler {
  public:
    explicit Watcher(Inbox& inbox) : m_inbox(inbox) {}
    void OnFileChanged(const CStringA&) override { m_inbox.Put(kFileChanged); }
    void OnChangePassedOver(const CStringA&) override { m_inbox.Put(kFileChanged); }

  private:
    Inbox& m_inbox;
};

class Constants final : public CSolverData {
  public:
    bool Lookup(const CStringA&, const CAddressOv*, CStringA& value) const override {
        value = "12";
        return true;
    }
};

void OnSnmpResult(CSnmpVariable*, unsigned long inbox, unsigned int) {
    reinterpret_cast<Inbox*>(inbox)->Put(kSnmpAnswered);
}

// Threads that repeat some work until they are stopped, which is when this goes.
class Beside {
  public:
    Beside() = default;
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;
    ~Beside() {
        m_over = true;
        for (std::thread& thread : m_threads) thread.join();
    }
    void Run(std::function<void()> work) {
        m_threads.emplace_back([this, work = std::move(work)] {
            while (!m_over) {
                work();
                std::this_thread::yield();
            }
        });
    }

  private:
    std::atomic<bool> m_over{false};
    std::vector<std::thread> m_threads;
};

class ThreadsTest : public ::testing::Test {
  protected:
    ThreadsTest() {
        RegisterProbes();
        std::filesystem::create_directories(m_folder);
    }
    ~ThreadsTest() override { std::filesystem::remove_all(m_folder); }
    std::string File(const char* name) const { return (m_folder / name).string(); }

    // What the thread of the engine does all the time.
    static void DriveEngine(ProbeList& list, const std::vector<int>& types) {
        for (const int type : types) list.Execute(new ProbeEvent(type), nullptr);
        CCommandBehaviourList::CallOnTimer();
        auto other = std::make_unique<ProbeList>();
        Reload(*other);
        const std::string saved = Written([&](XMLWriter& writer) { other->Save(writer); });
        EXPECT_NE(saved.find("ProbeTrigger"), std::string::npos);
    }

    std::filesystem::path m_folder =
        std::filesystem::path(::testing::TempDir()) / ("threads_" + std::to_string(getpid()));
};

// Gets and sets of a real agent, and gets of one that answers at once; a few at a time.
class Requests {
  public:
    explicit Requests(Inbox& inbox) : m_inbox(inbox) {}
    bool AgentRuns() const { return m_agent.IsRunning(); }
    int Asked() const { return m_asked; }

    void AskMore(int answered) {
        for (const int until = m_tried + kAtOnce - (m_asked - answered); m_tried < until; ++m_tried) {
            CSnmpVariable variable;
            const bool real = m_tried % 2 == 0;
            variable.agent = real ? m_agent.Address() : m_quick.Address();
            variable.community = "private";
            variable.oid = real ? kSnmpdVariables[0].oid : "1.3.6.1.2.1.1.5.0";
            variable.type = 2;
            variable.value = "5";
            const auto start = m_tried % 3 == 0 ? KySnmpSetValue : KySnmpGetValue;
            m_asked += start(&variable, OnSnmpResult, reinterpret_cast<unsigned long>(&m_inbox), 5'000, 1);
        }
    }

  private:
    static constexpr int kAtOnce = 8;
    Inbox& m_inbox;
    const SnmpdProcess m_agent;
    const ScriptedAgent m_quick{[](const SnmpRequestPacket& request) {
        return ScriptedAgent::Packets{SnmpAnswerPacket(request).Bytes()};
    }};
    int m_tried = 0;
    int m_asked = 0;
};

TEST_F(ThreadsTest, ListsOnOneThreadWhileMonitorsAndRequestsRun) {
    Inbox inbox;
    Requests requests(inbox);
    ASSERT_TRUE(requests.AgentRuns());
    int seen[3] = {};
    ProbeList list;
    AddRule(list, CCommandTrigger::kFired, [&](const CCommandEvent* event) {
        if (event) ++seen[event->type()];
    });
    AddRepeating(list, 1);
    const int& answered = seen[kSnmpAnswered];
    FileMonitor replaced(FileMonitor::AlsoCounts::kReplacement), written;
    Watcher watcher(inbox);
    const std::string saved = File("saved"), log = File("log");
    for (const std::string& path : {saved, log}) std::ofstream(path) << "before";
    ASSERT_TRUE(replaced.StartMonitoringFile(saved, &watcher));
    ASSERT_TRUE(written.StartMonitoringFile(log, &watcher));
    const Moment end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    {
        Beside beside;
        beside.Run([&] { SaveBy(Saving::kRenameOver, saved, "after"); });
        beside.Run([&] { std::ofstream(log, std::ios::app) << "line"; });
        beside.Run([&] { replaced.IsMonitoringDirectory(m_folder.string()); });
        beside.Run([&] {
            if (written.StopMonitoringFile(log)) written.StartMonitoringFile(log, &watcher);
        });
        while ((seen[kFileChanged] < kEnough || answered < kEnough) &&
               std::chrono::steady_clock::now() < end) {
            requests.AskMore(answered);
            DriveEngine(list, inbox.Take());
        }
    }
    while (answered < requests.Asked() && std::chrono::steady_clock::now() < end)
        DriveEngine(list, inbox.Take());
    EXPECT_GE(seen[kFileChanged], kEnough);
    EXPECT_GE(answered, kEnough);
    EXPECT_EQ(answered, requests.Asked()) << "every request calls back";
    EXPECT_TRUE(replaced.StopMonitoringFile(saved));
    EXPECT_TRUE(written.StopMonitoringFile(log));
}

// What the documents allow on any thread, on several at once, while the engine runs.
TEST_F(ThreadsTest, WhatMayBeCalledFromAnyThread) {
    ProbeList list;
    const Rule repeating = AddRepeating(list, 0);
    VariableManager scope;
    scope.addVariable(Variable("name", "value"));
    const brindle::PreparedRule rule("LEVEL > 10 & \"abc\" = \"a%\"");
    const Constants constants;
    const std::string ini = File("settings.ini");
    ASSERT_TRUE(brindle::CurrentIniStore().Write("s", "k", "0", ini.c_str()).ok());
    std::atomic<int> resolved{0}, solved{0}, read{0}, written{0}, appended{0};
    {
        Beside beside;
        for (int i = 0; i < 2; ++i) {
            beside.Run([&] {
                CStringA text = "{name}";
                resolved += scope.resolve(text) && text == "value";
            });
            beside.Run([&] {
                CCalculator::Literal result;
                solved += rule.Solve(constants, result) && result.AsInt() == 1;
            });
            beside.Run([&] {
                CStringA value;
                GetIniString("s", "k", "missing", value, ini.c_str(), 100);
                EXPECT_NE(value, "missing");
                ++read;
            });
            beside.Run([&] {
                const std::string value = std::to_string(written.load());
                written += brindle::CurrentIniStore().Write("s", "k", value.c_str(), ini.c_str()).ok();
            });
            beside.Run(
                [&] { appended += brindle::CurrentFiles().Append(File("log"), "line\n", 1'000).ok(); });
        }
        const Moment end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
        const auto enough = [&] {
            return resolved > kEnough && solved > kEnough && read > kEnough && written > kEnough &&
                   appended > kEnough;
        };
        while (!enough() && std::chrono::steady_clock::now() < end) DriveEngine(list, {0});
        EXPECT_TRUE(enough()) << resolved << " " << solved << " " << read << " " << written << " "
                              << appended;
    }
    EXPECT_GT(repeating.action->runs, 0);
}

}  // namespace
