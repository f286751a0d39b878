// Text that crosses between the library and the system: arguments, terminals, JSON. Library texts are bytes in
// the ANSI code page, the system's are UTF-8. The code page is Windows-1252 unless the host selects another.
//
// Thread: conversions any; the code page is selected at start-up, before other threads convert.
#pragma once

#include <string>
#include <string_view>

#include "brindle/framework/export.h"

namespace brindle {

// Library bytes as UTF-8. Never fails: a byte without a character becomes U+FFFD.
BRINDLE_API std::string TextToSystem(std::string_view bytes);
// The system's text as library bytes. Text that is not UTF-8 passes unchanged. False when a character has no
// byte in the code page; `bytes` then holds "?" in its place.
BRINDLE_API bool TextFromSystem(std::string_view system, std::string& bytes);

// Selects a code page by its number: 1252, 65001 (UTF-8), or any other the system's converter knows. False, and
// nothing changed, when it does not.
BRINDLE_API bool SelectCodePage(unsigned number);
BRINDLE_API unsigned SelectedCodePage();

}  // namespace brindle
