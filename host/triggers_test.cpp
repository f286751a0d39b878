// Trigger types: verdicts over sequences of events, and what all types do alike: attributes, saving and loading,
// copies, placeholders.
#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/trigger_list.h>
#include <brindle/xml/xml_reader.h>
#include <brindle/xml/xml_writer.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

#include "host/condition_tracker.h"
#include "host/event_line.h"
#include "host/host_trigger.h"
#include "host/register_types.h"
#include "host/start_event.h"

namespace brindle::host {
namespace {

// A trigger read from its element, as a behaviour list reads it.
std::unique_ptr<CCommandTrigger> Load(const std::string& element) {
    RegisterHostTypes();
    XMLReader reader;
    CStringA unused;
    if (!reader.LoadFromString(("<TriggerList>" + element + "</TriggerList>").c_str(), unused))
        return nullptr;
    reader.EnterSection("TriggerList", true);
    const CStringA name = reader.GetChildSections().at(0);
    std::unique_ptr<CCommandTrigger> trigger(CCommandTriggerList::CreateObject(name, 0));
    reader.EnterSection(name, false);
    if (trigger) trigger->Load(reader);
    return trigger;
}

int Verdict(CCommandTrigger& trigger, const std::string& line) {
    EventLine event;
    EXPECT_EQ(ParseEventLine(line, event), "") << line;
    const CStateEvent* made = MakeEvent(event, CAddressOv());
    const int verdict = trigger.Test(made);
    made->Release();
    return verdict;
}

struct Row {
    const char* label;
    const char* element;
    std::vector<std::pair<const char*, int>> steps;  // event line, verdict
};

const char* const kState1 = R"({"kind":"state","address":"1:2:3","state":1})";
const char* const kState3 = R"({"kind":"state","address":"1:2:3","state":3})";
const char* const kState4 = R"({"kind":"state","address":"1:2:3","state":4})";
const char* const kOther3 = R"({"kind":"state","address":"1:2:9","state":3})";
const char* const kMasked3 = R"({"kind":"state","address":"1:2:3","state":3,"masked":true})";
const char* const kTexts =
    R"({"kind":"state","address":"1:2:3","state":3,"header":"Out","cause":"Mains","text":"Power lost","user":"u"})";
const char* const kPoll = R"({"kind":"poll"})";
const char* const kPress = R"({"kind":"button","address":"1:2:3"})";
const char* const kPressOn = R"({"kind":"button","address":"1:2:3","toggle":true})";
const char* const kChecked = R"({"kind":"checkbox","address":"1:2:3","checked":true})";
const char* const kUnchecked = R"({"kind":"checkbox","address":"1:2:3","checked":false})";

std::string Meter(const char* value) {
    return std::string(R"({"kind":"meter","address":"1:2:3","value":)") + value + "}";
}

void Play(const Row& row) {
    SCOPED_TRACE(row.label);
    const auto trigger = Load(row.element);
    ASSERT_TRUE(trigger);
    std::size_t number = 0;
    for (const auto& [line, verdict] : row.steps) {
        ++number;
        EXPECT_EQ(Verdict(*trigger, line), verdict) << "step " << number << ": " << line;
    }
}

TEST(Triggers, StateVerdicts) {
    const Row rows[] = {
        {"another kind", "<StateTrigger/>", {{kPoll, 0}, {kPress, 0}}},
        {"any state fires once", "<StateTrigger/>", {{kState1, 2}, {kState1, 0}, {kState3, 0}}},
        {"begins, lasts, ends, begins",
         "<StateTrigger States='3'/>",
         {{kState1, 0}, {kState3, 2}, {kState3, 0}, {kState1, 1}, {kState1, 0}, {kState3, 2}}},
        {"a range", "<StateTrigger States='3-'/>", {{kState3, 2}, {kState4, 0}, {kState1, 1}}},
        {"each device by itself",
         "<StateTrigger Address='1:2:?' States='3'/>",
         {{kState3, 2}, {kOther3, 2}, {kState1, 1}, {kOther3, 0}}},
        {"another address", "<StateTrigger Address='1:2:3' States='3'/>", {{kOther3, 0}, {kState3, 2}}},
        {"any change fires every time",
         "<StateTrigger States='3-' AnyChange='TRUE'/>",
         {{kState3, 2}, {kState3, 2}, {kState4, 2}, {kState1, 1}}},
        {"a mask ends it", "<StateTrigger States='3'/>", {{kMasked3, 0}, {kState3, 2}, {kMasked3, 1}}},
        {"only masked",
         "<StateTrigger States='3' Masked='YES'/>",
         {{kState3, 0}, {kMasked3, 2}, {kState3, 1}}},
        {"masked or not", "<StateTrigger States='3' Masked='ANY'/>", {{kState3, 2}, {kMasked3, 0}}},
        {"header", "<StateTrigger Header='Out'/>", {{kState3, 0}, {kTexts, 2}, {kState3, 1}}},
        {"cause", "<StateTrigger Cause='M*'/>", {{kState3, 0}, {kTexts, 2}}},
        {"text", "<StateTrigger Text='*lost'/>", {{kState3, 0}, {kTexts, 2}}},
        {"user", "<StateTrigger User='?'/>", {{kState3, 0}, {kTexts, 2}}},
        {"own address without a host", "<StateTrigger Own='TRUE'/>", {{kState3, 0}}},
    };
    for (const Row& row : rows) Play(row);
}

TEST(Triggers, ButtonCheckBoxCaptionAndPollVerdicts) {
    const char* const keyed = R"({"kind":"button","address":"1:2:3","user":"u","key":"k","keyValue":"v"})";
    const char* const captionA = R"({"kind":"caption","address":"1:2:3","text":"ON AIR"})";
    const char* const captionB = R"({"kind":"caption","address":"1:2:3","text":"off"})";
    const Row rows[] = {
        {"every press", "<ButtonTrigger/>", {{kPress, 2}, {kPress, 2}, {kPressOn, 2}, {kState1, 0}}},
        {"on", "<ButtonTrigger Toggle='ON'/>", {{kPress, 0}, {kPressOn, 2}, {kPressOn, 0}, {kPress, 1}}},
        {"off", "<ButtonTrigger Toggle='OFF'/>", {{kPress, 2}, {kPressOn, 1}}},
        {"texts", "<ButtonTrigger User='u' Key='k' KeyValue='v'/>", {{kPress, 0}, {keyed, 2}}},
        {"other key", "<ButtonTrigger Key='x'/>", {{keyed, 0}}},
        {"checked", "<CheckBoxTrigger/>", {{kUnchecked, 0}, {kChecked, 2}, {kChecked, 0}, {kUnchecked, 1}}},
        {"unchecked", "<CheckBoxTrigger Checked='FALSE'/>", {{kChecked, 0}, {kUnchecked, 2}, {kChecked, 1}}},
        {"check box of another user", "<CheckBoxTrigger User='x'/>", {{kChecked, 0}, {kPress, 0}}},
        {"every caption", "<CaptionTrigger/>", {{captionA, 2}, {captionB, 2}, {kState1, 0}}},
        {"a caption",
         "<CaptionTrigger Caption='ON*'/>",
         {{captionB, 0}, {captionA, 2}, {captionA, 0}, {captionB, 1}}},
        {"every poll", "<PollTrigger/>", {{kPoll, 2}, {kPoll, 2}, {kState1, 0}}},
        {"every third poll", "<PollTrigger Every='3'/>", {{kPoll, 0}, {kPoll, 0}, {kPoll, 2}, {kPoll, 0}}},
    };
    for (const Row& row : rows) Play(row);
}

TEST(Triggers, MeterVerdicts) {
    const std::string low = Meter("9"), at = Meter("10"), high = Meter("10.5"), back = Meter("8.5"),
                      inside = Meter("9.5");
    const char* const zone1 = R"({"kind":"zone","address":"1:2:3","zone":1})";
    const char* const zone3 = R"({"kind":"zone","address":"1:2:3","zone":3})";
    const char* const zone4 = R"({"kind":"zone","address":"1:2:3","zone":4})";
    const Row rows[] = {
        {"above",
         "<MeterValueTrigger Above='10'/>",
         {{low.c_str(), 0}, {at.c_str(), 0}, {high.c_str(), 2}, {at.c_str(), 1}}},
        {"above with a way back",
         "<MeterValueTrigger Above='10' Hysteresis='1'/>",
         {{inside.c_str(), 0}, {high.c_str(), 2}, {inside.c_str(), 0}, {high.c_str(), 0}, {back.c_str(), 1}}},
        {"below with a way back",
         "<MeterValueTrigger Below='9' Hysteresis='1'/>",
         {{low.c_str(), 0}, {back.c_str(), 2}, {inside.c_str(), 0}, {high.c_str(), 1}}},
        {"outside of both",
         "<MeterValueTrigger Above='10' Below='9'/>",
         {{back.c_str(), 2}, {inside.c_str(), 1}, {high.c_str(), 2}}},
        {"every value", "<MeterValueTrigger/>", {{low.c_str(), 2}, {low.c_str(), 2}, {kState1, 0}}},
        {"zones", "<MeterZoneTrigger Zones='3-'/>", {{zone1, 0}, {zone3, 2}, {zone4, 0}, {zone1, 1}}},
        {"any change", "<MeterZoneTrigger Zones='3-' AnyChange='1'/>", {{zone3, 2}, {zone4, 2}, {zone1, 1}}},
        {"every zone", "<MeterZoneTrigger/>", {{zone1, 2}, {zone1, 2}, {low.c_str(), 0}}},
    };
    for (const Row& row : rows) Play(row);
}

TEST(Triggers, RetestAsksForTheDeviceOfTheEvent) {
    const auto trigger = Load("<StateTrigger Address='1:2:?' States='3'/>");
    EventLine line;
    ASSERT_EQ(ParseEventLine(kState3, line), "");
    const CStateEvent* first = MakeEvent(line, CAddressOv());
    ASSERT_EQ(ParseEventLine(kOther3, line), "");
    const CStateEvent* second = MakeEvent(line, CAddressOv());
    EXPECT_FALSE(trigger->Retest(first));
    trigger->Test(first);
    trigger->Test(second);
    EXPECT_EQ(Verdict(*trigger, kState1), CCommandTrigger::kEnded);
    EXPECT_FALSE(trigger->Retest(first)) << "its device is well again";
    EXPECT_TRUE(trigger->Retest(second)) << "the other is not";
    const std::unique_ptr<CCommandTrigger> copy(trigger->Replicate());
    EXPECT_FALSE(copy->Retest(second)) << "a copy has seen nothing";
    trigger->Init();
    EXPECT_FALSE(trigger->Retest(second));
    CCommandEvent* start = new StartEvent;
    EXPECT_FALSE(trigger->Retest(start));
    EXPECT_EQ(trigger->Test(start), CCommandTrigger::kNotConcerned) << "an event that concerns no device";
    start->Release();
    first->Release();
    second->Release();
}

TEST(Triggers, VerdictsAreExplained) {
    const auto trigger = Load("<StateTrigger Address='1:2:3' States='3'/>");
    const auto* explained = dynamic_cast<const ExplainedTrigger*>(trigger.get());
    ASSERT_TRUE(explained);
    const std::pair<const char*, const char*> steps[] = {
        {kPoll, "another kind of event"},     {kOther3, "another address"},
        {kState1, "condition does not hold"}, {kState3, "condition has begun"},
        {kState3, "condition still holds"},   {kState1, "condition has ended"}};
    for (const auto& [line, why] : steps) {
        Verdict(*trigger, line);
        EXPECT_STREQ(explained->Why(), why) << line;
    }
}

TEST(Triggers, ConfigurationKinds) {
    EXPECT_TRUE(Load("<StateTrigger/>")->HasConfig("StateTrigger"));
    EXPECT_FALSE(Load("<StateTrigger/>")->HasConfig("StateTrigger::AnyChange"));
    EXPECT_TRUE(Load("<StateTrigger AnyChange='TRUE'/>")->HasConfig("StateTrigger::AnyChange"));
    EXPECT_TRUE(Load("<StateTrigger AnyChange='TRUE'/>")->HasConfig("StateTrigger"));
    EXPECT_FALSE(Load("<PollTrigger/>")->HasConfig("StateTrigger"));
}

TEST(ConditionTracker, HasALimitOfDevices) {
    ConditionTracker tracker;
    for (unsigned long i = 0; i < ConditionTracker::kMostDevices; ++i)
        tracker.Update(CAddressOv(i), true, false);
    const CAddressOv late(0xFFFFFF00UL);
    EXPECT_EQ(tracker.Update(late, true, false).verdict, CCommandTrigger::kFired);
    EXPECT_EQ(tracker.Update(late, true, false).verdict, CCommandTrigger::kFired) << "not remembered";
    EXPECT_EQ(tracker.Update(late, false, false).verdict, CCommandTrigger::kNotConcerned);
    EXPECT_EQ(tracker.Update(CAddressOv(5UL), false, false).verdict, CCommandTrigger::kEnded);
    EXPECT_EQ(tracker.Update(CAddressOv(), true, false).verdict, CCommandTrigger::kFired)
        << "no address is not address 0";
}

// --- what all registered types do alike ---

std::string Saved(const CCommandTreeItem& item) {
    XMLWriter writer;
    CStringA xml;
    EXPECT_TRUE(writer.Initialize());
    item.Save(writer);
    EXPECT_TRUE(writer.SaveToString(xml));
    return xml.str();
}

// A text each kind of attribute can read and that is not its initial one.
std::string OtherText(const Attribute& attribute) {
    for (const char* text : {"TRUE", "FALSE", "YES", "ON", "SITE", "GAUGE32", "3", "1.5", "07:08:09", "Mon",
                             "0001:?:03", "text"}) {
        const std::string before = attribute.text();
        if (attribute.parse(text).empty() && attribute.text() != before) return attribute.text();
    }
    return {};
}

std::vector<std::unique_ptr<CCommandTreeItem>> OneOfEach() {
    RegisterHostTypes();
    std::vector<std::unique_ptr<CCommandTreeItem>> items;
    CStringList names;
    CCommandTriggerList::GetTypeList(names);
    for (POSITION position = names.GetHeadPosition(); position;)
        items.emplace_back(CCommandTriggerList::CreateObject(names.GetNext(position), 0));
    CCommandActionList::GetTypeList(names);
    for (POSITION position = names.GetHeadPosition(); position;)
        items.emplace_back(CCommandActionList::CreateObject(names.GetNext(position), 0));
    return items;
}

std::unique_ptr<CCommandTreeItem> NewOf(const char* type) {
    if (CCommandTrigger* trigger = CCommandTriggerList::CreateObject(type, 0))
        return std::unique_ptr<CCommandTreeItem>(trigger);
    return std::unique_ptr<CCommandTreeItem>(CCommandActionList::CreateObject(type, 0));
}

TEST(HostTypes, AreRegisteredOnce) {
    RegisterHostTypes();
    RegisterHostTypes();
    CStringList names;
    CCommandTriggerList::GetTypeList(names);
    EXPECT_EQ(names.GetCount(), 9);
    CCommandActionList::GetTypeList(names);
    EXPECT_EQ(names.GetCount(), 8);
}

TEST(HostTypes, EveryAttributeIsSavedAndLoaded) {
    for (const auto& item : OneOfEach()) {
        auto* configured = dynamic_cast<ConfiguredItem*>(item.get());
        ASSERT_TRUE(configured);
        SCOPED_TRACE(configured->TypeName());
        for (const Attribute& attribute : configured->Attributes())
            EXPECT_NE(OtherText(attribute), "") << attribute.name;
        item->SetEnabled(false);
        const std::string xml = Saved(*item);
        XMLReader reader;
        CStringA unused;
        ASSERT_TRUE(reader.LoadFromString(xml.c_str(), unused));
        ASSERT_TRUE(reader.EnterSection(configured->TypeName(), true)) << "named by its registered type name";
        const auto loaded = NewOf(configured->TypeName());
        loaded->Load(reader);
        EXPECT_FALSE(loaded->IsEnabled());
        EXPECT_EQ(Saved(*loaded), xml);
        const AttributeTable table = dynamic_cast<ConfiguredItem&>(*loaded).Attributes();
        EXPECT_TRUE(ReadAttributes(reader, table).empty());
    }
}

TEST(HostTypes, UnreadableAttributesKeepTheirValueAndAreTold) {
    for (const auto& item : OneOfEach()) {
        auto* configured = dynamic_cast<ConfiguredItem*>(item.get());
        for (const Attribute& attribute : configured->Attributes()) {
            SCOPED_TRACE(std::string(configured->TypeName()) + " " + attribute.name);
            if (attribute.parse("\x01").empty()) continue;  // takes any text
            const std::string before = attribute.text();
            XMLReader reader;
            CStringA unused;
            ASSERT_TRUE(reader.LoadFromString(("<x " + attribute.name + "='@@' More='1'/>").c_str(), unused));
            ASSERT_TRUE(reader.EnterSection("x", true));
            const auto problems = ReadAttributes(reader, configured->Attributes());
            EXPECT_EQ(attribute.text(), before);
            const auto says = [&](const std::string& text) {
                for (const std::string& problem : problems)
                    if (problem.find(text) != std::string::npos) return true;
                return false;
            };
            EXPECT_TRUE(says("\"" + attribute.name + "\": \"@@\" is not "));
            EXPECT_TRUE(says("\"More\" is unknown"));
        }
    }
}

TEST(HostTypes, CopiesAreEqualAndSeparate) {
    for (const auto& item : OneOfEach()) {
        auto* configured = dynamic_cast<ConfiguredItem*>(item.get());
        SCOPED_TRACE(configured->TypeName());
        for (const Attribute& attribute : configured->Attributes()) OtherText(attribute);
        std::unique_ptr<CCommandTreeItem> copy;
        if (auto* trigger = dynamic_cast<CCommandTrigger*>(item.get())) copy.reset(trigger->Replicate());
        if (auto* action = dynamic_cast<CCommandAction*>(item.get())) copy.reset(action->Replicate());
        ASSERT_TRUE(copy);
        EXPECT_EQ(Saved(*copy), Saved(*item));
        copy->Rename("another");
        EXPECT_NE(Saved(*copy), Saved(*item));
        EXPECT_EQ(copy->GetText(0), "another");
        EXPECT_TRUE(copy->CanRename());
        EXPECT_NE(copy->GetText(1), "");
    }
}

TEST(HostTypes, TheDocumentNamesEveryTypeAndAttribute) {
    std::ifstream file(BRINDLE_TEST_FOLDER "/../docs/sites.md");
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_FALSE(text.empty());
    for (const auto& item : OneOfEach()) {
        auto* configured = dynamic_cast<ConfiguredItem*>(item.get());
        const std::string type = "| `" + std::string(configured->TypeName()) + "` |";
        EXPECT_NE(text.find(type), std::string::npos) << type;
        for (const Attribute& attribute : configured->Attributes())
            EXPECT_NE(text.find("`" + attribute.name + "`"), std::string::npos)
                << type << " " << attribute.name;
    }
}

TEST(HostTypes, ReplaceDataWritesACopyWithItsPlaceholdersFilled) {
    RegisterHostTypes();
    XMLReader reader;
    CStringA unused;
    ASSERT_TRUE(
        reader.LoadFromString("<SendStateAction Address='0001:02:03' State='%OBJVAL%' Text='%OBJFLD%!'"
                              " Template='TRUE' ResultUnit='U %OBJFLD%' ResultHeader='%OBJVAL%'/>",
                              unused));
    ASSERT_TRUE(reader.EnterSection("SendStateAction", true));
    const auto action = NewOf("SendStateAction");
    action->Load(reader);
    EXPECT_TRUE(action->IsTemplate());
    XMLWriter writer;
    ASSERT_TRUE(writer.Initialize());
    action->ReplaceData(reader, writer, "%OBJFLD%", "Fan", "%OBJVAL%", "42");
    CStringA xml;
    ASSERT_TRUE(writer.SaveToString(xml));
    EXPECT_EQ(xml,
              "<?xml version=\"1.0\"?><SendStateAction Address=\"0001:02:03\" State=\"42\" Text=\"Fan!\""
              " Template=\"FALSE\" ResultUnit=\"U Fan\" ResultHeader=\"42\"/>");
    CStringA unit, header;
    action->GetResultInfo(unit, header);
    EXPECT_EQ(unit, "U Fan");
    EXPECT_EQ(header, "42");
    EXPECT_TRUE(action->IsTemplate()) << "the template itself is unchanged";
}

}  // namespace
}  // namespace brindle::host
