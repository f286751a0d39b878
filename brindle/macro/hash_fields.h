// The "#" stage of command-line formatting: fields the host answers.
#pragma once

#include <string>
#include <string_view>

struct FullAddress_t;
class IBrindleData;

namespace brindle {

// The line with every "#...#" replaced by what the host answers. `address` is the caller's, or null.
std::string ExpandHashFields(std::string_view line, const FullAddress_t* address, IBrindleData& data);

}  // namespace brindle
