// UiTimer: ticks on the user-interface thread, from its event loop. A private service.
//
// With a desktop the loop is the desktop's; otherwise it is the plain one of util/run_loop.h. A timer belongs to the
// thread that started it, whose loop delivers its ticks; the calls below come from that thread. From within a tick
// every timer may be started, restarted and stopped, targets may be destroyed, and a nested loop may run.
// Resolution: one millisecond of the clock service's monotonic tick; a tick is late while the thread is busy, and
// what it missed meanwhile is one tick.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"

namespace brindle {

// What is told of ticks.
class UiTimerTarget {
  public:
    // The timer `id` is due.
    virtual void OnTick(std::uint64_t id) = 0;

  protected:
    ~UiTimerTarget() = default;  // never destroyed through this interface; StopAll comes first
};

class UiTimer {
  public:
    // Ticks every so many milliseconds (0 counts as 1), first one period from now. A running timer of that
    // identifier is started anew with this period. False when the system gives no more timers.
    virtual bool Start(UiTimerTarget& target, std::uint64_t id, std::uint32_t milliseconds) = 0;
    // No tick comes any more, also none that is due already. Nothing for a timer that does not run.
    virtual void Stop(UiTimerTarget& target, std::uint64_t id) noexcept = 0;
    virtual void StopAll(UiTimerTarget& target) noexcept = 0;

  protected:
    ~UiTimer() = default;  // never destroyed through this interface
};

// What the linked backend provides.
BRINDLE_API UiTimer& BackendUiTimer() noexcept;

// The service in place.
BRINDLE_API UiTimer& CurrentUiTimer() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
BRINDLE_API UiTimer* SetUiTimer(UiTimer* service) noexcept;

}  // namespace brindle
