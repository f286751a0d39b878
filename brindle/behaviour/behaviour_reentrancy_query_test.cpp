// What triggers and actions may do to the engine when they are only asked something: HasConfig, GetRepeatTime,
// GetNextTime, Replicate. Worth most under the address sanitizer. The other calls: behaviour_reentrancy_test.cpp.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

class QueryTest : public BehaviourTest {
  protected:
    // A list whose second trigger, asked about a kind, destroys it.
    void MakeFragile(const std::string& fatalKind, bool answer) {
        list = std::make_unique<ProbeList>();
        AddRule(*list, 0);
        AddRule(*list, 0).trigger->onHasConfig = [this, fatalKind, answer](const std::string& kind) {
            if (armed && kind == fatalKind) {
                armed = false;
                list.reset();
            }
            return answer;
        };
        AddRule(*list, 0);
        armed = true;
    }

    std::unique_ptr<ProbeList> list;
    bool armed = false;
};

TEST_F(QueryTest, HasConfigMayDestroyTheList) {
    struct Row {
        const char* label;
        std::function<void(ProbeList&)> call;
    };
    ProbeList empty;
    const Row rows[] = {
        {"asked for a kind", [](ProbeList& subject) { subject.HasConfig("StateTrigger"); }},
        {"added to", [](ProbeList& subject) { subject.Add(MakeRule(0).behaviour); }},
        {"saved", [](ProbeList& subject) { Written([&](XMLWriter& writer) { subject.Save(writer); }); }},
    };
    for (const char* fatalKind : {"StateTrigger", "StateTrigger::AnyChange"}) {
        for (const bool answer : {true, false}) {
            for (const Row& row : rows) {
                SCOPED_TRACE(std::string(row.label) + ", " + fatalKind + (answer ? ": yes" : ": no"));
                const int live = LiveProbes();
                MakeFragile(fatalKind, answer);
                ProbeList* raw = list.get();
                row.call(*raw);
                EXPECT_EQ(list == nullptr, !armed);
                armed = false;
                list.reset();
                EXPECT_EQ(LiveProbes(), live);
            }
        }
    }
}

TEST_F(QueryTest, HasConfigMayDestroyTheListThatABehaviourIsTakenFrom) {
    MakeFragile("StateTrigger", true);
    POSITION position = list->GetFirstChildPosition();
    auto* first = const_cast<CCommandTreeItem*>(list->GetNextChild(position));
    ProbeList* raw = list.get();
    raw->Remove(static_cast<CCommandBehaviour*>(first));
    EXPECT_EQ(list, nullptr);
    delete first;
}

TEST_F(QueryTest, AHasConfigThatThrowsLeavesTheBehaviourWithItsCaller) {
    ProbeList host;
    AddRule(host, 0);
    const Rule rule = MakeRule(0);
    rule.trigger->onHasConfig = [](const std::string&) -> bool { throw std::runtime_error("host"); };
    EXPECT_THROW(host.Add(rule.behaviour), std::runtime_error);
    EXPECT_EQ(host.GetChildCount(), 1);
    EXPECT_TRUE(host.HasStateTriggers()) << "rather an event too many than a state that is missed";
    EXPECT_TRUE(host.HasAnyDataChangedStateTrigger());
    rule.trigger->onHasConfig = nullptr;
    host.Add(rule.behaviour);
    EXPECT_EQ(host.GetChildCount(), 2);
    EXPECT_FALSE(host.HasStateTriggers());
}

TEST_F(QueryTest, GetRepeatTimeMayDestroyTheListAndTheAction) {
    for (const bool inEvent : {true, false}) {
        SCOPED_TRACE(inEvent ? "in an event" : "called by the host");
        const int live = LiveProbes();
        list = std::make_unique<ProbeList>();
        const Rule rule = AddRule(*list, CCommandTrigger::kFired);
        rule.action->repeats = true;
        rule.action->onRepeatTime = [this] {
            list.reset();
            return 10;
        };
        ProbeList* raw = list.get();
        if (inEvent)
            raw->Execute(new ProbeEvent, nullptr);
        else
            raw->AddRepeatAction(rule.trigger, nullptr, rule.action, nullptr);
        EXPECT_EQ(list, nullptr);
        EXPECT_EQ(LiveProbes(), live);
        Tick(10);
    }
}

TEST_F(QueryTest, GetRepeatTimeMayDestroyTheActionAlone) {
    ProbeList host;
    const Rule rule = AddRule(host, 0);
    rule.action->onRepeatTime = [rule] {
        rule.behaviour->RemoveAction(rule.action);
        return 10;
    };
    host.AddRepeatAction(rule.trigger, nullptr, rule.action, nullptr);
    EXPECT_EQ(host.GetRepeatCount(), 0) << "what is destroyed is not queued";
}

TEST_F(QueryTest, GetNextTimeMayDestroyTheList) {
    for (const int seconds : {5, 0}) {
        SCOPED_TRACE(seconds);
        const int live = LiveProbes();
        list = std::make_unique<ProbeList>();
        const Rule rule = AddRule(*list, CCommandTrigger::kFired);
        rule.trigger->typeText = "Time Based Trigger";
        rule.trigger->onNextTime = [this, seconds] {
            list.reset();
            return seconds;
        };
        ProbeList* raw = list.get();
        raw->Execute(new ProbeEvent, nullptr);
        EXPECT_EQ(list, nullptr);
        EXPECT_EQ(LiveProbes(), live);
    }
}

TEST_F(QueryTest, ReplicateMayDestroyTheListsOfTheSourceAndOfTheTarget) {
    for (const bool ofTarget : {true, false}) {
        for (const bool byTrigger : {true, false}) {
            SCOPED_TRACE((ofTarget ? "target, " : "source, ") +
                         std::string(byTrigger ? "trigger" : "action"));
            const int live = LiveProbes();
            auto sources = std::make_unique<ProbeList>();
            auto targets = std::make_unique<ProbeList>();
            const Rule source = AddRule(*sources, 0);
            source.behaviour->AddTrigger(new ProbeTrigger);
            source.behaviour->AddAction(new ProbeAction);
            const Rule target = AddRule(*targets, 0);
            const auto destroy = [&] { (ofTarget ? targets : sources).reset(); };
            source.trigger->onReplicate = [&]() -> CCommandTrigger* {
                if (byTrigger) destroy();
                return new ProbeTrigger;
            };
            source.action->onReplicate = [&]() -> CCommandAction* {
                if (!byTrigger) destroy();
                return new ProbeAction;
            };
            *target.behaviour = *source.behaviour;
            EXPECT_EQ((ofTarget ? targets : sources), nullptr);
            sources.reset();
            targets.reset();
            EXPECT_EQ(LiveProbes(), live);
        }
    }
}

TEST_F(QueryTest, ReplicateMayTakeLaterItemsOut) {
    CCommandBehaviour source;
    CCommandBehaviour target;
    auto* first = new ProbeTrigger;
    auto* second = new ProbeTrigger;
    first->onReplicate = [&] {
        source.RemoveTrigger(second);
        return new ProbeTrigger;
    };
    second->onReplicate = [] { return new ProbeTrigger; };
    source.AddTrigger(first);
    source.AddTrigger(second);
    target = source;
    EXPECT_EQ(target.GetTriggerCount(), 1);
}

// Which class a trigger is decides whether it is asked anew at every run; one recognised by its text alone keeps the
// interval it was queued with, however long: forty days are more milliseconds than a repeat entry's period can say.
TEST_F(QueryTest, ATriggerTimeBasedByItsTextAloneKeepsALongInterval) {
    constexpr int kFortyDays = 40 * 24 * 60 * 60;
    constexpr std::uint64_t kMilliseconds = std::uint64_t{kFortyDays} * 1000;
    ASSERT_GT(kMilliseconds, static_cast<std::uint64_t>(std::numeric_limits<int>::max()));
    ProbeList host;
    const Rule rule = AddRule(host, CCommandTrigger::kFired);
    rule.trigger->typeText = "Time Based Trigger";
    rule.trigger->seconds = kFortyDays;
    host.Execute(new ProbeEvent, nullptr);
    for (int run = 1; run <= 3; ++run) {
        SCOPED_TRACE(run);
        Tick(kMilliseconds - 1);
        EXPECT_EQ(rule.action->runs, run - 1);
        Tick(1);
        EXPECT_EQ(rule.action->runs, run);
    }
}

}  // namespace
