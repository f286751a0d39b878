// The arithmetic of due times, the scan for due entries, and the figures that spare a timer call its work.
#include "brindle/behaviour/repeat_queue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "testing/behaviour_kit.h"

namespace {

using brindle::DueAfter;
using brindle::kNeverDue;
using brindle::RepeatQueue;
using brindle::SaturatedPeriod;
using brindle::TimerPass;
using namespace brindle::testing;

class RepeatQueueTest : public BehaviourTest {
  protected:
    void Add(RepeatQueue& queue, ProbeAction& action, std::uint64_t due, int period = 1'000) {
        queue.Add(nullptr, {&trigger, nullptr, &action, nullptr, period, due}, false);
    }
    ProbeTrigger trigger;
    void TearDown() override {}
};

TEST_F(RepeatQueueTest, DueTimesSaturate) {
    struct Row {
        const char* label;
        std::uint64_t now;
        std::int64_t milliseconds;
        std::uint64_t expected;
    };
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
    const Row rows[] = {
        {"ahead", 1'000, 500, 1'500},
        {"now", 1'000, 0, 1'000},
        {"back", 1'000, -500, 500},
        {"back to the beginning", 1'000, -1'000, 0},
        {"not before it", 1'000, -1'001, 0},
        {"from the beginning", 0, -1, 0},
        {"far back", 5, kLeast, 0},
        {"far back from the top", kNeverDue, kLeast, kNeverDue - (std::uint64_t{1} << 63)},
        {"far ahead", 5, kMost, static_cast<std::uint64_t>(kMost) + 5},
        {"just below the top", kNeverDue - 11, 10, kNeverDue - 1},
        {"never the top itself", kNeverDue - 10, 10, kNeverDue - 1},
        {"not beyond it", kNeverDue - 10, kMost, kNeverDue - 1},
        {"at the top", kNeverDue - 1, 1, kNeverDue - 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DueAfter(row.now, row.milliseconds), row.expected);
    }
}

TEST_F(RepeatQueueTest, PeriodsSaturateAt32Bits) {
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    constexpr std::int64_t kLeast = std::numeric_limits<int>::min();
    for (const std::int64_t same : {std::int64_t{0}, std::int64_t{-1}, kMost, kLeast})
        EXPECT_EQ(SaturatedPeriod(same), same);
    EXPECT_EQ(SaturatedPeriod(kMost + 1), kMost);
    EXPECT_EQ(SaturatedPeriod(kMost * 1'000), kMost);
    EXPECT_EQ(SaturatedPeriod(kLeast - 1), kLeast);
    EXPECT_EQ(SaturatedPeriod(kLeast * 1'000), kLeast);
}

TEST_F(RepeatQueueTest, FindsEveryDueEntryWhereverItStands) {
    // All patterns of due and not due over queues of one to nine entries: the scan takes four at a time.
    for (unsigned size = 1; size <= 9; ++size) {
        for (unsigned pattern = 0; pattern < 1u << size; ++pattern) {
            RepeatQueue queue;
            std::vector<ProbeAction> actions(size);
            std::uint64_t earliest = kNeverDue;
            for (unsigned i = 0; i < size; ++i) {
                const bool due = (pattern >> i & 1) != 0;
                const std::uint64_t when = due ? 100 - i : 101 + (i * 7) % size;
                Add(queue, actions[i], when, 50);
                earliest = std::min(earliest, due ? 150 : when);
            }
            queue.RunDue(nullptr, TimerPass(100));
            for (unsigned i = 0; i < size; ++i)
                ASSERT_EQ(actions[i].runs, static_cast<int>(pattern >> i & 1))
                    << size << " " << pattern << " " << i;
            ASSERT_EQ(queue.Earliest(), earliest) << size << " " << pattern;
            ASSERT_EQ(queue.NextDue(), earliest) << size << " " << pattern;
        }
    }
}

TEST_F(RepeatQueueTest, DueMeansNotLaterThanNow) {
    RepeatQueue queue;
    ProbeAction action;
    Add(queue, action, 100);
    queue.RunDue(nullptr, TimerPass(99));
    EXPECT_EQ(action.runs, 0);
    queue.RunDue(nullptr, TimerPass(100));
    EXPECT_EQ(action.runs, 1);
}

TEST_F(RepeatQueueTest, TheEarliestFigureIsNeverLate) {
    RepeatQueue queue;
    EXPECT_EQ(queue.Earliest(), kNeverDue);
    ProbeAction first, second;
    Add(queue, first, 500);
    EXPECT_EQ(queue.Earliest(), 500u);
    Add(queue, second, 300);
    EXPECT_EQ(queue.Earliest(), 300u);
    queue.RunDue(nullptr, TimerPass(300));
    EXPECT_EQ(queue.Earliest(), 500u);
    queue.Reset(nullptr);
    EXPECT_LE(queue.Earliest(), 500u) << "may be early";
    queue.RunDue(nullptr, TimerPass(600));
    EXPECT_EQ(queue.Earliest(), kNeverDue);
    EXPECT_EQ(queue.Count(), 0);
}

TEST_F(RepeatQueueTest, InertEntriesStayAndAreNeverDue) {
    RepeatQueue queue;
    auto action = std::make_unique<ProbeAction>();
    auto* event = new ProbeEvent;
    queue.Add(nullptr, {&trigger, event, action.get(), nullptr, 0, 0}, false);
    action.reset();
    EXPECT_EQ(queue.NextDue(), kNeverDue);
    queue.RunDue(nullptr, TimerPass(1'000));
    EXPECT_EQ(queue.Earliest(), kNeverDue);
    EXPECT_EQ(queue.Count(), 1);
    EXPECT_EQ(event->References(), 2);
    queue.Cancel(nullptr, &trigger);
    EXPECT_EQ(queue.Count(), 1);
    queue.Reset(nullptr);
    EXPECT_EQ(queue.Count(), 0);
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

TEST_F(RepeatQueueTest, ItsEndReleasesWhatIsLeft) {
    auto* event = new ProbeEvent;
    ProbeAction action;
    {
        RepeatQueue queue;
        queue.Add(nullptr, {&trigger, event, &action, nullptr, 0, 0}, false);
        EXPECT_EQ(event->References(), 2);
    }
    EXPECT_EQ(event->References(), 1);
    event->Release();
}

TEST_F(RepeatQueueTest, APassLeavesAloneWhatWasAddedAfterItBegan) {
    RepeatQueue queue;
    ProbeAction early, late;
    Add(queue, early, 0);
    const TimerPass pass(1'000);
    Add(queue, late, 0);
    queue.RunDue(nullptr, pass);
    EXPECT_EQ(early.runs, 1);
    EXPECT_EQ(late.runs, 0);
    EXPECT_EQ(queue.Earliest(), 0u);
    queue.RunDue(nullptr, TimerPass(1'000));
    EXPECT_EQ(late.runs, 1);
}

TEST_F(RepeatQueueTest, TheFigureOfAllQueuesCoversWhatIsAddedMeanwhile) {
    RepeatQueue queue;
    ProbeAction action;
    {
        brindle::EarliestOfAllUpdate update;
        EXPECT_EQ(brindle::EarliestOfAll(), 0u) << "until it is known, every call looks";
        update.Include(700);
        update.Include(900);
        update.Finish();
        EXPECT_EQ(brindle::EarliestOfAll(), 700u);
    }
    Add(queue, action, 800);
    EXPECT_EQ(brindle::EarliestOfAll(), 700u);
    Add(queue, action, 600);
    EXPECT_EQ(brindle::EarliestOfAll(), 600u);
    {
        brindle::EarliestOfAllUpdate update;
        Add(queue, action, 500);
        update.Include(700);
        update.Finish();
        EXPECT_LE(brindle::EarliestOfAll(), 500u);
    }
    {
        brindle::EarliestOfAllUpdate outer;
        outer.Include(900);
        {
            brindle::EarliestOfAllUpdate nested;
            nested.Include(400);
            nested.Finish();
        }
        outer.Finish();
        EXPECT_LE(brindle::EarliestOfAll(), 400u)
            << "the nested pass may have changed what the outer one saw";
    }
    { const brindle::EarliestOfAllUpdate cutShort; }
    EXPECT_EQ(brindle::EarliestOfAll(), 0u) << "an exception kept it from finishing";
}

}  // namespace
