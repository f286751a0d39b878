// The behaviour engine when memory runs out: nothing is lost twice, left behind or half done, and all of it goes on
// when memory is back.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "brindle/behaviour/action_list.h"
#include "brindle/behaviour/trigger_list.h"
#include "testing/behaviour_kit.h"
#include "testing/failing_allocation.h"

namespace {

using namespace brindle::testing;

constexpr const char* kTwoBehaviours =
    "<BehaviourList><Behaviour><TriggerList><ProbeTrigger note=\"a note longer than any buffer inside a "
    "string\">"
    "<Enabled value=\"TRUE\"/></ProbeTrigger><Unknown/><ProbeTimeTrigger "
    "note=\"t\"/></TriggerList><ActionList>"
    "<ProbeAction note=\"n\" period=\"5\" repeats=\"TRUE\"/></ActionList></Behaviour>"
    "<Behaviour><TriggerList><ProbeTrigger "
    "note=\"last\"/></TriggerList><ActionList/></Behaviour></BehaviourList>";

std::string Saved(const CCommandBehaviourList& list) {
    return Written([&](XMLWriter& writer) { list.Save(writer); });
}

// How many of a list's behaviours are whole: a trigger at least, as each of the document has.
int WholeBehaviours(const CCommandBehaviourList& list) {
    int whole = 0;
    for (POSITION position = list.GetFirstChildPosition(); position;)
        whole += dynamic_cast<const CCommandBehaviour&>(*list.GetNextChild(position)).GetTriggerCount() > 0;
    return whole;
}

class EngineAllocationTest : public BehaviourTest {
  protected:
    struct Filled {
        ProbeList list;
        XMLReader reader;

        explicit Filled(const char* xml = kTwoBehaviours) : reader(ReaderOf(xml)) { list.Load(reader); }
    };
};

TEST_F(EngineAllocationTest, Load) {
    const std::string whole = Saved(Filled().list);
    FailEveryAllocation("load", 20, [&] {
        const auto state = std::make_shared<Filled>();
        state->reader = ReaderOf(kTwoBehaviours);
        const auto check = [state, &whole](bool done) {
            EXPECT_EQ(WholeBehaviours(state->list), state->list.GetChildCount()) << "a part of a behaviour";
            if (done) {
                EXPECT_EQ(Saved(state->list), whole);
            }
            state->reader = ReaderOf(kTwoBehaviours);
            state->list.Load(state->reader);
            EXPECT_EQ(Saved(state->list), whole);
        };
        return Attempt{[state] { state->list.Load(state->reader); }, check};
    });
}

TEST_F(EngineAllocationTest, LoadByAnActionOfTheListItself) {
    FailEveryAllocation("load in an action", 20, [] {
        const auto state = std::make_shared<Filled>();
        state->reader = ReaderOf(kTwoBehaviours);
        Rule rule = AddRepeating(state->list, 10);
        rule.trigger->verdict = CCommandTrigger::kFired;
        rule.action->onFire = [s = state.get()](const CCommandEvent*) { s->list.Load(s->reader); };
        const auto execute = [state, event = new ProbeEvent] { state->list.Execute(event, nullptr); };
        const auto check = [state](bool) {
            EXPECT_LE(state->list.GetChildCount(), 3);
            state->list.ResetRepeats();
            EXPECT_EQ(state->list.GetRepeatCount(), 0);
            state->list.Execute(new ProbeEvent, nullptr);
        };
        return Attempt{execute, check};
    });
}

TEST_F(EngineAllocationTest, Save) {
    const std::string whole = Saved(Filled().list);
    FailEveryAllocation("save", 3, [&] {
        const auto state = std::make_shared<Filled>();
        const auto writer = std::make_shared<XMLWriter>();
        EXPECT_TRUE(writer->Initialize());
        const auto check = [state, writer, &whole](bool) {
            EXPECT_EQ(Saved(state->list), whole);
            writer->EnterSection("After");
            std::string xml;
            EXPECT_TRUE(writer->SaveToString(xml));
            EXPECT_TRUE(xml.ends_with("<After/>")) << "a section stayed open: " << xml;
        };
        return Attempt{[state, writer] { state->list.Save(*writer); }, check};
    });
}

TEST_F(EngineAllocationTest, AddingABehaviour) {
    FailEveryAllocation("add a behaviour", 2, [] {
        const auto list = std::make_shared<ProbeList>();
        for (int i = 0; i < 10; ++i) AddRule(*list, 0);  // a block of the list is full, and no walk is short
        CCommandBehaviour* added = MakeRule(0).behaviour;
        const auto check = [list, added](bool done) {
            EXPECT_EQ(list->GetChildCount(), done ? 11 : 10);
            if (!done) list->Add(added);
            EXPECT_EQ(list->GetChildCount(), 11);
            EXPECT_FALSE(list->HasStateTriggers());
        };
        return Attempt{[list, added] { list->Add(added); }, check};
    });
}

TEST_F(EngineAllocationTest, TakingABehaviourOut) {
    FailEveryAllocation("remove a behaviour", 1, [] {
        const auto list = std::make_shared<ProbeList>();
        for (int i = 0; i < 10; ++i) AddRule(*list, 0);
        const Rule rule = AddRule(*list, 0);
        const auto check = [list, rule](bool) {
            EXPECT_EQ(list->GetChildCount(), 10);
            delete rule.behaviour;
        };
        return Attempt{[list, rule] { list->Remove(rule.behaviour); }, check};
    });
}

TEST_F(EngineAllocationTest, AddingATriggerAndAnAction) {
    FailEveryAllocation("add a trigger and an action", 2, [] {
        const auto behaviour = std::make_shared<CCommandBehaviour>();
        auto* trigger = new ProbeTrigger;
        auto* action = new ProbeAction;
        const auto add = [behaviour, trigger, action] {
            if (behaviour->GetTriggerCount() == 0) behaviour->AddTrigger(trigger);
            behaviour->AddAction(action);
        };
        return Attempt{add, [behaviour, add](bool done) {
                           EXPECT_EQ(behaviour->GetChildCount(), done ? 1 : 0);
                           if (!done) add();
                           EXPECT_EQ(behaviour->GetTriggerCount(), 1);
                           EXPECT_EQ(behaviour->GetChildCount(), 1);
                       }};
    });
}

TEST_F(EngineAllocationTest, AssigningABehaviour) {
    FailEveryAllocation("assign", 4, [] {
        const auto source = std::make_shared<CCommandBehaviour>();
        auto* trigger = new ProbeTrigger;
        auto* action = new ProbeAction;
        trigger->onReplicate = [] { return new ProbeTrigger; };
        action->onReplicate = [] { return new ProbeAction; };
        source->AddTrigger(trigger);
        source->AddAction(action);
        const auto target = std::make_shared<CCommandBehaviour>();
        const auto check = [source, target](bool done) {
            EXPECT_EQ(source->GetTriggerCount(), 1);
            if (done) {
                EXPECT_EQ(target->GetTriggerCount(), 1);
            }
            const int before = target->GetTriggerCount();
            *target = *source;
            EXPECT_EQ(target->GetTriggerCount(), before + 1);
        };
        return Attempt{[source, target] { *target = *source; }, check};
    });
}

TEST_F(EngineAllocationTest, Events) {
    FailEveryAllocation("execute", 4, [this] {
        const auto list = std::make_shared<ProbeList>();
        const Rule rule = AddRule(*list, CCommandTrigger::kFired);
        rule.action->repeats = true;
        rule.action->period = 10;
        const auto execute = [list, event = new ProbeEvent] { list->Execute(event, nullptr); };
        const auto check = [this, list, rule](bool done) {
            EXPECT_EQ(rule.action->runs, list->GetRepeatCount());
            EXPECT_EQ(rule.action->runs, done ? 1 : 0);
            rule.action->runs = 0;
            list->Execute(new ProbeEvent, nullptr);
            EXPECT_EQ(rule.action->runs, 1);
            Tick(10);
            EXPECT_EQ(rule.action->runs, 1 + list->GetRepeatCount());
        };
        return Attempt{execute, check};
    });
}

TEST_F(EngineAllocationTest, TheEndOfACondition) {
    FailEveryAllocation("cancel", 1, [] {
        const auto list = std::make_shared<ProbeList>();
        const Rule rule = AddRepeating(*list, 10);
        rule.trigger->verdict = CCommandTrigger::kEnded;
        const auto execute = [list, event = new ProbeEvent] { list->Execute(event, nullptr); };
        const auto check = [list](bool done) {
            EXPECT_EQ(list->GetRepeatCount(), done ? 0 : 1);
            list->Execute(new ProbeEvent, nullptr);
            EXPECT_EQ(list->GetRepeatCount(), 0);
        };
        return Attempt{execute, check};
    });
}

// Neither the timer nor anything that destroys takes memory: what must be free of it is free of it.
TEST_F(EngineAllocationTest, TheTimerAndDestructionNeedNoMemory) {
    struct State {
        ProbeList list;
        Rule rule = AddRepeating(list, 10);
        Rule second = AddRepeating(list, 10);
        std::unique_ptr<ProbeList> inner = std::make_unique<ProbeList>();
    } state;
    AddRepeating(*state.inner, 10);
    state.rule.action->onFire = [&state](const CCommandEvent*) {
        state.inner.reset();
        state.second.behaviour->RemoveAction(state.second.action);
        state.second.behaviour->RemoveTrigger(state.second.trigger);
        state.list.ResetRepeats();
    };
    Advance(10);
    bool happened = false;
    {
        const FailingAllocation failing(1, Shortage::kLasting);
        CCommandBehaviourList::CallOnTimer();
        happened = FailingAllocation::Happened();
    }
    EXPECT_FALSE(happened);
    EXPECT_EQ(state.rule.action->runs, 1);
    EXPECT_EQ(state.list.GetRepeatCount(), 0);
    EXPECT_EQ(state.inner, nullptr);
}

// A list of more items than are looked through one by one keeps a set of who is there.
TEST_F(EngineAllocationTest, AWalkOverAChangingLongList) {
    FailEveryAllocation("a long walk", 40, [] {
        const auto list = std::make_shared<ProbeList>();
        const Rule first = AddRule(*list, 0);
        for (int i = 0; i < 40; ++i) AddRule(*list, CCommandTrigger::kFired);
        first.trigger->onTest = [first](const CCommandEvent*) {
            first.behaviour->RemoveAction(first.action);
            first.behaviour->SetEnabled(!first.behaviour->IsEnabled());
            return 0;
        };
        const auto execute = [list, event = new ProbeEvent] { list->Execute(event, nullptr); };
        const auto check = [list, first](bool) {
            first.behaviour->SetEnabled(true);
            int runs = 0;
            ProbeVisitor count([&](CCommandTreeItem* item) {
                if (auto* action = dynamic_cast<ProbeAction*>(item)) runs += std::exchange(action->runs, 0);
            });
            list->Traverse(count);
            runs = 0;
            list->Execute(new ProbeEvent, nullptr);
            list->Traverse(count);
            EXPECT_EQ(runs, 40) << "every behaviour is still found";
        };
        return Attempt{execute, check};
    });
}

TEST_F(EngineAllocationTest, Registration) {
    FailEveryAllocation("names of types", 2, [] {
        const auto names = std::make_shared<CStringList>();
        const auto check = [names](bool) {
            CCommandTriggerList::GetTypeList(*names);
            EXPECT_EQ(names->GetCount(), 2);
        };
        return Attempt{[names] { CCommandTriggerList::GetTypeList(*names); }, check};
    });
}

}  // namespace
