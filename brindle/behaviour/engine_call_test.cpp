// Calls in progress and the objects parked until they return.
#include "brindle/behaviour/engine_call.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "testing/behaviour_kit.h"

namespace {

using brindle::DestroyItem;
using brindle::EngineCall;
using brindle::IsParked;
using namespace brindle::testing;

class EngineCallTest : public BehaviourTest {};

TEST_F(EngineCallTest, OutsideAnyCallItemsGoAtOnce) {
    const int live = LiveProbes();
    auto* trigger = new ProbeTrigger;
    DestroyItem(trigger);
    EXPECT_EQ(LiveProbes(), live);
    DestroyItem(nullptr);
}

TEST_F(EngineCallTest, InsideACallItemsAreParkedUntilTheOutermostReturns) {
    const int live = LiveProbes();
    auto* trigger = new ProbeTrigger;
    auto* action = new ProbeAction;
    {
        const EngineCall outer;
        {
            const EngineCall inner;
            DestroyItem(trigger);
            DestroyItem(nullptr);
            EXPECT_TRUE(IsParked(trigger));
            EXPECT_FALSE(IsParked(action));
        }
        EXPECT_EQ(LiveProbes(), live + 2);
        DestroyItem(action);
        EXPECT_TRUE(IsParked(action));
    }
    EXPECT_EQ(LiveProbes(), live);
    EXPECT_FALSE(IsParked(nullptr));
}

TEST_F(EngineCallTest, ABehaviourIsParkedWithAllItsParts) {
    const Rule rule = MakeRule(0);
    rule.behaviour->AddTrigger(nullptr);
    rule.behaviour->AddAction(nullptr);
    const EngineCall call;
    DestroyItem(rule.behaviour);
    EXPECT_TRUE(IsParked(rule.behaviour));
    EXPECT_TRUE(IsParked(rule.trigger));
    EXPECT_TRUE(IsParked(rule.action));
}

TEST_F(EngineCallTest, ACopyOfAParkedItemIsNotParked) {
    auto* trigger = new ProbeTrigger;
    const EngineCall call;
    DestroyItem(trigger);
    const ProbeTrigger copy(*trigger);
    EXPECT_TRUE(IsParked(trigger));
    EXPECT_FALSE(IsParked(&copy));
}

TEST_F(EngineCallTest, WhatIsParkedNeitherRunsNorIsQueuedAgain) {
    ProbeList list;
    const Rule rule = AddRule(list, 0);
    list.AddRepeatAction(rule.trigger, nullptr, rule.action, nullptr);
    ProbeTrigger other;
    ProbeAction run;
    const EngineCall call;
    list.Remove(rule.behaviour);
    DestroyItem(rule.behaviour);
    Tick();
    EXPECT_EQ(rule.action->runs, 0);
    list.AddRepeatAction(rule.trigger, nullptr, &run, nullptr);
    list.AddRepeatAction(&other, nullptr, rule.action, nullptr);
    rule.trigger->seconds = 1;
    list.AddRepeatTrigger(rule.trigger, nullptr, &run);
    EXPECT_EQ(list.GetRepeatCount(), 1) << "the inert one";
    list.AddRepeatAction(&other, nullptr, &run, nullptr);
    EXPECT_EQ(list.GetRepeatCount(), 2);
    list.ResetRepeats();
}

TEST_F(EngineCallTest, AParkedItemsDestructorMayDestroyFurtherOnes) {
    const int live = LiveProbes();
    CCommandTriggerList list;
    auto* first = new ProbeTrigger;
    auto* second = new ProbeTrigger;
    list.Add(second);
    first->onDestroyed = [&] { list.Remove(second); };
    {
        const EngineCall call;
        DestroyItem(first);
    }
    EXPECT_EQ(LiveProbes(), live);
    EXPECT_EQ(list.GetChildCount(), 0);
}

TEST_F(EngineCallTest, CallsAreCountedForEachThread) {
    const EngineCall call;
    std::thread([] {
        const int live = LiveProbes();
        DestroyItem(new ProbeTrigger);
        EXPECT_EQ(LiveProbes(), live) << "no call is in progress on this thread";
    }).join();
}

TEST_F(EngineCallTest, SerialsAreNeverGivenTwice) {
    std::set<std::uint64_t> seen;
    for (int i = 0; i < 1'000; ++i) seen.insert(brindle::NextSerial());
    EXPECT_EQ(seen.size(), 1'000u);
    EXPECT_FALSE(seen.contains(0));
}

TEST_F(EngineCallTest, AnEnabledFlagThatChangesOutdatesPlans) {
    ProbeTrigger trigger;
    const std::uint64_t before = brindle::PlanGeneration();
    trigger.SetEnabled(true);
    EXPECT_EQ(brindle::PlanGeneration(), before);
    trigger.SetEnabled(false);
    EXPECT_NE(brindle::PlanGeneration(), before);
}

}  // namespace
