// What actions and triggers may do to the engine while Execute runs them. All of it is legal on one thread; these
// tests are worth most under the address sanitizer. The other calls: behaviour_reentrancy_timer_test.cpp.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/variables/variable_manager.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

// Each case runs in two forms: from the flat plan, and after an earlier change in the same
// event, when the list goes the careful way.

class ExecuteTest : public BehaviourTest, public ::testing::WithParamInterface<bool> {
  protected:
    static void Execute(CCommandBehaviourList& list) { list.Execute(new ProbeEvent, nullptr); }
    // The first behaviour of a list: changes the tree when the careful way is wanted.
    void Begin(CCommandBehaviourList& list) {
        const Rule rule = AddRule(list, 0);
        if (GetParam())
            rule.trigger->onTest = [behaviour = rule.behaviour](const CCommandEvent*) {
                auto* trigger = new ProbeTrigger;
                behaviour->AddTrigger(trigger);
                behaviour->RemoveTrigger(trigger);
                return 0;
            };
    }
    Rule Add(CCommandBehaviourList& list, const char* name, int verdict = 2) {
        return AddRule(list, verdict, [this, name](const CCommandEvent*) { order += name; });
    }

    std::string order;
};

INSTANTIATE_TEST_SUITE_P(PlanOrCareful, ExecuteTest, ::testing::Bool());

TEST_P(ExecuteTest, AnActionMayExecuteAnotherEventOfTheList) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    Add(list, "b");
    a.action->onFire = [&](const CCommandEvent* event) {
        order += "a(";
        if (event->type() == 0) list.Execute(new ProbeEvent(1), nullptr);
        order += ")";
    };
    Execute(list);
    EXPECT_EQ(order, "a(a()b)b");
}

TEST_P(ExecuteTest, AnActionMayExecuteAnEventOfAnotherListAndAskAboutUnlocking) {
    ProbeList list;
    ProbeList other;
    Begin(list);
    const Rule a = Add(list, "a");
    Add(other, "x");
    a.action->onFire = [&](const CCommandEvent*) {
        Execute(other);
        EXPECT_FALSE(other.CanUnLock(new ProbeEvent));
        EXPECT_FALSE(list.CanUnLock(new ProbeEvent));
    };
    Execute(list);
    EXPECT_EQ(order, "x");
}

TEST_P(ExecuteTest, ABehaviourThatAnEarlierOneEnablesIsAsked) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    const Rule b = Add(list, "b");
    const Rule c = Add(list, "c");
    b.behaviour->SetEnabled(false);
    a.action->onFire = [&](const CCommandEvent*) {
        order += "a";
        b.behaviour->SetEnabled(true);
        c.behaviour->SetEnabled(false);
    };
    Execute(list);
    EXPECT_EQ(order, "ab") << "and one it disables is not";
    EXPECT_EQ(c.trigger->tests, 0);
}

TEST_P(ExecuteTest, AnEarlierBehaviourThatIsEnabledMeanwhileIsNotAsked) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    const Rule b = Add(list, "b");
    a.behaviour->SetEnabled(false);
    b.trigger->onTest = [&](const CCommandEvent*) {
        a.behaviour->SetEnabled(true);
        return 2;
    };
    Execute(list);
    EXPECT_EQ(order, "b");
}

TEST_P(ExecuteTest, ABehaviourThatDisablesItselfOrTheListIsAskedToItsEnd) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    auto* second = new ProbeTrigger(2);
    a.behaviour->AddTrigger(second);
    Add(list, "b");
    a.trigger->onTest = [&](const CCommandEvent*) {
        a.behaviour->SetEnabled(false);
        list.SetEnabled(false);
        return 2;
    };
    Execute(list);
    EXPECT_EQ(order, "aab");
    EXPECT_EQ(second->tests, 1);
}

TEST_P(ExecuteTest, ATriggerMayRemoveItself) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    Add(list, "b");
    auto* second = new ProbeTrigger(2);
    a.behaviour->AddTrigger(second);
    a.trigger->onTest = [&](const CCommandEvent*) {
        a.behaviour->RemoveTrigger(a.trigger);
        return 2;
    };
    const int live = LiveProbes();
    Execute(list);
    EXPECT_EQ(order, "ab") << "its own verdict no longer counts, the second trigger's does";
    EXPECT_EQ(LiveProbes(), live - 1);
}

TEST_P(ExecuteTest, ATriggerMayRemoveLaterOnesAndAddNewOnes) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    const Rule b = Add(list, "b");
    auto* second = new ProbeTrigger(2);
    a.behaviour->AddTrigger(second);
    ProbeTrigger* added = nullptr;
    a.trigger->onTest = [&](const CCommandEvent*) {
        a.behaviour->RemoveTrigger(second);
        b.behaviour->RemoveTrigger(b.trigger);
        if (!added) a.behaviour->AddTrigger(added = new ProbeTrigger(2));
        return 0;
    };
    Execute(list);
    EXPECT_EQ(order, "");
    EXPECT_EQ(added->tests, 0) << "added to the behaviour that is being asked: it waits for the next event";
    a.trigger->onTest = nullptr;
    Execute(list);
    EXPECT_EQ(order, "aa");
}

TEST_P(ExecuteTest, AnActionMayRemoveAndDeleteItsOwnBehaviour) {
    for (const bool deleteIt : {true, false}) {
        SCOPED_TRACE(deleteIt);
        order.clear();
        ProbeList list;
        Begin(list);
        const Rule a = Add(list, "a");
        auto* second = new ProbeTrigger(2);
        a.behaviour->AddTrigger(second);
        auto* later = new ProbeAction([&](const CCommandEvent*) { order += "later"; });
        a.behaviour->AddAction(later);
        a.behaviour->MoveAction(later, nullptr);
        Add(list, "b");
        a.action->onFire = [&](const CCommandEvent*) {
            order += "a";
            list.Remove(a.behaviour);
            if (deleteIt) delete a.behaviour;
        };
        Execute(list);
        EXPECT_EQ(order, deleteIt ? "ab" : "alaterb")
            << "later triggers are not asked; later actions of the run go on as long as they live";
        Execute(list);
        EXPECT_EQ(deleteIt ? 0 : second->tests, 0);
        if (!deleteIt) delete a.behaviour;
        EXPECT_EQ(order, deleteIt ? "abb" : "alaterbb");
    }
}

TEST_P(ExecuteTest, ATriggerMayRemoveAndDeleteItsOwnBehaviourInItsTest) {
    for (const bool deleteIt : {true, false}) {
        SCOPED_TRACE(deleteIt);
        order.clear();
        ProbeList list;
        Begin(list);
        const Rule a = Add(list, "a");
        auto* second = new ProbeTrigger(2);
        a.behaviour->AddTrigger(second);
        Add(list, "b");
        a.trigger->onTest = [&](const CCommandEvent*) {
            list.Remove(a.behaviour);
            if (deleteIt) delete a.behaviour;
            return 2;
        };
        Execute(list);
        EXPECT_EQ(order, "b");
        EXPECT_EQ(deleteIt ? 0 : second->tests, 0);
        if (!deleteIt) delete a.behaviour;
    }
}

TEST_P(ExecuteTest, AnActionMayRemoveLaterBehavioursAndAddNewOnes) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    const Rule b = Add(list, "b");
    const Rule c = Add(list, "c");
    const std::unique_ptr<CCommandBehaviour> removed(c.behaviour);
    a.action->onFire = [&](const CCommandEvent*) {
        order += "a";
        list.Remove(b.behaviour);
        delete b.behaviour;
        list.Remove(c.behaviour);
        Add(list, "new");
        a.action->onFire = nullptr;
    };
    Add(list, "d");
    Execute(list);
    EXPECT_EQ(order, "ad") << "the new one waits for the next event";
    EXPECT_EQ(c.trigger->tests, 0);
    Execute(list);
    EXPECT_EQ(order, "addnew");
}

TEST_P(ExecuteTest, ABehaviourTakenOutAndPutBackIsANewMember) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    const Rule b = Add(list, "b");
    a.action->onFire = [&](const CCommandEvent*) {
        order += "a";
        list.Remove(b.behaviour);
        list.Add(b.behaviour);
    };
    Execute(list);
    EXPECT_EQ(order, "a");
    EXPECT_EQ(b.trigger->tests, 0);
}

TEST_P(ExecuteTest, AnActionMayLoadTheList) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    auto* second = new ProbeTrigger(2);
    second->onTest = [&](const CCommandEvent*) {
        order += "second";
        return 2;
    };
    a.behaviour->AddTrigger(second);
    auto* later = new ProbeAction([&](const CCommandEvent*) { order += "later"; });
    a.behaviour->AddAction(later);
    a.behaviour->MoveAction(later, nullptr);
    Add(list, "b");
    bool actionAlive = true;
    a.action->onDestroyed = [&] { actionAlive = false; };
    a.action->onFire = [&](const CCommandEvent*) {
        order += "a";
        Reload(list);
        EXPECT_TRUE(actionAlive) << "it is running";
        EXPECT_EQ(list.GetChildCount(), 1);
    };
    Execute(list);
    EXPECT_EQ(order, "a") << "nothing of what was destroyed runs on";
    EXPECT_FALSE(actionAlive) << "parked until the outermost call returns";
}

TEST_P(ExecuteTest, ATriggerMayLoadTheListInItsTest) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    auto* second = new ProbeTrigger(2);
    a.behaviour->AddTrigger(second);
    bool asked = false;
    second->onTest = [&](const CCommandEvent*) {
        asked = true;
        return 2;
    };
    Add(list, "b");
    a.trigger->onTest = [&](const CCommandEvent*) {
        Reload(list);
        return 2;
    };
    const int live = LiveProbes();
    Execute(list);
    EXPECT_EQ(order, "");
    EXPECT_FALSE(asked);
    EXPECT_LT(LiveProbes(), live);
}

TEST_P(ExecuteTest, AnActionMayDestroyItsOwnList) {
    auto list = std::make_unique<ProbeList>();
    Begin(*list);
    const Rule a = Add(*list, "a");
    auto* later = new ProbeAction([&](const CCommandEvent*) { order += "later"; });
    a.behaviour->AddAction(later);
    a.behaviour->MoveAction(later, nullptr);
    a.behaviour->AddTrigger(new ProbeTrigger(2));
    Add(*list, "b");
    VariableManager variables;
    auto* event = new ProbeEvent;
    event->AddRef();
    a.action->onFire = [&](const CCommandEvent* given) {
        order += "a";
        list.reset();
        EXPECT_EQ(given, event) << "still there";
        EXPECT_EQ(a.action->variableManager(), &variables) << "the running action too";
    };
    ProbeList* raw = list.get();
    raw->Execute(event, &variables);
    EXPECT_EQ(order, "a");
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

TEST_P(ExecuteTest, ATriggerMayDestroyTheListInTestAndInRetest) {
    for (const bool inRetest : {false, true}) {
        SCOPED_TRACE(inRetest);
        auto list = std::make_unique<ProbeList>();
        Begin(*list);
        const Rule a = Add(*list, "a", inRetest ? 1 : 2);
        QueueRepeat(*list, a);
        QueueRepeat(*list, a);
        const auto destroy = [&] { list.reset(); };
        int retests = 0;
        if (inRetest)
            a.trigger->onRetest = [&, destroy](const CCommandEvent*) {
                ++retests;
                destroy();
                return true;
            };
        else
            a.trigger->onTest = [&, destroy](const CCommandEvent*) {
                destroy();
                return 2;
            };
        a.behaviour->AddTrigger(new ProbeTrigger(2));
        ProbeList* raw = list.get();
        Execute(*raw);
        EXPECT_EQ(order, "");
        EXPECT_EQ(retests, inRetest ? 1 : 0);
    }
}

TEST_P(ExecuteTest, AnActionMayDestroyOtherListsAndBuildNewOnes) {
    ProbeList list;
    auto other = std::make_unique<ProbeList>();
    Begin(list);
    const Rule a = Add(list, "a");
    Add(*other, "x");
    a.action->onFire = [&](const CCommandEvent*) {
        Execute(*other);
        other = std::make_unique<ProbeList>();
        Add(*other, "y");
        Execute(*other);
    };
    Execute(list);
    EXPECT_EQ(order, "xy");
}

TEST_P(ExecuteTest, ActionsMayAddCancelAndResetRepeats) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    const Rule b = Add(list, "b", 0);
    a.action->onFire = [&](const CCommandEvent* event) {
        list.AddRepeatAction(a.trigger, event, b.action, nullptr);
        list.AddRepeatAction(b.trigger, event, b.action, nullptr);
        list.CancelRepeats(a.trigger);
        EXPECT_EQ(list.GetRepeatCount(), 1);
        list.ResetRepeats();
        EXPECT_EQ(list.GetRepeatCount(), 0);
        list.AddRepeatAction(b.trigger, event, b.action, nullptr);
    };
    Execute(list);
    EXPECT_EQ(list.GetRepeatCount(), 1);
}

TEST_P(ExecuteTest, AnActionMayResetTheListAndDeleteEverything) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    Add(list, "b");
    a.action->onFire = [&](const CCommandEvent*) {
        order += "a";
        std::vector<CCommandBehaviour*> all;
        for (POSITION position = list.GetFirstChildPosition(); position;)
            all.push_back(const_cast<CCommandBehaviour*>(
                static_cast<const CCommandBehaviour*>(list.GetNextChild(position))));
        list.ResetList();
        for (CCommandBehaviour* behaviour : all) delete behaviour;
    };
    Execute(list);
    EXPECT_EQ(order, "a");
    EXPECT_TRUE(list.IsEmpty());
}

TEST_P(ExecuteTest, AnActionMayRunANestedEventLoop) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    Add(list, "b");
    const Rule repeating = Add(list, "r", 0);
    QueueRepeat(list, repeating);
    a.action->onFire = [&](const CCommandEvent*) {
        order += "a(";
        CCommandBehaviourList::CallOnTimer();
        order += ")";
    };
    Execute(list);
    EXPECT_EQ(order, "a(r)b");
}

TEST_P(ExecuteTest, ParkedObjectsGoWithTheOutermostCallAlone) {
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    const Rule victim = Add(list, "v", 0);
    bool alive = true;
    victim.trigger->onDestroyed = [&] { alive = false; };
    ProbeList inner;
    const Rule nested = AddRule(inner, 2);
    nested.action->onFire = [&](const CCommandEvent*) { victim.behaviour->RemoveTrigger(victim.trigger); };
    a.action->onFire = [&](const CCommandEvent*) {
        Execute(inner);
        EXPECT_TRUE(alive) << "a call is still in progress";
    };
    Execute(list);
    EXPECT_FALSE(alive);
}

TEST_P(ExecuteTest, AnExceptionUnwindsNestedCalls) {
    VariableManager outer;
    outer.addVariable({"x", "outer"});
    VariableManager inner;
    ProbeList list;
    Begin(list);
    const Rule a = Add(list, "a");
    ProbeList other;
    const Rule thrower = AddRule(other, 2, [](const CCommandEvent*) { throw std::runtime_error("host"); });
    a.action->onFire = [&](const CCommandEvent*) {
        EXPECT_THROW(other.Execute(new ProbeEvent, &inner), std::runtime_error);
        EXPECT_EQ(Expanded("{x}"), "outer") << "the outer scope is in force again";
        EXPECT_EQ(a.action->variableManager(), &outer);
    };
    list.Execute(new ProbeEvent, &outer);
    EXPECT_EQ(a.action->runs, 1);
    EXPECT_EQ(thrower.action->variableManager(), nullptr);
}

}  // namespace
