// The two process-wide slots of command-line formatting. Plain values: they belong to the user interface's thread.
#pragma once

#include "brindle/macro/brindle_data.h"
#include "brindle/macro/command_line.h"

namespace brindle {

struct MacroSlots {
    IBrindleData* data = nullptr;  // the host's object, not owned
    PreFormatHook preFormatHook = nullptr;
};

extern constinit MacroSlots g_macroSlots;

}  // namespace brindle
