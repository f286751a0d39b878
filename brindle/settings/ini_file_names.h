// The names of the INI files a host uses, kept once for all its modules. Internal: hosts set and read them with the
// functions of macro/substitute_path.h and behaviour/action_files.h.
// Thread: set at start-up by the main thread, read afterwards.
#pragma once

#include "brindle/framework/string_a.h"

namespace brindle {

struct IniFileNames {
    CStringA searchPath;      // "SearchPath" and "Directories"
    CStringA commandActions;  // "CommandActions"
    CStringA userInterface;   // "CustomColours"
};

// The one of the process; never destroyed.
IniFileNames& KeptIniFileNames() noexcept;

}  // namespace brindle
