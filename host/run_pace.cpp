// Real and virtual time of a run. Tests: run_test.cpp.
#include "host/run_pace.h"

#include <algorithm>

namespace brindle::host {

RealPace::RealPace() : m_start(CurrentClock().MonotonicMilliseconds()) {}

std::uint64_t RealPace::Elapsed() {
    return CurrentClock().MonotonicMilliseconds() - m_start;
}

void RealPace::WaitUntil(std::uint64_t elapsed) {
    constexpr std::uint64_t kLongest = 3'600'000;  // an hour; the run comes again
    const std::uint64_t now = Elapsed();
    m_loop.RunOnce(static_cast<std::uint32_t>(elapsed > now ? std::min(elapsed - now, kLongest) : 0));
}

FastPace::FastPace(std::int64_t startUnixSeconds)
    : m_clock(startUnixSeconds), m_previous(SetClock(&m_clock)) {}

void FastPace::WaitUntil(std::uint64_t elapsed) {
    m_clock.MoveTo(elapsed);
    RunLoop::RunDue();
}

FastPace::~FastPace() {
    SetClock(m_previous);
}

}  // namespace brindle::host
