// Timers without a desktop: each thread has a queue of its own, which its plain loop (util/run_loop.h) runs. Tests:
// ui_timer_test.cpp.
//
// Cannot: tick while the thread runs no loop.
#include "brindle/platform/clock.h"
#include "brindle/platform/timer_queue.h"

namespace brindle {
namespace {

class LoopUiTimer final : public UiTimer {
  public:
    bool Start(UiTimerTarget& target, std::uint64_t id, std::uint32_t milliseconds) override {
        MakeThreadTimers().Start(target, id, milliseconds, CurrentClock().MonotonicMilliseconds());
        return true;
    }
    void Stop(UiTimerTarget& target, std::uint64_t id) noexcept override {
        if (TimerQueue* timers = ThreadTimers()) timers->Stop(target, id);
        DropThreadTimersAtRest();
    }
    void StopAll(UiTimerTarget& target) noexcept override {
        if (TimerQueue* timers = ThreadTimers()) timers->StopAll(target);
        DropThreadTimersAtRest();
    }
};

}  // namespace

UiTimer& BackendUiTimer() noexcept {
    constinit static LoopUiTimer timer;
    return timer;
}

}  // namespace brindle
