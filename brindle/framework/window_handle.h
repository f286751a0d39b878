// Handles of the desktop, as callers hand them on. What one points to belongs to whoever made it; the library only
// passes it to the desktop services. Null: none.
#pragma once

struct HWND__;
using HWND = HWND__*;  // a window
struct HBRUSH__;
using HBRUSH = HBRUSH__*;  // what the ground of a control is painted with; null: the desktop's own choice
