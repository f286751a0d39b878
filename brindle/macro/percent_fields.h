// The "%" stage of command-line formatting: date tokens and argument fields.
#pragma once

#include <string>

#include "brindle/macro/format_arguments.h"

namespace brindle {

// Replaces the "%" fields of a line that holds at least one "%"; one that would make it longer than kLineLimit
// (settings/line_limit.h) stays as typed. Throws std::invalid_argument, the line
// unchanged, when the present time cannot be expressed as local time.
void ExpandPercentFields(std::string& line, const FormatArguments& arguments);

}  // namespace brindle
