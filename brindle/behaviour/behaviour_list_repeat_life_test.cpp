// Repeats whose objects are destroyed, and repeats touched by several threads.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <thread>

#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

class RepeatLifeTest : public BehaviourTest {};

TEST_F(RepeatLifeTest, RepeatsOfAReloadedListNeverRunAndKeepTheirEvents) {
    ProbeList list;
    int runs = 0;
    const Rule rule = AddRule(list, 2, [&](const CCommandEvent*) { ++runs; });
    rule.action->repeats = true;
    auto* event = new ProbeEvent;
    event->AddRef();
    list.Execute(event, nullptr);
    EXPECT_EQ(runs, 1);
    XMLReader reader = ReaderOf("<BehaviourList/>");
    list.Load(reader);
    Tick();
    Tick(1'000);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(list.GetRepeatCount(), 1) << "inert, until somebody resets";
    EXPECT_EQ(event->References(), 2);
    list.ResetRepeats();
    EXPECT_EQ(list.GetRepeatCount(), 0);
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

TEST_F(RepeatLifeTest, DestroyingTheTriggerOrTheActionAloneIsEnough) {
    for (const bool removeTrigger : {true, false}) {
        SCOPED_TRACE(removeTrigger);
        ProbeList list;
        int runs = 0;
        const Rule rule = AddRepeating(list, 0, [&](const CCommandEvent*) { ++runs; });
        const Rule other = AddRepeating(list, 0);
        runs = 0;
        Tick();
        EXPECT_EQ(runs, 1);
        if (removeTrigger)
            rule.behaviour->RemoveTrigger(rule.trigger);
        else
            rule.behaviour->RemoveAction(rule.action);
        Tick();
        EXPECT_EQ(runs, 1);
        EXPECT_EQ(other.action->runs, 2);
        list.CancelRepeats(rule.trigger);  // an address whose trigger may be gone
        EXPECT_EQ(list.GetRepeatCount(), 2) << "inert entries are not asked";
    }
}

TEST_F(RepeatLifeTest, ANewTriggerAtTheSameAddressInheritsNothing) {
    alignas(ProbeTrigger) unsigned char place[sizeof(ProbeTrigger)];
    ProbeList list;
    ProbeAction action;
    auto* event = new ProbeEvent;
    auto* old = new (place) ProbeTrigger;
    list.AddRepeatAction(old, event, &action, nullptr);
    old->~ProbeTrigger();
    auto* young = new (place) ProbeTrigger;
    ASSERT_EQ(static_cast<void*>(young), static_cast<void*>(place));
    Tick();
    EXPECT_EQ(action.runs, 0);
    list.CancelRepeats(young);
    EXPECT_EQ(young->retests, 0);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    // And its own repeats are its own.
    list.AddRepeatAction(young, event, &action, nullptr);
    Tick();
    EXPECT_EQ(action.runs, 1);
    list.CancelRepeats(young);
    EXPECT_EQ(young->retests, 1);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    young->~ProbeTrigger();
    list.ResetRepeats();
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

TEST_F(RepeatLifeTest, ANewActionAtTheSameAddressInheritsNothing) {
    alignas(ProbeAction) unsigned char place[sizeof(ProbeAction)];
    ProbeList list;
    ProbeTrigger trigger;
    auto* event = new ProbeEvent;
    auto* old = new (place) ProbeAction;
    list.AddRepeatAction(&trigger, event, old, nullptr);
    old->~ProbeAction();
    auto* young = new (place) ProbeAction;
    Tick();
    EXPECT_EQ(young->runs, 0);
    list.CancelRepeats(&trigger);
    EXPECT_EQ(trigger.retests, 0);
    list.AddRepeatAction(&trigger, event, young, nullptr);
    Tick();
    EXPECT_EQ(young->runs, 1);
    young->~ProbeAction();
    Tick();
    EXPECT_EQ(list.GetRepeatCount(), 2);
    list.ResetRepeats();
    event->Release();
}

TEST_F(RepeatLifeTest, ABehaviourDeletedByItsCallerTakesItsRepeatsAlong) {
    ProbeList list;
    int runs = 0;
    const Rule rule = AddRepeating(list, 0, [&](const CCommandEvent*) { ++runs; });
    runs = 0;
    list.Remove(rule.behaviour);
    delete rule.behaviour;
    Tick();
    EXPECT_EQ(runs, 0);
}

TEST_F(RepeatLifeTest, RepeatsOfAnObjectInSeveralListsAllEnd) {
    ProbeList first;
    ProbeList second;
    auto trigger = std::make_unique<ProbeTrigger>();
    ProbeAction action;
    auto* event = new ProbeEvent;
    for (auto* list : {&first, &second, &first})
        list->AddRepeatAction(trigger.get(), event, &action, nullptr);
    Tick();
    EXPECT_EQ(action.runs, 3);
    trigger.reset();
    Tick();
    EXPECT_EQ(action.runs, 3);
    EXPECT_EQ(event->References(), 4);
    first.ResetRepeats();
    EXPECT_EQ(event->References(), 2);
    second.ResetRepeats();
    event->Release();
}

// --- threads

TEST_F(RepeatLifeTest, AnotherThreadAddsAndResetsWhileTheTimerPasses) {
    ProbeList list;
    ProbeList other;
    std::atomic<int> runs{0};
    ProbeTrigger trigger;
    ProbeAction action([&](const CCommandEvent*) { ++runs; });
    std::atomic<bool> stop{false};
    std::thread worker([&] {
        ProbeTrigger own;
        for (int i = 0; i < 2'000; ++i) {
            auto* event = new ProbeEvent;  // events belong to one thread at a time: the lock hands them over
            list.AddRepeatAction(&trigger, event, &action, nullptr);
            other.AddRepeatAction(&own, nullptr, &action, nullptr);
            if (i % 16 == 0) {
                list.ResetRepeats();
                other.ResetRepeats();
                list.CancelRepeats(&own);
            }
            list.ResetRepeats();
            event->Release();
        }
        other.ResetRepeats();
        stop = true;
    });
    while (!stop) {
        CCommandBehaviourList::CallOnTimer();
        CCommandBehaviourList::GetNextDue();
    }
    worker.join();
    EXPECT_EQ(list.GetRepeatCount(), 0);
    EXPECT_EQ(other.GetRepeatCount(), 0);
    // An entry that another thread added is not forgotten.
    std::thread([&] { list.AddRepeatAction(&trigger, nullptr, &action, nullptr); }).join();
    runs = 0;
    Tick();
    EXPECT_EQ(runs, 1);
}

TEST_F(RepeatLifeTest, ObjectsDieOnAnotherThreadWhileTheTimerPasses) {
    ProbeList list;
    ProbeAction action;
    ProbeTrigger keeper;
    std::atomic<bool> stop{false};
    std::thread worker([&] {
        for (int i = 0; i < 2'000; ++i) {
            ProbeTrigger mortal;  // not asked by the pass: only the index is shared
            list.AddRepeatAction(&mortal, nullptr, &action, nullptr);
        }
        stop = true;
    });
    while (!stop) CCommandBehaviourList::CallOnTimer();
    worker.join();
    EXPECT_EQ(list.GetRepeatCount(), 2'000);
    Tick();
    const int before = action.runs;
    Tick();
    EXPECT_EQ(action.runs, before) << "all inert";
    list.AddRepeatAction(&keeper, nullptr, &action, nullptr);
    Tick();
    EXPECT_EQ(action.runs, before + 1);
}

}  // namespace
