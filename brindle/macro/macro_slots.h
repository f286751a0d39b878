// The process-wide slots of command lines. Plain values: they belong to the user interface's thread.
#pragma once

#include "brindle/macro/brindle_data.h"
#include "brindle/macro/command_line.h"

class IMacroObserver;
class IStartFilter;

namespace brindle {

struct MacroSlots {
    IBrindleData* data = nullptr;  // the host's object, not owned
    PreFormatHook preFormatHook = nullptr;
    IMacroObserver* observer = nullptr;   // not owned
    IStartFilter* startFilter = nullptr;  // not owned
    int globalSubPathFlag = 1;
};

extern constinit MacroSlots g_macroSlots;

}  // namespace brindle
