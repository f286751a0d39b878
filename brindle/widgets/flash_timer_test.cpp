// The flash timer on timers whose time a test moves.
#include "brindle/widgets/flash_timer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "brindle/platform/fake/ui_timer_fake.h"
#include "brindle/platform/service.h"
#include "testing/layout.h"

namespace {

// Writes its name and the state down at each tick.
class CallBack final : public CFlashCallBack {
  public:
    CallBack(std::string& flashes, char name) : m_flashes(flashes), m_name(name) {}
    void OnFlash(int state) override {
        m_flashes += m_name + std::to_string(state);
        if (also) also();
    }
    std::function<void()> also;

  private:
    std::string& m_flashes;
    char m_name;
};

class FlashTimer : public ::testing::Test {
  protected:
    std::string After(std::uint64_t milliseconds) {
        m_flashes.clear();
        m_timer.Advance(milliseconds);
        return m_flashes;
    }
    // So that every test begins with 1.
    ~FlashTimer() override {
        for (CallBack* each : {&m_a, &m_b, &m_c}) EndFlashTimer(each);
        StartFlashTimer(&m_a);
        if (After(500) == "a1") After(500);
        EndFlashTimer(&m_a);
    }

    brindle::FakeUiTimer m_timer;
    brindle::ScopedService<brindle::UiTimer> m_installed{&brindle::SetUiTimer, m_timer};
    std::string m_flashes;
    CallBack m_a{m_flashes, 'a'}, m_b{m_flashes, 'b'}, m_c{m_flashes, 'c'};
};

TEST_F(FlashTimer, FlipsEvery500Milliseconds) {
    EXPECT_EQ(StartFlashTimer(&m_a), 1);
    EXPECT_EQ(After(499), "");
    EXPECT_EQ(After(1), "a1");
    EXPECT_EQ(After(499), "");
    EXPECT_EQ(After(1), "a0");
    EXPECT_EQ(After(500), "a1");
    EXPECT_EQ(After(1700), "a0") << "ticks that were missed are one";
}

TEST_F(FlashTimer, AllHearOneTickInTheOrderTheyBegan) {
    StartFlashTimer(&m_b);
    EXPECT_EQ(After(300), "");
    StartFlashTimer(&m_a);
    EXPECT_EQ(After(200), "b1a1") << "the second does not move the tick";
    StartFlashTimer(&m_c);
    EXPECT_EQ(After(500), "b0a0c0");
    EXPECT_EQ(EndFlashTimer(&m_a), 1);
    EXPECT_EQ(After(500), "b1c1");
    EndFlashTimer(&m_b);
    EXPECT_EQ(After(500), "c0");
}

TEST_F(FlashTimer, ListeningTwiceIsListeningOnce) {
    EXPECT_EQ(StartFlashTimer(&m_a), 1);
    EXPECT_EQ(StartFlashTimer(&m_a), 1);
    EXPECT_EQ(After(500), "a1");
    EXPECT_EQ(EndFlashTimer(&m_a), 1);
    EXPECT_EQ(m_timer.Advance(500), 0) << "the timer is gone";
    EXPECT_EQ(EndFlashTimer(&m_a), 0);
}

TEST_F(FlashTimer, EndingTellsWhetherItListened) {
    EXPECT_EQ(EndFlashTimer(&m_a), 0);
    EXPECT_EQ(EndFlashTimer(nullptr), 0);
    StartFlashTimer(&m_a);
    EXPECT_EQ(EndFlashTimer(&m_b), 0);
    EXPECT_EQ(EndFlashTimer(nullptr), 0);
    EXPECT_EQ(After(500), "a1") << "the others listen on";
}

TEST_F(FlashTimer, TheStateGoesOnWhereItWas) {
    StartFlashTimer(&m_a);
    EXPECT_EQ(After(500), "a1");
    EndFlashTimer(&m_a);
    EXPECT_EQ(After(10'000), "");
    StartFlashTimer(&m_b);
    EXPECT_EQ(After(499), "") << "the period begins anew";
    EXPECT_EQ(After(1), "b0");
}

TEST_F(FlashTimer, WithoutATimerThereIsNoListening) {
    m_timer.Fail(true);
    EXPECT_EQ(StartFlashTimer(&m_a), 0);
    m_timer.Fail(false);
    EXPECT_EQ(EndFlashTimer(&m_a), 0) << "it was not added";
    EXPECT_EQ(StartFlashTimer(nullptr), 0);
    EXPECT_EQ(m_timer.Advance(500), 0) << "nothing was started for null";
    StartFlashTimer(&m_a);
    m_timer.Fail(true);
    EXPECT_EQ(StartFlashTimer(&m_b), 1) << "the timer runs already";
    m_timer.Fail(false);
}

TEST_F(FlashTimer, WithinATick) {
    struct Row {
        const char* label;
        std::function<void()> doing;  // in the tick of a, while b listens as well
        const char* now;
        const char* later;
    };
    const std::vector<Row> rows = {
        {"nothing", [] {}, "a1b1", "a0b0"},
        {"ends itself", [&] { EndFlashTimer(&m_a); }, "a1b1", "b0"},
        {"ends the other", [&] { EndFlashTimer(&m_b); }, "a1", "a0"},
        {"ends both", [&] { EndFlashTimer(&m_a), EndFlashTimer(&m_b); }, "a1", ""},
        {"starts a third", [&] { StartFlashTimer(&m_c); }, "a1b1", "a0b0c0"},
        {"ends the other and starts it again", [&] { EndFlashTimer(&m_b), StartFlashTimer(&m_b); }, "a1",
         "a0b0"},
        {"ends all and starts one", [&] { EndFlashTimer(&m_a), EndFlashTimer(&m_b), StartFlashTimer(&m_c); },
         "a1", "c0"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        StartFlashTimer(&m_a);
        StartFlashTimer(&m_b);
        m_a.also = [&] {
            m_a.also = nullptr;
            row.doing();
        };
        EXPECT_EQ(After(500), row.now);
        EXPECT_EQ(After(500), row.later);
        for (CallBack* each : {&m_a, &m_b, &m_c}) EndFlashTimer(each);
        if (*row.later) continue;
        StartFlashTimer(&m_a);
        EXPECT_EQ(After(500), "a0");
        EndFlashTimer(&m_a);
    }
}

TEST_F(FlashTimer, CallBacksThatAreDestroyedStopListening) {
    auto dying = std::make_unique<CallBack>(m_flashes, 'x');
    StartFlashTimer(&m_a);
    StartFlashTimer(dying.get());
    m_a.also = [&] { dying.reset(); };
    EXPECT_EQ(After(500), "a1") << "in the tick of another";
    m_a.also = nullptr;
    EXPECT_EQ(After(500), "a0");
    EndFlashTimer(&m_a);

    dying = std::make_unique<CallBack>(m_flashes, 'x');
    StartFlashTimer(dying.get());
    dying.reset();
    EXPECT_EQ(m_timer.Advance(500), 0) << "the timer is gone with the last";
}

// Destroys itself when it hears a tick.
class Suicidal final : public CFlashCallBack {
  public:
    void OnFlash(int) override { delete this; }
};

TEST_F(FlashTimer, ACallBackMayDestroyItselfInItsTick) {
    StartFlashTimer(new Suicidal);
    EXPECT_EQ(m_timer.Advance(500), 1);
    EXPECT_EQ(m_timer.Advance(500), 0);
    StartFlashTimer(&m_a);
    EXPECT_EQ(After(500), "a0");
}

TEST_F(FlashTimer, TheBaseHearsAndDoesNothing) {
    CFlashCallBack base;
    StartFlashTimer(&base);
    const CFlashCallBack copy = base;
    EXPECT_EQ(m_timer.Advance(500), 1);
    EXPECT_EQ(EndFlashTimer(const_cast<CFlashCallBack*>(&copy)), 0) << "copies do not listen";
    EXPECT_EQ(EndFlashTimer(&base), 1);
}

TEST(FlashCallBackLayout, VirtualOperationsStandInSlotOrder) {
    EXPECT_EQ(brindle::testing::SlotOf(&CFlashCallBack::OnFlash), 2u) << "behind the destructor";
}

}  // namespace
