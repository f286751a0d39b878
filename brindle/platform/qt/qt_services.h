// InstallQtServices: the desktop's services on Qt 6, in place for the whole process. Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"

namespace brindle {

// Puts Qt's services in place for the whole process: the resolution of the primary screen, pictures, timers that tick
// in Qt's event loop (without an application object they stay in the plain one), message and file boxes, dialogs, the
// colour dialog, the pixels of the screen. Windows need a QApplication; with a lesser application object messages are
// lines on the standard error, and no dialog can be shown. May be called again; best once the application object is
// made.
BRINDLE_API void InstallQtServices();

}  // namespace brindle
