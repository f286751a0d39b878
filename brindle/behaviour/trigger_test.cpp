// The defaults of triggers and of time based ones.
#include "brindle/behaviour/trigger.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "brindle/behaviour/time_based_trigger.h"
#include "testing/behaviour_kit.h"

namespace {

class PlainTrigger : public CCommandTrigger {
  public:
    CStringA GetText(int) override { return {}; }
    CStringA GetReflect() override { return {}; }
    int Test(const CCommandEvent*) override { return 0; }
    void Reserved23() override {}
};

class PlainTimeTrigger : public CTimeBasedTrigger {
  public:
    CStringA GetReflect() override { return {}; }
    int Test(const CCommandEvent*) override { return 0; }
    void Reserved23() override {}
};

static_assert(std::is_abstract_v<CCommandTrigger>);
static_assert(std::is_abstract_v<CTimeBasedTrigger>);
static_assert(std::is_base_of_v<CCommandTrigger, CTimeBasedTrigger>);
static_assert(CCommandTrigger::kNotConcerned == 0 && CCommandTrigger::kEnded == 1 &&
              CCommandTrigger::kFired == 2);

TEST(Trigger, Defaults) {
    PlainTrigger trigger;
    EXPECT_TRUE(trigger.IsEnabled());
    EXPECT_TRUE(trigger.IsVisible());
    EXPECT_TRUE(trigger.CanRename());
    EXPECT_EQ(trigger.GetName(), "");
    EXPECT_EQ(trigger.GetChildCount(), 0);
    EXPECT_EQ(trigger.GetFirstChildPosition(), nullptr);
    int anything = 0;
    POSITION position = reinterpret_cast<POSITION>(&anything);
    EXPECT_EQ(trigger.GetNextChild(position), nullptr);
    EXPECT_FALSE(trigger.Retest(nullptr));
    EXPECT_EQ(trigger.Replicate(), nullptr);
    EXPECT_FALSE(trigger.HasConfig("StateTrigger"));
    EXPECT_FALSE(trigger.HasConfig(""));
    EXPECT_EQ(trigger.GetNextTime(), 0);
    EXPECT_EQ(trigger.GetImage(), 0);
    EXPECT_EQ(trigger.GetRealObject(), &trigger);
    trigger.Init();
    EXPECT_TRUE(trigger.IsEnabled());
}

TEST(Trigger, RenameSetsTheName) {
    PlainTrigger trigger;
    trigger.Rename("Alarm");
    EXPECT_EQ(trigger.GetName(), "Alarm");
    trigger.Rename("");
    EXPECT_EQ(trigger.GetName(), "");
    trigger.Rename("again");
    trigger.Rename(nullptr);
    EXPECT_EQ(trigger.GetName(), "");
}

TEST(Trigger, CopiesCarryFlagAndName) {
    PlainTrigger source;
    source.SetEnabled(false);
    source.Rename("Alarm");
    const PlainTrigger copy(source);
    EXPECT_FALSE(copy.IsEnabled());
    EXPECT_EQ(copy.GetName(), "Alarm");
    PlainTrigger assigned;
    assigned = source;
    EXPECT_FALSE(assigned.IsEnabled());
    EXPECT_EQ(assigned.GetName(), "Alarm");
}

TEST(TimeBasedTrigger, IsRecognisedByItsTypeText) {
    PlainTimeTrigger trigger;
    trigger.Rename("Midnight");
    EXPECT_EQ(trigger.GetText(1), "Time Based Trigger");
    EXPECT_EQ(trigger.GetText(0), "Midnight");
    EXPECT_EQ(trigger.GetText(2), "Midnight");
}

}  // namespace
