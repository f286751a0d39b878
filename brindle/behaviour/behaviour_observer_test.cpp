// What the observer is told, in which order, and that it is told nothing else.
#include "brindle/behaviour/behaviour_observer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "brindle/behaviour/observer_slot.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;
using Lines = std::vector<std::string>;

class ObserverTest : public BehaviourTest {
  protected:
    ObserverTest() {
        clock.SetUnixSeconds(-11'644'473'600);  // due times count from 0
        observer.Name(&list, "list");
        observer.Name(event, "event");
    }
    ~ObserverTest() override { event->Release(); }
    void TearDown() override {}

    Rule Named(const char* behaviour, const char* trigger, const char* action, int verdict) {
        const Rule rule = AddRule(list, verdict);
        observer.Name(rule.behaviour, behaviour);
        observer.Name(rule.trigger, trigger);
        observer.Name(rule.action, action);
        return rule;
    }
    Lines Execute() {
        event->AddRef();
        list.Execute(event, nullptr);
        return observer.Take();
    }

    ProbeObserver observer;
    ProbeList list;
    ProbeEvent* event = new ProbeEvent;
};

TEST_F(ObserverTest, IsToldEveryVerdictZeroIncluded) {
    Named("B1", "T1", "A1", 0);
    const Rule second = Named("B2", "T2", "A2", 2);
    Named("B3", "T3", "A3", 1);
    const Rule off = Named("B4", "T4", "A4", 2);
    off.trigger->SetEnabled(false);
    const Rule unasked = Named("B5", "T5", "A5", 2);
    unasked.behaviour->SetEnabled(false);
    const Lines expected = {"verdict 0 list B1 T1 event", "verdict 2 list B2 T2 event",
                            "run list T2 A2 event", "verdict 1 list B3 T3 event",
                            "verdict 2 list B4 T4 event"};
    EXPECT_EQ(Execute(), expected);

    // The same behind a change of the tree.
    second.trigger->onTest = [&](const CCommandEvent*) {
        unasked.behaviour->SetEnabled(true);
        unasked.behaviour->SetEnabled(false);
        return 2;
    };
    EXPECT_EQ(Execute(), expected);

    list.SetEnabled(false);
    EXPECT_EQ(Execute(), Lines{});
}

TEST_F(ObserverTest, IsToldOfVerdictsWhenABehaviourIsAskedByItself) {
    const Rule rule = Named("B", "T", "A", 0);
    rule.behaviour->OnEvent(event, nullptr, nullptr);
    EXPECT_EQ(observer.Take(), Lines{"verdict 0 - B T event"});
}

TEST_F(ObserverTest, IsToldWhyActionsAreSkipped) {
    const Rule rule = Named("B", "T", "disabled", 2);
    rule.action->SetEnabled(false);
    auto* isTemplate = new ProbeAction;
    isTemplate->isTemplate = true;
    auto* both = new ProbeAction;
    both->isTemplate = true;
    both->SetEnabled(false);
    auto* runs = new ProbeAction;
    for (auto* action : {isTemplate, both, runs}) {
        rule.behaviour->AddAction(action);
        rule.behaviour->MoveAction(action, nullptr);
    }
    observer.Name(isTemplate, "template");
    observer.Name(both, "both");
    observer.Name(runs, "runs");
    EXPECT_EQ(Execute(), (Lines{"verdict 2 list B T event", "skip list T disabled event disabled",
                                "skip list T template event template", "skip list T both event template",
                                "run list T runs event"}));
}

TEST_F(ObserverTest, FollowsARepeatFromAddedToCancelled) {
    const Rule rule = Named("B", "T", "A", 2);
    rule.action->repeats = true;
    rule.action->period = 1'000;
    EXPECT_EQ(Execute(), (Lines{"verdict 2 list B T event", "added list T A event every 1000 due 1000",
                                "run list T A event"}));
    Tick(999);
    EXPECT_EQ(observer.Take(), Lines{});
    Tick(1);
    EXPECT_EQ(observer.Take(), Lines{"repeat list T A event every 1000 due 2000"});
    rule.trigger->verdict = 1;
    rule.trigger->goesOn = true;
    EXPECT_EQ(Execute(), (Lines{"verdict 1 list B T event", "kept list T A event every 1000 due 2000"}));
    rule.trigger->goesOn = false;
    EXPECT_EQ(Execute(), (Lines{"verdict 1 list B T event", "cancelled list T A event every 1000 due 2000"}));
    EXPECT_EQ(Execute(), Lines{"verdict 1 list B T event"});
}

TEST_F(ObserverTest, IsToldOfARepeatBeforeItRuns) {
    const Rule rule = Named("B", "T", "A", 2);
    list.AddRepeatAction(rule.trigger, event, rule.action, nullptr);
    observer.Take();
    Lines before;
    rule.action->onFire = [&](const CCommandEvent*) { before = observer.Take(); };
    Tick();
    EXPECT_EQ(before, Lines{"repeat list T A event every 0 due 0"});
}

TEST_F(ObserverTest, FollowsASchedule) {
    ProbeTimeTrigger trigger;
    trigger.seconds = 10;
    auto* behaviour = new CCommandBehaviour;
    list.Add(behaviour);
    auto* action = new ProbeAction;
    behaviour->AddAction(action);
    auto* timed = new ProbeTimeTrigger(2);
    timed->seconds = 10;
    behaviour->AddTrigger(timed);
    observer.Name(behaviour, "B");
    observer.Name(timed, "T");
    observer.Name(action, "A");
    EXPECT_EQ(Execute(),
              (Lines{"verdict 2 list B T event", "added scheduled list T A event every 10000 due 10000"}));
    timed->seconds = 3;
    Tick(10'000);
    EXPECT_EQ(observer.Take(), Lines{"repeat list T A event every 3000 due 13000"});
    timed->seconds = 0;
    EXPECT_EQ(Execute(), (Lines{"verdict 2 list B T event", "skip list T A event not scheduled"}));
    action->SetEnabled(false);
    EXPECT_EQ(Execute(), (Lines{"verdict 2 list B T event", "skip list T A event disabled"}));
}

TEST_F(ObserverTest, IsToldOfCancelledRepeatsHoweverTheyEnd) {
    const Rule rule = Named("B", "T", "A", 2);
    const std::string cancelled = "cancelled list T A event every 0 due 0";
    const auto queue = [&](CCommandBehaviourList& to) {
        to.AddRepeatAction(rule.trigger, event, rule.action, nullptr);
        observer.Take();
    };
    queue(list);
    list.ResetRepeats();
    EXPECT_EQ(observer.Take(), Lines{cancelled});
    queue(list);
    list.Init();
    EXPECT_EQ(observer.Take(), Lines{cancelled});
    auto other = std::make_unique<ProbeList>();
    observer.Name(other.get(), "other");
    queue(*other);
    other.reset();
    EXPECT_EQ(observer.Take(), Lines{"cancelled other T A event every 0 due 0"});
}

TEST_F(ObserverTest, SeesTheEventOfACancelledRepeatAlive) {
    class Watch final : public IBehaviourObserver {
      public:
        Watch() : before(RegisterBehaviourObserver(this)) {}
        ~Watch() { RegisterBehaviourObserver(before); }
        void OnRepeatCancelled(const CCommandBehaviourList*, const RepeatEntry& entry) override {
            references = static_cast<const ProbeEvent*>(entry.event)->References();
        }
        IBehaviourObserver* before;
        int references = 0;
    };
    const Rule rule = Named("B", "T", "A", 2);
    auto* own = new ProbeEvent;
    list.AddRepeatAction(rule.trigger, own, rule.action, nullptr);
    own->Release();
    const Watch watch;
    list.CancelRepeats(rule.trigger);
    EXPECT_EQ(watch.references, 1);
}

TEST_F(ObserverTest, IsToldNothingOfInertEntries) {
    const Rule rule = Named("B", "T", "A", 2);
    list.AddRepeatAction(rule.trigger, event, rule.action, nullptr);
    observer.Take();
    rule.behaviour->RemoveTrigger(rule.trigger);
    Tick();
    list.ResetRepeats();
    EXPECT_EQ(observer.Take(), Lines{}) << "their pointers are stale";
}

TEST_F(ObserverTest, IsToldOfUnlocking) {
    Named("B1", "T1", "A1", 0);
    const Rule rule = Named("B2", "T2", "A2", 2);
    rule.action->unlocks = true;
    event->AddRef();
    EXPECT_TRUE(list.CanUnLock(event));
    EXPECT_EQ(observer.Take(), (Lines{"unlock verdict 0 list B1 T1 event",
                                      "unlock verdict 2 list B2 T2 event", "unlock list T2 A2 event"}));
}

TEST_F(ObserverTest, ThereIsOneAndTheOneBeforeIsReturned) {
    EXPECT_EQ(brindle::CurrentObserver(), &observer);
    {
        ProbeObserver second;
        EXPECT_EQ(brindle::CurrentObserver(), &second);
        Named("B", "T", "A", 0);
        EXPECT_EQ(Execute(), Lines{}) << "only the latest is told";
        EXPECT_EQ(second.Take(), Lines{"verdict 0 ? ? ? ?"});
    }
    EXPECT_EQ(brindle::CurrentObserver(), &observer);
    EXPECT_EQ(RegisterBehaviourObserver(nullptr), &observer);
    EXPECT_EQ(Execute(), Lines{});
    EXPECT_EQ(RegisterBehaviourObserver(&observer), nullptr);
    EXPECT_EQ(Execute(), Lines{"verdict 0 list B T event"});
}

TEST_F(ObserverTest, MayComeAndGoDuringAnEvent) {
    Named("B1", "T1", "A1", 0);
    const Rule off = Named("B2", "T2", "A2", 2);
    Named("B3", "T3", "A3", 0);
    off.action->onFire = [](const CCommandEvent*) { RegisterBehaviourObserver(nullptr); };
    EXPECT_EQ(Execute(),
              (Lines{"verdict 0 list B1 T1 event", "verdict 2 list B2 T2 event", "run list T2 A2 event"}));
    off.action->onFire = [&](const CCommandEvent*) { RegisterBehaviourObserver(&observer); };
    EXPECT_EQ(Execute(), Lines{"verdict 0 list B3 T3 event"});
}

TEST_F(ObserverTest, TheBaseClassIgnoresEverything) {
    class Silent final : public IBehaviourObserver {};
    Silent silent;
    RegisterBehaviourObserver(&silent);
    const Rule rule = Named("B", "T", "A", 2);
    rule.action->repeats = true;
    rule.action->unlocks = true;
    Execute();
    Tick();
    event->AddRef();
    EXPECT_TRUE(list.CanUnLock(event));
    rule.trigger->goesOn = true;
    list.CancelRepeats(rule.trigger);
    rule.action->SetEnabled(false);
    Execute();
    list.ResetRepeats();
    EXPECT_EQ(rule.action->runs, 2);
    RegisterBehaviourObserver(&observer);
}

}  // namespace
