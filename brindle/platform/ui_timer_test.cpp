// The contract of UI timers over the plain loop's on a clock that stands still and over the fake ones, and their slot.
#include "brindle/platform/ui_timer.h"

#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/fake/ui_timer_fake.h"
#include "brindle/platform/service.h"
#include "brindle/util/run_loop.h"
#include "testing/ui_timer_contract.h"

namespace brindle {
namespace {

class FakeWorld final : public testing::TimerWorld {
  public:
    UiTimer& Service() override { return m_timer; }
    int Advance(std::uint64_t milliseconds) override { return m_timer.Advance(milliseconds); }

  private:
    FakeUiTimer m_timer;
};

class LoopWorld final : public testing::TimerWorld {
  public:
    UiTimer& Service() override { return BackendUiTimer(); }
    int Advance(std::uint64_t milliseconds) override {
        m_clock.AdvanceMilliseconds(milliseconds);
        return RunLoop::RunDue();
    }

  private:
    FakeClock m_clock;
    ScopedService<Clock> m_installed{&SetClock, m_clock};
};

template <class World>
std::unique_ptr<testing::TimerWorld> Make() {
    return std::make_unique<World>();
}

TEST(UiTimer, SlotFallsBackToTheBackend) {
    FakeUiTimer fake;
    EXPECT_EQ(&CurrentUiTimer(), &BackendUiTimer());
    {
        const ScopedService<UiTimer> installed(&SetUiTimer, fake);
        EXPECT_EQ(&CurrentUiTimer(), &fake);
    }
    EXPECT_EQ(&CurrentUiTimer(), &BackendUiTimer());
}

TEST(UiTimer, FakeFails) {
    FakeUiTimer fake;
    std::string ticks;
    testing::TickTarget target(ticks);
    fake.Fail(true);
    EXPECT_FALSE(fake.Start(target, 1, 10));
    EXPECT_EQ(fake.Advance(10), 0);
}

}  // namespace
namespace testing {
INSTANTIATE_TEST_SUITE_P(Loop, UiTimerContract, ::testing::Values(&Make<LoopWorld>));
INSTANTIATE_TEST_SUITE_P(Fake, UiTimerContract, ::testing::Values(&Make<FakeWorld>));
}  // namespace testing

}  // namespace brindle
