// The flash timer: one blink for everything that blinks, so that all alarms blink together. While somebody listens, a
// flash state flips between 0 and 1 every 500 milliseconds; it goes on from where it was when listening begins again.
//
// Ticks come from the event loop of the thread that called StartFlashTimer first (util/timer.h says which loop that
// is); everything here belongs to that thread, the user interface's.
#pragma once

#include "brindle/framework/export.h"

// Hears the ticks between StartFlashTimer and EndFlashTimer.
class BRINDLE_API CFlashCallBack {
  public:
    CFlashCallBack() = default;
    CFlashCallBack(const CFlashCallBack&) noexcept {}  // listening is not copied
    CFlashCallBack& operator=(const CFlashCallBack&) noexcept { return *this; }
    virtual ~CFlashCallBack();  // stops listening

    // The flash state is 0 or 1 now. Call-backs may be started and ended in here, this one too, and destroyed once they
    // are ended; one that is started hears the next tick.
    virtual void OnFlash(int state);
};

// Begins to listen; call-backs hear each tick in the order they began. Once is enough: again changes nothing. 0 when
// there is no timer to be had or `callBack` is null, else 1. Not owned.
BRINDLE_API int StartFlashTimer(CFlashCallBack* callBack);
// Ends it. 1, or 0 when `callBack` was not listening. With the last one the timer stops.
BRINDLE_API int EndFlashTimer(CFlashCallBack* callBack);
