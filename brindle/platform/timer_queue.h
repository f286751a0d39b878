// TimerQueue: the timers of one thread, which its loop asks for what is due. Times are milliseconds of one clock.
// Internal; one thread. Tests: ui_timer_test.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "brindle/platform/ui_timer.h"

namespace brindle {

class BRINDLE_API TimerQueue {
  public:
    // As in UiTimer, but for the present time, which the caller says. Targets stay their owners'.
    void Start(UiTimerTarget& target, std::uint64_t id, std::uint32_t milliseconds, std::uint64_t now);
    void Stop(const UiTimerTarget& target, std::uint64_t id) noexcept;
    void StopAll(const UiTimerTarget& target) noexcept;
    // Without timers, and not in the middle of RunDue.
    bool IsAtRest() const noexcept { return m_timers.empty() && m_running == 0; }

    // When the next tick is due; nothing without timers.
    std::optional<std::uint64_t> NextDue() const noexcept;
    // Ticks every timer that is due, once each, the longest due first. Returns how many. Ticks may change
    // everything, and call this.
    int RunDue(std::uint64_t now);

  private:
    struct Timer {
        UiTimerTarget* target;
        std::uint64_t id;
        std::uint64_t period;
        std::uint64_t due;
        std::uint64_t serial;  // of its last start
    };
    Timer* Find(std::uint64_t serial) noexcept;

    std::vector<Timer> m_timers;  // in the order they were first started
    std::uint64_t m_lastSerial = 0;
    int m_running = 0;  // calls of RunDue in progress
};

// The calling thread's queue, one whatever loop runs it. It is there while it has timers, so that nothing is left to
// the end of the thread, whose it stays.
BRINDLE_API TimerQueue* ThreadTimers() noexcept;  // null: none
TimerQueue& MakeThreadTimers();
BRINDLE_API void DropThreadTimersAtRest() noexcept;

}  // namespace brindle
