// CTimer: ticks for an object that has no visible window. A hidden, message-only window owns the timers and routes
// their ticks to OnTimer, which a derived class overrides.
//
// Ticks come on the thread that created the window, from its event loop: the desktop's where one is installed, else the
// plain one of util/run_loop.h. Periods are milliseconds and as exact as the loop: 1 ms for the plain one; 0 counts
// as 1. A tick is late while the thread is busy, and what was missed meanwhile is one tick. Within a tick timers may
// be started, restarted and stopped, and the object may be destroyed.
#pragma once

#include <cstdint>

#include "brindle/framework/ui/wnd.h"

class BRINDLE_API CTimer : public CWnd {
  public:
    CTimer();
    ~CTimer() override;  // ends its timers
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // Makes the hidden window. Non-zero on success, also when there is one.
    int Create();

    static const CRuntimeClass classCTimer;

  protected:
    // Makes the window unless there is one; then starts the timer `id` with a period of `elapse` milliseconds, or gives
    // a running one that period, counted from now. KillTimer stops it.
    void CreateTimer(unsigned int id, unsigned int elapse);
    // Called for every tick of the timer `id`. Does nothing unless overridden.
    virtual void OnTimer(std::uint64_t id);

    const AFX_MSGMAP* GetMessageMap() const override;
    static const AFX_MSGMAP* GetThisMessageMap();
};
