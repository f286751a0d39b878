// SoakPace: virtual time that the thread of a file monitor may read as well, and by which the station's changes of
// files are waited for: a change that was noticed wakes the run.
#pragma once

#include <brindle/framework/file_time.h>
#include <brindle/framework/local_time.h>
#include <brindle/platform/clock.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "host/run_pace.h"
#include "host/virtual_clock.h"

namespace brindle::soak {

class SoakClock final : public Clock {
  public:
    std::uint64_t SystemTicks() override {
        return static_cast<std::uint64_t>(host::VirtualClock::kDefaultStart + kUnixEpochSeconds) *
                   kTicksPerSecond +
               m_elapsed * kTicksPerMillisecond;
    }
    std::uint64_t MonotonicMilliseconds() override { return m_elapsed; }
    bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override {
        out = BreakDownUtc(unixSeconds);
        return true;
    }
    TimeZone StandardZone() override { return {"UTC", 0}; }
    // Thread: one; time never goes back.
    void MoveTo(std::uint64_t elapsed) {
        if (elapsed > m_elapsed) m_elapsed = elapsed;
    }

  private:
    std::atomic<std::uint64_t> m_elapsed{0};  // milliseconds
};

class SoakPace final : public host::RunPace {
  public:
    SoakPace() : m_previous(SetClock(&m_clock)) {}
    SoakPace(const SoakPace&) = delete;
    SoakPace& operator=(const SoakPace&) = delete;
    ~SoakPace() { SetClock(m_previous); }

    std::uint64_t Elapsed() override { return m_clock.MonotonicMilliseconds(); }
    void WaitUntil(std::uint64_t elapsed) override {
        m_clock.MoveTo(elapsed);
        RunLoop::RunDue();
    }
    bool IsReal() const noexcept override { return false; }
    void Wake() noexcept override {
        const std::lock_guard lock(m_lock);
        ++m_wakes;
        m_woken.notify_all();
    }

    int Wakes() const {
        const std::lock_guard lock(m_lock);
        return m_wakes;
    }
    // Waits, in real time, until the run was woken more than `wakes` times; false when that took too long.
    bool AwaitWake(int wakes) {
        std::unique_lock lock(m_lock);
        return m_woken.wait_for(lock, std::chrono::seconds(30), [&] { return m_wakes > wakes; });
    }

  private:
    SoakClock m_clock;
    Clock* m_previous;
    mutable std::mutex m_lock;
    std::condition_variable m_woken;
    int m_wakes = 0;
};

}  // namespace brindle::soak
