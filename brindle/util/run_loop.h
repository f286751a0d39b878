// RunLoop: the plain event loop of a host without a desktop. It delivers the ticks of the calling thread's timers
// (CTimer), and waits in between without using the processor. A host with a desktop runs the desktop's loop instead.
//
// A loop belongs to the thread that calls it; Wake and Quit may come from any. Loops may be nested: a tick may run a
// loop of its own, and the timers tick in it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "brindle/framework/export.h"

namespace brindle {

class BRINDLE_API RunLoop {
  public:
    RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    ~RunLoop();

    // Delivers ticks until Quit is called, also if that was before.
    void Run();
    // Waits until a tick is due, Wake or Quit is called, or so many milliseconds have passed; then delivers what is
    // due. Returns the number of ticks.
    int RunOnce(std::uint32_t longestMilliseconds);
    // Delivers what is due without waiting; each timer ticks at most once.
    static int RunDue();
    // When the next tick is due, in milliseconds of the clock's monotonic tick; nothing without timers.
    static std::optional<std::uint64_t> NextDue();

    // Ends a wait in progress, else the next one. Thread: any, as long as the loop lives.
    void Wake() noexcept;
    // Ends Run after the tick being delivered. Thread: any.
    void Quit() noexcept;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace brindle
