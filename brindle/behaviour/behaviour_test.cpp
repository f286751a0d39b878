// One behaviour: its children, persistence, and what it makes of an event.
#include "brindle/behaviour/behaviour.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/variables/variable_manager.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

class BehaviourOnlyTest : public BehaviourTest {};

std::vector<const CCommandTreeItem*> Children(const CCommandBehaviour& behaviour) {
    std::vector<const CCommandTreeItem*> children;
    for (POSITION position = behaviour.GetFirstChildPosition(); position;)
        children.push_back(behaviour.GetNextChild(position));
    return children;
}

TEST_F(BehaviourOnlyTest, Defaults) {
    CCommandBehaviour behaviour;
    EXPECT_TRUE(behaviour.IsEnabled());
    EXPECT_TRUE(behaviour.IsVisible());
    EXPECT_EQ(behaviour.GetImage(), 1);
    EXPECT_EQ(behaviour.GetText(0), "Multi");
    EXPECT_EQ(behaviour.GetText(1), "Multi");
    EXPECT_EQ(behaviour.GetReflect(), "");
    EXPECT_EQ(behaviour.GetRealObject(), &behaviour);
    EXPECT_EQ(behaviour.GetTriggerCount(), 0);
    EXPECT_EQ(behaviour.GetChildCount(), 0);
    EXPECT_EQ(behaviour.GetFirstChildPosition(), nullptr);
    EXPECT_FALSE(behaviour.CanRename());
}

TEST_F(BehaviourOnlyTest, ShowsItsChildren) {
    struct Row {
        const char* label;
        int triggers, actions, shown;
    };
    const Row rows[] = {
        {"nothing", 0, 0, 0},
        {"actions alone", 0, 2, 2},
        {"a single trigger stands for it", 1, 2, 2},
        {"one trigger, no action", 1, 0, 0},
        {"two and two", 2, 2, 4},
        {"two and none", 2, 0, 2},
        {"three and one", 3, 1, 4},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CCommandBehaviour behaviour;
        std::vector<const CCommandTreeItem*> triggers;
        std::vector<const CCommandTreeItem*> expected;
        CCommandTreeItem* only = nullptr;
        for (int i = 0; i < row.triggers; ++i) {
            auto* trigger = new ProbeTrigger;
            behaviour.AddTrigger(trigger);
            expected.push_back(trigger);
            only = trigger;
        }
        if (row.triggers < 2) expected.clear();
        const std::size_t firstAction = expected.size();
        for (int i = 0; i < row.actions; ++i) {
            auto* action = new ProbeAction;
            behaviour.AddAction(action);
            expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(firstAction), action);  // in front
        }
        EXPECT_EQ(behaviour.GetTriggerCount(), row.triggers);
        EXPECT_EQ(behaviour.GetChildCount(), row.shown);
        EXPECT_EQ(Children(behaviour), expected);
        EXPECT_EQ(behaviour.GetRealObject(), row.triggers == 1 ? only : &behaviour);
    }
}

TEST_F(BehaviourOnlyTest, PositionsCountFromOne) {
    CCommandBehaviour behaviour;
    auto* b = new ProbeAction;
    auto* a = new ProbeAction;
    behaviour.AddAction(b);
    behaviour.AddAction(a);
    POSITION position = behaviour.GetFirstChildPosition();
    EXPECT_EQ(position, reinterpret_cast<POSITION>(1));
    EXPECT_EQ(behaviour.GetNextChild(position), a);
    EXPECT_EQ(position, reinterpret_cast<POSITION>(2));
    EXPECT_EQ(behaviour.GetNextChild(position), b);
    EXPECT_EQ(position, nullptr);

    for (const std::intptr_t wrong : {std::intptr_t{0}, std::intptr_t{3}, std::intptr_t{-1}}) {
        SCOPED_TRACE(wrong);
        position = reinterpret_cast<POSITION>(wrong);
        EXPECT_EQ(behaviour.GetNextChild(position), nullptr);
        EXPECT_EQ(position, nullptr);
    }
}

TEST_F(BehaviourOnlyTest, CountsNullItemsAndShowsThemAsNull) {
    CCommandBehaviour behaviour;
    behaviour.AddTrigger(nullptr);
    EXPECT_EQ(behaviour.GetTriggerCount(), 1);
    EXPECT_EQ(behaviour.GetRealObject(), &behaviour);
    auto* trigger = new ProbeTrigger;
    behaviour.AddTrigger(trigger);
    behaviour.AddAction(nullptr);
    EXPECT_EQ(Children(behaviour), (std::vector<const CCommandTreeItem*>{nullptr, trigger, nullptr}));
}

TEST_F(BehaviourOnlyTest, ForwardsToItsLists) {
    CCommandBehaviour behaviour;
    auto* t1 = new ProbeTrigger;
    auto* t2 = new ProbeTrigger;
    auto* a1 = new ProbeAction;
    auto* a2 = new ProbeAction;
    behaviour.AddTrigger(t1);
    behaviour.AddTrigger(t2);
    behaviour.AddAction(a1);
    behaviour.AddAction(a2);
    EXPECT_EQ(Children(behaviour), (std::vector<const CCommandTreeItem*>{t1, t2, a2, a1}));
    behaviour.MoveAction(a2, nullptr);
    EXPECT_EQ(Children(behaviour), (std::vector<const CCommandTreeItem*>{t1, t2, a1, a2}));
    const int live = LiveProbes();
    behaviour.RemoveAction(a1);
    behaviour.RemoveTrigger(t1);
    EXPECT_EQ(LiveProbes(), live - 2);
    EXPECT_EQ(Children(behaviour), (std::vector<const CCommandTreeItem*>{a2}));
    behaviour.Init();
    EXPECT_EQ(t2->inits, 1);
}

TEST_F(BehaviourOnlyTest, HasTheConfigurationsOfItsTriggers) {
    CCommandBehaviour behaviour;
    EXPECT_FALSE(behaviour.HasConfig("StateTrigger"));
    behaviour.AddTrigger(new ProbeTrigger);
    behaviour.AddTrigger(nullptr);
    auto* state = new ProbeTrigger;
    state->configs = {"StateTrigger"};
    state->SetEnabled(false);
    behaviour.AddTrigger(state);
    EXPECT_TRUE(behaviour.HasConfig("StateTrigger"));
    EXPECT_FALSE(behaviour.HasConfig("StateTrigger::AnyChange"));
    EXPECT_FALSE(behaviour.HasConfig("statetrigger"));
}

TEST_F(BehaviourOnlyTest, IsTraversedTriggersFirst) {
    CCommandBehaviour behaviour;
    auto* trigger = new ProbeTrigger;
    auto* b = new ProbeAction;
    auto* a = new ProbeAction;
    behaviour.AddTrigger(trigger);
    behaviour.AddTrigger(nullptr);
    behaviour.AddAction(b);
    behaviour.AddAction(nullptr);
    behaviour.AddAction(a);
    std::vector<CCommandTreeItem*> seen;
    behaviour.Traverse(ProbeVisitor([&](CCommandTreeItem* item) { seen.push_back(item); }));
    EXPECT_EQ(seen, (std::vector<CCommandTreeItem*>{&behaviour, trigger, a, b}))
        << "a single trigger too, null items not";
}

TEST_F(BehaviourOnlyTest, SavesItsListsAndNotItsOwnFlag) {
    CCommandBehaviour behaviour;
    behaviour.SetEnabled(false);
    const std::string empty = Written([&](XMLWriter& writer) { behaviour.Save(writer); });
    EXPECT_NE(empty.find("<Behaviour><TriggerList/><ActionList/></Behaviour>"), std::string::npos) << empty;
}

TEST_F(BehaviourOnlyTest, ADisabledOneComesBackEnabled) {
    CCommandBehaviour behaviour;
    behaviour.SetEnabled(false);
    behaviour.AddTrigger(new ProbeTrigger);
    behaviour.AddAction(new ProbeAction);
    XMLReader reader = ReaderOf(Written([&](XMLWriter& writer) { behaviour.Save(writer); }));
    ASSERT_TRUE(reader.EnterSection("Behaviour", false));
    CCommandBehaviour loaded;
    loaded.Load(reader);
    EXPECT_TRUE(loaded.IsEnabled());
    EXPECT_EQ(loaded.GetTriggerCount(), 1);
    EXPECT_EQ(loaded.GetChildCount(), 1);
}

TEST_F(BehaviourOnlyTest, Loads) {
    struct Row {
        const char* label;
        const char* inside;
        int triggers, actions;
    };
    const Row rows[] = {
        {"both",
         "<TriggerList><ProbeTrigger/></TriggerList><ActionList><ProbeAction/><ProbeAction/></ActionList>", 1,
         2},
        {"nothing", "", 0, 0},
        {"no actions", "<TriggerList><ProbeTrigger/></TriggerList>", 1, 0},
        // The search for "TriggerList" runs to the end, and nothing is found behind it.
        {"Kept: without TriggerList the ActionList is not found", "<ActionList><ProbeAction/></ActionList>",
         0, 0},
        {"Kept: an ActionList ahead of the TriggerList is not found",
         "<ActionList><ProbeAction/></ActionList><TriggerList><ProbeTrigger/></TriggerList>", 1, 0},
        {"others around",
         "<X/><TriggerList><ProbeTrigger/></TriggerList><Y/><ActionList><ProbeAction/></ActionList><Z/>", 1,
         1},
        {"Kept: an own Enabled section is not read",
         "<Enabled value='FALSE'/><TriggerList/><ActionList><ProbeAction/></ActionList>", 0, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        XMLReader reader = ReaderOf("<Behaviour>" + std::string(row.inside) + "</Behaviour>");
        ASSERT_TRUE(reader.EnterSection("Behaviour", false));
        CCommandBehaviour behaviour;
        behaviour.Load(reader);
        EXPECT_TRUE(behaviour.IsEnabled());
        EXPECT_EQ(behaviour.GetTriggerCount(), row.triggers);
        EXPECT_EQ(behaviour.GetChildCount() - (row.triggers < 2 ? 0 : row.triggers), row.actions);
    }
}

TEST_F(BehaviourOnlyTest, AssignmentAppendsReplicasOfBothLists) {
    CCommandBehaviour source;
    std::string order;
    auto* trigger = new ProbeTrigger;
    trigger->onReplicate = [&] {
        order += "t";
        return new ProbeTrigger;
    };
    auto* action = new ProbeAction;
    action->onReplicate = [&] {
        order += "a";
        return new ProbeAction;
    };
    source.AddTrigger(trigger);
    source.AddTrigger(new ProbeTrigger);  // replicates to null
    source.AddAction(action);
    CCommandBehaviour target;
    target.AddTrigger(new ProbeTrigger);
    target.AddAction(new ProbeAction);
    target = source;
    EXPECT_EQ(order, "at") << "the actions come first";
    EXPECT_EQ(target.GetTriggerCount(), 3);
    EXPECT_EQ(target.GetChildCount(), 5);
    EXPECT_EQ(Children(target)[2], nullptr);
}

TEST_F(BehaviourOnlyTest, AssignmentCarriesTheEnabledFlagAsForEveryItem) {
    CCommandBehaviour source;
    source.SetEnabled(false);
    CCommandBehaviour target;
    target = source;
    EXPECT_FALSE(target.IsEnabled());
}

TEST_F(BehaviourOnlyTest, ActsOnVerdicts) {
    struct Row {
        const char* label;
        int verdict;
        bool enabled;
        int runs, retests;
    };
    const Row rows[] = {
        {"not concerned", 0, true, 0, 0},
        {"ended", 1, true, 0, 1},
        {"fires", 2, true, 1, 0},
        {"three is nothing", 3, true, 0, 0},
        {"negative is nothing", -1, true, 0, 0},
        {"disabled: fires, runs nothing", 2, false, 0, 0},
        {"disabled: ended, cancels nothing", 1, false, 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        const Rule rule = MakeRule(row.verdict);
        const std::unique_ptr<CCommandBehaviour> owner(rule.behaviour);
        rule.trigger->SetEnabled(row.enabled);
        auto* event = new ProbeEvent;
        list.AddRepeatAction(rule.trigger, event, rule.action, nullptr);
        rule.behaviour->OnEvent(event, &list, nullptr);
        EXPECT_EQ(rule.trigger->tests, 1) << "every trigger is tested, enabled or not";
        EXPECT_EQ(rule.action->runs, row.runs);
        EXPECT_EQ(rule.trigger->retests, row.retests);
        EXPECT_EQ(list.GetRepeatCount(), row.retests ? 0 : 1);
        EXPECT_EQ(event->References(), row.retests ? 1 : 2) << "the event is borrowed";
        event->Release();
    }
}

TEST_F(BehaviourOnlyTest, SeveralTriggersMayRunTheSameActionsForOneEvent) {
    CCommandBehaviour behaviour;
    auto* action = new ProbeAction;
    behaviour.AddAction(action);
    for (const int verdict : {2, 0, 2}) behaviour.AddTrigger(new ProbeTrigger(verdict));
    behaviour.AddTrigger(nullptr);
    ProbeEvent* event = new ProbeEvent;
    behaviour.OnEvent(event, nullptr, nullptr);
    EXPECT_EQ(action->runs, 2);
    event->Release();
}

TEST_F(BehaviourOnlyTest, HandsListAndScopeToTheActions) {
    ProbeList list;
    const VariableManager variables;
    const Rule rule = MakeRule(2);
    const std::unique_ptr<CCommandBehaviour> owner(rule.behaviour);
    rule.action->repeats = true;
    const VariableManager* seen = nullptr;
    rule.action->onFire = [&](const CCommandEvent*) { seen = rule.action->variableManager(); };
    auto* event = new ProbeEvent;
    rule.behaviour->OnEvent(event, &list, &variables);
    EXPECT_EQ(seen, &variables);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    event->Release();
}

TEST_F(BehaviourOnlyTest, ADisabledBehaviourStillAnswersWhenAskedItself) {
    const Rule rule = MakeRule(2);
    const std::unique_ptr<CCommandBehaviour> owner(rule.behaviour);
    rule.behaviour->SetEnabled(false);
    rule.behaviour->OnEvent(nullptr, nullptr, nullptr);
    EXPECT_EQ(rule.action->runs, 1) << "the flag is the list's business";
}

TEST_F(BehaviourOnlyTest, UnlocksWhenAFiredTriggersActionsDo) {
    struct Row {
        const char* label;
        int verdict;
        bool unlocks, triggerEnabled, behaviourEnabled, expected;
    };
    const Row rows[] = {
        {"fires and unlocks", 2, true, true, true, true},
        {"fires, does not unlock", 2, false, true, true, false},
        {"ended", 1, true, true, true, false},
        {"not concerned", 0, true, true, true, false},
        {"Kept: a disabled trigger counts", 2, true, false, true, true},
        {"Kept: a disabled behaviour counts", 2, true, true, false, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        const Rule rule = MakeRule(row.verdict);
        const std::unique_ptr<CCommandBehaviour> owner(rule.behaviour);
        rule.action->unlocks = row.unlocks;
        rule.trigger->SetEnabled(row.triggerEnabled);
        rule.behaviour->SetEnabled(row.behaviourEnabled);
        auto* event = new ProbeEvent;
        list.AddRepeatAction(rule.trigger, event, rule.action, nullptr);
        EXPECT_EQ(rule.behaviour->CanUnLock(event, &list), row.expected);
        EXPECT_EQ(rule.action->runs, 0);
        EXPECT_EQ(list.GetRepeatCount(), 1) << "asking cancels nothing";
        EXPECT_EQ(event->References(), 2) << "the event is borrowed";
        event->Release();
    }
}

TEST_F(BehaviourOnlyTest, StopsAskingAtTheFirstTriggerThatUnlocks) {
    CCommandBehaviour behaviour;
    auto* action = new ProbeAction;
    action->unlocks = true;
    behaviour.AddAction(action);
    auto* a = new ProbeTrigger(0);
    auto* b = new ProbeTrigger(2);
    auto* c = new ProbeTrigger(2);
    for (auto* trigger : {a, b, c}) behaviour.AddTrigger(trigger);
    behaviour.AddTrigger(nullptr);
    EXPECT_TRUE(behaviour.CanUnLock(nullptr, nullptr));
    EXPECT_EQ(a->tests, 1);
    EXPECT_EQ(b->tests, 1);
    EXPECT_EQ(c->tests, 0);
}

TEST_F(BehaviourOnlyTest, ATriggerThatRemovesItselfInItsTestHasNoVerdict) {
    CCommandBehaviour behaviour;
    auto* action = new ProbeAction;
    behaviour.AddAction(action);
    auto* first = new ProbeTrigger;
    first->onTest = [&](const CCommandEvent*) {
        behaviour.RemoveTrigger(first);
        return 2;
    };
    auto* second = new ProbeTrigger(2);
    behaviour.AddTrigger(first);
    behaviour.AddTrigger(second);
    behaviour.OnEvent(nullptr, nullptr, nullptr);
    EXPECT_EQ(second->tests, 1);
    EXPECT_EQ(action->runs, 1);
}

}  // namespace
