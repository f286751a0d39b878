// The names of the two configuration files that several modules of a host share. The library keeps them; it reads
// the command-actions file for command macros and the user-interface file for custom colours.
//
// A copy is kept for the whole process; empty until set. Thread: set at start-up by the main thread, read afterwards.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

// The file whose section "CommandActions" defines the command macros.
BRINDLE_API void SetCommandActionsIniFile(const char* path);
BRINDLE_API CStringA GetCommandActionsIniFile();
// The file that describes user-interface settings.
BRINDLE_API void SetUserInterfaceIniFile(const char* path);
BRINDLE_API CStringA GetUserInterfaceIniFile();
