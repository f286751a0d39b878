// The order of virtual operations and of fields, against the compiler's own layout.
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <vector>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/behaviour/time_based_trigger.h"
#include "brindle/behaviour/traveral_funct.h"
#include "testing/layout.h"

// A friend of the engine's classes: where their fields lie.
struct BehaviourLayout {
    template <class Object, class Field>
    static std::ptrdiff_t At(const Object& object, const Field& field) {
        return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&object);
    }
    static std::vector<std::ptrdiff_t> Of(const CCommandTreeItem& i) { return {At(i, i.m_enabled)}; }
    static std::vector<std::ptrdiff_t> Of(const CCommandTrigger& t) {
        return {At(t, static_cast<const CCommandTreeItem&>(t).m_enabled), At(t, t.m_name)};
    }
    static std::vector<std::ptrdiff_t> Of(const CCommandAction& a) {
        return {At(a, static_cast<const CCommandTreeItem&>(a).m_enabled), At(a, a.m_variables)};
    }
    static std::vector<std::ptrdiff_t> Of(const CCommandTriggerList& l) {
        return {At(l, static_cast<const CCommandTreeItem&>(l).m_enabled), At(l, l.m_triggers)};
    }
    static std::vector<std::ptrdiff_t> Of(const CCommandActionList& l) { return {At(l, l.m_actions)}; }
    static std::vector<std::ptrdiff_t> Of(const CCommandBehaviour& b) {
        return {At(b, static_cast<const CCommandTreeItem&>(b).m_enabled), At(b, b.m_triggers),
                At(b, b.m_actions)};
    }
    static std::vector<std::ptrdiff_t> Of(const CCommandBehaviourList& l) {
        return {At(l, static_cast<const CCommandTreeItem&>(l).m_enabled),
                At(l, l.m_repeats),  // the entries and their lock
                At(l, l.m_behaviours),
                At(l, l.m_hostType),
                At(l, l.m_hasStateTriggers),
                At(l, l.m_hasAnyDataChanged)};
    }
};

namespace {

using brindle::testing::SlotOf;

struct Slot {
    const char* label;
    std::size_t actual;
    std::size_t position;  // as the interface counts, from 1; the destructor is 1
};

// The destructor, position 1, takes two slots here.
void ExpectPositions(const std::vector<Slot>& rows) {
    for (const Slot& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.actual, row.position);
    }
}

void ExpectRising(const std::vector<std::ptrdiff_t>& offsets) {
    EXPECT_GE(offsets.front(), static_cast<std::ptrdiff_t>(sizeof(void*)))
        << "the table of operations comes first";
    for (std::size_t i = 1; i < offsets.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_LT(offsets[i - 1], offsets[i]);
    }
}

TEST(BehaviourLayoutTest, TreeItemOperations) {
    using Item = CCommandTreeItem;
    ExpectPositions({
        {"GetFirstChildPosition", SlotOf(&Item::GetFirstChildPosition), 2},
        {"GetNextChild", SlotOf(&Item::GetNextChild), 3},
        {"GetChildCount", SlotOf(&Item::GetChildCount), 4},
        {"IsVisible", SlotOf(&Item::IsVisible), 5},
        {"GetText", SlotOf(&Item::GetText), 6},
        {"GetReflect", SlotOf(&Item::GetReflect), 7},
        {"GetImage", SlotOf(&Item::GetImage), 8},
        {"GetNextTime", SlotOf(&Item::GetNextTime), 9},
        {"GetRealObject", SlotOf(&Item::GetRealObject), 10},
        {"CreateConfigDialog", SlotOf(&Item::CreateConfigDialog), 11},
        {"CanRename", SlotOf(&Item::CanRename), 12},
        {"Rename", SlotOf(&Item::Rename), 13},
        {"Save", SlotOf(&Item::Save), 14},
        {"Load", SlotOf(&Item::Load), 15},
        {"ReplaceData", SlotOf(&Item::ReplaceData), 16},
        {"GetResultInfo", SlotOf(&Item::GetResultInfo), 17},
        {"IsSysCreated", SlotOf(&Item::IsSysCreated), 18},
        {"SetTemplate", SlotOf(&Item::SetTemplate), 19},
        {"IsTemplate", SlotOf(&Item::IsTemplate), 20},
    });
}

TEST(BehaviourLayoutTest, TriggerOperations) {
    using Trigger = CCommandTrigger;
    ExpectPositions({
        {"Test", SlotOf(&Trigger::Test), 21},
        {"Retest", SlotOf(&Trigger::Retest), 22},
        {"the second abstract one", SlotOf(&Trigger::Reserved23), 23},
        {"Init", SlotOf(&Trigger::Init), 24},
        {"Replicate", SlotOf(&Trigger::Replicate), 25},
        {"HasConfig", SlotOf(&Trigger::HasConfig), 26},
        {"GetNextTime stays where it was", SlotOf(&CTimeBasedTrigger::GetNextTime), 9},
        {"GetText", SlotOf(&CTimeBasedTrigger::GetText), 6},
    });
    class Next : public CCommandTrigger {
      public:
        virtual void Own() {}
    };
    class NextTimeBased : public CTimeBasedTrigger {
      public:
        virtual void Own() {}
    };
    EXPECT_EQ(SlotOf(&Next::Own), 27u) << "nothing else was appended";
    EXPECT_EQ(SlotOf(&NextTimeBased::Own), 27u);
}

TEST(BehaviourLayoutTest, ActionOperations) {
    using Action = CCommandAction;
    ExpectPositions({
        {"Fire", SlotOf(&Action::Fire), 21},
        {"CanUnLock", SlotOf(&Action::CanUnLock), 22},
        {"IsRepeat", SlotOf(&Action::IsRepeat), 23},
        {"GetRepeatTime", SlotOf(&Action::GetRepeatTime), 24},
        {"IsSysCreated const", SlotOf(static_cast<bool (Action::*)() const>(&Action::IsSysCreated)), 25},
        {"IsSysCreated of the tree item",
         SlotOf(static_cast<bool (CCommandTreeItem::*)()>(&CCommandTreeItem::IsSysCreated)), 18},
        {"Replicate", SlotOf(&Action::Replicate), 26},
        {"SupportsHostType", SlotOf(&Action::SupportsHostType), 27},
    });
    class Next : public CCommandAction {
      public:
        virtual void Own() {}
    };
    EXPECT_EQ(SlotOf(&Next::Own), 28u) << "nothing else was appended";
}

TEST(BehaviourLayoutTest, ActionListOperations) {
    using List = CCommandActionList;
    ExpectPositions({
        {"GetFirstChildPosition", SlotOf(&List::GetFirstChildPosition), 2},
        {"GetNextChild", SlotOf(&List::GetNextChild), 3},
        {"GetChildCount", SlotOf(&List::GetChildCount), 4},
        {"IsVisible", SlotOf(&List::IsVisible), 5},
        {"GetText", SlotOf(&List::GetText), 6},
        {"GetImage", SlotOf(&List::GetImage), 7},
        {"Save", SlotOf(&List::Save), 8},
        {"Load", SlotOf(&List::Load), 9},
    });
    static_assert(!std::is_base_of_v<CCommandTreeItem, List>);
    class Next : public CCommandActionList {
      public:
        virtual void Own() {}
    };
    EXPECT_EQ(SlotOf(&Next::Own), 10u) << "nothing else was appended";
}

TEST(BehaviourLayoutTest, ListsAndBehavioursAppendNothing) {
    class NextList : public CCommandTriggerList {
      public:
        virtual void Own() {}
    };
    class NextBehaviour : public CCommandBehaviour {
      public:
        virtual void Own() {}
    };
    class NextBehaviourList : public CCommandBehaviourList {
      public:
        virtual void Own() {}
    };
    EXPECT_EQ(SlotOf(&NextList::Own), 21u);
    EXPECT_EQ(SlotOf(&NextBehaviour::Own), 21u);
    EXPECT_EQ(SlotOf(&NextBehaviourList::Own), 21u);
}

TEST(BehaviourLayoutTest, TheVisitorHasOneOperation) {
    EXPECT_EQ(SlotOf(&TraveralFunct::operator()), 0u);
    static_assert(sizeof(TraveralFunct) == sizeof(void*));
}

class SomeTrigger final : public CCommandTrigger {
  public:
    CStringA GetText(int) override { return {}; }
    CStringA GetReflect() override { return {}; }
    int Test(const CCommandEvent*) override { return 0; }
    void Reserved23() override {}
};

class SomeAction final : public CCommandAction {
  public:
    CStringA GetText(int) override { return {}; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override {}
};

TEST(BehaviourLayoutTest, FieldsStandInTheirOrder) {
    ExpectRising(BehaviourLayout::Of(static_cast<const CCommandTreeItem&>(SomeTrigger())));
    ExpectRising(BehaviourLayout::Of(static_cast<const CCommandTrigger&>(SomeTrigger())));
    ExpectRising(BehaviourLayout::Of(static_cast<const CCommandAction&>(SomeAction())));
    ExpectRising(BehaviourLayout::Of(CCommandTriggerList()));
    ExpectRising(BehaviourLayout::Of(CCommandActionList()));
    ExpectRising(BehaviourLayout::Of(CCommandBehaviour()));
    ExpectRising(BehaviourLayout::Of(CCommandBehaviourList(CCommandTrigger::eHostSystem)));
}

TEST(BehaviourLayoutTest, RepeatEntryIsAPlainRecordInItsOrder) {
    static_assert(std::is_standard_layout_v<RepeatEntry> && std::is_trivially_copyable_v<RepeatEntry>);
    static_assert(sizeof(RepeatEntry::period) == 4 && std::is_signed_v<decltype(RepeatEntry::period)>);
    static_assert(sizeof(RepeatEntry::due) == 8 && std::is_unsigned_v<decltype(RepeatEntry::due)>);
    constexpr std::size_t p = sizeof(void*);
    EXPECT_EQ(offsetof(RepeatEntry, trigger), 0 * p);
    EXPECT_EQ(offsetof(RepeatEntry, event), 1 * p);
    EXPECT_EQ(offsetof(RepeatEntry, action), 2 * p);
    EXPECT_EQ(offsetof(RepeatEntry, variables), 3 * p);
    EXPECT_EQ(offsetof(RepeatEntry, period), 4 * p);
    EXPECT_EQ(offsetof(RepeatEntry, due), 4 * p + 8);
}

}  // namespace
