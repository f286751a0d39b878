// printf without a locale: what CStringA::Format is made of.
#pragma once

#include <cstdarg>
#include <string>

namespace brindle {

// The text of `format` (null: "") with the arguments by the rules of printf in the C locale. Flags - + space
// # 0, widths, precisions and the length letters hh h l ll j z t L are understood; conversions are d i u o x
// X c s p % and e E f F g G a A. A null text prints as nothing. "#" has no effect on floating conversions;
// wide characters and %n take their argument and print nothing; an unknown conversion prints as it stands.
std::string FormatText(const char* format, va_list arguments);

}  // namespace brindle
