// The defaults of actions.
#include "brindle/behaviour/action.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "brindle/variables/variable_manager.h"

namespace {

class PlainAction : public CCommandAction {
  public:
    CStringA GetText(int) override { return {}; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override {}
};

static_assert(std::is_abstract_v<CCommandAction>);

TEST(Action, Defaults) {
    PlainAction action;
    EXPECT_TRUE(action.IsEnabled());
    EXPECT_TRUE(action.IsVisible());
    EXPECT_FALSE(action.CanRename());
    EXPECT_EQ(action.variableManager(), nullptr);
    EXPECT_EQ(action.GetChildCount(), 0);
    EXPECT_EQ(action.GetFirstChildPosition(), nullptr);
    int anything = 0;
    POSITION position = reinterpret_cast<POSITION>(&anything);
    EXPECT_EQ(action.GetNextChild(position), nullptr);
    EXPECT_FALSE(action.IsTemplate());
    action.SetTemplate(true);
    EXPECT_FALSE(action.IsTemplate());
    EXPECT_FALSE(action.CanUnLock(nullptr));
    EXPECT_FALSE(action.IsRepeat());
    EXPECT_EQ(action.GetRepeatTime(), 0);
    EXPECT_EQ(action.Replicate(), nullptr);
}

TEST(Action, SupportsEveryHostType) {
    const PlainAction action;
    for (const auto host : {CCommandTrigger::eHostMapObject, CCommandTrigger::eHostButton,
                            CCommandTrigger::eHostMeter, CCommandTrigger::eHostSystem}) {
        SCOPED_TRACE(host);
        EXPECT_TRUE(action.SupportsHostType(host));
    }
}

TEST(Action, HasTwoDistinctQuestionsAboutSystemCreation) {
    class Created final : public PlainAction {
      public:
        using CCommandAction::IsSysCreated;
        bool IsSysCreated() const override { return true; }
    };
    Created created;
    EXPECT_TRUE(static_cast<const CCommandAction&>(created).IsSysCreated());
    EXPECT_FALSE(static_cast<CCommandTreeItem&>(created).IsSysCreated());
    const PlainAction plain;
    EXPECT_FALSE(plain.IsSysCreated());
}

TEST(Action, CopiesCarryFlagAndVariables) {
    const VariableManager variables;
    PlainAction source;
    source.SetEnabled(false);
    source.setVariableManager(&variables);
    EXPECT_EQ(source.variableManager(), &variables);
    const PlainAction copy(source);
    EXPECT_FALSE(copy.IsEnabled());
    EXPECT_EQ(copy.variableManager(), &variables);
    PlainAction assigned;
    assigned = source;
    EXPECT_FALSE(assigned.IsEnabled());
    EXPECT_EQ(assigned.variableManager(), &variables);
}

}  // namespace
