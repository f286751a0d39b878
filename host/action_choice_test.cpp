// A behaviour list while somebody chooses what it does: the working copy, what is wrong with it, and what taking it
// over changes in the list.
#include "host/action_choice.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/trigger_list.h>
#include <brindle/xml/xml_reader.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/behaviour_items.h"
#include "host/register_types.h"
#include "host/start_event.h"

namespace brindle::host {
namespace {

const char* const kList =
    "<BehaviourList><Behaviour><TriggerList><StateTrigger Name='Lost' States='3-'/></TriggerList><ActionList>"
    "<WriteLogAction Text='a'/><RunCommandAction Command='bell.exe' Repeat='TRUE'/></ActionList></Behaviour>"
    "<Behaviour><TriggerList><RuleTrigger Rule='State = "
    "1'/><ButtonTrigger/></TriggerList><ActionList/></Behaviour>"
    "</BehaviourList>";

// An action that cannot be copied.
class ForeignAction final : public CCommandAction {
  public:
    CStringA GetText(int) override { return "Foreign"; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override {}
};

class ActionChoiceTest : public ::testing::Test {
  protected:
    ActionChoiceTest() {
        RegisterHostTypes();
        XMLReader reader;
        CStringA unused;
        EXPECT_TRUE(reader.LoadFromString(kList, unused));
        m_list.Load(reader);
    }
    static bool Offers(const ActionChoice& choice, const std::string& name) {
        return std::any_of(choice.Types().begin(), choice.Types().end(),
                           [&](const ActionChoice::Type& type) { return type.name == name; });
    }
    static ChosenItem* Add(ActionChoice& choice, ChosenBehaviour& behaviour, const std::string& name) {
        for (const ActionChoice::Type& type : choice.Types())
            if (type.name == name) return choice.Add(behaviour, type);
        return nullptr;
    }

    CCommandBehaviourList m_list{eHostMapObject};
};

TEST_F(ActionChoiceTest, ShowsTheListAsItIs) {
    const ActionChoice choice(m_list, eHostMapObject);
    ASSERT_EQ(choice.Behaviours().size(), 2u);
    EXPECT_EQ(choice.Behaviours()[0]->Text(), "State Trigger: Lost");
    EXPECT_EQ(choice.Behaviours()[1]->Text(), "Rule Trigger: Rule=\"State = 1\", Button Trigger");
    ASSERT_EQ(choice.Behaviours()[0]->actions.size(), 2u);
    EXPECT_EQ(choice.Behaviours()[0]->actions[0]->Text(), "Write Log: Text=\"a\"");
    EXPECT_TRUE(choice.Behaviours()[0]->actions[1]->IsEnabled());
    EXPECT_EQ(choice.Behaviours()[1]->triggers[0]->Rule(), "State = 1");
    EXPECT_FALSE(choice.Behaviours()[1]->triggers[1]->Rule());
    EXPECT_FALSE(choice.IsChanged());
    EXPECT_EQ(choice.Fault(), "");
}

TEST_F(ActionChoiceTest, OffersTheRegisteredTypes) {
    const ActionChoice object(m_list, eHostMapObject);
    EXPECT_TRUE(Offers(object, "WriteLogAction"));
    EXPECT_TRUE(Offers(object, "RuleTrigger"));
    EXPECT_FALSE(Offers(object, "MaskUnitAction")) << "its lines cannot be edited here";
}

TEST_F(ActionChoiceTest, NothingReachesTheListBeforeApply) {
    const std::string before = SavedText(m_list);
    {
        ActionChoice choice(m_list, eHostMapObject);
        choice.Behaviours()[0]->triggers[0]->Set("Name", "other");
        choice.Behaviours()[0]->triggers[0]->SetEnabled(false);
        choice.Remove(choice.Behaviours()[0]->actions[0].get());
        Add(choice, *choice.Behaviours()[1], "WriteLogAction");
        choice.Remove(choice.Behaviours()[0].get());
        choice.AddBehaviour();
        EXPECT_TRUE(choice.IsChanged());
    }
    EXPECT_EQ(SavedText(m_list), before);
}

TEST_F(ActionChoiceTest, ApplyChangesTheListAsChosen) {
    const std::vector<CCommandBehaviour*> before = BehavioursOf(m_list);
    ActionChoice choice(m_list, eHostMapObject);
    ChosenBehaviour& first = *choice.Behaviours()[0];
    first.actions[0]->Set("Text", "changed");
    first.actions[0]->SetEnabled(false);
    choice.Remove(first.actions[1].get());
    Add(choice, first, "SetVariableAction")->Set("Variable", "x");
    Add(choice, first, "WriteLogAction")->Set("Text", "last");
    Add(choice, first, "ButtonTrigger");
    ChosenBehaviour& fresh = *choice.AddBehaviour();
    Add(choice, fresh, "ButtonTrigger");
    EXPECT_TRUE(choice.Apply());
    const std::vector<CCommandBehaviour*> now = BehavioursOf(m_list);
    ASSERT_EQ(now.size(), 3u);
    EXPECT_EQ(now[0], before[0]);
    EXPECT_EQ(now[1], before[1]);
    EXPECT_EQ(TriggersOf(*now[0]).size(), 2u);
    const std::vector<CCommandAction*> actions = ActionsOf(*now[0]);
    ASSERT_EQ(actions.size(), 3u);
    EXPECT_EQ(actions[0]->GetReflect(), "Text=\"changed\"");
    EXPECT_FALSE(actions[0]->IsEnabled());
    EXPECT_EQ(actions[1]->GetText(1), "Set Variable");
    EXPECT_EQ(actions[2]->GetReflect(), "Text=\"last\"");
    EXPECT_EQ(TriggersOf(*now[2]).size(), 1u);
}

TEST_F(ActionChoiceTest, RemovedBehavioursEndAndTakeTheirRepeatsAlong) {
    CCommandBehaviour* const first = BehavioursOf(m_list)[0];
    const CCommandEvent* const event = new StartEvent;
    m_list.AddRepeatAction(TriggersOf(*first)[0], event, ActionsOf(*first)[1], nullptr);
    event->Release();
    ASSERT_EQ(m_list.GetRepeatCount(), 1);
    ActionChoice choice(m_list, eHostMapObject);
    choice.Remove(choice.Behaviours()[0].get());
    choice.Apply();
    EXPECT_EQ(m_list.GetRepeatCount(), 0);
    EXPECT_EQ(BehavioursOf(m_list).size(), 1u);
}

TEST_F(ActionChoiceTest, WhatDidNotChangeKeepsItsRepeats) {
    CCommandBehaviour* const first = BehavioursOf(m_list)[0];
    const CCommandEvent* const event = new StartEvent;
    m_list.AddRepeatAction(TriggersOf(*first)[0], event, ActionsOf(*first)[1], nullptr);
    event->Release();
    ActionChoice choice(m_list, eHostMapObject);
    choice.Behaviours()[1]->triggers[0]->Set("Rule", "State = 2");
    choice.Apply();
    EXPECT_EQ(m_list.GetRepeatCount(), 1);
    ActionChoice again(m_list, eHostMapObject);
    again.Behaviours()[0]->actions[0]->Set("Text", "b");
    again.Apply();
    EXPECT_EQ(m_list.GetRepeatCount(), 0) << "a behaviour that changed begins anew";
}

// What the list listens to is known at once.
TEST_F(ActionChoiceTest, TheListFindsOutWhatItListensTo) {
    ActionChoice choice(m_list, eHostMapObject);
    choice.Remove(choice.Behaviours()[0].get());
    choice.Remove(choice.Behaviours()[0]->triggers[0].get());
    choice.Apply();
    EXPECT_FALSE(m_list.HasStateTriggers());
    ActionChoice again(m_list, eHostMapObject);
    Add(again, *again.Behaviours()[0], "StateTrigger");
    again.Apply();
    EXPECT_TRUE(m_list.HasStateTriggers());
    EXPECT_FALSE(m_list.HasAnyDataChangedStateTrigger());
    ActionChoice third(m_list, eHostMapObject);
    third.Behaviours()[0]->triggers[1]->Set("AnyChange", "TRUE");
    third.Apply();
    EXPECT_TRUE(m_list.HasAnyDataChangedStateTrigger());
}

TEST_F(ActionChoiceTest, AListThatBecameAnotherOneMeanwhileIsLeftAlone) {
    ActionChoice choice(m_list, eHostMapObject);
    choice.Behaviours()[0]->actions[0]->Set("Text", "mine");
    XMLReader reader;
    CStringA unused;
    EXPECT_TRUE(reader.LoadFromString("<BehaviourList/>", unused));
    m_list.Load(reader);
    EXPECT_EQ(choice.Behaviours()[0]->Text(), "State Trigger: Lost");
    EXPECT_TRUE(choice.IsChanged());
    EXPECT_EQ(choice.Fault(), "");
    EXPECT_FALSE(choice.Apply());
    EXPECT_TRUE(m_list.IsEmpty());
}

TEST_F(ActionChoiceTest, TextsThatCannotBeReadAreKeptAndTold) {
    ActionChoice choice(m_list, eHostMapObject);
    ChosenItem& action = *choice.Behaviours()[0]->actions[1];
    const std::string why = action.Set("Period", "often");
    EXPECT_EQ(why, "\"often\" is not a whole number from 0 to 2147483647");
    const auto values = action.Values();
    const auto period =
        std::find_if(values.begin(), values.end(), [](const auto& v) { return v.name == "Period"; });
    ASSERT_NE(period, values.end());
    EXPECT_EQ(period->text, "often");
    EXPECT_EQ(period->why, why);
    EXPECT_EQ(choice.Fault(), action.Text() + ": attribute \"Period\": " + why);
    EXPECT_EQ(action.Set("Period", "500"), "");
    EXPECT_EQ(choice.Fault(), "");
    EXPECT_EQ(action.Set("Nonsense", "1"), "it has no attribute \"Nonsense\"");
}

TEST_F(ActionChoiceTest, ANewItemHasNoConflicts) {
    ActionChoice choice(m_list, eHostMapObject);
    ChosenItem* const rule = Add(choice, *choice.Behaviours()[0], "RuleTrigger");
    EXPECT_EQ(choice.Fault(), "Rule Trigger: \"Rule\" is missing or empty: it never fires");
    rule->Set("Rule", "State = ");
    EXPECT_EQ(choice.Fault(),
              "Rule Trigger: Rule=\"State = \": attribute \"Rule\": an operand is missing at column 7");
    rule->Set("Rule", "State = 2");
    EXPECT_EQ(choice.Fault(), "");
}

TEST_F(ActionChoiceTest, ItemsThatCannotBeCopiedCanBeRemovedOnly) {
    BehavioursOf(m_list)[1]->AddAction(new ForeignAction);
    ActionChoice choice(m_list, eHostMapObject);
    ChosenItem& foreign = *choice.Behaviours()[1]->actions[0];
    EXPECT_FALSE(foreign.IsCopied());
    EXPECT_EQ(foreign.Text(), "Foreign");
    EXPECT_TRUE(foreign.Values().empty());
    foreign.SetEnabled(false);
    EXPECT_TRUE(foreign.IsEnabled());
    EXPECT_FALSE(choice.IsChanged());
    choice.Remove(&foreign);
    choice.Apply();
    EXPECT_TRUE(ActionsOf(*BehavioursOf(m_list)[1]).empty());
}

}  // namespace
}  // namespace brindle::host
