// Behaviour lists: contents, caches, persistence, the list of all lists.
#include "brindle/behaviour/behaviour_list.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "testing/behaviour_kit.h"
#include "testing/golden.h"

namespace {

using namespace brindle::testing;

class BehaviourListTest : public BehaviourTest {};

std::vector<CCommandBehaviourList*> AllLists() {
    std::vector<CCommandBehaviourList*> lists;
    for (POSITION position = CCommandBehaviourList::GetHeadPosition(); position;)
        lists.push_back(CCommandBehaviourList::GetNext(position));
    return lists;
}

std::vector<const CCommandTreeItem*> Children(const CCommandBehaviourList& list) {
    std::vector<const CCommandTreeItem*> children;
    for (POSITION position = list.GetFirstChildPosition(); position;)
        children.push_back(list.GetNextChild(position));
    return children;
}

CCommandBehaviour* StateBehaviour(std::set<std::string> configs) {
    auto* trigger = new ProbeTrigger;
    trigger->configs = std::move(configs);
    auto* behaviour = new CCommandBehaviour;
    behaviour->AddTrigger(trigger);
    return behaviour;
}

bool LoadInto(CCommandBehaviourList& list, const std::string& xml) {
    XMLReader reader = ReaderOf(xml);
    list.Load(reader);
    // The cursor is where it was: outside the root.
    return reader.EnterSection("*", false);
}

std::string SavedText(const CCommandBehaviourList& list) {
    return Written([&](XMLWriter& writer) { list.Save(writer); });
}

TEST_F(BehaviourListTest, StartsEmptyAndEnabled) {
    for (const auto host : {CCommandTrigger::eHostMapObject, CCommandTrigger::eHostButton,
                            CCommandTrigger::eHostMeter, CCommandTrigger::eHostSystem}) {
        SCOPED_TRACE(host);
        CCommandBehaviourList list(host);
        EXPECT_EQ(list.GetHostType(), host);
        EXPECT_TRUE(list.IsEnabled());
        EXPECT_TRUE(list.IsEmpty());
        EXPECT_FALSE(list.HasStateTriggers());
        EXPECT_FALSE(list.HasAnyDataChangedStateTrigger());
        EXPECT_EQ(list.GetRepeatCount(), 0);
        EXPECT_EQ(list.GetChildCount(), 0);
        EXPECT_EQ(list.GetFirstChildPosition(), nullptr);
        POSITION none = nullptr;
        EXPECT_EQ(list.GetNextChild(none), nullptr);
        EXPECT_FALSE(list.IsVisible());
        EXPECT_EQ(list.GetText(0), "");
        EXPECT_EQ(list.GetText(1), "");
        EXPECT_EQ(list.GetReflect(), "");
        EXPECT_EQ(list.GetImage(), 0);
        EXPECT_EQ(list.GetRealObject(), &list);
    }
}

TEST_F(BehaviourListTest, AllListsStandInOrderOfConstruction) {
    EXPECT_TRUE(AllLists().empty());
    POSITION none = nullptr;
    EXPECT_EQ(CCommandBehaviourList::GetNext(none), nullptr);
    auto a = std::make_unique<ProbeList>();
    auto b = std::make_unique<ProbeList>();
    auto c = std::make_unique<ProbeList>();
    EXPECT_EQ(AllLists(), (std::vector<CCommandBehaviourList*>{a.get(), b.get(), c.get()}));
    b.reset();
    EXPECT_EQ(AllLists(), (std::vector<CCommandBehaviourList*>{a.get(), c.get()}));
    a.reset();
    a = std::make_unique<ProbeList>();
    EXPECT_EQ(AllLists(), (std::vector<CCommandBehaviourList*>{c.get(), a.get()}));
    a.reset();
    EXPECT_EQ(AllLists(), (std::vector<CCommandBehaviourList*>{c.get()}));
    c.reset();
    EXPECT_TRUE(AllLists().empty());
}

TEST_F(BehaviourListTest, KeepsBehavioursInOrder) {
    ProbeList list;
    auto* a = new CCommandBehaviour;
    auto* b = new CCommandBehaviour;
    list.Add(a);
    list.Add(nullptr);
    list.Add(b);
    EXPECT_EQ(list.GetChildCount(), 3);
    EXPECT_FALSE(list.IsEmpty());
    EXPECT_EQ(Children(list), (std::vector<const CCommandTreeItem*>{a, nullptr, b}));
}

TEST_F(BehaviourListTest, RemoveGivesTheBehaviourBack) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    const int live = LiveProbes();
    CCommandBehaviour stranger;
    list.Remove(&stranger);
    list.Remove(nullptr);
    EXPECT_EQ(list.GetChildCount(), 1);
    list.Remove(rule.behaviour);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(LiveProbes(), live) << "not destroyed";
    list.Remove(rule.behaviour);
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(rule.trigger->tests, 0);
    delete rule.behaviour;
}

TEST_F(BehaviourListTest, ResetListGivesAllBehavioursBackAndCancelsRepeats) {
    ProbeList list;
    const std::unique_ptr<CCommandBehaviour> behaviour(StateBehaviour({"StateTrigger"}));
    list.Add(behaviour.get());
    list.Add(nullptr);
    const Rule rule = AddRule(list, 2);
    const std::unique_ptr<CCommandBehaviour> owner(rule.behaviour);
    rule.trigger->goesOn = true;
    rule.action->repeats = true;
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    EXPECT_TRUE(list.HasStateTriggers());
    const int live = LiveProbes();
    list.ResetList();
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetRepeatCount(), 0);
    EXPECT_EQ(LiveProbes(), live - 1) << "the repeat's event alone is gone";
    EXPECT_FALSE(list.HasStateTriggers());
}

TEST_F(BehaviourListTest, InitCancelsRepeatsThenResetsEveryTrigger) {
    ProbeList list;
    const Rule a = AddRule(list, 2);
    const Rule b = AddRule(list, 0);
    b.behaviour->SetEnabled(false);
    list.Add(nullptr);
    a.action->repeats = true;
    a.trigger->goesOn = true;
    list.Execute(new ProbeEvent, nullptr);
    ASSERT_EQ(list.GetRepeatCount(), 1);
    int pending = -1;
    a.trigger->onInit = [&] { pending = list.GetRepeatCount(); };
    list.Init();
    EXPECT_EQ(pending, 0);
    EXPECT_EQ(a.trigger->inits, 1);
    EXPECT_EQ(b.trigger->inits, 1);
    EXPECT_EQ(a.trigger->retests, 0) << "nobody is asked";
}

TEST_F(BehaviourListTest, DestroysItsBehaviours) {
    const int live = LiveProbes();
    {
        ProbeList list;
        AddRule(list, 2);
        list.Add(nullptr);
        AddRule(list, 2);
        EXPECT_EQ(LiveProbes(), live + 4);
    }
    EXPECT_EQ(LiveProbes(), live);
}

TEST_F(BehaviourListTest, CachesWhichStateEventsItNeeds) {
    struct Row {
        const char* label;
        std::vector<std::set<std::string>> behaviours;
        bool state, any;
    };
    const Row rows[] = {
        {"nothing", {}, false, false},
        {"another kind", {{"PollTrigger"}}, false, false},
        {"a state trigger", {{"PollTrigger"}, {"StateTrigger"}}, true, false},
        {"both", {{"StateTrigger", "StateTrigger::AnyChange"}}, true, true},
        {"in different behaviours", {{"StateTrigger"}, {"StateTrigger::AnyChange"}}, true, true},
        {"Kept: any change without a state trigger is neither", {{"StateTrigger::AnyChange"}}, false, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        list.Add(nullptr);
        for (const auto& configs : row.behaviours) list.Add(StateBehaviour(configs));
        EXPECT_EQ(list.HasStateTriggers(), row.state);
        EXPECT_EQ(list.HasAnyDataChangedStateTrigger(), row.any);
        EXPECT_EQ(list.HasConfig("StateTrigger"), row.state);
        EXPECT_EQ(list.HasConfig("PollTrigger"),
                  std::string(row.label) == "another kind" || std::string(row.label) == "a state trigger");
    }
}

TEST_F(BehaviourListTest, RecomputesTheCachesWhenContentsChange) {
    ProbeList list;
    auto* behaviour = StateBehaviour({"StateTrigger", "StateTrigger::AnyChange"});
    const std::unique_ptr<CCommandBehaviour> owner(behaviour);
    list.Add(behaviour);
    EXPECT_TRUE(list.HasStateTriggers());
    EXPECT_TRUE(list.HasAnyDataChangedStateTrigger());
    list.Remove(behaviour);
    EXPECT_FALSE(list.HasStateTriggers());
    EXPECT_FALSE(list.HasAnyDataChangedStateTrigger());

    list.Add(behaviour);
    list.ResetList();
    EXPECT_FALSE(list.HasStateTriggers());
    EXPECT_FALSE(list.HasAnyDataChangedStateTrigger());
}

TEST_F(BehaviourListTest, KeepsTheCachesUntilThen) {
    ProbeList list;
    auto* behaviour = new CCommandBehaviour;
    list.Add(behaviour);
    auto* trigger = new ProbeTrigger;
    trigger->configs = {"StateTrigger"};
    behaviour->AddTrigger(trigger);
    EXPECT_FALSE(list.HasStateTriggers()) << "the list is not told";
    CCommandBehaviour stranger;
    list.Remove(&stranger);
    EXPECT_FALSE(list.HasStateTriggers()) << "nothing was removed";
    list.Init();
    EXPECT_FALSE(list.HasStateTriggers());
    SavedText(list);
    EXPECT_TRUE(list.HasStateTriggers()) << "saving recomputes";
}

TEST_F(BehaviourListTest, SaveRecomputesTheCachesBeforeTheSectionIsClosed) {
    ProbeList list;
    std::vector<std::string> order;
    auto* trigger = new ProbeTrigger;
    trigger->onHasConfig = [&](const std::string& kind) {
        order.push_back(kind);
        return kind == "StateTrigger";
    };
    trigger->onSave = [&] { order.push_back("save"); };
    auto* behaviour = new CCommandBehaviour;
    behaviour->AddTrigger(trigger);
    list.Add(behaviour);
    order.clear();
    SavedText(list);
    EXPECT_EQ(order, (std::vector<std::string>{"save", "StateTrigger", "StateTrigger::AnyChange"}));
}

TEST_F(BehaviourListTest, TraversesItselfThenItsBehaviours) {
    ProbeList list;
    const Rule a = AddRule(list, 0);
    list.Add(nullptr);
    const Rule b = AddRule(list, 0);
    std::vector<CCommandTreeItem*> seen;
    const ProbeVisitor visitor([&](CCommandTreeItem* item) { seen.push_back(item); });
    list.Traverse(visitor);
    const std::vector<CCommandTreeItem*> expected{&list,       a.behaviour, a.trigger, a.action,
                                                  b.behaviour, b.trigger,   b.action};
    EXPECT_EQ(seen, expected);

    ProbeList second;
    seen.clear();
    CCommandBehaviourList::TraverseAll(visitor);
    auto all = expected;
    all.push_back(&second);
    EXPECT_EQ(seen, all);
}

// --- persistence

TEST_F(BehaviourListTest, SavesAnEmptyList) {
    ProbeList list;
    EXPECT_EQ(SavedText(list), "<?xml version=\"1.0\"?><BehaviourList/>");
    list.Add(nullptr);
    EXPECT_EQ(SavedText(list), "<?xml version=\"1.0\"?><BehaviourList/>") << "null behaviours are skipped";
}

// Two behaviours with everything that is stored.
void FillGolden(CCommandBehaviourList& list) {
    auto* first = new CCommandBehaviour;
    auto* trigger = new ProbeTrigger;
    trigger->note = "alarm & \"quotes\" <tags>";
    auto* timed = new ProbeTimeTrigger;
    timed->note = "every day";
    timed->SetEnabled(false);
    first->AddTrigger(trigger);
    first->AddTrigger(nullptr);
    first->AddTrigger(timed);
    auto* last = new ProbeAction;
    last->note = "caf\xE9";
    last->SetEnabled(false);
    auto* front = new ProbeAction;
    front->note = "";
    front->repeats = true;
    front->period = -5;
    first->AddAction(last);
    first->AddAction(front);
    first->SetEnabled(false);  // leaves no trace
    list.Add(first);
    list.Add(new CCommandBehaviour);
}

TEST_F(BehaviourListTest, SavesTheGoldenDocument) {
    ProbeList list;
    list.SetEnabled(false);  // leaves no trace either
    FillGolden(list);
    ExpectGolden("behaviour_list.xml", SavedText(list));
}

TEST_F(BehaviourListTest, TheGoldenDocumentComesBackByteForByte) {
    ProbeList list;
    EXPECT_TRUE(LoadInto(list, GoldenText("behaviour_list.xml")));
    ASSERT_EQ(list.GetChildCount(), 2);
    POSITION position = list.GetFirstChildPosition();
    const auto* first = static_cast<const CCommandBehaviour*>(list.GetNextChild(position));
    EXPECT_TRUE(first->IsEnabled());
    EXPECT_EQ(first->GetTriggerCount(), 2);
    POSITION child = first->GetFirstChildPosition();
    const auto* trigger = dynamic_cast<const ProbeTrigger*>(first->GetNextChild(child));
    const auto* timed = dynamic_cast<const ProbeTimeTrigger*>(first->GetNextChild(child));
    const auto* front = dynamic_cast<const ProbeAction*>(first->GetNextChild(child));
    const auto* last = dynamic_cast<const ProbeAction*>(first->GetNextChild(child));
    ASSERT_TRUE(trigger && timed && front && last);
    EXPECT_EQ(trigger->note, "alarm & \"quotes\" <tags>");
    EXPECT_TRUE(trigger->IsEnabled());
    EXPECT_FALSE(timed->IsEnabled());
    EXPECT_EQ(front->period, -5);
    EXPECT_TRUE(front->repeats);
    EXPECT_EQ(last->note, "caf\xE9");
    EXPECT_FALSE(last->IsEnabled());
    EXPECT_EQ(SavedText(list), GoldenText("behaviour_list.xml"));
}

TEST_F(BehaviourListTest, EveryPrefixOfTheDocumentIsHarmless) {
    const std::string text = GoldenText("behaviour_list.xml");
    ASSERT_GT(text.size(), 100u);
    const int live = LiveProbes();
    for (std::size_t size = 0; size <= text.size(); ++size) {
        SCOPED_TRACE(size);
        ProbeList list;
        list.Add(new CCommandBehaviour);
        XMLReader reader;
        CStringA unused;
        const bool wellFormed = reader.LoadFromString(text.substr(0, size).c_str(), unused);
        EXPECT_EQ(wellFormed, size == text.size());
        list.Load(reader);
        EXPECT_EQ(list.GetChildCount(), wellFormed ? 2 : 0);
        EXPECT_EQ(LiveProbes(), live + (wellFormed ? 4 : 0));
    }
}

TEST_F(BehaviourListTest, Loads) {
    struct Row {
        const char* label;
        const char* xml;
        int behaviours;
    };
    const Row rows[] = {
        {"no BehaviourList", "<Other><BehaviourList><Behaviour/></BehaviourList></Other>", 0},
        {"the name is case-sensitive", "<behaviourlist><Behaviour/></behaviourlist>", 0},
        {"empty", "<BehaviourList/>", 0},
        {"one", "<BehaviourList><Behaviour/></BehaviourList>", 1},
        {"others between", "<BehaviourList><X/><Behaviour/>text<Y/><!--c--><Behaviour/><Z/></BehaviourList>",
         2},
        {"nested ones do not count",
         "<BehaviourList><Behaviour><Behaviour/></Behaviour><X><Behaviour/></X></BehaviourList>", 1},
        {"case of the children", "<BehaviourList><behaviour/><Behaviour/></BehaviourList>", 1},
        {"three", "<BehaviourList><Behaviour/><Behaviour/><Behaviour/></BehaviourList>", 3},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        AddRule(list, 2);
        EXPECT_TRUE(LoadInto(list, row.xml));
        EXPECT_EQ(list.GetChildCount(), row.behaviours) << "what was there is gone in every case";
    }
}

TEST_F(BehaviourListTest, LoadWithoutBehaviourListEmptiesAndClearsTheCaches) {
    ProbeList list;
    list.Add(StateBehaviour({"StateTrigger", "StateTrigger::AnyChange"}));
    ASSERT_TRUE(list.HasAnyDataChangedStateTrigger());
    EXPECT_TRUE(LoadInto(list, "<Other/>"));
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_FALSE(list.HasStateTriggers());
    EXPECT_FALSE(list.HasAnyDataChangedStateTrigger());

    list.Add(StateBehaviour({"StateTrigger"}));
    XMLReader nothingLoaded;
    list.Load(nothingLoaded);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_FALSE(list.HasStateTriggers());
}

TEST_F(BehaviourListTest, LoadsFromInsideAnotherDocument) {
    XMLReader reader = ReaderOf(
        "<Site><BehaviourList><Behaviour/></BehaviourList><X/><BehaviourList><Behaviour/><Behaviour/>"
        "</BehaviourList></Site>");
    ASSERT_TRUE(reader.EnterSection("Site", false));
    ProbeList first;
    first.Load(reader);
    EXPECT_EQ(first.GetChildCount(), 1);
    ProbeList second;
    second.Load(reader);
    EXPECT_EQ(second.GetChildCount(), 2) << "each load takes the next one";
}

TEST_F(BehaviourListTest, LoadRecomputesTheCaches) {
    static const char* const kinds[] = {"StateTrigger", "StateTrigger::AnyChange"};
    CCommandTriggerList::Register("ProbeState", [](unsigned long) -> CCommandTrigger* {
        auto* trigger = new ProbeTrigger;
        trigger->configs = {kinds[0], kinds[1]};
        return trigger;
    });
    ProbeList list;
    LoadInto(
        list,
        "<BehaviourList><Behaviour><TriggerList><ProbeState/></TriggerList></Behaviour></BehaviourList>");
    EXPECT_TRUE(list.HasStateTriggers());
    EXPECT_TRUE(list.HasAnyDataChangedStateTrigger());
}

TEST_F(BehaviourListTest, LoadDestroysWhatWasThereBeforeItReads) {
    ProbeList list;
    const int before = LiveProbes();
    AddRule(list, 2);
    static int liveWhenMade = 0;
    liveWhenMade = -1;
    CCommandTriggerList::Register("ProbeCounts", [](unsigned long) -> CCommandTrigger* {
        liveWhenMade = LiveProbes();
        return nullptr;
    });
    LoadInto(
        list,
        "<BehaviourList><Behaviour><TriggerList><ProbeCounts/></TriggerList></Behaviour></BehaviourList>");
    EXPECT_EQ(liveWhenMade, before);
}

TEST_F(BehaviourListTest, LoadLeavesFlagHostTypeAndRepeatsAlone) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    list.Execute(new ProbeEvent, nullptr);
    list.SetEnabled(false);
    LoadInto(list, "<BehaviourList/>");
    EXPECT_FALSE(list.IsEnabled());
    EXPECT_EQ(list.GetHostType(), CCommandTrigger::eHostSystem);
    EXPECT_EQ(list.GetRepeatCount(), 1);
}

TEST_F(BehaviourListTest, AFailingLoadKeepsWhatWasReadAndKnowsIt) {
    CCommandTriggerList::Register("ProbeLoadFails", [](unsigned long) -> CCommandTrigger* {
        auto* trigger = new ProbeTrigger;
        trigger->onLoad = [] { throw std::runtime_error("unreadable"); };
        return trigger;
    });
    CCommandTriggerList::Register("ProbeIsState", [](unsigned long) -> CCommandTrigger* {
        auto* trigger = new ProbeTrigger;
        trigger->configs = {"StateTrigger"};
        return trigger;
    });
    const int live = LiveProbes();
    {
        ProbeList list;
        list.Add(StateBehaviour({"StateTrigger", "StateTrigger::AnyChange"}));
        XMLReader reader = ReaderOf(
            "<BehaviourList><Behaviour><TriggerList><ProbeIsState/></TriggerList></Behaviour><Behaviour>"
            "<TriggerList><ProbeTrigger/><ProbeLoadFails/></TriggerList></Behaviour><Behaviour/></"
            "BehaviourList>");
        EXPECT_THROW(list.Load(reader), std::runtime_error);
        EXPECT_EQ(list.GetChildCount(), 1);
        EXPECT_TRUE(list.HasStateTriggers());
        EXPECT_FALSE(list.HasAnyDataChangedStateTrigger());
        EXPECT_EQ(LiveProbes(), live + 1) << "what was half read is gone";
        EXPECT_TRUE(reader.EnterSection("BehaviourList", false)) << "a section was left open";
    }
}

TEST_F(BehaviourListTest, AFailingSaveClosesItsSections) {
    ProbeList list;
    const Rule rule = AddRule(list, 0);
    rule.action->onSave = [] { throw std::runtime_error("no"); };
    const std::string xml = Written([&](XMLWriter& writer) {
        writer.EnterSection("root");
        EXPECT_THROW(list.Save(writer), std::runtime_error);
        writer.WriteAttribute("here", "1");
        writer.CloseSection();
    });
    EXPECT_NE(xml.find("<root here=\"1\"><BehaviourList>"), std::string::npos) << xml;
}

}  // namespace
