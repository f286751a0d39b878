// Console: what a program needs to know about the terminal it writes to. Thread: any.
#pragma once

#include "brindle/framework/export.h"

namespace brindle {

// Whether the standard output (or error) is a terminal.
BRINDLE_API bool OutputIsTerminal();
BRINDLE_API bool ErrorIsTerminal();
// Whether the user lets programs colour their output: not when the environment variable NO_COLOR holds anything
// or TERM is "dumb". Ask it together with one of the above.
BRINDLE_API bool ColoursAllowed();

}  // namespace brindle
