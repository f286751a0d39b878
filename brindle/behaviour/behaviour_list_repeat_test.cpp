// Repeats, schedules and the timer.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "brindle/variables/variable_manager.h"
#include "testing/behaviour_kit.h"

namespace {

using namespace brindle::testing;

class RepeatTest : public BehaviourTest {
  protected:
    static constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();
};

TEST_F(RepeatTest, RunsAtEveryPeriodUntilTheTriggerSaysItIsOver) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    rule.action->period = 1000;
    auto* event = new ProbeEvent;
    event->AddRef();
    list.Execute(event, nullptr);
    EXPECT_EQ(rule.action->runs, 1) << "at once";
    rule.trigger->verdict = 0;
    const std::vector<std::pair<int, int>> ticks = {{0, 1}, {999, 1},  {1, 2},   {1, 2}, {998, 2},
                                                    {1, 3}, {1500, 4}, {999, 4}, {1, 5}};
    for (const auto& [wait, runs] : ticks) {
        SCOPED_TRACE(wait);
        Tick(static_cast<std::uint64_t>(wait));
        EXPECT_EQ(rule.action->runs, runs);
    }
    rule.trigger->verdict = 1;
    rule.trigger->goesOn = true;
    list.Execute(new ProbeEvent, nullptr);
    Tick(1000);
    EXPECT_EQ(rule.action->runs, 6) << "kept, because Retest said so";
    rule.trigger->goesOn = false;
    list.Execute(new ProbeEvent, nullptr);
    Tick(10'000);
    EXPECT_EQ(rule.action->runs, 6);
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

TEST_F(RepeatTest, ALatePassRunsAnEntryOnceAndCountsFromItself) {
    ProbeList list;
    const Rule rule = AddRepeating(list, 100);
    Tick(1000);
    EXPECT_EQ(rule.action->runs, 1);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 100);
}

TEST_F(RepeatTest, PeriodsOfZeroAndLessRunAtEveryTick) {
    for (const int period : {0, -1, -1000, std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(period);
        ProbeList list;
        const Rule rule = AddRepeating(list, period);
        for (int tick = 1; tick <= 3; ++tick) {
            Tick();
            EXPECT_EQ(rule.action->runs, tick) << "Kept: no lower bound";
        }
        EXPECT_LE(CCommandBehaviourList::GetNextDue(), Now());
    }
}

TEST_F(RepeatTest, AsksThePeriodOnceWhenItIsQueued) {
    ProbeList list;
    int asked = 0;
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    rule.action->onRepeatTime = [&] { return ++asked * 100; };
    list.Execute(new ProbeEvent, nullptr);
    Tick(100);
    Tick(100);
    EXPECT_EQ(rule.action->runs, 3);
    EXPECT_EQ(asked, 1);
}

TEST_F(RepeatTest, RunsWithTheEntrysEventAndScope) {
    ProbeList list;
    VariableManager variables;
    variables.addVariable({"x", "1"});
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    auto* event = new ProbeEvent(7);
    list.Execute(event, &variables);
    const CCommandEvent* given = nullptr;
    std::string expanded;
    const VariableManager* own = &variables;
    rule.action->onFire = [&](const CCommandEvent* fired) {
        given = fired;
        expanded = Expanded("{x}");
        own = rule.action->variableManager();
    };
    Tick();
    EXPECT_EQ(given, event);
    EXPECT_EQ(expanded, "1");
    EXPECT_EQ(own, nullptr) << "the timer installs the hook alone";
    EXPECT_EQ(CurrentHook(), nullptr);
}

TEST_F(RepeatTest, EntriesDueTogetherRunInTheOrderTheyWereAddedListByList) {
    ProbeList first;
    ProbeList second;
    std::string order;
    const auto add = [&](ProbeList& list, const char* name, int period) {
        AddRepeating(list, period, [&order, name](const CCommandEvent*) { order += name; });
    };
    add(second, "c", 50);
    add(first, "a", 100);
    add(second, "d", 10);
    add(first, "b", 20);
    order.clear();
    Tick(100);
    EXPECT_EQ(order, "abcd");
}

TEST_F(RepeatTest, SameTriggerMayBeQueuedAgainAndAgain) {
    ProbeList list;
    const Rule rule = AddRule(list, 2);
    rule.action->repeats = true;
    for (int i = 0; i < 3; ++i) list.Execute(new ProbeEvent, nullptr);
    EXPECT_EQ(list.GetRepeatCount(), 3);
    Tick();
    EXPECT_EQ(rule.action->runs, 6);
}

TEST_F(RepeatTest, ADisabledListAndDisabledItemsGoOnRepeating) {
    ProbeList list;
    const Rule rule = AddRepeating(list, 0);
    list.SetEnabled(false);
    rule.behaviour->SetEnabled(false);
    rule.trigger->SetEnabled(false);
    rule.action->SetEnabled(false);
    rule.action->isTemplate = true;
    Tick();
    EXPECT_EQ(rule.action->runs, 1) << "a repeat lasts until it is cancelled";
}

TEST_F(RepeatTest, ARemovedBehaviourGoesOnRepeatingWhileItLives) {
    ProbeList list;
    const Rule rule = AddRepeating(list, 0);
    list.Remove(rule.behaviour);
    Tick();
    EXPECT_EQ(rule.action->runs, 1);
    delete rule.behaviour;
    EXPECT_EQ(list.GetRepeatCount(), 1);
    Tick();
}

TEST_F(RepeatTest, CancelRepeatsConcernsOneTriggerOfOneList) {
    ProbeList list;
    ProbeList other;
    ProbeTrigger mine;
    ProbeTrigger stranger;
    ProbeAction action;
    auto* event = new ProbeEvent;
    list.AddRepeatAction(&mine, event, &action, nullptr);
    list.AddRepeatAction(&stranger, event, &action, nullptr);
    list.AddRepeatAction(&mine, event, &action, nullptr);
    other.AddRepeatAction(&mine, event, &action, nullptr);
    EXPECT_EQ(event->References(), 5);
    list.CancelRepeats(&mine);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    EXPECT_EQ(other.GetRepeatCount(), 1);
    EXPECT_EQ(event->References(), 3);
    list.CancelRepeats(&mine);
    EXPECT_EQ(mine.retests, 2);
    list.CancelRepeats(nullptr);
    EXPECT_EQ(list.GetRepeatCount(), 1);
    list.ResetRepeats();
    EXPECT_EQ(list.GetRepeatCount(), 0);
    EXPECT_EQ(event->References(), 2);
    other.ResetRepeats();
    event->Release();
}

TEST_F(RepeatTest, EveryWayToEndRepeatsReleasesTheEvents) {
    struct Row {
        const char* label;
        std::function<void(std::unique_ptr<ProbeList>&)> end;
    };
    const Row rows[] = {
        {"ResetRepeats", [](auto& list) { list->ResetRepeats(); }},
        {"Init", [](auto& list) { list->Init(); }},
        {"ResetList", [](auto& list) { list->ResetList(); }},
        {"destruction", [](auto& list) { list.reset(); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeTrigger trigger;
        trigger.goesOn = true;
        ProbeAction action;
        auto list = std::make_unique<ProbeList>();
        auto* event = new ProbeEvent;
        list->AddRepeatAction(&trigger, event, &action, nullptr);
        list->AddRepeatAction(&trigger, event, &action, nullptr);
        {
            ProbeTrigger gone;  // its entry is inert from here on, and still holds its event
            list->AddRepeatAction(&gone, event, &action, nullptr);
        }
        EXPECT_EQ(event->References(), 4);
        EXPECT_EQ(list->GetRepeatCount(), 3);
        row.end(list);
        EXPECT_EQ(event->References(), 1);
        EXPECT_EQ(trigger.retests, 0);
        CCommandBehaviourList::CallOnTimer();
        EXPECT_EQ(action.runs, 0);
        event->Release();
    }
}

TEST_F(RepeatTest, OnTimerRunsItsOwnListAlone) {
    ProbeList list;
    ProbeList other;
    const Rule mine = AddRepeating(list, 0);
    const Rule theirs = AddRepeating(other, 0);
    list.OnTimer();
    EXPECT_EQ(mine.action->runs, 1);
    EXPECT_EQ(theirs.action->runs, 0);
    CCommandBehaviourList::CallOnTimer();
    EXPECT_EQ(mine.action->runs, 2);
    EXPECT_EQ(theirs.action->runs, 1);
}

TEST_F(RepeatTest, GetNextDueIsTheEarliestOfAllLists) {
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), kNever);
    ProbeList first;
    auto second = std::make_unique<ProbeList>();
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), kNever);
    AddRepeating(first, 500);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 500);
    const Rule soon = AddRepeating(*second, 300);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 300);
    Tick(300);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 200);
    Tick(200);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 100) << "the other one ran meanwhile";
    second->Remove(soon.behaviour);
    delete soon.behaviour;
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 500) << "inert entries are never due";
    first.ResetRepeats();
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), kNever);
}

// --- schedules

TEST_F(RepeatTest, AScheduleAsksForTheNextTimeAtEveryRun) {
    ProbeList list;
    ProbeTimeTrigger trigger;
    ProbeAction action;
    auto* event = new ProbeEvent;
    int next = 10;
    trigger.onNextTime = [&] { return next; };
    list.AddRepeatTrigger(&trigger, event, &action);
    EXPECT_EQ(event->References(), 2);
    EXPECT_EQ(action.runs, 0);
    next = 5;
    Tick(9'999);
    EXPECT_EQ(action.runs, 0);
    Tick(1);
    EXPECT_EQ(action.runs, 1);
    next = 60;
    Tick(5'000);
    EXPECT_EQ(action.runs, 2);
    Tick(59'999);
    EXPECT_EQ(action.runs, 2);
    next = 0;
    Tick(1);
    EXPECT_EQ(action.runs, 3);
    Tick();
    Tick();
    EXPECT_EQ(action.runs, 5) << "Kept: without a next time it runs at every tick";
    next = -7;
    Tick();
    EXPECT_EQ(action.runs, 6);
    EXPECT_EQ(list.GetRepeatCount(), 1) << "the timer never removes an entry";
    list.ResetRepeats();
    event->Release();
}

TEST_F(RepeatTest, OnlyTheClassAsksAgain) {
    ProbeList list;
    ProbeTrigger byText;  // says it is time based, and is not of the class
    byText.typeText = "Time Based Trigger";
    ProbeTimeTrigger byClass;  // is of the class, whatever it says
    byClass.typeText = "Something else";
    int asked = 0;
    byText.onNextTime = byClass.onNextTime = [&] {
        ++asked;
        return 10;
    };
    ProbeAction action;
    action.period = 3'000;
    auto* event = new ProbeEvent;
    list.AddRepeatTrigger(&byText, event, &action);
    EXPECT_EQ(asked, 1);
    Tick(10'000);
    Tick(10'000);
    EXPECT_EQ(action.runs, 2);
    EXPECT_EQ(asked, 1);
    list.ResetRepeats();

    list.AddRepeatAction(&byClass, event, &action, nullptr);
    EXPECT_EQ(asked, 1) << "the first period is the action's";
    Tick(3'000);
    EXPECT_EQ(asked, 2) << "later ones are the trigger's";
    EXPECT_EQ(action.runs, 3);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + 10'000);
    list.ResetRepeats();
    event->Release();
}

TEST_F(RepeatTest, SchedulesBeyond32BitsOfMillisecondsDoNotOverflow) {
    constexpr int kMonth = 30 * 24 * 3600;
    for (const int seconds : {kMonth, std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(seconds);
        const auto delay = static_cast<std::uint64_t>(seconds) * 1000;
        ProbeList list;
        ProbeTimeTrigger trigger;
        trigger.seconds = seconds;
        ProbeAction action;
        auto* event = new ProbeEvent;
        list.AddRepeatTrigger(&trigger, event, &action);
        event->Release();
        for (int run = 1; run <= 2; ++run) {
            EXPECT_EQ(CCommandBehaviourList::GetNextDue(), Now() + delay);
            Tick(delay - 1);
            EXPECT_EQ(action.runs, run - 1);
            Tick(1);
            EXPECT_EQ(action.runs, run);
        }
        trigger.seconds = std::numeric_limits<int>::min();
        Advance(delay);
        Tick();
        Tick();
        EXPECT_EQ(action.runs, 4);
    }
}

TEST_F(RepeatTest, AScheduledRunHasNoScope) {
    ProbeList list;
    ProbeTimeTrigger trigger;
    trigger.seconds = 1;
    ProbeAction action;
    std::string seen;
    action.onFire = [&](const CCommandEvent*) { seen = Expanded("{x}"); };
    VariableManager outside;
    outside.addVariable({"x", "1"});
    auto* event = new ProbeEvent;
    list.AddRepeatTrigger(&trigger, event, &action);
    event->Release();
    Tick(1'000);
    EXPECT_EQ(seen, "{x}");
}

// --- the clock

TEST_F(RepeatTest, AClockSetBackDelaysAndOneSetForwardRunsOnce) {
    ProbeList list;
    const Rule rule = AddRepeating(list, 1'000);
    GoBack(3'600'000);
    Tick(1'000);
    EXPECT_EQ(rule.action->runs, 0);
    Tick(3'599'000);
    EXPECT_EQ(rule.action->runs, 0);
    Tick(1'000);
    EXPECT_EQ(rule.action->runs, 1) << "at the due time it had";
    Tick(86'400'000);
    EXPECT_EQ(rule.action->runs, 2) << "once, however late";
}

TEST_F(RepeatTest, APeriodBelowZeroIsDueInThePastEvenAfterTheClockWasSetBack) {
    ProbeList list;
    const Rule rule = AddRepeating(list, -10'000);
    Tick();
    EXPECT_EQ(rule.action->runs, 1);
    GoBack(5'000);
    Tick();
    EXPECT_EQ(rule.action->runs, 2);
    GoBack(60'000);
    Tick();
    EXPECT_EQ(rule.action->runs, 2);
}

TEST_F(RepeatTest, AScheduleThatTurnsBackIsNotForgottenByTheNextTimerCall) {
    ProbeList list;
    ProbeTimeTrigger trigger;
    trigger.seconds = 100;
    ProbeAction action;
    list.AddRepeatTrigger(&trigger, nullptr, &action);
    Tick();
    trigger.seconds = -10;
    Advance(100'000);
    list.OnTimer();  // due ten seconds ago, from now on
    EXPECT_EQ(action.runs, 1);
    GoBack(5'000);
    Tick();
    EXPECT_EQ(action.runs, 2);
}

TEST_F(RepeatTest, DueTimesNearTheEndsOfTheClockDoNotWrap) {
    clock.SetUnixSeconds(-11'644'473'600);  // 1601-01-01, the beginning
    ASSERT_EQ(Now(), 0u);
    ProbeList list;
    const Rule past = AddRepeating(list, std::numeric_limits<int>::min());
    const Rule zero = AddRepeating(list, 0);
    const Rule future = AddRepeating(list, 1);
    EXPECT_EQ(CCommandBehaviourList::GetNextDue(), 0u);
    Tick();
    EXPECT_EQ(past.action->runs, 1);
    EXPECT_EQ(zero.action->runs, 1);
    EXPECT_EQ(future.action->runs, 0);
    Tick(1);
    EXPECT_EQ(past.action->runs, 2);
    EXPECT_EQ(future.action->runs, 1);

    clock.SetUnixSeconds(1'844'674'407'370 - 11'644'473'600);  // the last whole second the ticks can hold
    const std::uint64_t top = Now();
    ASSERT_GT(top, 1'844'674'407'000'000u);
    const Rule far = AddRepeating(list, std::numeric_limits<int>::max());
    Tick();
    EXPECT_EQ(future.action->runs, 2);
    EXPECT_EQ(far.action->runs, 0) << "beyond what the clock can say: never due, not wrapped";
}

// --- exceptions

TEST_F(RepeatTest, APlainTextThrownByOneEntryIsSwallowedAndTheOthersRun) {
    ProbeList list;
    ProbeList other;
    VariableManager variables;
    static char writable[] = "text";
    const Rule a = AddRepeating(list, 1'000, [](const CCommandEvent*) {});
    const Rule b = AddRepeating(list, 1'000, [](const CCommandEvent*) {});
    const Rule c = AddRepeating(list, 1'000);
    const Rule d = AddRepeating(other, 1'000);
    a.action->onFire = [](const CCommandEvent*) { throw "text"; };
    b.action->onFire = [](const CCommandEvent*) { throw &writable[0]; };
    Tick(1'000);
    EXPECT_EQ(c.action->runs, 1);
    EXPECT_EQ(d.action->runs, 1);
    EXPECT_EQ(CurrentHook(), nullptr);
    EXPECT_EQ(list.GetRepeatCount(), 3);
    Tick(999);
    EXPECT_EQ(a.action->runs, 1);
    Tick(1);
    EXPECT_EQ(a.action->runs, 2) << "rescheduled before it ran";
}

TEST_F(RepeatTest, APlainTextThrownByTheScheduleIsSwallowedAndItStaysDue) {
    ProbeList list;
    ProbeTimeTrigger trigger;
    trigger.seconds = 10;
    ProbeAction action;
    auto* event = new ProbeEvent;
    list.AddRepeatTrigger(&trigger, event, &action);
    event->Release();
    int asked = 0;
    trigger.onNextTime = [&]() -> int {
        if (++asked <= 2) throw "not now";
        return 10;
    };
    Tick(10'000);
    Tick();
    EXPECT_EQ(action.runs, 0);
    Tick();
    EXPECT_EQ(action.runs, 1);
    EXPECT_EQ(asked, 3);
}

TEST_F(RepeatTest, AnyOtherExceptionPassesThroughAndReleasesTheLock) {
    struct Row {
        const char* label;
        std::function<void()> fail;
    };
    const Row rows[] = {
        {"an exception", [] { throw std::runtime_error("host"); }},
        {"a string object", [] { throw std::string("text"); }},
        {"the library's string", [] { throw CStringA("text"); }},
        {"a number", [] { throw 7; }},
        {"an unsigned text", [] { throw reinterpret_cast<const unsigned char*>("text"); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ProbeList list;
        ProbeList later;
        const Rule fails = AddRepeating(list, 1'000, [&](const CCommandEvent*) {});
        const Rule behind = AddRepeating(list, 1'000);
        const Rule elsewhere = AddRepeating(later, 1'000);
        fails.action->onFire = [&](const CCommandEvent*) { row.fail(); };
        Advance(1'000);
        EXPECT_ANY_THROW(CCommandBehaviourList::CallOnTimer());
        EXPECT_EQ(behind.action->runs, 0);
        EXPECT_EQ(CurrentHook(), nullptr);
        // The lock is free: another thread gets it.
        std::thread([&] { EXPECT_EQ(list.GetRepeatCount(), 2); }).join();
        Tick();
        EXPECT_EQ(fails.action->runs, 1) << "already rescheduled";
        EXPECT_EQ(behind.action->runs, 1) << "still due";
        EXPECT_EQ(elsewhere.action->runs, 1);
        fails.action->onFire = nullptr;
        Tick(1'000);
        EXPECT_EQ(behind.action->runs, 2);
        EXPECT_EQ(elsewhere.action->runs, 2);
        const int live = LiveProbes();
        fails.behaviour->RemoveAction(fails.action);
        EXPECT_EQ(LiveProbes(), live - 1) << "no call is in progress any more";
    }
}

TEST_F(RepeatTest, AFailingOnTimerIsTheSame) {
    ProbeList list;
    const Rule rule = AddRepeating(list, 1'000);
    const Rule behind = AddRepeating(list, 1'000);
    rule.action->onFire = [](const CCommandEvent*) { throw std::runtime_error("host"); };
    Advance(1'000);
    EXPECT_THROW(list.OnTimer(), std::runtime_error);
    list.OnTimer();
    EXPECT_EQ(behind.action->runs, 1);
    ProbeTimeTrigger trigger;
    trigger.onNextTime = []() -> int { throw std::runtime_error("host"); };
    auto* event = new ProbeEvent;
    EXPECT_THROW(list.AddRepeatTrigger(&trigger, event, rule.action), std::runtime_error);
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

}  // namespace
