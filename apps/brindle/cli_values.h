// How arguments become values. Every function throws Failure(kWrongUsage) for what it cannot read; `what` names
// the argument in that message.
#pragma once

#include <string>
#include <string_view>

struct FullAddress_t;
class CAddressOv;

namespace brindle::tool {

// An argument as bytes in the code page.
std::string ToBytes(std::string_view argument, const std::string& what);
// The same for a message: what has no byte shows as "?". Throws nothing.
std::string ShownArgument(std::string_view argument);
// The whole text as a decimal 32-bit number with an optional "-".
int ToNumber(std::string_view text, const std::string& what);
CAddressOv ToAddress(const std::string& text, const std::string& what);
// The same with open parts 0.
FullAddress_t ToFullAddress(const std::string& text, const std::string& what);

struct Assignment {
    std::string name;
    std::string value;  // as it stands
};
// NAME=VALUE, split at the first "=".
Assignment ToAssignment(const std::string& text, const std::string& what);

}  // namespace brindle::tool
