// UI timers in Qt's event loop. Tests: ui_timer_qt_test.cpp, and the contract in testing/ui_timer_contract.h.
#include "brindle/platform/qt/ui_timer_qt.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimerEvent>
#include <algorithm>
#include <cstdint>
#include <utility>

#include "brindle/platform/clock.h"
#include "brindle/platform/timer_queue.h"

namespace brindle {
namespace {

// One thread's timer in Qt's loop: it is set for what is due next.
class QueueDriver final : public QObject {
  public:
    // Forgets the time it was set for. Without timers in the queue it then rests.
    void Rearm() {
        Disarm();
        const TimerQueue* timers = ThreadTimers();
        const auto next = timers ? timers->NextDue() : std::nullopt;
        QAbstractEventDispatcher* loop = QAbstractEventDispatcher::instance();
        if (!next || !loop) return;
        // Longer waits are made of several.
        constexpr std::uint64_t kLongest = 3'600'000;
        const std::uint64_t now = CurrentClock().MonotonicMilliseconds();
        const std::uint64_t wait = *next > now ? std::min(*next - now, kLongest) : 0;
        m_timer = startTimer(static_cast<int>(wait), Qt::PreciseTimer);
        m_loop = loop;
    }
    bool IsArmed() const { return m_timer != 0; }

  protected:
    void timerEvent(QTimerEvent* event) override {
        if (event->timerId() != m_timer) return;
        // Qt does not tick a timer again inside its own tick. So another one is set first, for nested loops.
        Rearm();
        if (TimerQueue* timers = ThreadTimers()) timers->RunDue(CurrentClock().MonotonicMilliseconds());
        DropThreadTimersAtRest();
        RearmQtTimers();
    }

  private:
    void Disarm() {
        const int timer = std::exchange(m_timer, 0);
        // The numbers of a loop that has gone may be another object's now.
        if (timer != 0 && m_loop == QAbstractEventDispatcher::instance() && m_loop) killTimer(timer);
    }

    int m_timer = 0;  // 0: not set
    QPointer<QAbstractEventDispatcher> m_loop;
};

thread_local constinit QueueDriver* t_driver = nullptr;  // null: nothing is set

class LoopOfQt final : public UiTimer {
  public:
    bool Start(UiTimerTarget& target, std::uint64_t id, std::uint32_t milliseconds) override {
        if (!BackendUiTimer().Start(target, id, milliseconds)) return false;
        RearmQtTimers();
        return true;
    }
    void Stop(UiTimerTarget& target, std::uint64_t id) noexcept override {
        BackendUiTimer().Stop(target, id);
        if (t_driver) RearmQtTimers();
    }
    void StopAll(UiTimerTarget& target) noexcept override {
        BackendUiTimer().StopAll(target);
        if (t_driver) RearmQtTimers();
    }
};

constinit LoopOfQt g_timer;

}  // namespace

UiTimer& QtUiTimer() noexcept {
    return g_timer;
}

void RearmQtTimers() {
    if (!t_driver) {
        if (!ThreadTimers() || !QAbstractEventDispatcher::instance()) return;
        t_driver = new QueueDriver;
    }
    t_driver->Rearm();
    if (t_driver->IsArmed()) return;
    // It may be in the middle of its own event.
    std::exchange(t_driver, nullptr)->deleteLater();
}

}  // namespace brindle
