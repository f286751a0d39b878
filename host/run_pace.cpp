// Real and virtual time of a run. Tests: run_test.cpp.
#include "host/run_pace.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace brindle::host {

RealPace::RealPace() : m_start(CurrentClock().MonotonicMilliseconds()) {}

std::uint64_t RealPace::Elapsed() {
    return CurrentClock().MonotonicMilliseconds() - m_start;
}

void RealPace::WaitUntil(std::uint64_t elapsed) {
    constexpr std::uint64_t kLongestSleep =
        3'600'000;  // an hour; keeps the sum within the range of durations
    for (std::uint64_t now = Elapsed(); now < elapsed; now = Elapsed())
        std::this_thread::sleep_for(std::chrono::milliseconds(std::min(elapsed - now, kLongestSleep)));
}

FastPace::FastPace(std::int64_t startUnixSeconds)
    : m_clock(startUnixSeconds), m_previous(SetClock(&m_clock)) {}

FastPace::~FastPace() {
    SetClock(m_previous);
}

}  // namespace brindle::host
