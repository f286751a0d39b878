// What every backend provides: its own services, in place without any call. Exactly one backend is
// linked. Thread: any.
#pragma once

#include "brindle/platform/clock.h"
#include "brindle/platform/code_page.h"
#include "brindle/platform/desktop.h"
#include "brindle/platform/files.h"
#include "brindle/platform/programs.h"

namespace brindle {

// Each is the same object at every call and is never destroyed.
Clock& BackendClock() noexcept;
CodePage& BackendCodePage() noexcept;
BRINDLE_API Desktop& BackendDesktop() noexcept;
Files& BackendFiles() noexcept;
Programs& BackendPrograms() noexcept;

// For a code page service to call when its code page has changed: letter case follows, if it is the one in
// use.
void LetterCaseFollows(const CodePage& service) noexcept;

}  // namespace brindle
