// The names in the lists of mask actions: one a line, as they stand; empty lines do not count.
#pragma once

#include <brindle/framework/string_a.h>

#include <string>
#include <string_view>
#include <vector>

namespace brindle::host {

std::vector<std::string_view> MaskLines(const CStringA& text);
// The names with ", " between them.
std::string MaskList(const CStringA& text);

}  // namespace brindle::host
