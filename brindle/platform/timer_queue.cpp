// Timers by due time. Tests: ui_timer_test.cpp.
#include "brindle/platform/timer_queue.h"

#include <algorithm>
#include <utility>

namespace brindle {
namespace {
thread_local constinit TimerQueue* t_timers = nullptr;
}

TimerQueue* ThreadTimers() noexcept {
    return t_timers;
}

TimerQueue& MakeThreadTimers() {
    if (!t_timers) t_timers = new TimerQueue;
    return *t_timers;
}

void DropThreadTimersAtRest() noexcept {
    if (t_timers && t_timers->IsAtRest()) delete std::exchange(t_timers, nullptr);
}

void TimerQueue::Start(UiTimerTarget& target, std::uint64_t id, std::uint32_t milliseconds,
                       std::uint64_t now) {
    const std::uint64_t period = std::max<std::uint64_t>(milliseconds, 1);
    const Timer started{&target, id, period, now + period, ++m_lastSerial};
    const auto running = std::find_if(m_timers.begin(), m_timers.end(), [&](const Timer& timer) {
        return timer.target == &target && timer.id == id;
    });
    if (running == m_timers.end())
        m_timers.push_back(started);
    else
        *running = started;
}

void TimerQueue::Stop(const UiTimerTarget& target, std::uint64_t id) noexcept {
    std::erase_if(m_timers, [&](const Timer& timer) { return timer.target == &target && timer.id == id; });
}

void TimerQueue::StopAll(const UiTimerTarget& target) noexcept {
    std::erase_if(m_timers, [&](const Timer& timer) { return timer.target == &target; });
}

std::optional<std::uint64_t> TimerQueue::NextDue() const noexcept {
    std::optional<std::uint64_t> next;
    for (const Timer& timer : m_timers)
        if (!next || timer.due < *next) next = timer.due;
    return next;
}

TimerQueue::Timer* TimerQueue::Find(std::uint64_t serial) noexcept {
    const auto found = std::find_if(m_timers.begin(), m_timers.end(),
                                    [&](const Timer& timer) { return timer.serial == serial; });
    return found == m_timers.end() ? nullptr : &*found;
}

int TimerQueue::RunDue(std::uint64_t now) {
    struct Due {
        std::uint64_t due;
        std::uint64_t serial;
    };
    std::vector<Due> due;
    for (const Timer& timer : m_timers)
        if (timer.due <= now) due.push_back({timer.due, timer.serial});
    std::stable_sort(due.begin(), due.end(), [](const Due& a, const Due& b) { return a.due < b.due; });
    // Ends with the block, also when a tick throws.
    struct Running {
        explicit Running(int& calls) noexcept : count(calls) { ++count; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        ~Running() { --count; }
        int& count;
    };
    const Running running(m_running);
    int ticks = 0;
    for (const auto& [dueAt, serial] : due) {
        Timer* timer = Find(serial);
        if (!timer || timer->due != dueAt) continue;  // stopped, started anew, or run by a nested loop
        timer->due += timer->period;
        if (timer->due <= now) timer->due = now + timer->period;  // ticks that were missed are one
        ++ticks;
        timer->target->OnTick(timer->id);
    }
    return ticks;
}

}  // namespace brindle
