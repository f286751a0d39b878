// HWND: a window of the desktop, as callers hand it on. What it points to belongs to whoever made the window; the
// library only passes it to the desktop service. Null: no window.
#pragma once

struct HWND__;
using HWND = HWND__*;
