// RunPace: how time passes in a run: as it does outside, or in jumps.
#pragma once

#include <brindle/platform/clock.h>

#include <cstdint>

#include "host/virtual_clock.h"

namespace brindle::host {

class RunPace {
  public:
    // Milliseconds since the start of the run.
    virtual std::uint64_t Elapsed() = 0;
    // Comes back when that time is reached; in real time it may be late.
    virtual void WaitUntil(std::uint64_t elapsed) = 0;
    // Whether time passes as it does outside: only then can others be asked and waited for.
    virtual bool IsReal() const noexcept = 0;

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

  private:
    std::uint64_t m_start;
};

// A virtual clock, installed for the life of this object.
class FastPace final : public RunPace {
  public:
    explicit FastPace(std::int64_t startUnixSeconds);
    FastPace(const FastPace&) = delete;
    FastPace& operator=(const FastPace&) = delete;
    ~FastPace();
    std::uint64_t Elapsed() override { return m_clock.Elapsed(); }
    void WaitUntil(std::uint64_t elapsed) override { m_clock.MoveTo(elapsed); }
    bool IsReal() const noexcept override { return false; }

  private:
    VirtualClock m_clock;
    Clock* m_previous;
};

}  // namespace brindle::host
