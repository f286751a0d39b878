// SelectColour: the desktop's colour dialog, whose sixteen custom colours live in the user-interface INI file
// (SetUserInterfaceIniFile). Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/window_handle.h"

// Lets the user choose a colour, 0x00BBGGRR, beginning with `colour`; `parent` (null: none) takes no input meanwhile.
// Not 0: `colour` is the one chosen, and the sixteen custom colours are in the file; when they could not be written,
// the warning sink is told, and the choice counts. 0: the user chose none, or there is no desktop; `colour` and the
// file are unchanged.
//
// In the file: section "CustomColours", keys "CustomColour0" to "CustomColour15", each "red,green,blue" from 0 to 255;
// a missing key is white. What cannot be read of an entry is as in the entry before it.
BRINDLE_API int SelectColour(HWND parent, unsigned long& colour);
