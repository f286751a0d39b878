// What every UI-timer service keeps to. A test program instantiates the suite for its service, in a world whose time
// the suite moves:
//   INSTANTIATE_TEST_SUITE_P(Fake, UiTimerContract, ::testing::Values(&MakeFakeWorld));
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "brindle/platform/ui_timer.h"

namespace brindle::testing {

class TimerWorld {
  public:
    virtual ~TimerWorld() = default;
    virtual UiTimer& Service() = 0;
    // Lets time pass while the thread is busy, then turns the loop once.
    virtual int Advance(std::uint64_t milliseconds) = 0;
};

// Writes down its ticks, and does something more where a test wants it.
class TickTarget final : public UiTimerTarget {
  public:
    explicit TickTarget(std::string& ticks, std::string name = {})
        : m_ticks(ticks), m_name(std::move(name)) {}
    void OnTick(std::uint64_t id) override {
        m_ticks += (m_ticks.empty() ? "" : " ") + m_name + std::to_string(id);
        if (also) also(id);
    }
    std::function<void(std::uint64_t)> also;

  private:
    std::string& m_ticks;
    std::string m_name;
};

using MakeWorld = std::unique_ptr<TimerWorld> (*)();

class UiTimerContract : public ::testing::TestWithParam<MakeWorld> {
  protected:
    ~UiTimerContract() override { service().StopAll(m_target); }
    UiTimer& service() { return m_world->Service(); }
    std::string After(std::uint64_t milliseconds) {
        m_ticks.clear();
        m_world->Advance(milliseconds);
        return m_ticks;
    }

    std::string m_ticks;
    TickTarget m_target{m_ticks};

    std::unique_ptr<TimerWorld> m_world = GetParam()();
};

TEST_P(UiTimerContract, TicksOncePerPeriod) {
    ASSERT_TRUE(service().Start(m_target, 7, 10));
    EXPECT_EQ(After(0), "");
    EXPECT_EQ(After(9), "");
    EXPECT_EQ(After(1), "7");
    EXPECT_EQ(After(0), "");
    EXPECT_EQ(After(9), "");
    EXPECT_EQ(After(1), "7");
}

TEST_P(UiTimerContract, IdentifiersAndTargetsAreApart) {
    TickTarget other(m_ticks, "other");
    ASSERT_TRUE(service().Start(m_target, 1, 10));
    ASSERT_TRUE(service().Start(m_target, 2, 15));
    ASSERT_TRUE(service().Start(other, 1, 10));
    EXPECT_EQ(After(10), "1 other1");
    EXPECT_EQ(After(5), "2");
    EXPECT_EQ(After(5), "1 other1");
    service().StopAll(m_target);
    EXPECT_EQ(After(100), "other1");
    service().StopAll(other);
}

TEST_P(UiTimerContract, TheLongestDueComesFirst) {
    ASSERT_TRUE(service().Start(m_target, 1, 30));
    ASSERT_TRUE(service().Start(m_target, 2, 20));
    ASSERT_TRUE(service().Start(m_target, 3, 20));
    EXPECT_EQ(After(30), "2 3 1");
}

TEST_P(UiTimerContract, MissedTicksAreOne) {
    ASSERT_TRUE(service().Start(m_target, 1, 10));
    EXPECT_EQ(After(55), "1");
    EXPECT_EQ(After(9), "");
    EXPECT_EQ(After(1), "1") << "the next comes one period later";
    EXPECT_EQ(After(13), "1");
    EXPECT_EQ(After(7), "1") << "a tick that is only late does not move the next one";
}

TEST_P(UiTimerContract, StartingAgainReplacesThePeriod) {
    ASSERT_TRUE(service().Start(m_target, 1, 10));
    EXPECT_EQ(After(9), "");
    ASSERT_TRUE(service().Start(m_target, 1, 20));
    EXPECT_EQ(After(19), "");
    EXPECT_EQ(After(1), "1");
    EXPECT_EQ(After(20), "1");
}

TEST_P(UiTimerContract, APeriodOfZeroIsOne) {
    ASSERT_TRUE(service().Start(m_target, 1, 0));
    EXPECT_EQ(After(0), "");
    EXPECT_EQ(After(1), "1");
}

TEST_P(UiTimerContract, LongPeriods) {
    ASSERT_TRUE(service().Start(m_target, 1, 4'294'967'295));
    EXPECT_EQ(After(4'294'967'294), "");
    EXPECT_EQ(After(1), "1");
}

TEST_P(UiTimerContract, StoppedTimersDoNotTick) {
    ASSERT_TRUE(service().Start(m_target, 1, 10));
    service().Stop(m_target, 1);
    service().Stop(m_target, 1);
    service().Stop(m_target, 99);
    EXPECT_EQ(After(100), "");
    ASSERT_TRUE(service().Start(m_target, 1, 10));
    EXPECT_EQ(After(10), "1");
}

TEST_P(UiTimerContract, WithinATick) {
    struct Row {
        const char* label;
        std::function<void(UiTimer&, TickTarget&)> doing;  // in the tick of 1, while 2 is due as well
        const char* now;
        const char* later;  // 10 ms later
    };
    const Row rows[] = {
        {"nothing", [](UiTimer&, TickTarget&) {}, "1 2", "1 2"},
        {"stops itself", [](UiTimer& timer, TickTarget& target) { timer.Stop(target, 1); }, "1 2", "2"},
        {"stops the other", [](UiTimer& timer, TickTarget& target) { timer.Stop(target, 2); }, "1", "1"},
        {"stops all", [](UiTimer& timer, TickTarget& target) { timer.StopAll(target); }, "1", ""},
        {"restarts itself", [](UiTimer& timer, TickTarget& target) { timer.Start(target, 1, 11); }, "1 2",
         "2"},
        {"restarts the other", [](UiTimer& timer, TickTarget& target) { timer.Start(target, 2, 10); }, "1",
         "1 2"},
        {"starts a third", [](UiTimer& timer, TickTarget& target) { timer.Start(target, 3, 10); }, "1 2",
         "1 2 3"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ASSERT_TRUE(service().Start(m_target, 1, 10));
        ASSERT_TRUE(service().Start(m_target, 2, 10));
        m_target.also = [&](std::uint64_t id) {
            if (id == 1) row.doing(service(), m_target);
        };
        EXPECT_EQ(After(10), row.now);
        m_target.also = nullptr;
        EXPECT_EQ(After(10), row.later);
        service().StopAll(m_target);
    }
}

TEST_P(UiTimerContract, ATargetMayBeDestroyedInATick) {
    auto other = std::make_unique<TickTarget>(m_ticks, "other");
    ASSERT_TRUE(service().Start(m_target, 1, 10));
    ASSERT_TRUE(service().Start(*other, 1, 10));
    m_target.also = [&](std::uint64_t) {
        if (other) service().StopAll(*other);
        other.reset();
    };
    EXPECT_EQ(After(10), "1");
    EXPECT_EQ(After(10), "1");
    m_target.also = nullptr;
}

TEST_P(UiTimerContract, ANestedLoopTicks) {
    ASSERT_TRUE(service().Start(m_target, 1, 10));
    ASSERT_TRUE(service().Start(m_target, 2, 10));
    int depth = 0;
    m_target.also = [&](std::uint64_t id) {
        if (id == 1 && ++depth == 1) m_world->Advance(0);
    };
    EXPECT_EQ(After(10), "1 2") << "the nested loop runs the second, once";
    m_target.also = [&](std::uint64_t id) {
        if (id == 1 && ++depth == 2) m_world->Advance(10);
    };
    EXPECT_EQ(After(10), "1 2 1") << "the second was due first";
    m_target.also = nullptr;
}

}  // namespace brindle::testing
