// RunPace: how time passes in a run: as it does outside, or in jumps.
#pragma once

#include <brindle/platform/clock.h>
#include <brindle/util/run_loop.h>

#include <cstdint>
#include <functional>
#include <optional>

#include "host/virtual_clock.h"

namespace brindle::host {

class RunPace {
  public:
    // Milliseconds since the start of the run.
    virtual std::uint64_t Elapsed() = 0;
    // Waits for that time and delivers the ticks of this thread's timers that are due. In real time it may be late,
    // and it comes back early when there were ticks, or when it was woken.
    virtual void WaitUntil(std::uint64_t elapsed) = 0;
    // Whether time passes as it does outside: only then can others be asked and waited for.
    virtual bool IsReal() const noexcept = 0;
    // Ends a wait in real time. Thread: any.
    virtual void Wake() noexcept {}

    // Lets all that is due happen, and answers when it wants to be called again, in milliseconds of the run; nothing:
    // the run is over.
    using Turn = std::function<std::optional<std::uint64_t>()>;
    // A dialog or a menu that opens within a wait, or within an action, runs an event loop of its own. The pace calls
    // the turn from there whenever it is due, so that the run goes on; when the run is over it ends those loops. Null:
    // not any more. A pace in which nothing opens has nothing to do.
    virtual void SetTurn(Turn) {}

  protected:
    ~RunPace() = default;  // never destroyed through this interface
};

// The time of the installed clock.
class RealPace final : public RunPace {
  public:
    RealPace();
    std::uint64_t Elapsed() override;
    void WaitUntil(std::uint64_t elapsed) override;
    bool IsReal() const noexcept override { return true; }
    void Wake() noexcept override { m_loop.Wake(); }

  private:
    std::uint64_t m_start;
    RunLoop m_loop;
};

// A virtual clock, installed for the life of this object.
class FastPace final : public RunPace {
  public:
    explicit FastPace(std::int64_t startUnixSeconds);
    FastPace(const FastPace&) = delete;
    FastPace& operator=(const FastPace&) = delete;
    ~FastPace();
    std::uint64_t Elapsed() override { return m_clock.Elapsed(); }
    void WaitUntil(std::uint64_t elapsed) override;
    bool IsReal() const noexcept override { return false; }

  private:
    VirtualClock m_clock;
    Clock* m_previous;
};

}  // namespace brindle::host
