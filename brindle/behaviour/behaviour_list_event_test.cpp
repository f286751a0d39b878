// How one event goes through a behaviour list, on the flat plan and behind a change of the tree.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/variables/variable_manager.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

class EventTest : public BehaviourTest {};

TEST_F(EventTest, ExecuteConsumesOneReference) {
    struct Row {
        const char* label;
        bool listEnabled, behaviourEnabled;
        int verdict, runs;
    };
    const Row rows[] = {
        {"fires", true, true, 2, 1},          {"not concerned", true, true, 0, 0},
        {"ended", true, true, 1, 0},          {"disabled behaviour", true, false, 2, 0},
        {"disabled list", false, true, 2, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        const Rule rule = AddRule(list, row.verdict);
        list.SetEnabled(row.listEnabled);
        rule.behaviour->SetEnabled(row.behaviourEnabled);
        auto* kept = new ProbeEvent;
        kept->AddRef();
        list.Execute(kept, nullptr);
        EXPECT_EQ(kept->References(), 1);
        EXPECT_EQ(rule.action->runs, row.runs);
        EXPECT_EQ(rule.trigger->tests, row.listEnabled && row.behaviourEnabled ? 1 : 0);
        bool destroyed = false;
        kept->onDestroyed = [&] { destroyed = true; };
        list.Execute(kept, nullptr);
        EXPECT_TRUE(destroyed) << "a fresh event is gone afterwards";
    }
}

TEST_F(EventTest, ExecuteReleasesTheEventAfterEverythingRan) {
    ProbeList list;
    std::string order;
    AddRule(list, 2, [&](const CCommandEvent*) { order += "run "; });
    auto* event = new ProbeEvent;
    event->onDestroyed = [&] { order += "gone"; };
    list.Execute(event, nullptr);
    EXPECT_EQ(order, "run gone");
}

TEST_F(EventTest, AsksEnabledBehavioursInOrder) {
    ProbeList list;
    std::string order;
    for (const char* name : {"a", "b", "c"}) {
        const Rule rule = AddRule(list, 2, [&order, name](const CCommandEvent*) { order += name; });
        rule.trigger->onTest = [&order, name](const CCommandEvent*) {
            order += std::string("?") + name;
            return 2;
        };
        rule.behaviour->SetEnabled(*name != 'b');
        list.Add(nullptr);
    }
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(order, "?aa?cc");
}

TEST_F(EventTest, PassesOverATriggerThatIsNull) {
    ProbeList list;
    const Rule rule = MakeRule(2);
    rule.behaviour->AddTrigger(nullptr);
    list.Add(rule.behaviour);
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(rule.trigger->tests, 1);
    EXPECT_EQ(rule.action->runs, 1);
}

TEST_F(EventTest, TestsDisabledTriggersWithoutActingOnThem) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    rule.trigger->SetEnabled(false);
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(rule.trigger->tests, 1);
    EXPECT_EQ(rule.action->runs, 0);
    rule.trigger->SetEnabled(true);
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(rule.action->runs, 1);
}

TEST_F(EventTest, HandsEventAndScopeOn) {
    ProbeList list;
    VariableManager variables;
    auto* event = new ProbeEvent;
    const CCommandEvent* tested = nullptr;
    const CCommandEvent* fired = nullptr;
    const VariableManager* scope = nullptr;
    const Rule rule = AddRule(list, 2);
    rule.trigger->onTest = [&](const CCommandEvent* given) {
        tested = given;
        return 2;
    };
    rule.action->onFire = [&](const CCommandEvent* given) {
        fired = given;
        scope = rule.action->variableManager();
    };
    list.Execute(event, &variables);
    EXPECT_EQ(tested, event);
    EXPECT_EQ(fired, event);
    EXPECT_EQ(scope, &variables);
}

TEST_F(EventTest, SeesEveryChangeOfTheTreeInTheNextEvent) {
    ProbeList list;
    const auto execute = [&] { list.Execute(new ProbeEvent, nullptr); };
    const Rule first = AddRule(list, 0);
    execute();
    EXPECT_EQ(first.trigger->tests, 1);

    auto* second = new ProbeTrigger;
    first.behaviour->AddTrigger(second);
    execute();
    EXPECT_EQ(second->tests, 1);

    const Rule added = AddRule(list, 0);
    execute();
    EXPECT_EQ(added.trigger->tests, 1);

    added.behaviour->SetEnabled(false);
    execute();
    EXPECT_EQ(added.trigger->tests, 1);
    added.behaviour->SetEnabled(true);
    execute();
    EXPECT_EQ(added.trigger->tests, 2);

    first.behaviour->RemoveTrigger(second);
    execute();
    EXPECT_EQ(first.trigger->tests, 6);

    CCommandBehaviour disabled;
    disabled.SetEnabled(false);
    *added.behaviour = disabled;  // assignment carries the flag
    execute();
    EXPECT_EQ(added.trigger->tests, 3);
    list.Remove(added.behaviour);
    delete added.behaviour;
    execute();
    EXPECT_EQ(first.trigger->tests, 8);
}

TEST_F(EventTest, AnEndedVerdictDropsTheTriggersRepeatsThatAreOver) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    const Rule other = AddRule(list, 2);
    for (const Rule& each : {rule, other}) {
        each.action->repeats = true;
        each.action->period = 1000;
    }
    auto* first = new ProbeEvent(1);
    auto* second = new ProbeEvent(2);
    first->AddRef();
    second->AddRef();
    list.Execute(first, nullptr);
    list.Execute(second, nullptr);
    ASSERT_EQ(list.GetRepeatCount(), 4);
    rule.trigger->onRetest = [](const CCommandEvent* event) { return event->type() == 2; };
    rule.trigger->verdict = 1;
    other.trigger->verdict = 0;
    list.Execute(new ProbeEvent(3), nullptr);
    EXPECT_EQ(rule.trigger->retests, 2) << "asked for each entry's own event";
    EXPECT_EQ(list.GetRepeatCount(), 3);
    EXPECT_EQ(first->References(), 2);
    EXPECT_EQ(second->References(), 3);
    list.ResetRepeats();
    first->Release();
    second->Release();
}

TEST_F(EventTest, ADisabledTriggerCancelsNothing) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    list.Execute(new ProbeEvent, nullptr);
    rule.trigger->verdict = 1;
    rule.trigger->SetEnabled(false);
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    EXPECT_EQ(rule.trigger->retests, 0);
}

TEST_F(EventTest, CanUnLockConsumesOneReference) {
    struct Row {
        const char* label;
        int verdict;
        bool unlocks, listEnabled, behaviourEnabled, expected;
    };
    const Row rows[] = {
        {"unlocks", 2, true, true, true, true},
        {"does not", 2, false, true, true, false},
        {"not fired", 0, true, true, true, false},
        {"Kept: a disabled list unlocks", 2, true, false, true, true},
        {"Kept: a disabled behaviour unlocks", 2, true, true, false, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        list.Add(nullptr);
        const Rule rule = AddRule(list, row.verdict);
        rule.action->unlocks = row.unlocks;
        list.SetEnabled(row.listEnabled);
        rule.behaviour->SetEnabled(row.behaviourEnabled);
        auto* event = new ProbeEvent;
        event->AddRef();
        EXPECT_EQ(list.CanUnLock(event), row.expected);
        EXPECT_EQ(event->References(), 1);
        event->Release();
    }
    ProbeList empty;
    EXPECT_FALSE(empty.CanUnLock(new ProbeEvent));
}

TEST_F(EventTest, CanUnLockStopsAtTheFirstBehaviourThatUnlocks) {
    ProbeList list;
    const Rule a = AddRule(list, 0);
    const Rule b = AddRule(list, 2);
    const Rule c = AddRule(list, 2);
    b.action->unlocks = c.action->unlocks = true;
    EXPECT_TRUE(list.CanUnLock(new ProbeEvent));
    EXPECT_EQ(a.trigger->tests + b.trigger->tests, 2);
    EXPECT_EQ(c.trigger->tests, 0);
    EXPECT_EQ(b.action->runs, 0);
}

TEST_F(EventTest, ANullEventIsPassedOn) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    list.Execute(nullptr, nullptr);
    EXPECT_EQ(rule.action->runs, 1);
    EXPECT_FALSE(list.CanUnLock(nullptr));
}

TEST_F(EventTest, ExceptionsPassThroughAndReleaseTheEvent) {
    struct Row {
        const char* label;
        std::function<void(const Rule&)> arm;
    };
    const auto fail = [] { throw std::runtime_error("host"); };
    const Row rows[] = {
        {"Test", [&](const Rule& r) { r.trigger->onTest = [=](const CCommandEvent*) { return fail(), 2; }; }},
        {"Fire", [&](const Rule& r) { r.action->onFire = [=](const CCommandEvent*) { fail(); }; }},
        {"IsTemplate", [&](const Rule& r) { r.action->onIsTemplate = fail; }},
        {"IsRepeat", [&](const Rule& r) { r.action->onIsRepeat = fail; }},
        {"GetRepeatTime",
         [&](const Rule& r) {
             r.action->repeats = true;
             r.action->onRepeatTime = [=] { return fail(), 0; };
         }},
        {"a plain text is not swallowed here",
         [&](const Rule& r) { r.action->onFire = [](const CCommandEvent*) { throw "text"; }; }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        VariableManager variables;
        ProbeList list;
        const Rule rule = AddRule(list, 2);
        const Rule later = AddRule(list, 2);
        row.arm(rule);
        auto* event = new ProbeEvent;
        event->AddRef();
        EXPECT_ANY_THROW(list.Execute(event, &variables));
        EXPECT_EQ(event->References(), 1);
        EXPECT_EQ(CurrentHook(), nullptr);
        EXPECT_EQ(rule.action->variableManager(), nullptr);
        EXPECT_EQ(list.GetRepeatCount(), 0);
        EXPECT_EQ(later.trigger->tests, 0);
        const int live = LiveProbes();
        later.behaviour->RemoveTrigger(later.trigger);
        EXPECT_EQ(LiveProbes(), live - 1) << "no call is in progress any more";
        event->Release();
    }
}

TEST_F(EventTest, ExceptionsWhileUnlockingReleaseTheEvent) {
    for (const bool inTest : {true, false}) {
        SCOPED_TRACE(inTest);
        ProbeList list;
        const Rule rule = AddRule(list, 2);
        if (inTest)
            rule.trigger->onTest = [](const CCommandEvent*) -> int { throw std::runtime_error("host"); };
        else
            rule.action->onCanUnLock = [](const CCommandEvent*) -> bool { throw std::runtime_error("host"); };
        auto* event = new ProbeEvent;
        event->AddRef();
        EXPECT_THROW(list.CanUnLock(event), std::runtime_error);
        EXPECT_EQ(event->References(), 1);
        event->Release();
    }
}

TEST_F(EventTest, AFailingRetestKeepsTheRepeat) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    auto* event = new ProbeEvent;
    event->AddRef();
    list.Execute(event, nullptr);
    rule.trigger->verdict = 1;
    rule.trigger->onRetest = [](const CCommandEvent*) -> bool { throw std::runtime_error("host"); };
    EXPECT_THROW(list.Execute(new ProbeEvent, nullptr), std::runtime_error);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    EXPECT_EQ(event->References(), 2);
    rule.trigger->onRetest = nullptr;
    list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(list.GetRepeatCount(), 0);
    event->Release();
}

TEST_F(EventTest, AFailingInitPassesThroughWithTheRepeatsGone) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    list.Execute(new ProbeEvent, nullptr);
    rule.trigger->onInit = [] { throw std::runtime_error("host"); };
    EXPECT_THROW(list.Init(), std::runtime_error);
    EXPECT_EQ(list.GetRepeatCount(), 0);
}

TEST_F(EventTest, AFailingVisitorEndsTheWalks) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    int visits = 0;
    const ProbeVisitor visitor([&](CCommandTreeItem* item) {
        ++visits;
        if (item == rule.trigger) throw std::runtime_error("host");
    });
    EXPECT_THROW(CCommandBehaviourList::TraverseAll(visitor), std::runtime_error);
    EXPECT_EQ(visits, 3);
    const int live = LiveProbes();
    rule.behaviour->RemoveTrigger(rule.trigger);
    EXPECT_EQ(LiveProbes(), live - 1) << "no call is in progress any more";
}

}  // namespace
