// What actions, triggers and visitors may do to the engine while CanUnLock, CancelRepeats, Traverse, Init, Load or
// the timer runs them. All of it is legal on one thread. Execute: behaviour_reentrancy_test.cpp.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

class ReentrancyTest : public BehaviourTest {
  protected:
    std::string order;
};

TEST_F(ReentrancyTest, UnlockingSurvivesChanges) {
    auto list = std::make_unique<ProbeList>();
    const Rule a = AddRule(*list, 2);
    const Rule b = AddRule(*list, 2);
    const Rule c = AddRule(*list, 2);
    c.action->unlocks = true;
    b.action->unlocks = true;
    a.trigger->onTest = [&](const CCommandEvent*) {
        list->Remove(b.behaviour);
        delete b.behaviour;
        return 2;
    };
    a.action->onCanUnLock = [&](const CCommandEvent*) {
        a.behaviour->RemoveAction(a.action);
        return false;
    };
    EXPECT_TRUE(list->CanUnLock(new ProbeEvent));
    c.action->onCanUnLock = [&](const CCommandEvent*) {
        list.reset();
        return false;
    };
    a.trigger->onTest = nullptr;
    ProbeList* raw = list.get();
    EXPECT_FALSE(raw->CanUnLock(new ProbeEvent));
}

TEST_F(ReentrancyTest, RetestMayChangeTheRepeats) {
    struct Row {
        const char* label;
        std::function<void(ProbeList&, const Rule&)> change;
        int retests, left;
    };
    const Row rows[] = {
        {"resets", [](ProbeList& list, const Rule&) { list.ResetRepeats(); }, 1, 0},
        {"adds one: not asked", [](ProbeList& list, const Rule& rule) { QueueRepeat(list, rule); }, 3, 3},
        {"destroys the trigger: the rest are inert",
         [](ProbeList&, const Rule& rule) { rule.behaviour->RemoveTrigger(rule.trigger); }, 1, 3},
        {"destroys the action",
         [](ProbeList&, const Rule& rule) { rule.behaviour->RemoveAction(rule.action); }, 1, 3},
        {"loads", [](ProbeList& list, const Rule&) { Reload(list); }, 1, 3},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        const Rule rule = AddRule(list, 0);
        for (int i = 0; i < 3; ++i) QueueRepeat(list, rule);
        int retests = 0;
        rule.trigger->onRetest = [&](const CCommandEvent*) {
            ++retests;
            row.change(list, rule);
            return false;
        };
        list.CancelRepeats(rule.trigger);
        EXPECT_EQ(retests, row.retests);
        EXPECT_EQ(list.GetRepeatCount(), row.left);
    }
}

TEST_F(ReentrancyTest, RetestMayCancelTheSameTriggerAgain) {
    ProbeList list;
    const Rule rule = AddRule(list, 0);
    for (int i = 0; i < 4; ++i) QueueRepeat(list, rule);
    int depth = 0;
    rule.trigger->onRetest = [&](const CCommandEvent*) {
        if (++depth == 1) list.CancelRepeats(rule.trigger);
        return false;
    };
    list.CancelRepeats(rule.trigger);
    EXPECT_EQ(depth, 5) << "the first again inside itself, the others once";
    EXPECT_EQ(list.GetRepeatCount(), 0);
}

TEST_F(ReentrancyTest, RetestMayDestroyTheList) {
    auto list = std::make_unique<ProbeList>();
    ProbeTrigger trigger;
    ProbeAction action;
    auto* event = new ProbeEvent;
    for (int i = 0; i < 3; ++i) list->AddRepeatAction(&trigger, event, &action, nullptr);
    trigger.onRetest = [&](const CCommandEvent* given) {
        list.reset();
        EXPECT_EQ(given, event);
        return true;
    };
    ProbeList* raw = list.get();
    raw->CancelRepeats(&trigger);
    EXPECT_EQ(trigger.retests, 1);
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

TEST_F(ReentrancyTest, ADyingEventMayResetTheRepeats) {
    ProbeList list;
    ProbeTrigger trigger;
    ProbeAction action;
    for (int i = 0; i < 4; ++i) {
        auto* event = new ProbeEvent;
        event->onDestroyed = [&] {
            order += "gone ";
            list.ResetRepeats();
            list.CancelRepeats(&trigger);
            CCommandBehaviourList::CallOnTimer();
        };
        list.AddRepeatAction(&trigger, event, &action, nullptr);
        event->Release();
    }
    list.CancelRepeats(&trigger);
    EXPECT_EQ(order, "gone gone gone gone ");
    EXPECT_EQ(list.GetRepeatCount(), 0);
    EXPECT_EQ(action.runs, 0);
}

TEST_F(ReentrancyTest, VisitorsMayChangeTheTree) {
    ProbeList first;
    auto second = std::make_unique<ProbeList>();
    auto third = std::make_unique<ProbeList>();
    const Rule a = AddRule(first, 0);
    const Rule b = AddRule(first, 0);
    const Rule c = AddRule(*second, 0);
    AddRule(*third, 0);
    std::unique_ptr<ProbeList> late;
    std::vector<CCommandTreeItem*> seen;
    const ProbeVisitor visitor([&](CCommandTreeItem* item) {
        seen.push_back(item);
        if (item == a.trigger) {
            first.Remove(b.behaviour);
            delete b.behaviour;
            a.behaviour->RemoveAction(a.action);
            third.reset();
            late = std::make_unique<ProbeList>();
        }
        if (item == c.trigger) second.reset();
    });
    CCommandTreeItem* const secondList = second.get();
    CCommandBehaviourList::TraverseAll(visitor);
    EXPECT_EQ(seen, (std::vector<CCommandTreeItem*>{&first, a.behaviour, a.trigger, secondList, c.behaviour,
                                                    c.trigger}));
}

TEST_F(ReentrancyTest, AVisitorMayDestroyTheVeryListOrBehaviour) {
    auto list = std::make_unique<ProbeList>();
    AddRule(*list, 0);
    int visits = 0;
    ProbeList* raw = list.get();
    raw->Traverse(ProbeVisitor([&](CCommandTreeItem*) {
        ++visits;
        list.reset();
    }));
    EXPECT_EQ(visits, 1);

    ProbeList other;
    const Rule rule = AddRule(other, 0);
    visits = 0;
    other.Traverse(ProbeVisitor([&](CCommandTreeItem* item) {
        ++visits;
        if (item != rule.behaviour) return;
        other.Remove(rule.behaviour);
        delete rule.behaviour;
    }));
    EXPECT_EQ(visits, 2);
}

TEST_F(ReentrancyTest, InitMayDestroyTheList) {
    auto list = std::make_unique<ProbeList>();
    const Rule a = AddRule(*list, 0);
    const Rule b = AddRule(*list, 0);
    bool reached = false;
    a.trigger->onInit = [&] { list.reset(); };
    b.trigger->onInit = [&] { reached = true; };
    ProbeList* raw = list.get();
    raw->Init();
    EXPECT_FALSE(reached);
}

TEST_F(ReentrancyTest, LoadingItemsMayLoadOrDestroyTheList) {
    static std::unique_ptr<ProbeList>* doomed = nullptr;
    CCommandTriggerList::Register("ProbeDestroysList", [](unsigned long) -> CCommandTrigger* {
        auto* trigger = new ProbeTrigger;
        trigger->onLoad = [] { doomed->reset(); };
        return trigger;
    });
    auto list = std::make_unique<ProbeList>();
    doomed = &list;
    XMLReader reader = ReaderOf(
        "<BehaviourList><Behaviour><TriggerList><ProbeDestroysList/><ProbeTrigger/></TriggerList><ActionList>"
        "<ProbeAction/></ActionList></Behaviour><Behaviour/></BehaviourList>");
    ProbeList* raw = list.get();
    raw->Load(reader);
    EXPECT_TRUE(reader.EnterSection("BehaviourList", false)) << "a section was left open";
}

// --- inside the timer

TEST_F(ReentrancyTest, ATimerActionMayRemoveDeleteLoadAndReset) {
    struct Row {
        const char* label;
        std::function<void(ProbeList&, const Rule&, const Rule&)> change;
        const char* order;  // of the pass and the next one
        int left;
    };
    const Row rows[] = {
        {"removes a later trigger",
         [](ProbeList&, const Rule&, const Rule& b) { b.behaviour->RemoveTrigger(b.trigger); }, "ac ac", 3},
        {"removes a later action",
         [](ProbeList&, const Rule&, const Rule& b) { b.behaviour->RemoveAction(b.action); }, "ac ac", 3},
        {"removes its own trigger",
         [](ProbeList&, const Rule& a, const Rule&) { a.behaviour->RemoveTrigger(a.trigger); }, "abc bc", 3},
        {"removes itself",
         [](ProbeList&, const Rule& a, const Rule&) { a.behaviour->RemoveAction(a.action); }, "abc bc", 3},
        {"removes and deletes its behaviour",
         [](ProbeList& list, const Rule& a, const Rule&) {
             list.Remove(a.behaviour);
             delete a.behaviour;
         },
         "abc bc", 3},
        {"removes and deletes a later behaviour",
         [](ProbeList& list, const Rule&, const Rule& b) {
             list.Remove(b.behaviour);
             delete b.behaviour;
         },
         "ac ac", 3},
        {"loads", [](ProbeList& list, const Rule&, const Rule&) { Reload(list); }, "a ", 3},
        {"resets the repeats", [](ProbeList& list, const Rule&, const Rule&) { list.ResetRepeats(); }, "a ",
         0},
        {"initialises", [](ProbeList& list, const Rule&, const Rule&) { list.Init(); }, "a ", 0},
        {"cancels a later one",
         [](ProbeList& list, const Rule&, const Rule& b) { list.CancelRepeats(b.trigger); }, "ac ac", 2},
        {"cancels itself", [](ProbeList& list, const Rule& a, const Rule&) { list.CancelRepeats(a.trigger); },
         "abc bc", 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        order.clear();
        ProbeList list;
        bool done = false;
        std::vector<Rule> rules;
        for (const char* name : {"a", "b", "c"}) {
            rules.push_back(AddRule(list, 0, [&, name](const CCommandEvent* event) {
                order += name;
                if (*name != 'a' || done) return;
                done = true;
                row.change(list, rules[0], rules[1]);
                EXPECT_GE(static_cast<const ProbeEvent*>(event)->References(), 1)
                    << "the event is still there";
            }));
            auto* event = new ProbeEvent;
            list.AddRepeatAction(rules.back().trigger, event, rules.back().action, nullptr);
            event->Release();
        }
        Tick();
        order += " ";
        Tick();
        EXPECT_EQ(order, row.order);
        EXPECT_EQ(list.GetRepeatCount(), row.left);
    }
}

TEST_F(ReentrancyTest, AScheduleMayCancelItselfWhenAsked) {
    ProbeList list;
    ProbeTimeTrigger trigger;
    ProbeAction action;
    trigger.seconds = 1;
    auto* event = new ProbeEvent;
    list.AddRepeatTrigger(&trigger, event, &action);
    event->Release();
    trigger.onNextTime = [&] {
        list.ResetRepeats();
        return 1;
    };
    Tick(1'000);
    EXPECT_EQ(action.runs, 0);
    EXPECT_EQ(list.GetRepeatCount(), 0);
}

TEST_F(ReentrancyTest, RepeatsAddedDuringAPassWaitForTheNextOne) {
    ProbeList first;
    ProbeList second;
    const Rule a = AddRule(first, 0);
    const Rule b = AddRule(first, 0);
    const Rule x = AddRule(second, 0);
    QueueRepeat(first, a);
    QueueRepeat(second, x, 1'000'000);
    bool done = false;
    a.action->onFire = [&](const CCommandEvent*) {
        if (done) return;
        done = true;
        QueueRepeat(first, b);
        QueueRepeat(second, x);  // due at once, in a list the pass has yet to reach
    };
    Tick();
    EXPECT_EQ(b.action->runs, 0);
    EXPECT_EQ(x.action->runs, 0);
    Tick();
    EXPECT_EQ(b.action->runs, 1);
    EXPECT_EQ(x.action->runs, 1);
}

TEST_F(ReentrancyTest, ARepeatAddedDuringAPassIsNotForgottenByTheNext) {
    ProbeList list;
    const Rule a = AddRule(list, 0);
    const Rule b = AddRule(list, 0);
    QueueRepeat(list, a, 1'000);
    a.action->onFire = [&](const CCommandEvent*) {
        if (a.action->runs == 1) QueueRepeat(list, b, 10);
    };
    Tick(1'000);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 10);
    Tick(9);
    EXPECT_EQ(b.action->runs, 0);
    Tick(1);
    EXPECT_EQ(b.action->runs, 1);
}

TEST_F(ReentrancyTest, WhatANestedPassSetBackIsNotForgottenByTheNext) {
    ProbeList list;
    ProbeTimeTrigger schedule;
    ProbeAction scheduled;
    schedule.seconds = 1;
    list.AddRepeatTrigger(&schedule, nullptr, &scheduled);
    const Rule nests = AddRule(list, 0);
    QueueRepeat(list, nests, 1'000);
    nests.action->onFire = [&](const CCommandEvent*) {
        if (nests.action->runs == 1) Tick(100'000);
    };
    schedule.onNextTime = [&] { return nests.action->runs == 0 ? 100 : -50; };
    Tick(1'000);
    EXPECT_EQ(scheduled.runs, 2);
    list.CancelRepeats(nests.trigger);
    GoBack(30'000);
    Tick();
    EXPECT_EQ(scheduled.runs, 3) << "due fifty seconds before the nested pass";
}

TEST_F(ReentrancyTest, EveryEntryDueRunsOnceAlthoughThePassIsNested) {
    for (const int period : {0, 1'000, -1'000}) {
        SCOPED_TRACE(period);
        ProbeList first;
        ProbeList second;
        std::vector<Rule> rules;
        for (ProbeList* list : {&first, &first, &first, &second, &second}) {
            rules.push_back(AddRule(*list, 0));
            QueueRepeat(*list, rules.back(), period);
        }
        if (period > 0) Advance(static_cast<std::uint64_t>(period));
        bool nested = false;
        std::vector<int> inside;
        rules[1].action->onFire = [&](const CCommandEvent*) {
            if (nested) return;
            nested = true;
            CCommandBehaviourList::CallOnTimer();
            for (const Rule& rule : rules) inside.push_back(rule.action->runs);
        };
        Tick();
        // The first two ran before and began the nested pass: they run again in it when they are due at once.
        const int again = period > 0 ? 1 : 2;
        EXPECT_EQ(inside, (std::vector<int>{again, again, 1, 1, 1}));
        std::vector<int> after;
        for (const Rule& rule : rules) after.push_back(rule.action->runs);
        EXPECT_EQ(after, inside) << "what the nested pass has run, the outer one does not run again";
    }
}

TEST_F(ReentrancyTest, ALaterNestedPassRunsWhatHasComeDueMeanwhile) {
    ProbeList list;
    const Rule a = AddRule(list, 0);
    const Rule b = AddRule(list, 0);
    QueueRepeat(list, a, 1'000);
    QueueRepeat(list, b, 1'500);
    a.action->onFire = [&](const CCommandEvent*) {
        order += "a";
        if (a.action->runs == 1) Tick(2'000);  // a message box stays open for two seconds
        order += ".";
    };
    b.action->onFire = [&](const CCommandEvent*) { order += "b"; };
    Tick(1'000);
    EXPECT_EQ(order, "aa.b.");
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 1'000);
    Tick(1'000);
    EXPECT_EQ(order, "aa.b.a.");
}

TEST_F(ReentrancyTest, ATimerActionMayDestroyListsAndBuildNewOnes) {
    ProbeList first;
    auto second = std::make_unique<ProbeList>();
    auto third = std::make_unique<ProbeList>();
    std::unique_ptr<ProbeList> late;
    ProbeTrigger trigger;
    const auto queue = [&](ProbeList& list, ProbeAction& action) {
        list.AddRepeatAction(&trigger, nullptr, &action, nullptr);
    };
    ProbeAction run([&](const CCommandEvent*) { order += "r"; });
    ProbeAction destroy([&](const CCommandEvent*) {
        order += "d";
        second.reset();
        if (!late) {
            late = std::make_unique<ProbeList>();
            queue(*late, run);
        }
    });
    queue(first, destroy);
    queue(*second, run);
    queue(*third, run);
    Tick();
    EXPECT_EQ(order, "dr");
    Tick();
    EXPECT_EQ(order, "drdrr");
}

TEST_F(ReentrancyTest, ATimerActionMayDestroyItsOwnList) {
    for (const bool direct : {true, false}) {
        for (const bool nested : {true, false}) {
            SCOPED_TRACE(direct);
            SCOPED_TRACE(nested);
            order.clear();
            auto list = std::make_unique<ProbeList>();
            ProbeList other;
            ProbeTrigger trigger;
            auto* event = new ProbeEvent;
            ProbeAction run([&](const CCommandEvent*) { order += "r"; });
            ProbeAction destroy([&](const CCommandEvent* given) {
                order += "d";
                list.reset();
                EXPECT_EQ(given, event);
                EXPECT_GE(event->References(), 2) << "the run's own reference lasts";
                if (nested) CCommandBehaviourList::CallOnTimer();
            });
            list->AddRepeatAction(&trigger, event, &destroy, nullptr);
            list->AddRepeatAction(&trigger, event, &run, nullptr);
            other.AddRepeatAction(&trigger, nullptr, &run, nullptr);
            ProbeList* raw = list.get();
            if (direct)
                raw->OnTimer();
            else
                CCommandBehaviourList::CallOnTimer();
            EXPECT_EQ(order, direct && !nested ? "d" : "dr");
            EXPECT_EQ(event->References(), 1);
            event->Release();
        }
    }
}

TEST_F(ReentrancyTest, AListDestroyedThreeCallsDeepKeepsItsLockUntilTheOutermostReturns) {
    auto list = std::make_unique<ProbeList>();
    const Rule a = AddRule(*list, 2);
    ProbeTrigger trigger;
    ProbeAction tick([&](const CCommandEvent*) { list->Execute(new ProbeEvent, nullptr); });
    a.action->onFire = [&](const CCommandEvent*) {
        a.trigger->onTest = [&](const CCommandEvent*) {
            list.reset();
            return 2;
        };
        a.action->onFire = [&](const CCommandEvent*) { order += "never"; };
        list->Execute(new ProbeEvent, nullptr);
        order += "back";
    };
    list->AddRepeatAction(&trigger, nullptr, &tick, nullptr);
    Tick();
    EXPECT_EQ(order, "back");
    EXPECT_EQ(list, nullptr);
}

TEST_F(ReentrancyTest, ARunKeepsItsEventWhenTheRepeatIsCancelledInside) {
    ProbeList list;
    ProbeTrigger trigger;
    ProbeAction action;
    auto* event = new ProbeEvent;
    bool alive = true;
    event->onDestroyed = [&] { alive = false; };
    list.AddRepeatAction(&trigger, event, &action, nullptr);
    event->Release();
    action.onFire = [&](const CCommandEvent*) {
        list.ResetRepeats();
        EXPECT_TRUE(alive);
        CCommandBehaviourList::CallOnTimer();
        EXPECT_TRUE(alive);
        EXPECT_EQ(list.GetRepeatCount(), 0);
    };
    Tick();
    EXPECT_FALSE(alive);
    EXPECT_EQ(action.runs, 1);
}

TEST_F(ReentrancyTest, AnExceptionInANestedPassLeavesTheOuterOneAbleToGoOn) {
    ProbeList list;
    const Rule a = AddRule(list, 0);
    const Rule b = AddRule(list, 0);
    const Rule c = AddRule(list, 0);
    for (const Rule& rule : {a, b, c}) QueueRepeat(list, rule, 1'000);
    b.action->onFire = [&](const CCommandEvent*) { throw std::runtime_error("host"); };
    a.action->onFire = [&](const CCommandEvent*) {
        EXPECT_THROW(CCommandBehaviourList::CallOnTimer(), std::runtime_error);
    };
    Tick(1'000);
    EXPECT_EQ(b.action->runs, 1) << "it has run, though it failed";
    EXPECT_EQ(c.action->runs, 1);
    EXPECT_EQ(CurrentHook(), nullptr);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 1'000);
}

TEST_F(ReentrancyTest, ManyRemovalsDuringOnePassLeaveNoGapBehind) {
    ProbeList list;
    std::vector<std::unique_ptr<ProbeTrigger>> triggers;
    int runs = 0;
    ProbeAction action([&](const CCommandEvent*) { ++runs; });
    for (int i = 0; i < 100; ++i) {
        triggers.push_back(std::make_unique<ProbeTrigger>());
        list.AddRepeatAction(triggers.back().get(), nullptr, &action, nullptr);
    }
    action.onFire = [&](const CCommandEvent*) {
        ++runs;
        if (runs != 1) return;
        for (std::size_t i = 10; i < 90; ++i) list.CancelRepeats(triggers[i].get());
        list.AddRepeatAction(triggers[0].get(), nullptr, &action, nullptr);
    };
    Tick();
    EXPECT_EQ(runs, 20);
    EXPECT_EQ(list.GetRepeatCount(), 21);
    Tick();
    EXPECT_EQ(runs, 41);
    list.CancelRepeats(triggers[95].get());
    EXPECT_EQ(list.GetRepeatCount(), 20);
    Tick();
    EXPECT_EQ(runs, 61);
}

}  // namespace
