// Rule triggers: verdicts over sequences of events, with the devices of a small table behind them.
#include "host/rule_trigger.h"

#include <brindle/behaviour/trigger_list.h>
#include <brindle/xml/xml_reader.h>
#include <brindle/xml/xml_writer.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "host/device_table.h"
#include "host/event_line.h"
#include "host/register_types.h"
#include "host/start_event.h"

namespace brindle::host {
namespace {

// The context of an object at 0001:02:03, with a device table and nothing else.
class DeviceContext final : public HostContext {
  public:
    DeviceContext() : m_previous(RegisterHostContext(this)) {
        Problems problems;
        devices.Load(IniText("[0001:02:03]\nName=Own\nState=1\nModel=C3\n[0001:02:09]\nName=Other\nState=1\n",
                             "f", problems),
                     "f", problems);
        EXPECT_TRUE(problems.empty());
    }
    DeviceContext(const DeviceContext&) = delete;
    DeviceContext& operator=(const DeviceContext&) = delete;
    ~DeviceContext() { RegisterHostContext(m_previous); }

    void RunCommand(const CCommandAction&, const CStringA&) override {}
    bool StartsPrograms() const override { return false; }
    CStringA StartFolder() const override { return {}; }
    void WriteLog(const CCommandAction&, const CStringA&) override {}
    void SetVariable(const CCommandAction&, VariableTarget, const CStringA&, const CStringA&) override {}
    void SendState(const CCommandAction&, const CStateEvent* event) override { event->Release(); }
    void AskSnmp(const CCommandAction&, const SnmpRequest&, VariableTarget, const CStringA&) override {}
    void ReportFailure(const CCommandAction&, const CStringA&) override {}
    void ReportFault(const CCommandTrigger&, const CStringA& why) override { faults.push_back(why.str()); }
    const VariableManager* ObjectScope() const override { return nullptr; }
    CAddressOv ObjectAddress() const override { return own; }
    CStringA Caption(const CAddressOv&) const override { return {}; }
    bool DeviceField(std::uint32_t device, const CStringA& name, CStringA& value) const override {
        std::string text;
        if (!devices.Field(device, name.view(), text)) return false;
        value = text;
        return true;
    }
    CStringA Path() const override { return {}; }

    DeviceTable devices;
    CAddressOv own{1, 2, 3};
    std::vector<std::string> faults;

  private:
    HostContext* m_previous;
};

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '"')
            escaped += "&quot;";
        else
            escaped += c;
    }
    return escaped;
}

// A trigger with that rule, read from its element as a behaviour list reads it.
std::unique_ptr<RuleTrigger> WithRule(const std::string& rule) {
    XMLReader reader;
    CStringA unused;
    EXPECT_TRUE(reader.LoadFromString(("<RuleTrigger Rule=\"" + Escaped(rule) + "\"/>").c_str(), unused));
    EXPECT_TRUE(reader.EnterSection("RuleTrigger", true));
    auto trigger = std::make_unique<RuleTrigger>();
    trigger->Load(reader);
    return trigger;
}

std::string Saved(const CCommandTreeItem& item) {
    XMLWriter writer;
    CStringA xml;
    EXPECT_TRUE(writer.Initialize());
    item.Save(writer);
    EXPECT_TRUE(writer.SaveToString(xml));
    return xml.str();
}

// Lets the event happen: the table takes it over, then the trigger is asked. "start" is the beginning of a run.
int Happens(DeviceContext& context, CCommandTrigger& trigger, const std::string& line) {
    const CCommandEvent* event = nullptr;
    if (line == "start") {
        event = new StartEvent;
    } else {
        EventLine parsed;
        EXPECT_EQ(ParseEventLine(line, parsed), "") << line;
        const CStateEvent* state = MakeEvent(parsed, CAddressOv());
        context.devices.Take(*state);
        event = state;
    }
    const int verdict = trigger.Test(event);
    event->Release();
    return verdict;
}

const char* const kState1 = R"({"kind":"state","address":"1:2:3","state":1})";
const char* const kState3 = R"({"kind":"state","address":"1:2:3","state":3})";
const char* const kState4 = R"({"kind":"state","address":"1:2:3","state":4})";
const char* const kOk = R"({"kind":"state","address":"1:2:3","state":3,"text":"OK 1"})";
const char* const kMasked3 = R"({"kind":"state","address":"1:2:3","state":3,"masked":true})";
const char* const kOther1 = R"({"kind":"state","address":"1:2:9","state":1})";
const char* const kOther3 = R"({"kind":"state","address":"1:2:9","state":3})";
const char* const kLevel12 = R"({"kind":"meter","address":"1:2:3","value":12})";
const char* const kLevel9 = R"({"kind":"meter","address":"1:2:3","value":9.5})";
const char* const kZone4 = R"({"kind":"zone","address":"1:2:3","zone":4})";
const char* const kLive = R"({"kind":"caption","address":"1:2:3","text":"LIVE now"})";
const char* const kPoll = R"({"kind":"poll"})";
const char* const kPress = R"({"kind":"button","address":"1:2:3","toggle":true})";
const char* const kCheck = R"({"kind":"checkbox","address":"1:2:3","checked":true})";

TEST(RuleTrigger, Verdicts) {
    struct Row {
        const char* label;
        const char* rule;
        std::vector<std::pair<const char*, int>> steps;  // event line, verdict
    };
    const Row rows[] = {
        {"turns true, stays, turns false, turns true",
         "State > 2",
         {{"start", 0}, {kState3, 2}, {kState3, 0}, {kState4, 0}, {kState1, 1}, {kState1, 0}, {kState3, 2}}},
        {"true from the beginning", "State = 1", {{"start", 2}, {kState1, 0}, {kState3, 1}}},
        {"false from the beginning", "State = 2", {{"start", 0}, {kState1, 0}}},
        {"an address before the name",
         "0001:02:09,State > 2",
         {{"start", 0}, {kState3, 0}, {kOther3, 2}, {kState1, 0}, {kOther1, 1}}},
        {"several devices",
         "State > 2 & 0001:02:09,State > 2",
         {{kState3, 0}, {kOther3, 2}, {kState1, 1}, {kState3, 2}, {kOther1, 1}}},
        {"a pattern", "State > 2 & Text = \"OK%\"", {{kState3, 0}, {kOk, 2}, {kState3, 1}}},
        {"names ignore case", "STATE > 2 & text = \"OK%\"", {{kOk, 2}}},
        {"a meter value", "Value > 10", {{kLevel9, 0}, {kLevel12, 2}, {kLevel12, 0}, {kLevel9, 1}}},
        {"a zone", "Zone >= 4", {{kZone4, 2}}},
        {"a caption", "Caption = \"LIVE%\"", {{"start", 0}, {kLive, 2}}},
        {"a field of the file", "Model = \"C3\"", {{"start", 2}}},
        {"masked reports count", "State > 2", {{kMasked3, 2}, {kState3, 0}, {kState1, 1}}},
        {"masked ones left out by the rule",
         "State > 2 & Masked = FALSE",
         {{kMasked3, 0}, {kState3, 2}, {kMasked3, 1}}},
        {"only masked ones", "State > 2 & Masked", {{kState3, 0}, {kMasked3, 2}, {kState3, 1}}},
        {"an unknown field is a text", "Nothing = \"x\"", {{"start", 0}, {kState3, 0}}},
        {"it stands for itself", "Nothing = \"Nothing\"", {{"start", 2}}},
        {"a field of an unknown device", "0009:09:09,State = 0", {{"start", 0}}},
        {"polls, buttons and check boxes", "State = 1", {{kPress, 0}, {kCheck, 0}, {kPoll, 2}, {kPoll, 0}}},
        {"a number is true unless it is 0", "State - 1", {{"start", 0}, {kState3, 2}, {kState1, 1}}},
        {"a result without a meaning", "State ^ \"x\"", {{"start", 0}, {kState3, 0}}},
        {"does not convert", "(State > 2", {{"start", 0}, {kState3, 0}, {kState1, 0}}},
        {"an operand is missing", "State >", {{"start", 0}, {kState3, 0}}},
        {"empty", "", {{"start", 0}, {kState3, 0}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        DeviceContext context;
        const auto trigger = WithRule(row.rule);
        std::size_t number = 0;
        for (const auto& [line, verdict] : row.steps) {
            ++number;
            EXPECT_EQ(Happens(context, *trigger, line), verdict) << "step " << number << ": " << line;
        }
    }
}

TEST(RuleTrigger, AnObjectWithoutAFullAddressHasNoFieldsOfItsOwn) {
    DeviceContext context;
    context.own = CAddressOv();
    const auto trigger = WithRule("State = \"State\"");
    EXPECT_EQ(Happens(context, *trigger, "start"), CCommandTrigger::kFired) << "the name stands for itself";
    ASSERT_EQ(trigger->Seen().size(), 1U);
    EXPECT_EQ(trigger->Seen()[0], (SeenValue{"", "State", {}}));
}

TEST(RuleTrigger, WithoutAHostNamesStandForThemselves) {
    const auto trigger = WithRule("0001:02:03,State = 1");
    CCommandEvent* start = new StartEvent;
    EXPECT_EQ(trigger->Test(start), CCommandTrigger::kNotConcerned);
    EXPECT_FALSE(trigger->Retest(start));
    start->Release();
    EXPECT_EQ(WithRule("(")->Test(nullptr), CCommandTrigger::kNotConcerned);
}

TEST(RuleTrigger, RetestEvaluatesAgain) {
    DeviceContext context;
    const auto trigger = WithRule("State > 2");
    EXPECT_FALSE(trigger->Retest(nullptr));
    Happens(context, *trigger, kState3);
    EXPECT_TRUE(trigger->Retest(nullptr));
    CStateEvent* event = new CStateChangedEvent(CAddressOv(1, 2, 3), false, 1, "", "", "", "", "", "");
    context.devices.Take(*event);
    event->Release();
    EXPECT_FALSE(trigger->Retest(nullptr)) << "before anybody tested";
    EXPECT_FALSE(WithRule("State >")->Retest(nullptr));
}

TEST(RuleTrigger, AFaultIsToldOnceARun) {
    DeviceContext context;
    const auto trigger = WithRule("(State > 2");
    Happens(context, *trigger, "start");
    Happens(context, *trigger, kState3);
    EXPECT_EQ(context.faults,
              (std::vector<std::string>{"the rule is never true: \"(\" without \")\" at column 1"}));
    EXPECT_STREQ(trigger->Why(), "the rule cannot be evaluated");
    EXPECT_TRUE(trigger->Seen().empty());
    trigger->Init();
    Happens(context, *trigger, "start");
    EXPECT_EQ(context.faults.size(), 2U);
}

TEST(RuleTrigger, TellsTheValuesItSaw) {
    DeviceContext context;
    const auto trigger = WithRule("State > 2 & (0001:02:09,State = 1 | State > 3) & Foo = \"x\"");
    EXPECT_TRUE(trigger->Seen().empty()) << "nothing was evaluated yet";
    Happens(context, *trigger, kState3);
    EXPECT_EQ(trigger->Seen(),
              (std::vector<SeenValue>{
                  {"0001:02:03", "State", "3"}, {"0001:02:09", "State", "1"}, {"0001:02:03", "Foo", {}}}));
    Happens(context, *trigger, kPress);
    EXPECT_TRUE(trigger->Seen().empty()) << "a button concerns no rule";
}

TEST(RuleTrigger, CopiesHaveSeenNothing) {
    DeviceContext context;
    const auto trigger = WithRule("State > 2");
    EXPECT_EQ(Happens(context, *trigger, kState3), CCommandTrigger::kFired);
    const std::unique_ptr<CCommandTrigger> copy(trigger->Replicate());
    EXPECT_EQ(Saved(*copy), Saved(*trigger));
    EXPECT_EQ(Happens(context, *copy, kState3), CCommandTrigger::kFired) << "for the first time";
    EXPECT_EQ(Happens(context, *trigger, kState3), CCommandTrigger::kNotConcerned);
    trigger->Init();
    EXPECT_EQ(Happens(context, *trigger, kState3), CCommandTrigger::kFired);
}

TEST(RuleTrigger, SavesAndLoadsAnyText) {
    for (const char* rule :
         {"0001:02:03,Value > 10 & Text = \"OK%\"", "a < b | !c", "(", "State >", "\"#'"}) {
        SCOPED_TRACE(rule);
        const auto trigger = WithRule(rule);
        EXPECT_EQ(trigger->Attributes().at(1).text(), rule);
        const std::string xml = Saved(*trigger);
        XMLReader reader;
        CStringA unused;
        ASSERT_TRUE(reader.LoadFromString(xml.c_str(), unused));
        ASSERT_TRUE(reader.EnterSection("RuleTrigger", true));
        RuleTrigger loaded;
        loaded.Load(reader);
        EXPECT_EQ(loaded.Attributes().at(1).text(), rule);
        EXPECT_EQ(Saved(loaded), xml);
    }
    EXPECT_EQ(WithRule("State > 2")->Summary(), "Rule=\"State > 2\"");
}

TEST(RuleTrigger, ReplaceDataFillsInPlaceholders) {
    XMLReader reader;
    CStringA unused;
    ASSERT_TRUE(
        reader.LoadFromString("<RuleTrigger Rule='%OBJFLD% &gt; %OBJVAL%' ResultUnit='%OBJFLD%'/>", unused));
    ASSERT_TRUE(reader.EnterSection("RuleTrigger", true));
    RuleTrigger trigger;
    trigger.Load(reader);
    XMLWriter writer;
    ASSERT_TRUE(writer.Initialize());
    trigger.ReplaceData(reader, writer, "%OBJFLD%", "Value", "%OBJVAL%", "42");
    CStringA xml;
    ASSERT_TRUE(writer.SaveToString(xml));
    EXPECT_EQ(xml, "<?xml version=\"1.0\"?><RuleTrigger Rule=\"Value &gt; 42\" ResultUnit=\"Value\"/>");
    EXPECT_EQ(trigger.Attributes().at(1).text(), "%OBJFLD% > %OBJVAL%") << "the template itself is unchanged";
}

TEST(RuleTrigger, WantsEveryReportOfADevice) {
    const RuleTrigger trigger;
    EXPECT_TRUE(trigger.HasConfig("StateTrigger"));
    EXPECT_TRUE(trigger.HasConfig("StateTrigger::AnyChange"));
    EXPECT_FALSE(trigger.HasConfig("Other"));
}

TEST(RuleTrigger, ConflictsSayWhatIsWrongWithARule) {
    struct Row {
        const char* rule;
        const char* conflict;  // empty: none
    };
    const Row rows[] = {
        {"State > 2", ""},
        {"", "\"Rule\" is missing or empty: it never fires"},
        {"(State > 2", "attribute \"Rule\": \"(\" without \")\" at column 1"},
        {"State > 2)", "attribute \"Rule\": \")\" without \"(\" at column 10"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        const auto conflicts = WithRule(row.rule)->Conflicts();
        EXPECT_EQ(conflicts.empty() ? "" : conflicts[0], row.conflict);
    }
    const auto conflicts = WithRule("State >")->Conflicts();
    ASSERT_EQ(conflicts.size(), 1U);
    EXPECT_NE(conflicts[0].find(" at column 7"), std::string::npos) << conflicts[0];
}

}  // namespace
}  // namespace brindle::host
