// A running site whose files are edited: what takes over, what stays, what is reported. The reloader looks when the
// test says so; whole runs in real time are in command_reload_test.cpp.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "host/event_line.h"
#include "host/polls_file.h"
#include "host/register_types.h"
#include "host/run_context.h"
#include "host/run_data.h"
#include "host/site_check.h"
#include "host/site_reloader.h"
#include "host/station_polls.h"
#include "host/virtual_clock.h"
#include "host/written_site_test.h"
#include "testing/saving_ways.h"

namespace brindle::host {
namespace {

class Lines final : public RunSink {
  public:
    void Write(const RunRecord& record) override { records.push_back(record); }
    void Warn(const Problem& problem) override { warnings.push_back(problem.Place() + ": " + problem.text); }

    std::vector<RunRecord> records;
    std::vector<std::string> warnings;
};

// Time that stands still until the test moves it.
class StandingPace final : public RunPace {
  public:
    std::uint64_t Elapsed() override { return now; }
    void WaitUntil(std::uint64_t elapsed) override { now = elapsed; }
    bool IsReal() const noexcept override { return true; }
    std::atomic<std::uint64_t> now{0};
};

const char* const kBell = "<WriteLogAction Text='bell' Repeat='TRUE' Period='1000'/>";

std::string Behaviour(const std::string& address, const std::string& actions) {
    return "<Behaviour><TriggerList><StateTrigger Address='" + address +
           "' States='1-'/></TriggerList><ActionList>" + actions + "</ActionList></Behaviour>";
}
std::string List(const std::string& behaviours) {
    return "<BehaviourList>" + behaviours + "</BehaviourList>";
}

class SiteReload : public ::testing::Test {
  protected:
    SiteReload() {
        RegisterHostTypes();
        m_written.WriteObjects({"a"});
        m_written.Write("behaviours/a.xml", List(Behaviour("0001:01:01", kBell)));
    }
    ~SiteReload() override {
        m_reloader.reset();
        if (m_state) {
            for (const auto& object : m_site.objects) object->list.ResetRepeats();
            RegisterHostContext(nullptr);
            RegisterIBrindleData(nullptr);
        }
    }
    void Start() {
        Problems problems;
        ASSERT_TRUE(LoadSite(m_written.Folder(), m_site, problems))
            << (problems.empty() ? "" : problems[0].text);
        m_state.emplace(m_site, m_lines, m_pace);
        m_context.emplace(*m_state);
        RegisterHostContext(&*m_context);
        m_data.emplace(*m_state);
        RegisterIBrindleData(&*m_data);
        m_reloader.emplace(*m_state);
    }
    // Looks as often as the reloader wants to; what it wrote as "OBJECT kept added removed" or "set removed".
    std::string Look() {
        m_lines.records.clear();
        m_lines.warnings.clear();
        for (int i = 0; i < 10; ++i) m_reloader->Look();
        std::string text;
        for (const RunRecord& record : m_lines.records) {
            if (record["kind"] != "reload") continue;
            text += text.empty() ? "" : "; ";
            text += record.value("object", "site");
            for (const char* key : {"kept", "added", "set", "removed"})
                if (record.contains(key)) text += " " + std::string(key) + " " + record[key].dump();
        }
        return text;
    }
    void Report(const std::string& address, int state) {
        EventLine line;
        EXPECT_EQ(ParseEventLine(R"({"kind":"state","address":")" + address + R"(","state":)" +
                                     std::to_string(state) + "}",
                                 line),
                  "");
        m_state->current = &Object();
        Object().list.Execute(MakeEvent(line, CAddressOv()), &Object().scope);
        m_state->current = nullptr;
    }
    SiteObject& Object(std::size_t index = 0) { return *m_site.objects[index]; }
    std::string Value(const VariableManager& scope, const char* name) {
        CStringA value = "(none)";
        scope.getValue(name, value);
        return value.str();
    }

    WrittenSite m_written;
    Site m_site;
    Lines m_lines;
    StandingPace m_pace;
    std::optional<RunState> m_state;
    std::optional<RunContext> m_context;
    std::optional<RunData> m_data;
    std::optional<SiteReloader> m_reloader;
};

TEST_F(SiteReload, PollsOfTheDevicesTakeOver) {
    const auto device = [](int number, const std::string& more) {
        return "[0001:01:0" + std::to_string(number) + "]\nAgent=127.0.0.1:1\nPoll.Power=1.3.6.1\n" + more +
               "\n";
    };
    m_written.Write("devices.ini", device(1, "Poll=1000") + device(2, "Poll=2000"));
    Start();
    SnmpRequests requests;
    StationPolls polls(*m_state, requests, [](const CStateEvent* event) { event->Release(); });
    m_reloader->Add(
        std::make_unique<PollsFile>(m_site.plan.devices, m_site.marks.at(m_site.plan.devices), polls));
    struct Row {
        const char* label;
        std::string text;
        std::string changed;  // polls; empty: no record
        std::size_t warnings;
        std::optional<std::uint64_t> due;
    };
    const Row rows[] = {
        {"nothing", device(1, "Poll=1000") + device(2, "Poll=2000"), "", 0, 0},
        {"another name", device(1, "Poll=1000\nName=T") + device(2, "Poll=2000"), "", 0, 0},
        {"broken", device(1, "Poll=5") + device(2, "Poll=2000"), "", 1, 0},
        {"both", device(1, "Poll=1500") + device(2, "Poll=2500"), "2", 0, 70},
        {"one is off", device(1, "Poll=1500\nPolled=FALSE") + device(2, "Poll=2500"), "1", 0, 70},
        {"the other one's rhythm stays", device(1, "Poll=1500") + device(2, "Poll=2500"), "1", 0, 70},
        {"none", "", "2", 0, std::nullopt},
    };
    m_pace.now = 70;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_written.Write("devices.ini", row.text);
        Look();
        std::string changed;
        for (const RunRecord& record : m_lines.records)
            if (record.contains("polls")) changed += record["polls"].dump();
        EXPECT_EQ(changed, row.changed);
        EXPECT_EQ(m_lines.warnings.size(), row.warnings);
        EXPECT_EQ(polls.NextDue(), row.due);
    }
    EXPECT_FALSE(requests.IsBusy());
}

TEST_F(SiteReload, NothingChangedIsNothing) {
    Start();
    EXPECT_EQ(Look(), "");
    EXPECT_TRUE(m_lines.warnings.empty());
}

TEST_F(SiteReload, BehavioursByTheirText) {
    const std::string one = Behaviour("0001:01:01", kBell);
    const std::string two = Behaviour("0001:01:02", kBell);
    const std::string three = Behaviour("0001:01:03", kBell);
    struct Row {
        const char* label;
        std::string before;
        std::string after;
        const char* expected;
    };
    const Row rows[] = {
        {"added", one, one + two, "a kept 1 added 1 removed 0"},
        {"removed", one + two, two, "a kept 1 added 0 removed 1"},
        {"replaced", one, two, "a kept 0 added 1 removed 1"},
        {"another order", one + two + three, three + one + two, "a kept 3 added 0 removed 0"},
        {"a duplicate more", one + one, one + one + one, "a kept 2 added 1 removed 0"},
        {"a duplicate less", one + two + one, one + two, "a kept 2 added 0 removed 1"},
        {"all removed", one + two, "", "a kept 0 added 0 removed 2"},
        {"written in another way", one, " <!-- a note --> " + one, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_written.Write("behaviours/a.xml", List(row.before));
        m_reloader.reset();
        m_site = Site();
        Start();
        m_written.Write("behaviours/a.xml", List(row.after) + " ");
        EXPECT_EQ(Look(), row.expected);
        EXPECT_TRUE(m_lines.warnings.empty()) << m_lines.warnings[0];
        CCommandBehaviourList fresh(eHostMapObject);
        Problems problems;
        ASSERT_TRUE(ReadBehaviours(m_written.Path("behaviours/a.xml"), fresh, problems));
        EXPECT_EQ(Object().list.GetChildCount(), fresh.GetChildCount());
        EXPECT_EQ(Look(), "") << "a second time there is nothing to do";
    }
}

TEST_F(SiteReload, KeptBehavioursKeepTheirRepeatsAndOthersLoseThem) {
    const std::string kept = Behaviour("0001:01:01", kBell);
    const std::string gone = Behaviour("0001:01:02", kBell);
    const std::string added = Behaviour("0001:01:03", kBell);
    m_written.Write("behaviours/a.xml", List(gone + kept));
    Start();
    Report("0001:01:01", 1);
    Report("0001:01:02", 1);
    EXPECT_EQ(Object().list.GetRepeatCount(), 2);
    m_written.Write("behaviours/a.xml", List(added + kept));
    EXPECT_EQ(Look(), "a kept 1 added 1 removed 1");
    // Long after both were due: only the kept one's repeat still runs.
    VirtualClock later(4'000'000'000);
    Clock* before = SetClock(&later);
    m_lines.records.clear();
    CCommandBehaviourList::CallOnTimer();
    SetClock(before);
    int bells = 0;
    for (const RunRecord& record : m_lines.records) bells += record["kind"] == "log";
    EXPECT_EQ(bells, 1);
    // And what the kept trigger remembers: its condition ends, which ends its repeat.
    Report("0001:01:01", 0);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), UINT64_MAX);
}

TEST_F(SiteReload, WhatEndsLeavesNoRepeatInTheList) {
    const std::string schedule =
        "<Behaviour><TriggerList><TimeBasedTrigger Every='5'/></TriggerList><ActionList>"
        "<WriteLogAction Text='tick'/></ActionList></Behaviour>";
    const std::string rule = "<Behaviour><TriggerList><RuleTrigger Rule='1 = 1'/></TriggerList><ActionList>" +
                             std::string(kBell) + "</ActionList></Behaviour>";
    m_written.Write("behaviours/a.xml", List(""));
    Start();
    for (int i = 0; i < 3; ++i) {
        m_written.Write("behaviours/a.xml", List(schedule + rule + Behaviour("0001:01:01", kBell)));
        EXPECT_EQ(Look(), "a kept 0 added 3 removed 0");
        Report("0001:01:01", 1);
        EXPECT_EQ(Object().list.GetRepeatCount(), 3);
        m_written.Write("behaviours/a.xml", List(""));
        EXPECT_EQ(Look(), "a kept 0 added 0 removed 3");
        EXPECT_EQ(Object().list.GetRepeatCount(), 0);
    }
}

TEST_F(SiteReload, NewBehavioursBeginAsAtTheStart) {
    Start();
    m_written.Write(
        "behaviours/a.xml",
        "<BehaviourList><Behaviour><TriggerList><TimeBasedTrigger Every='5'/></TriggerList><ActionList>"
        "<WriteLogAction Text='tick'/></ActionList></Behaviour><Behaviour><TriggerList><RuleTrigger "
        "Rule='1 = 1'/></TriggerList><ActionList><WriteLogAction Text='true #0001:01:01,Model#'/>"
        "</ActionList></Behaviour></BehaviourList>");
    EXPECT_EQ(Look(), "a kept 0 added 2 removed 1");
    std::string logs;
    for (const RunRecord& record : m_lines.records)
        if (record["kind"] == "log")
            logs += record["text"].get<std::string>() + record["object"].get<std::string>();
    EXPECT_NE(logs.find("true"), std::string::npos) << "a rule that is true fires";
    EXPECT_EQ(Object().list.GetRepeatCount(), 1) << "the schedule is armed";
}

TEST_F(SiteReload, AWarningOfTheCheckKeepsNothingFromTakingOver) {
    Start();
    const std::string bell = "<RunCommandAction Command='/bin/echo %c'/>";
    m_written.Write("behaviours/a.xml", List(Behaviour("0001:01:01", bell)));
    Problems problems;
    CheckFileOfSite(m_site.plan, m_written.Path("behaviours/a.xml"), problems);
    ASSERT_EQ(problems.size(), 1U) << "a caption fills in a command";
    ASSERT_TRUE(problems[0].warning) << problems[0].text;
    EXPECT_EQ(Look(), "a kept 0 added 1 removed 1");
    EXPECT_TRUE(m_lines.warnings.empty()) << m_lines.warnings[0];
}

TEST_F(SiteReload, ABrokenFileIsReportedOnceAndTheOldOneStays) {
    struct Row {
        const char* label;
        std::string text;
        const char* place;
    };
    const Row rows[] = {
        {"not well-formed", "<BehaviourList>\n<Behaviour>\n", "a.xml:3"},
        {"an unknown type",
         "<BehaviourList>\n<Behaviour><TriggerList><NoTrigger/></TriggerList><ActionList><WriteLogAction "
         "Text='x'/></ActionList></Behaviour></BehaviourList>",
         "a.xml:2"},
        {"two problems", "<BehaviourList>\n<X/><Y/></BehaviourList>", "a.xml:2"},
        {"another root", "<Variables/>", "a.xml:1"},
        {"empty", "", "a.xml"},
    };
    Start();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_written.Write("behaviours/a.xml", row.text);
        EXPECT_EQ(Look(), "");
        ASSERT_EQ(m_lines.warnings.size(), 1u);
        EXPECT_NE(m_lines.warnings[0].find(row.place), std::string::npos) << m_lines.warnings[0];
        EXPECT_NE(m_lines.warnings[0].find("what was read before stays in use"), std::string::npos);
        EXPECT_EQ(Object().list.GetChildCount(), 1);
        EXPECT_EQ(Look(), "");
        EXPECT_TRUE(m_lines.warnings.empty()) << "once";
    }
    std::filesystem::remove(m_written.Path("behaviours/a.xml"));
    EXPECT_EQ(Look(), "");
    EXPECT_EQ(m_lines.warnings.size(), 1u) << "a missing file is one, too";
    m_written.Write("behaviours/a.xml", List(Behaviour("0001:01:09", kBell)));
    EXPECT_EQ(Look(), "a kept 0 added 1 removed 1");
}

TEST_F(SiteReload, ObjectsMayShareAFile) {
    m_written.Write("site.ini",
                    "[Site]\nName=Test\nDevices=devices.ini\nVariables=variables.xml\n[Object "
                    "a]\nBehaviours=behaviours/a.xml\n[Object b]\nBehaviours=behaviours/a.xml\n");
    Start();
    m_written.Write("behaviours/a.xml", List(""));
    EXPECT_EQ(Look(), "a kept 0 added 0 removed 1; b kept 0 added 0 removed 1");
}

TEST_F(SiteReload, VariablesAreUpdatedInPlace) {
    m_written.Write(
        "variables.xml",
        "<Variables><variable name='Same' value='1'/><variable name='Changed' value='1'/><variable "
        "name='Gone' value='1'/></Variables>");
    m_written.Write("behaviours/a.xml", List(""));
    Start();
    const VariableManager* before = &m_site.scope;
    // What actions set.
    m_site.scope.addVariable(Variable("Same", "set by an action"));
    m_site.scope.addVariable(Variable("Changed", "set by an action"));
    m_site.scope.addVariable(Variable("Own", "set by an action"));
    m_written.Write(
        "variables.xml",
        "<Variables><variable name='Same' value='1'/><variable name='Changed' value='2'/><variable "
        "name='New' value='3'/></Variables>");
    EXPECT_EQ(Look(), "site set 2 removed 1");
    EXPECT_EQ(&m_site.scope, before);
    struct Row {
        const char* name;
        const char* expected;
    };
    for (const Row& row : {Row{"Same", "set by an action"}, Row{"Changed", "2"}, Row{"New", "3"},
                           Row{"Gone", "(none)"}, Row{"Own", "set by an action"}})
        EXPECT_EQ(Value(m_site.scope, row.name), row.expected) << row.name;
    m_written.Write("variables.xml", "<Variables><variable name='New'/></Variables>");
    EXPECT_EQ(Look(), "");
    ASSERT_EQ(m_lines.warnings.size(), 1u);
    EXPECT_EQ(Value(m_site.scope, "New"), "3") << "a broken file changes nothing";
}

TEST_F(SiteReload, VariablesOfAnObject) {
    m_written.Write("site.ini", "[Site]\nName=Test\n[Object a]\nVariables=own.xml\n");
    m_written.Write("behaviours/a.xml", List(""));
    m_written.Write("own.xml", "<Variables><variable name='caption' value='mine'/></Variables>");
    Start();
    EXPECT_EQ(Value(Object().scope, "caption"), "mine");
    m_written.Write("own.xml", "<Variables></Variables>");
    EXPECT_EQ(Look(), "a set 1 removed 0") << "the object's own value is back";
    EXPECT_EQ(Value(Object().scope, "caption"), "a");
    EXPECT_EQ(Object().scope.parent(), &m_site.scope);
}

TEST_F(SiteReload, MacrosAreChecked) {
    m_written.Write("site.ini", "[Site]\nName=Test\nMacros=macros.ini\n[Object a]\n");
    m_written.Write("behaviours/a.xml", List(""));
    m_written.Write("macros.ini", "[SearchPath]\nA=b\n");
    Start();
    m_written.Write("macros.ini", "[SearchPath]\nA=c and more\n");
    EXPECT_EQ(Look(), "site");
    EXPECT_TRUE(m_lines.warnings.empty());
    m_written.Write("macros.ini", "[SearchPath]\nA=c\n[Unknown]\n");
    EXPECT_EQ(Look(), "");
    ASSERT_EQ(m_lines.warnings.size(), 1u);
    EXPECT_NE(m_lines.warnings[0].find("macros.ini:3"), std::string::npos) << m_lines.warnings[0];
}

TEST_F(SiteReload, SkinsTakeOverAndABrokenOneDoesNot) {
    const auto thickness = [this] {
        int value = -1;
        m_site.skin.GetExactProp("pressed", "mark", "thickness", value);
        return value;
    };
    m_written.Write("site.ini", "[Site]\nName=Test\nSkin=skin.xml\n[Object a]\n");
    m_written.Write("behaviours/a.xml", List(""));
    m_written.Write("skin.xml", "<skin><pressed><mark thickness='5' colour='#000000'/></pressed></skin>");
    Start();
    EXPECT_EQ(thickness(), 5);
    EXPECT_EQ(Look(), "");
    m_written.Write("skin.xml", "<skin><pressed><mark thickness='7'/></pressed></skin>");
    EXPECT_EQ(Look(), "site set 1 removed 1");
    EXPECT_EQ(thickness(), 7);
    m_written.Write("skin.xml", "<skin><pressed><mark  thickness='7'/></pressed></skin>");
    EXPECT_EQ(Look(), "") << "nothing changed in it";
    for (const char* broken :
         {"<skin", "<other/>", "<skin><pressed><mark thickness='wide'/></pressed></skin>"}) {
        m_written.Write("skin.xml", broken);
        EXPECT_EQ(Look(), "") << broken;
        ASSERT_EQ(m_lines.warnings.size(), 1u) << broken;
        EXPECT_NE(m_lines.warnings[0].find("skin.xml:1"), std::string::npos) << m_lines.warnings[0];
        EXPECT_EQ(thickness(), 7) << broken;
    }
}

// The check runs the macros without starting anything, and the run must not hear of it.
TEST_F(SiteReload, ACheckLeavesNoTraceInTheRun) {
    m_written.Write("site.ini", "[Site]\nName=Test\nMacros=macros.ini\n[Object a]\n");
    m_written.Write("behaviours/a.xml", List(""));
    m_written.Write("macros.ini", "[CommandActions]\nBell=echo one\n");
    Start();
    m_written.Write("macros.ini", "[CommandActions]\nBell=echo one and two\n");
    EXPECT_EQ(Look(), "site");
    for (const RunRecord& record : m_lines.records) EXPECT_EQ(record["kind"], "reload") << record.dump();
    EXPECT_EQ(RegisteredBrindleData(), &*m_data) << "and its slots are as they were";
}

TEST_F(SiteReload, AChangeWhileTheSiteWasBeingLoadedCounts) {
    Start();
    EXPECT_TRUE(m_reloader->NextLook()) << "the first look needs no notice";
    m_reloader->Look();
    EXPECT_FALSE(m_reloader->NextLook());
}

TEST_F(SiteReload, EveryWayOfSavingIsNoticed) {
    Start();
    m_reloader->Look();
    const std::filesystem::path path = m_written.Path("behaviours/a.xml");
    int number = 2;
    for (const testing::SavingWay& way : testing::kSavingWays) {
        SCOPED_TRACE(way.label);
        ASSERT_FALSE(m_reloader->NextLook());
        testing::SaveBy(way.way, path, List(Behaviour("0001:01:0" + std::to_string(number++), kBell)));
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!m_reloader->NextLook() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
        ASSERT_TRUE(m_reloader->NextLook());
        EXPECT_EQ(*m_reloader->NextLook(), m_pace.now + SiteReloader::kQuiet);
        std::string text;
        for (int i = 0; i < 3; ++i) text += Look();
        EXPECT_EQ(text, "a kept 0 added 1 removed 1");
    }
}

}  // namespace
}  // namespace brindle::host
