// The index of live repeats by trigger and by action.
#include "brindle/behaviour/repeat_index.h"

#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "testing/behaviour_kit.h"

namespace {

using brindle::EnterRepeat;
using brindle::ForgetRepeats;
using brindle::LeaveRepeat;
using brindle::RepeatNode;
using brindle::RepeatQueue;
using brindle::RepeatsOf;
using namespace brindle::testing;

class RepeatIndexTest : public BehaviourTest {
  protected:
    RepeatNode& Enter(const CCommandTrigger* trigger, const CCommandAction* action,
                      RepeatQueue* queue = nullptr) {
        RepeatNode& node = m_nodes.emplace_back();
        node.entry = {trigger, nullptr, action, nullptr, 0, 0};
        node.queue = queue;
        EnterRepeat(node);
        return node;
    }
    void TearDown() override {
        for (RepeatNode& node : m_nodes) LeaveRepeat(node);
        m_nodes.clear();
        BehaviourTest::TearDown();
    }

  private:
    std::deque<RepeatNode> m_nodes;
};

using Nodes = std::vector<RepeatNode*>;

TEST_F(RepeatIndexTest, FindsATriggersRepeatsOfOneQueueInOrder) {
    RepeatQueue* const q1 = reinterpret_cast<RepeatQueue*>(8);
    RepeatQueue* const q2 = reinterpret_cast<RepeatQueue*>(16);
    ProbeTrigger trigger;
    ProbeTrigger other;
    ProbeAction action;
    RepeatNode& a = Enter(&trigger, &action, q1);
    Enter(&other, &action, q1);
    RepeatNode& b = Enter(&trigger, &action, q2);
    RepeatNode& c = Enter(&trigger, &action, q1);
    EXPECT_EQ(RepeatsOf(&trigger, q1), (Nodes{&a, &c}));
    EXPECT_EQ(RepeatsOf(&trigger, q2), Nodes{&b});
    EXPECT_EQ(RepeatsOf(nullptr, q1), Nodes{});
    LeaveRepeat(a);
    EXPECT_EQ(RepeatsOf(&trigger, q1), Nodes{&c});
    EnterRepeat(a);
    EXPECT_EQ(RepeatsOf(&trigger, q1), (Nodes{&c, &a}));
}

TEST_F(RepeatIndexTest, ForgetsByTriggerAndByAction) {
    ProbeTrigger t1, t2;
    ProbeAction a1, a2;
    RepeatNode& n11 = Enter(&t1, &a1);
    RepeatNode& n12 = Enter(&t1, &a2);
    RepeatNode& n21 = Enter(&t2, &a1);
    RepeatNode& n22 = Enter(&t2, &a2);
    ForgetRepeats(&t1);
    EXPECT_TRUE(n11.inert && n12.inert);
    EXPECT_FALSE(n21.inert || n22.inert);
    ForgetRepeats(&a2);
    EXPECT_TRUE(n22.inert);
    EXPECT_FALSE(n21.inert);
    ForgetRepeats(&t1);  // nothing is left of it
    EXPECT_EQ(RepeatsOf(&t2, nullptr), Nodes{&n21});
    LeaveRepeat(n11);  // inert: no longer in the index
    EXPECT_EQ(RepeatsOf(&t2, nullptr), Nodes{&n21});
}

TEST_F(RepeatIndexTest, LeavesFromAnyPlaceOfAChain) {
    for (const int leaving : {0, 1, 2}) {
        SCOPED_TRACE(leaving);
        ProbeTrigger trigger;
        ProbeAction action;
        Nodes nodes;
        for (int i = 0; i < 3; ++i) nodes.push_back(&Enter(&trigger, &action));
        LeaveRepeat(*nodes[static_cast<std::size_t>(leaving)]);
        nodes.erase(nodes.begin() + leaving);
        EXPECT_EQ(RepeatsOf(&trigger, nullptr), nodes);
        ForgetRepeats(&action);
        for (const RepeatNode* node : nodes) EXPECT_TRUE(node->inert);
        EXPECT_EQ(RepeatsOf(&trigger, nullptr), Nodes{});
    }
}

TEST_F(RepeatIndexTest, BaseDestructorsForget) {
    ProbeAction action;
    ProbeTrigger trigger;
    RepeatNode* byTrigger = nullptr;
    RepeatNode* byAction = nullptr;
    {
        ProbeTrigger mortal;
        ProbeAction alsoMortal;
        byTrigger = &Enter(&mortal, &action);
        byAction = &Enter(&trigger, &alsoMortal);
        EXPECT_FALSE(byTrigger->inert || byAction->inert);
    }
    EXPECT_TRUE(byTrigger->inert);
    EXPECT_TRUE(byAction->inert);
}

TEST_F(RepeatIndexTest, CopiesOfAnObjectAreObjectsOfTheirOwn) {
    ProbeTrigger trigger;
    ProbeAction action;
    RepeatNode& node = Enter(&trigger, &action);
    {
        const ProbeTrigger triggerCopy(trigger);
        const ProbeAction actionCopy(action);
    }
    EXPECT_FALSE(node.inert);
}

}  // namespace
