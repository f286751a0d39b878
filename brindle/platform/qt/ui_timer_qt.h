// The UI-timer service on Qt's event loop.
//
// Timers stand in the thread's one queue, which both loops run: Qt's, with one timer of Qt's for whatever is due next,
// and the plain one. So without an application object, which this never makes, the plain loop goes on delivering
// ticks; and ticks come in nested loops of Qt's too, those of modal dialogs for one.
//
// Cannot: tick in a thread that runs neither loop. Timers that were started before there was an application object
// tick in Qt's loop once another one is started in their thread, or RearmQtTimers is called.
#pragma once

#include "brindle/platform/ui_timer.h"

namespace brindle {

// Never destroyed.
UiTimer& QtUiTimer() noexcept;
// Has Qt's loop look at the calling thread's timers anew: the clock was moved, or there is an application object now.
void RearmQtTimers();

}  // namespace brindle
