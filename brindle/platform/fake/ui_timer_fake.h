// FakeUiTimer: timers on a time that a test moves.
#pragma once

#include "brindle/platform/timer_queue.h"

namespace brindle {

class FakeUiTimer final : public UiTimer {
  public:
    bool Start(UiTimerTarget& target, std::uint64_t id, std::uint32_t milliseconds) override {
        if (m_fail) return false;
        m_timers.Start(target, id, milliseconds, m_now);
        return true;
    }
    void Stop(UiTimerTarget& target, std::uint64_t id) noexcept override { m_timers.Stop(target, id); }
    void StopAll(UiTimerTarget& target) noexcept override { m_timers.StopAll(target); }

    // Lets time pass without a loop, then runs the loop once. Returns the number of ticks.
    int Advance(std::uint64_t milliseconds) {
        m_now += milliseconds;
        return m_timers.RunDue(m_now);
    }
    // The system gives no more timers.
    void Fail(bool fail) noexcept { m_fail = fail; }

  private:
    TimerQueue m_timers;
    std::uint64_t m_now = 0;
    bool m_fail = false;
};

}  // namespace brindle
