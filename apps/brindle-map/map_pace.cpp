// Tests: map_window_test.cpp.
#include "apps/brindle-map/map_pace.h"

#include <brindle/platform/clock.h>
#include <brindle/util/run_loop.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>

#include <algorithm>

namespace brindle::map {

MapPace::MapPace()
    : m_start(CurrentClock().MonotonicMilliseconds()), m_dispatcher(QAbstractEventDispatcher::instance()) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
}

std::uint64_t MapPace::Elapsed() {
    return CurrentClock().MonotonicMilliseconds() - m_start;
}

void MapPace::WaitUntil(std::uint64_t elapsed) {
    constexpr std::uint64_t kLongest = 1'000;  // the clock of the map goes on
    if (m_between) elapsed = std::min(elapsed, m_between());
    // Timers of the library tick by the desktop's loop where its services are in place, else by the plain one.
    if (const auto due = RunLoop::NextDue()) elapsed = std::min(elapsed, *due - std::min(*due, m_start));
    const std::uint64_t now = Elapsed();
    const std::uint64_t wait = elapsed > now ? std::min(elapsed - now, kLongest) : 0;
    m_timer.start(static_cast<int>(wait));
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    m_timer.stop();
    RunLoop::RunDue();
    if (m_between) m_between();
}

void MapPace::Wake() noexcept {
    m_dispatcher->wakeUp();
}

}  // namespace brindle::map
