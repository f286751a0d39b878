// The "%" stage of command-line formatting: date tokens and argument fields.
#pragma once

#include <string>

#include "brindle/macro/format_arguments.h"

namespace brindle {

// A field whose replacement would make the line longer than this stays as typed.
constexpr std::size_t kLineLimit = 16u << 20;

// Replaces the "%" fields of a line that holds at least one "%". Throws std::invalid_argument, the line
// unchanged, when the present time cannot be expressed as local time.
void ExpandPercentFields(std::string& line, const FormatArguments& arguments);

}  // namespace brindle
