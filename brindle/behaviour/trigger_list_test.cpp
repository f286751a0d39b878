// Trigger lists: what they do not share with action lists (that is in type_registry_test.cpp).
#include "brindle/behaviour/trigger_list.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "brindle/behaviour/trigger.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

class TriggerListTest : public BehaviourTest {};

TEST_F(TriggerListTest, ShowsItsTriggersInOrder) {
    CCommandTriggerList list;
    EXPECT_EQ(list.GetFirstChildPosition(), nullptr);
    EXPECT_EQ(list.GetChildCount(), 0);
    auto* a = new ProbeTrigger;
    auto* b = new ProbeTrigger;
    list.Add(a);
    list.Add(nullptr);
    list.Add(b);
    EXPECT_EQ(list.GetChildCount(), 3);
    POSITION position = list.GetFirstChildPosition();
    EXPECT_EQ(list.GetNextChild(position), a);
    EXPECT_EQ(list.GetNextChild(position), nullptr);
    EXPECT_EQ(list.GetNextChild(position), b);
    EXPECT_EQ(position, nullptr);
    EXPECT_EQ(list.GetNextChild(position), nullptr);
}

TEST_F(TriggerListTest, AssignmentCopiesTheFlag) {
    CCommandTriggerList source;
    source.SetEnabled(false);
    CCommandTriggerList list;
    list = source;
    EXPECT_FALSE(list.IsEnabled());
}

TEST_F(TriggerListTest, IsNoTriggerAndNotShown) {
    CCommandTriggerList list;
    static_assert(std::is_base_of_v<CCommandTreeItem, CCommandTriggerList>);
    static_assert(!std::is_base_of_v<CCommandTrigger, CCommandTriggerList>);
    EXPECT_FALSE(list.IsVisible());
    EXPECT_EQ(list.GetText(0), "");
    EXPECT_EQ(list.GetText(1), "");
    EXPECT_EQ(list.GetReflect(), "");
    EXPECT_EQ(list.GetImage(), 0);
}

TEST_F(TriggerListTest, InitReachesEveryTriggerInOrder) {
    CCommandTriggerList list;
    std::string order;
    for (const char* name : {"a", "b", "c"}) {
        auto* trigger = new ProbeTrigger;
        trigger->onInit = [&order, name] { order += name; };
        trigger->SetEnabled(*name != 'b');  // disabled ones too
        list.Add(trigger);
        list.Add(nullptr);
    }
    list.Init();
    EXPECT_EQ(order, "abc");
}

TEST_F(TriggerListTest, InitSurvivesWhatTriggersDoToTheList) {
    auto list = std::make_unique<CCommandTriggerList>();
    std::string order;
    auto* a = new ProbeTrigger;
    auto* b = new ProbeTrigger;
    auto* c = new ProbeTrigger;
    a->onInit = [&] {
        order += "a";
        list->Remove(a);
        list->Remove(b);
        list->Add(new ProbeTrigger);
    };
    b->onInit = [&] { order += "b"; };
    c->onInit = [&] {
        order += "c";
        list.reset();
    };
    auto* last = new ProbeTrigger;
    last->onInit = [&] { order += "last"; };
    for (auto* trigger : {a, b, c, last}) list->Add(trigger);
    list->Init();
    EXPECT_EQ(order, "ac");
}

TEST_F(TriggerListTest, AFailingInitPassesThrough) {
    CCommandTriggerList list;
    auto* a = new ProbeTrigger;
    a->onInit = [] { throw std::runtime_error("no"); };
    list.Add(a);
    EXPECT_THROW(list.Init(), std::runtime_error);
    list.Remove(a);  // destroyed at once: no call is in progress any more
    EXPECT_EQ(list.GetChildCount(), 0);
}

}  // namespace
