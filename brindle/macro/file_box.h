// File dialogs as hosts' editors open them, and the bounded copy they share.
//
// The desktop service shows them; without a desktop nobody can choose, and the answer is 0.
// Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"
#include "brindle/framework/window_handle.h"

// Lets the user choose a file to open; not 0 when the user did, `file` then holds its path. The dialog begins with
// `file`, cut to 259 bytes. `filter` is pairs of text and patterns, each ended by "|", cut to 259 bytes; what
// `flags` mean is the desktop's matter. Null texts: the desktop's choice.
BRINDLE_API int SelectFileBox(HWND owner, CStringA& file, const char* filter, const char* initialDir,
                              unsigned long flags, const char* title);
// The same for a file to be saved. Kept: `owner` is not looked at; the dialog belongs to the main window of the
// calling thread's application, if it has one.
BRINDLE_API int SaveFileBox(HWND owner, CStringA& file, const char* filter, const char* initialDir,
                            unsigned long flags, const char* title);

// Copies at most `size` bytes of `src` (null: ""), fills the rest of `dst` with zeros and always ends it with one at
// dst[size - 1]. Returns dst; does nothing when `size` is below 1.
BRINDLE_API char* SafeCopy(char* dst, const char* src, int size) noexcept;
