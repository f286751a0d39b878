// The plain loop: waits on a condition, ticks what is due. Tests: timer_test.cpp.
#include "brindle/util/run_loop.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "brindle/platform/clock.h"
#include "brindle/platform/timer_queue.h"

namespace brindle {

struct RunLoop::State {
    std::mutex mutex;
    std::condition_variable changed;
    bool woken = false;
    bool over = false;

    // Until the moment given (milliseconds from now), or until woken. False once the loop is over.
    bool Wait(std::uint64_t milliseconds) {
        // Keeps the sum within the range of durations; the caller comes again.
        constexpr std::uint64_t kLongest = 3'600'000;
        std::unique_lock lock(mutex);
        changed.wait_for(lock, std::chrono::milliseconds(std::min(milliseconds, kLongest)),
                         [this] { return woken || over; });
        woken = false;
        return !over;
    }
};

RunLoop::RunLoop() : m_state(std::make_unique<State>()) {}
RunLoop::~RunLoop() = default;

void RunLoop::Run() {
    constexpr std::uint32_t kAnHour = 3'600'000;
    const auto isOver = [this] {
        const std::lock_guard lock(m_state->mutex);
        return m_state->over;
    };
    while (!isOver()) RunOnce(kAnHour);
    const std::lock_guard lock(m_state->mutex);
    m_state->over = false;
}

int RunLoop::RunOnce(std::uint32_t longestMilliseconds) {
    std::uint64_t wait = longestMilliseconds;
    if (const auto next = NextDue()) {
        const std::uint64_t now = CurrentClock().MonotonicMilliseconds();
        wait = std::min(wait, *next > now ? *next - now : 0);
    }
    return m_state->Wait(wait) ? RunDue() : 0;
}

int RunLoop::RunDue() {
    TimerQueue* timers = ThreadTimers();
    if (!timers) return 0;
    const int ticks = timers->RunDue(CurrentClock().MonotonicMilliseconds());
    DropThreadTimersAtRest();
    return ticks;
}

std::optional<std::uint64_t> RunLoop::NextDue() {
    const TimerQueue* timers = ThreadTimers();
    return timers ? timers->NextDue() : std::nullopt;
}

void RunLoop::Wake() noexcept {
    const std::lock_guard lock(m_state->mutex);
    m_state->woken = true;
    m_state->changed.notify_all();
}

void RunLoop::Quit() noexcept {
    const std::lock_guard lock(m_state->mutex);
    m_state->over = true;
    m_state->changed.notify_all();
}

}  // namespace brindle
