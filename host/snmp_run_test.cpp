// Runs in real time that ask SNMP agents: polls, what follows from them, and the SNMP actions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "host/played_site_test.h"
#include "host/run_text.h"
#include "testing/scripted_agent.h"
#include "testing/snmp_calls.h"
#include "testing/snmpd_process.h"

namespace brindle::host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ScriptedAgent;
using testing::SnmpdProcess;

// Waits for what a run has shown so far, step by step, and ends the run after the last one.
class Steps final : public EventSource {
  public:
    struct Step {
        std::function<bool()> reached;
        std::function<void()> then;
    };
    explicit Steps(std::vector<Step> steps) : m_steps(std::move(steps)) {}

    std::optional<EventItem> Next(std::chrono::milliseconds longest) override {
        std::this_thread::sleep_for(std::min(longest, std::chrono::milliseconds(2)));
        if (std::chrono::steady_clock::now() > m_end) {
            ADD_FAILURE() << "step " << m_next << " is not reached";
            return EventItem();
        }
        if (m_next == m_steps.size()) return EventItem();
        if (m_steps[m_next].reached()) m_steps[m_next++].then();
        return {};
    }

  private:
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    std::chrono::steady_clock::time_point m_end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
};

// Plays the site in real time; lines end up in `played`.
void RunLive(const WrittenSite& written, EventSource& source, Played& played,
             const RunOptions& options = {}) {
    RegisterHostTypes();
    Problems problems;
    EXPECT_TRUE(LoadSite(written.Folder(), *played.site, problems))
        << (problems.empty() ? "" : problems[0].text);
    RealPace pace;
    SiteRunner(*played.site, source, played.lines, pace, options).Run();
}

Played RunLiveEvents(const WrittenSite& written, const std::string& events, const RunOptions& options = {}) {
    Played played;
    std::istringstream input(events);
    EventReader reader(input, "events");
    RunLive(written, reader, played, options);
    return played;
}

class SnmpRun : public ::testing::Test {
  public:
    static void SetUpTestSuite() { s_agent = std::make_unique<SnmpdProcess>("Transmitter A"); }
    static void TearDownTestSuite() { s_agent.reset(); }

  protected:
    void SetUp() override {
        ASSERT_TRUE(s_agent->IsRunning());
        m_site.WriteObjects({"a"});
        SetNumber("17");
    }
    static std::string Agent() { return s_agent->Address(); }
    // The writable INTEGER of the agent.
    static void SetNumber(const char* value) {
        CSnmpVariable variable = testing::SnmpVariableAt(Agent(), testing::kSnmpdVariables[0].oid, "private");
        variable.type = 2;
        variable.value = value;
        testing::SnmpCalls calls;
        EXPECT_TRUE(calls.SetNow(variable).failure.ok());
    }
    static std::string Number() {
        testing::SnmpCalls calls;
        return calls.GetNow(testing::SnmpVariableAt(Agent(), testing::kSnmpdVariables[0].oid))
            .variable.value.str();
    }
    void WriteDevice(const std::string& keys) const {
        m_site.Write("devices.ini", "[0001:01:01]\nName=Camera\nState=1\nAgent=" + Agent() + "\n" + keys);
    }
    std::function<bool()> Shown(const char* kind, const char* key, const char* part) {
        return
            [this, kind, key, part] { return m_played.lines.All(kind, key).find(part) != std::string::npos; };
    }

    WrittenSite m_site;
    Played m_played;

  private:
    static std::unique_ptr<SnmpdProcess> s_agent;
};
std::unique_ptr<SnmpdProcess> SnmpRun::s_agent;

const std::string kNumber = testing::kSnmpdVariables[0].oid;
const std::string kText = testing::kSnmpdVariables[4].oid;

TEST_F(SnmpRun, PollsFillFieldsThatRulesAndTextsAsk) {
    WriteDevice("Poll=100\nPoll.Power=" + kNumber + "\nPoll.Title=" + kText + "\n");
    m_site.WriteBehaviour("a", "<RuleTrigger Rule='0001:01:01,Power &gt; 20'/>",
                          "<WriteLogAction Text='#0001:01:01,Power# #0001:01:01,Title#'/>");
    Steps steps({{Shown("snmp", "values", "\"Power\":\"17\""), [] { SetNumber("30"); }},
                 {Shown("log", "text", "30 Studio North"), [] { SetNumber("5"); }},
                 {Shown("verdict", "verdict", "2|1"), [] {}}});
    RunLive(m_site, steps, m_played);
    EXPECT_EQ(m_played.lines.All("log", "text"), "30 Studio North");
    EXPECT_THAT(m_played.lines.All("event", "event"), HasSubstr("poll"));
    EXPECT_TRUE(m_played.lines.warnings.empty());
}

TEST_F(SnmpRun, AChangedStateIsAStateEvent) {
    WriteDevice("Poll=100\nPoll.State=" + kNumber + "\nPollStates=17:1, 5:3\nPoll.Text=" + kText + "\n");
    m_site.WriteBehaviour("a", "<StateTrigger States='3-'/>", "<WriteLogAction Text='%i %t'/>");
    Steps steps({{Shown("event", "state", "1"), [] { SetNumber("5"); }},
                 {Shown("event", "state", "1|"), [] {}},
                 {Shown("log", "text", "3 Studio North"), [] { SetNumber("4"); }},
                 {Shown("log", "text", "4 Studio North"), [] {}}});
    m_site.WriteBehaviour("a", "<StateTrigger States='3-' AnyChange='TRUE'/>",
                          "<WriteLogAction Text='%i %t'/>");
    RunLive(m_site, steps, m_played);
    EXPECT_EQ(m_played.lines.All("log", "text"), "3 Studio North|4 Studio North") << m_played.lines.Dump();
}

TEST_F(SnmpRun, AChangedValueIsAMeterEvent) {
    WriteDevice("Poll=100\nPoll.Value=" + kNumber + "\n");
    m_site.WriteBehaviour("a", "<MeterValueTrigger Above='20'/>", "<WriteLogAction Text='%r'/>");
    Steps steps(
        {{Shown("event", "value", "17"), [] { SetNumber("21"); }}, {Shown("log", "text", "21"), [] {}}});
    RunLive(m_site, steps, m_played);
    EXPECT_EQ(m_played.lines.All("log", "text"), "21");
}

TEST_F(SnmpRun, ADeviceThatDoesNotAnswerIsSaidOnceAndMayHaveAState) {
    const ScriptedAgent silent;
    m_site.Write("devices.ini",
                 "[0001:01:01]\nName=Camera\nState=1\nAgent=" + silent.Address() +
                     "\nPoll=100\nPoll.Power=1.5.0\nPoll.Fan=1.6.0\nTimeout=20\nRetries=0\nNoAnswer=4\n");
    m_site.WriteBehaviour("a", "<StateTrigger States='4'/>", "<WriteLogAction Text='%i %t'/>");
    Steps steps(
        {{Shown("log", "text", "4"), [] {}}, {[&] { return silent.Requests().size() >= 12; }, [] {}}});
    RunLive(m_site, steps, m_played);
    EXPECT_EQ(m_played.lines.All("log", "text"), "4 Power: no answer within 20 ms");
    EXPECT_EQ(m_played.lines.All("snmp", "why"), "Power: no answer within 20 ms") << "not again and again";
    EXPECT_EQ(m_played.lines.All("event", "event"), "state") << "no poll event without an answer";
}

TEST_F(SnmpRun, AGetActionPutsTheValueIntoAVariable) {
    m_site.WriteBehaviour("a", "<PollTrigger/>",
                          "<GetSNMPAction Name='Ask' Agent='" + Agent() + "' Object='" + kText +
                              "' Variable='Title' Scope='SITE'/>");
    const Played played = RunLiveEvents(m_site, R"({"kind":"poll"})");
    EXPECT_EQ(played.lines.All("snmp", "value"), "Studio North");
    EXPECT_EQ(played.lines.All("snmp", "name"), "Title");
    EXPECT_EQ(played.lines.All("snmp", "scope"), "site");
    EXPECT_EQ(played.lines.All("snmp", "action"), "Ask");
    EXPECT_EQ(played.lines.All("snmp", "by"), "event");
    CStringA value;
    EXPECT_TRUE(played.site->scope.getValue("Title", value));
    EXPECT_EQ(value, "Studio North");
    EXPECT_EQ(played.lines.records.back()["kind"], "end") << "the run waited for the answer";
}

TEST_F(SnmpRun, ASetActionWritesAndFieldsAreFilledIn) {
    WriteDevice("Community=public\nWriteCommunity=private\nWanted=99\n");
    m_site.WriteBehaviour("a", "<StateTrigger/>",
                          "<SetSNMPAction Object='" + kNumber + "' Type='INTEGER' Value='#Wanted#'/>");
    const Played played = RunLiveEvents(m_site, R"({"kind":"state","address":"1:1:1","state":2})");
    EXPECT_EQ(played.lines.All("snmp", "what"), "set") << played.lines.Dump();
    EXPECT_EQ(played.lines.All("snmp", "agent"), Agent()) << "the device's";
    EXPECT_EQ(Number(), "99");
}

TEST_F(SnmpRun, RefusedAndUnansweredRequestsAreFailures) {
    const ScriptedAgent silent;
    const auto run = [&](const std::string& action) {
        m_site.WriteBehaviour("a", "<PollTrigger/>", action);
        return RunLiveEvents(m_site, R"({"kind":"poll"})").lines.All("failure", "why");
    };
    EXPECT_EQ(run("<SetSNMPAction Agent='" + Agent() + "' Object='" + kNumber +
                  "' Value='x' Community='private'/>"),
              "the agent refused: wrongType, error 7");
    EXPECT_EQ(
        run("<GetSNMPAction Agent='" + silent.Address() + "' Object='1.5.0' Timeout='20' Retries='0'/>"),
        "no answer within 20 ms");
    EXPECT_EQ(run("<GetSNMPAction Agent='" + Agent() + "' Object='sysName'/>"),
              "\"sysName\" is no identifier in dotted numbers");
    EXPECT_EQ(run("<GetSNMPAction Object='1.5.0'/>"), "neither the action nor the device has an SNMP agent");
}

TEST_F(SnmpRun, ADryRunAndAVirtualClockSendNothing) {
    m_site.WriteBehaviour("a", "<PollTrigger/>",
                          "<SetSNMPAction Name='Write' Agent='" + Agent() + "' Community='private' Object='" +
                              kNumber + "' Type='INTEGER' Value='50'/>");
    RunOptions dry;
    dry.dryRun = true;
    const char* const poll = R"({"kind":"poll"})";
    for (const Played& played : {RunLiveEvents(m_site, poll, dry), RunEvents(m_site, poll)}) {
        EXPECT_EQ(played.lines.All("snmp", "sent"), "false");
        EXPECT_EQ(played.lines.All("snmp", "value"), "50");
    }
    EXPECT_EQ(Number(), "17");
    WriteDevice("Poll=100\nPoll.Power=" + kNumber + "\n");
    EXPECT_EQ(RunEvents(m_site, R"({"t":1000,"kind":"poll","object":"a"})").lines.All("snmp", "what"), "set")
        << "no poll";
}

TEST_F(SnmpRun, ManyDevicesAreAskedAFewAtATime) {
    std::string devices;
    for (int unit = 1; unit <= 200; ++unit)
        devices += "[0001:" + std::string(unit < 16 ? "0" : "") +
                   [](int n) {
                       const char* const digits = "0123456789ABCDEF";
                       return (n >= 16 ? std::string(1, digits[n / 16]) : std::string()) + digits[n % 16];
                   }(unit) +
                   ":01]\nAgent=" + Agent() + "\nPoll=60000\nPoll.Power=" + kNumber + "\n";
    m_site.Write("devices.ini", devices);
    m_site.WriteBehaviour("a", "<PollTrigger/>", "<WriteLogAction Text='%a'/>");
    const auto answered = [this] {
        const auto& records = m_played.lines.records;
        return std::count_if(records.begin(), records.end(),
                             [](const auto& r) { return r["kind"] == "snmp"; });
    };
    Steps steps({{[&] { return answered() == 200; }, [] {}}});
    RunLive(m_site, steps, m_played);
    EXPECT_EQ(m_played.lines.All("snmp", "why"), std::string(199, '|'));
}

TEST(PollPlan, TellsWhatIsWrong) {
    struct Row {
        const char* label;
        const char* keys;
        const char* problem;  // null: none
        std::size_t plans;
    };
    const Row rows[] = {
        {"no poll", "Name=x\n", nullptr, 0},
        {"an agent for actions only", "Agent=tx1\n", nullptr, 0},
        {"a poll", "Agent=tx1\nPoll=1000\nPoll.A=1.5.0\n", nullptr, 1},
        {"in another case", "agent=tx1\npoll=1000\npoll.A=1.5.0\n", nullptr, 1},
        {"too often", "Agent=tx1\nPoll=99\nPoll.A=1.5.0\n",
         "f:3:1: Poll: \"99\" is no number from 100 to 86400000", 0},
        {"no number", "Agent=tx1\nPoll=often\nPoll.A=1.5.0\n",
         "f:3:1: Poll: \"often\" is no number from 100 to 86400000", 0},
        {"no agent", "Name=x\nPoll=1000\nPoll.A=1.5.0\n",
         "f:3:1: Poll: whom to ask is missing: \"Agent = HOST\"", 0},
        {"nothing to ask for", "Agent=tx1\nPoll=1000\n",
         "f:3:1: Poll: nothing to ask for; \"Poll.NAME = IDENTIFIER\" is missing", 0},
        {"no period", "Agent=tx1\nPoll.A=1.5.0\n",
         "f:3:1: how often to ask is missing: \"Poll = MILLISECONDS\"", 0},
        {"no identifier", "Agent=tx1\nPoll=1000\nPoll.A=sysName\n",
         "f:4:1: Poll.A: \"sysName\" is no identifier in dotted numbers", 0},
        {"a state without a value", "Agent=tx1\nPoll=1000\nPoll.A=1.5.0\nPollStates=1:1,3\n",
         "f:5:1: PollStates: \"3\" is no VALUE:STATE", 1},
        {"a state that is no number", "Agent=tx1\nPoll=1000\nPoll.A=1.5.0\nNoAnswer=red\n",
         "f:5:1: NoAnswer: \"red\" is no number from -2147483648 to 2147483647", 1},
        {"no time-out", "Agent=tx1\nPoll=1000\nPoll.A=1.5.0\nTimeout=0\n",
         "f:5:1: Timeout: \"0\" is no number from 1 to 600000", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Problems problems;
        const IniText ini("[0001:02:03]\n" + std::string(row.keys), "f", problems);
        EXPECT_EQ(ReadPollPlans(ini, "f", problems).size(), row.plans);
        if (row.problem) {
            ASSERT_EQ(problems.size(), 1U);
            EXPECT_EQ(problems[0].Place() + ": " + problems[0].text, row.problem);
        } else {
            EXPECT_TRUE(problems.empty()) << problems[0].text;
        }
    }
}

TEST(PollPlan, PolledFieldsAreKnownBeforeTheFirstAnswer) {
    Problems problems;
    const IniText ini("[0001:02:03]\nAgent=tx1\nPoll=1000\nPower=1000\nPoll.Power=1.1.0\nPoll.Fan=1.2.0\n",
                      "f", problems);
    DeviceTable devices;
    devices.Load(ini, "f", problems);
    std::string value;
    EXPECT_TRUE(devices.Field(0x00010203, "power", value));
    EXPECT_EQ(value, "1000");
    EXPECT_TRUE(devices.Field(0x00010203, "Fan", value));
    EXPECT_EQ(value, "");
    EXPECT_FALSE(devices.KnowsField(0x00010203, "Poll.Fan"));
    EXPECT_TRUE(devices.SetField(0x00010203, "FAN", "2"));
    EXPECT_FALSE(devices.SetField(0x00010203, "fan", "2"));
    EXPECT_FALSE(devices.SetField(0x00010203, "State", "2"));
    EXPECT_FALSE(devices.SetField(0x00090909, "Fan", "2"));
}

TEST(SnmpLines, SayWhoAndWhat) {
    struct Row {
        const char* record;
        const char* expected;
    };
    const Row rows[] = {
        {R"({"t":1,"kind":"snmp","what":"poll","device":"Tx","address":"0001:02:03",)"
         R"("agent":"a","values":{"A":"1","B":"x"}})",
         "    0.001        snmp poll Tx: A = 1, B = x"},
        {R"({"t":1,"kind":"snmp","what":"poll","address":"0001:02:03","agent":"a","why":"A: no answer"})",
         "    0.001        snmp poll 0001:02:03: A: no answer"},
        {R"({"t":1,"kind":"snmp","object":"a","by":"event","trigger":"T","action":"N","what":"get","agent":"h:1",)"
         R"("oid":".1.3","type":4,"value":"\u001bx","name":"V","scope":"site"})",
         "    0.001  a     snmp get h:1 .1.3 =  x -> V (site)  for N"},
        {R"({"t":1,"kind":"snmp","object":"a","action":"N","what":"set","agent":"h",)"
         R"("oid":"1.3","type":2,"value":"5","sent":false})",
         "    0.001  a     snmp set h 1.3 = 5  for N  (not sent)"},
        {R"({"t":1,"kind":"failure","object":"a","action":"N","what":"get","agent":"h","oid":"1.3","why":"no answer"})",
         "    0.001  a          -> failure  snmp get h 1.3: no answer"},
    };
    const RunText text(Site(), [](TextStyle, std::string_view part) { return std::string(part); });
    for (const Row& row : rows) EXPECT_EQ(text.Line(RunRecord::parse(row.record)), row.expected);
}

}  // namespace
}  // namespace brindle::host
