// Text that crosses to the system and back: file names, arguments, environment. The system's side is UTF-8 by
// convention, but any bytes may come from it: bytes that are not UTF-8 pass unchanged.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

// Code page bytes as the system writes them.
std::string ToSystemText(std::string_view bytes);
// The system's bytes as code page bytes. False when a character has no byte there ("?" stands for it).
bool FromSystemText(std::string_view system, std::string& bytes);

}  // namespace brindle
