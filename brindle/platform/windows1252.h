// Windows-1252 as the platform maps it: every byte has a character, the five unassigned ones the C1 character
// of the same number (which iconv refuses).
#pragma once

#include <string>
#include <string_view>

namespace brindle {

void AppendUtf8FromWindows1252(std::string_view bytes, std::string& utf8);
// False when some character had no byte, or some byte was not UTF-8: "?" stands for each.
bool AppendWindows1252FromUtf8(std::string_view utf8, std::string& bytes);

}  // namespace brindle
