// Action lists: order, and how actions run for a fired trigger. What they share with trigger lists is in
// type_registry_test.cpp.
#include "brindle/behaviour/action_list.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/action_run.h"
#include "brindle/variables/variable_manager.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

struct EventHolder {
    ProbeEvent* event = new ProbeEvent;
    EventHolder() = default;
    EventHolder(const EventHolder&) = delete;
    EventHolder& operator=(const EventHolder&) = delete;
    ~EventHolder() { event->Release(); }
};

class ActionListTest : public BehaviourTest {
  protected:
    // Appends in order.
    ProbeAction* Append(const std::string& note) {
        auto* action = new ProbeAction([this, note](const CCommandEvent*) { order += note; });
        action->note = note;
        actions.Add(action);
        actions.Move(action, nullptr);
        return action;
    }
    std::string Order() {
        std::string notes;
        for (POSITION position = actions.GetFirstChildPosition(); position;)
            notes += static_cast<const ProbeAction*>(actions.GetNextChild(position))->note;
        return notes;
    }
    void Go(const CCommandTrigger& trigger, const VariableManager* variables = nullptr) {
        actions.Go(&list, held.event, &trigger, variables);
    }

    EventHolder held;
    ProbeTrigger ordinary;
    ProbeTimeTrigger scheduled;
    CCommandActionList actions;
    ProbeList list;
    std::string order;

    void TearDown() override {}  // the members above still live: the base's checks come in other tests
};

TEST_F(ActionListTest, AddsInFront) {
    for (const char* note : {"a", "b", "c"}) {
        auto* action = new ProbeAction;
        action->note = note;
        actions.Add(action);
    }
    EXPECT_EQ(Order(), "cba");
}

TEST_F(ActionListTest, IsNotShown) {
    EXPECT_FALSE(actions.IsVisible());
    EXPECT_EQ(actions.GetText(), "");
    EXPECT_EQ(actions.GetImage(), 0);
    EXPECT_EQ(actions.GetFirstChildPosition(), nullptr);
    POSITION none = nullptr;
    EXPECT_EQ(actions.GetNextChild(none), nullptr);
    EXPECT_EQ(actions.GetChildCount(), 0);
    actions.Add(nullptr);
    auto* first = new ProbeAction;
    actions.Add(first);
    EXPECT_EQ(actions.GetChildCount(), 2);
    POSITION position = actions.GetFirstChildPosition();
    EXPECT_EQ(actions.GetNextChild(position), first);
    EXPECT_EQ(actions.GetNextChild(position), nullptr);
    EXPECT_EQ(position, nullptr);
}

TEST_F(ActionListTest, Moves) {
    struct Row {
        const char* label;
        int action;  // index into "abc", 3: a stranger, -1: null
        int before;
        const char* expected;
    };
    const Row rows[] = {
        {"ahead of the first", 2, 0, "cab"},
        {"ahead of a later one", 0, 2, "bac"},
        {"ahead of the next: stays", 0, 1, "abc"},
        {"null: to the end", 0, -1, "bca"},
        {"itself: to the end", 0, 0, "bca"},
        {"the last before itself", 2, 2, "abc"},
        {"before a stranger: to the end", 1, 3, "acb"},
        {"a stranger: ignored", 3, 0, "abc"},
        {"null: ignored", -1, 0, "abc"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CCommandActionList moved;
        ProbeAction stranger;
        std::vector<ProbeAction*> all;
        for (const char* note : {"a", "b", "c"}) {
            all.push_back(new ProbeAction);
            all.back()->note = note;
            moved.Add(all.back());
            moved.Move(all.back(), nullptr);
        }
        all.push_back(&stranger);
        const auto pick = [&](int index) {
            return index < 0 ? nullptr : all[static_cast<std::size_t>(index)];
        };
        moved.Move(pick(row.action), pick(row.before));
        std::string notes;
        for (POSITION position = moved.GetFirstChildPosition(); position;)
            notes += static_cast<const ProbeAction*>(moved.GetNextChild(position))->note;
        EXPECT_EQ(notes, row.expected);
    }
}

TEST_F(ActionListTest, RunsEnabledActionsInOrderAndSkipsTemplatesAndNullOnes) {
    Append("a");
    Append("b")->isTemplate = true;
    Append("c")->SetEnabled(false);
    actions.Add(nullptr);
    actions.Move(nullptr, nullptr);
    auto* both = Append("d");
    both->isTemplate = true;
    both->SetEnabled(false);
    Append("e");
    Go(ordinary);
    EXPECT_EQ(order, "ae");
    EXPECT_EQ(list.GetRepeatCount(), 0);
    EXPECT_EQ(held.event->References(), 1);
}

TEST_F(ActionListTest, GivesTheEventToTheAction) {
    auto* action = Append("a");
    const CCommandEvent* given = nullptr;
    action->onFire = [&](const CCommandEvent* event) { given = event; };
    Go(ordinary);
    EXPECT_EQ(given, held.event);
}

TEST_F(ActionListTest, InstallsTheScopeForTheRunAlone) {
    VariableManager variables;
    variables.addVariable({"Dir", "/media"});
    auto* a = Append("a");
    auto* b = Append("b");
    std::vector<std::string> seen;
    for (auto* action : {a, b})
        action->onFire = [&, action](const CCommandEvent*) {
            EXPECT_EQ(action->variableManager(), &variables);
            seen.push_back(Expanded("{Dir}/x"));
        };
    // Between two runs nothing is in force.
    b->onIsRepeat = [&] {
        EXPECT_EQ(a->variableManager(), nullptr);
        seen.push_back(Expanded("{Dir}/x"));
    };
    Go(ordinary, &variables);
    EXPECT_EQ(seen, (std::vector<std::string>{"/media/x", "{Dir}/x", "/media/x"}));
    EXPECT_EQ(a->variableManager(), nullptr);
    EXPECT_EQ(b->variableManager(), nullptr);
    EXPECT_EQ(CurrentHook(), nullptr);
}

void OtherHook(CStringA& line) {
    line += "+other";
}

TEST_F(ActionListTest, ReplacesAnotherHookForTheRunAndPutsItBack) {
    AttachPreFormatHook(&OtherHook);
    std::string seen;
    Append("a")->onFire = [&](const CCommandEvent*) { seen = Expanded("{Dir}"); };
    Go(ordinary, nullptr);
    EXPECT_EQ(seen, "{Dir}") << "without a scope nothing is expanded, and the other hook does not run";
    EXPECT_EQ(Expanded("x"), "x+other");
    AttachPreFormatHook(nullptr);
}

TEST_F(ActionListTest, QueuesARepeatingActionBeforeItRuns) {
    auto* action = Append("a");
    action->repeats = true;
    action->period = 1000;
    int queued = -1;
    action->onFire = [&](const CCommandEvent*) { queued = list.GetRepeatCount(); };
    Go(ordinary);
    EXPECT_EQ(action->runs, 1);
    EXPECT_EQ(queued, 1);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    EXPECT_EQ(held.event->References(), 2);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 1000);
}

TEST_F(ActionListTest, DoesNotQueueSkippedActions) {
    for (const bool isTemplate : {true, false}) {
        auto* action = Append("a");
        action->repeats = true;
        action->isTemplate = isTemplate;
        action->SetEnabled(isTemplate);
    }
    scheduled.seconds = 10;
    Go(ordinary);
    Go(scheduled);
    EXPECT_EQ(order, "");
    EXPECT_EQ(list.GetRepeatCount(), 0);
}

TEST_F(ActionListTest, OnlyQueuesForATimeBasedTrigger) {
    Append("a");
    Append("b")->repeats = true;
    Append("c")->isTemplate = true;
    Append("d")->SetEnabled(false);
    scheduled.seconds = 10;
    Go(scheduled);
    EXPECT_EQ(order, "");
    EXPECT_EQ(list.GetRepeatCount(), 2) << "each enabled, non-template action once";
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 10'000);
    Tick(9'999);
    EXPECT_EQ(order, "");
    Tick(1);
    EXPECT_EQ(order, "ab");
}

TEST_F(ActionListTest, RecognisesATimeBasedTriggerByItsTypeTextAlone) {
    Append("a");
    ProbeTrigger disguised;
    disguised.seconds = 5;
    ProbeTimeTrigger undercover;
    undercover.seconds = 5;
    ProbeTrigger almost;
    almost.seconds = 5;
    disguised.typeText = "Time Based Trigger";
    undercover.typeText = "Something else";
    almost.typeText = "time based trigger";
    const std::pair<CCommandTrigger*, bool> rows[] = {
        {&disguised, false}, {&undercover, true}, {&almost, true}, {&scheduled, false}, {&ordinary, true}};
    scheduled.seconds = 5;
    for (const auto& [trigger, runsNow] : rows) {
        SCOPED_TRACE(trigger->GetText(1).str());
        order.clear();
        list.ResetRepeats();
        Go(*trigger);
        EXPECT_EQ(order, runsNow ? "a" : "");
        EXPECT_EQ(list.GetRepeatCount(), runsNow ? 0 : 1);
    }
}

TEST_F(ActionListTest, QueuesNothingForATimeBasedTriggerWithoutANextTime) {
    Append("a");
    for (const int seconds : {0, -1, -2'000'000'000}) {
        SCOPED_TRACE(seconds);
        scheduled.seconds = seconds;
        Go(scheduled);
        EXPECT_EQ(list.GetRepeatCount(), 0);
        EXPECT_EQ(held.event->References(), 1);
    }
    EXPECT_EQ(order, "");
}

TEST_F(ActionListTest, SaysWhetherItUnlocks) {
    struct Row {
        const char* label;
        bool unlocks, isTemplate, enabled, timeBased, expected;
    };
    const Row rows[] = {
        {"an action that unlocks", true, false, true, false, true},
        {"one that does not", false, false, true, false, false},
        {"templates do not count", true, true, true, false, false},
        {"Kept: disabled actions count, unlike in Go", true, false, false, false, true},
        {"time based actions never count", true, false, true, true, false},
        {"disabled template", true, true, false, false, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CCommandActionList asked;
        auto* action = new ProbeAction;
        action->unlocks = row.unlocks;
        action->isTemplate = row.isTemplate;
        action->SetEnabled(row.enabled);
        asked.Add(nullptr);
        asked.Add(action);
        const CCommandTrigger& trigger = row.timeBased ? static_cast<CCommandTrigger&>(scheduled)
                                                       : static_cast<CCommandTrigger&>(ordinary);
        EXPECT_EQ(asked.CanUnLock(&list, held.event, &trigger), row.expected);
        EXPECT_EQ(action->unlockCalls, row.isTemplate || row.timeBased ? 0 : 1);
        EXPECT_EQ(action->runs, 0);
    }
    EXPECT_FALSE(CCommandActionList().CanUnLock(&list, held.event, &ordinary));
}

TEST_F(ActionListTest, StopsAskingAtTheFirstThatUnlocks) {
    auto* a = Append("a");
    auto* b = Append("b");
    auto* c = Append("c");
    b->unlocks = c->unlocks = true;
    const CCommandEvent* given = nullptr;
    a->onCanUnLock = [&](const CCommandEvent* event) {
        given = event;
        return false;
    };
    EXPECT_TRUE(actions.CanUnLock(&list, held.event, &ordinary));
    EXPECT_EQ(given, held.event);
    EXPECT_EQ(a->unlockCalls + b->unlockCalls, 2);
    EXPECT_EQ(c->unlockCalls, 0);
}

TEST_F(ActionListTest, AFailingRunLeavesNothingInForce) {
    VariableManager variables;
    auto* a = Append("a");
    a->onFire = [](const CCommandEvent*) { throw std::runtime_error("no"); };
    Append("b");
    EXPECT_THROW(Go(ordinary, &variables), std::runtime_error);
    EXPECT_EQ(order, "") << "the exception passes through at once";
    EXPECT_EQ(a->variableManager(), nullptr);
    EXPECT_EQ(CurrentHook(), nullptr);
    EXPECT_EQ(held.event->References(), 1);
}

TEST_F(ActionListTest, EvenAPlainTextPassesThroughOutsideTheTimer) {
    Append("a")->onFire = [](const CCommandEvent*) { throw "no"; };
    EXPECT_THROW(Go(ordinary), const char*);
}

TEST_F(ActionListTest, ANestedRunOfTheSameActionGivesTheOuterScopeBack) {
    VariableManager outer;
    outer.addVariable({"x", "outer"});
    VariableManager inner;
    inner.addVariable({"x", "inner"});
    auto* action = Append("a");
    std::vector<std::string> seen;
    action->onFire = [&](const CCommandEvent*) {
        const bool nested = action->runs == 2;
        EXPECT_EQ(action->variableManager(), nested ? &inner : &outer);
        if (!nested) Go(ordinary, &inner);
        EXPECT_EQ(action->variableManager(), nested ? &inner : &outer);
        seen.push_back(Expanded("{x}"));
    };
    Go(ordinary, &outer);
    EXPECT_EQ(seen, (std::vector<std::string>{"inner", "outer"}));
    EXPECT_EQ(action->variableManager(), nullptr);
}

TEST_F(ActionListTest, ARunOfAnotherActionInsideLeavesTheOuterOneAlone) {
    VariableManager outer;
    VariableManager inner;
    ProbeAction other;
    auto* action = Append("a");
    action->onFire = [&](const CCommandEvent*) {
        {
            const brindle::ActionRun run(other, &inner);
            EXPECT_EQ(other.variableManager(), &inner);
            EXPECT_EQ(action->variableManager(), &outer);
        }
        EXPECT_EQ(other.variableManager(), nullptr);
        EXPECT_EQ(action->variableManager(), &outer);
    };
    Go(ordinary, &outer);
    EXPECT_EQ(action->runs, 1);
}

TEST_F(ActionListTest, SurvivesWhatActionsDoToTheList) {
    auto* a = Append("a");
    auto* b = Append("b");
    Append("c");
    a->onFire = [&](const CCommandEvent*) {
        order += "a";
        actions.Remove(a);
        actions.Remove(b);
        Append("new");
    };
    Go(ordinary);
    EXPECT_EQ(order, "ac") << "removed ones do not run, added ones wait for the next time";
    order.clear();
    Go(ordinary);
    EXPECT_EQ(order, "cnew");
}

TEST_F(ActionListTest, EndsWhenAnActionDestroysTheList) {
    auto doomed = std::make_unique<CCommandActionList>();
    auto* second = new ProbeAction([&](const CCommandEvent*) { order += "second"; });
    auto* first = new ProbeAction([&](const CCommandEvent*) {
        order += "first";
        doomed.reset();
    });
    doomed->Add(second);
    doomed->Add(first);
    const int live = LiveProbes();
    doomed->Go(&list, held.event, &ordinary, nullptr);
    EXPECT_EQ(order, "first");
    EXPECT_EQ(LiveProbes(), live - 2);
}

TEST_F(ActionListTest, DoesNotQueueForATriggerThatAnActionHasDestroyed) {
    auto* trigger = new ProbeTrigger(2);
    CCommandTriggerList triggers;
    triggers.Add(trigger);
    Append("a")->onFire = [&](const CCommandEvent*) { triggers.Remove(trigger); };
    auto* b = Append("b");
    b->repeats = true;
    Go(*trigger);
    EXPECT_EQ(b->runs, 1);
    EXPECT_EQ(list.GetRepeatCount(), 0);
}

}  // namespace
