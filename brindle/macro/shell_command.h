// One program start, with its filter, its message and its log line. For this folder.
#pragma once

#include <string>

#include "brindle/framework/window_handle.h"

namespace brindle {

// ExecuteShellCommand; `line` is the command before it was expanded, for the start filter.
int StartShellCommand(HWND owner, std::string command, const char* directory, const std::string& line);

}  // namespace brindle
