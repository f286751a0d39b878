// CTimer and the plain loop that drives it.
#include "brindle/util/timer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/fake/ui_timer_fake.h"
#include "brindle/platform/service.h"
#include "brindle/util/run_loop.h"

namespace brindle {
namespace {

class Ticker final : public CTimer {
  public:
    using CTimer::CreateTimer;
    std::string ticks;
    std::function<void(std::uint64_t)> also;

  protected:
    void OnTimer(std::uint64_t id) override {
        ticks += std::to_string(id);
        if (also) also(id);
    }
};

class TimerTest : public ::testing::Test {
  protected:
    int Advance(std::uint64_t milliseconds) {
        m_clock.AdvanceMilliseconds(milliseconds);
        return RunLoop::RunDue();
    }
    FakeClock m_clock;

  private:
    ScopedService<Clock> m_installed{&SetClock, m_clock};
};

TEST_F(TimerTest, CreateTimerMakesTheWindowFirst) {
    Ticker timer;
    EXPECT_EQ(timer.GetSafeHwnd(), nullptr);
    timer.CreateTimer(1, 10);
    EXPECT_NE(timer.GetSafeHwnd(), nullptr);
    EXPECT_EQ(Advance(9), 0);
    EXPECT_EQ(Advance(1), 1);
    EXPECT_EQ(timer.ticks, "1");
}

TEST_F(TimerTest, CreateAnswersNotZeroAndMayComeTwice) {
    Ticker timer;
    EXPECT_NE(timer.Create(), 0);
    const HWND window = timer.GetSafeHwnd();
    timer.CreateTimer(1, 10);
    EXPECT_NE(timer.Create(), 0);
    EXPECT_EQ(timer.GetSafeHwnd(), window);
    EXPECT_EQ(Advance(10), 1) << "its timers go on";
}

TEST_F(TimerTest, TimersAreToldApart) {
    Ticker timer;
    timer.CreateTimer(1, 10);
    timer.CreateTimer(2, 15);
    timer.CreateTimer(4'294'967'295, 20);
    for (int i = 0; i < 6; ++i) Advance(5);
    EXPECT_EQ(timer.ticks,
              "12142949672951"
              "2");
}

TEST_F(TimerTest, StartingAgainReplacesThePeriod) {
    Ticker timer;
    timer.CreateTimer(1, 10);
    Advance(5);
    timer.CreateTimer(1, 100);
    EXPECT_EQ(Advance(99), 0);
    EXPECT_EQ(Advance(1), 1);
}

TEST_F(TimerTest, DestructionEndsTheTimers) {
    auto timer = std::make_unique<Ticker>();
    timer->CreateTimer(1, 10);
    EXPECT_TRUE(RunLoop::NextDue());
    timer.reset();
    EXPECT_FALSE(RunLoop::NextDue());
    EXPECT_EQ(Advance(100), 0);
}

TEST_F(TimerTest, WithinATick) {
    struct Row {
        const char* label;
        std::function<void(std::unique_ptr<Ticker>&)> doing;
        const char* ticks;  // at 10, 20 and 30 ms
    };
    std::string ticks;
    const Row rows[] = {
        {"nothing", [](auto&) {}, "123123123"},
        {"kills itself", [](auto& timer) { timer->KillTimer(1); }, "1232323"},
        {"restarts itself", [](auto& timer) { timer->CreateTimer(1, 20); }, "12323123"},
        {"destroys the window", [](auto& timer) { timer->DestroyWindow(); }, "1"},
        {"destroys the object", [](auto& timer) { timer.reset(); }, "1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ticks.clear();
        auto timer = std::make_unique<Ticker>();
        for (unsigned id = 1; id <= 3; ++id) timer->CreateTimer(id, 10);
        timer->also = [&](std::uint64_t id) {
            ticks += std::to_string(id);
            if (id != 1) return;
            const auto doing = row.doing;  // the function goes with the object
            doing(timer);
        };
        for (int i = 0; i < 3; ++i) Advance(10);
        EXPECT_EQ(ticks, row.ticks);
    }
}

TEST_F(TimerTest, AnExceptionOfATickPassesAndTheTimersGoOn) {
    Ticker timer;
    timer.CreateTimer(1, 10);
    timer.also = [](std::uint64_t) { throw std::runtime_error("host code"); };
    EXPECT_THROW(Advance(10), std::runtime_error);
    timer.also = nullptr;
    EXPECT_EQ(Advance(10), 1);
}

TEST_F(TimerTest, TheInstalledServiceTicks) {
    FakeUiTimer desktop;
    const ScopedService<UiTimer> installed(&SetUiTimer, desktop);
    Ticker timer;
    timer.CreateTimer(5, 10);
    EXPECT_FALSE(RunLoop::NextDue()) << "not the plain loop";
    EXPECT_EQ(desktop.Advance(10), 1);
    EXPECT_EQ(timer.ticks, "5");
    desktop.Fail(true);
    EXPECT_EQ(timer.SetTimer(6, 10), 0u);
    EXPECT_TRUE(timer.DestroyWindow());
}

TEST_F(TimerTest, WindowsAnswerWithoutOne) {
    Ticker timer;
    EXPECT_EQ(timer.SetTimer(1, 10), 0u);
    EXPECT_FALSE(timer.KillTimer(1));
    EXPECT_FALSE(timer.DestroyWindow());
    timer.Create();
    EXPECT_EQ(timer.SetTimer(0, 10), 1u);
    EXPECT_EQ(timer.SetTimer(3, 10), 3u);
    EXPECT_TRUE(timer.DestroyWindow());
    EXPECT_FALSE(timer.DestroyWindow());
}

TEST_F(TimerTest, MessagesAreRoutedThroughTheMap) {
    Ticker timer;
    EXPECT_TRUE(timer.SendMessage(CWnd::kTimerMessage, 42));
    EXPECT_EQ(timer.ticks, "42");
    EXPECT_FALSE(timer.SendMessage(1, 0));
    CWnd plain;
    EXPECT_FALSE(plain.SendMessage(CWnd::kTimerMessage, 42));
    EXPECT_EQ(plain.GetRuntimeClass(), CWnd::GetThisClass());
    CTimer idle;
    EXPECT_TRUE(idle.SendMessage(CWnd::kTimerMessage, 42)) << "taken, and nothing done with it";
}

TEST_F(TimerTest, RunTimeClass) {
    const Ticker timer;
    EXPECT_STREQ(timer.GetRuntimeClass()->m_lpszClassName, "CTimer");
    EXPECT_EQ(timer.GetRuntimeClass(), CTimer::GetThisClass());
    EXPECT_EQ(CTimer::classCTimer.m_pBaseClass, CWnd::GetThisClass());
    EXPECT_STREQ(CWnd::classCWnd.m_lpszClassName, "CWnd");
    EXPECT_TRUE(timer.IsKindOf(RUNTIME_CLASS(CWnd)));
    EXPECT_FALSE(timer.IsSerializable());
    const std::unique_ptr<CObject> made(CRuntimeClass::CreateObject("CTimer"));
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CTimer)));
    EXPECT_EQ(CRuntimeClass::CreateObject("CWnd"), nullptr);
}

// On the real clock: only that ticks come, and that waits end.
TEST(RunLoopTest, RunsUntilItIsQuit) {
    RunLoop loop;
    Ticker timer;
    timer.CreateTimer(1, 1);
    timer.also = [&](std::uint64_t) {
        if (timer.ticks.size() == 3) loop.Quit();
    };
    loop.Run();
    EXPECT_EQ(timer.ticks, "111");
}

TEST(RunLoopTest, OtherThreadsWakeAndQuit) {
    RunLoop loop;
    std::thread waking([&] { loop.Wake(); });
    EXPECT_EQ(loop.RunOnce(60'000), 0);
    waking.join();
    std::thread quitting([&] { loop.Quit(); });
    loop.Run();
    quitting.join();
    loop.Quit();
    loop.Run();  // it was before
}

TEST(RunLoopTest, AWakeBeforeTheWaitCounts) {
    RunLoop loop;
    loop.Wake();
    EXPECT_EQ(loop.RunOnce(60'000), 0);
    EXPECT_EQ(loop.RunOnce(0), 0);
}

TEST(RunLoopTest, TimersBelongToTheirThread) {
    Ticker timer;
    timer.CreateTimer(1, 60'000);
    std::thread other([] { EXPECT_FALSE(RunLoop::NextDue()); });
    other.join();
    EXPECT_TRUE(RunLoop::NextDue());
}

}  // namespace
}  // namespace brindle
