// Which texts mean something else for each object. Tests: sys_create_test.cpp.
#include <algorithm>
#include <string_view>

#include "brindle/syscreate/sys_create.h"

namespace {

// Kept: "%h", "%v", "%n" and "%q" are not among them.
constexpr std::string_view kFields[] = {"%a",    "%N",     "%U",  "%P",     "%p",   "%c",   "%t",    "%i",
                                        "%j",    "%s",     "%r",  "%yyyy%", "%MM%", "%dd%", "%ddd%", "%dddd%",
                                        "%MMM%", "%MMMM%", "%z%", "%H%",    "%m%",  "%s%"};

bool HasPair(std::string_view text, char open, char close) {
    const std::size_t first = text.find(open);
    return first != std::string_view::npos && text.find(close, first + 1) != std::string_view::npos;
}

}  // namespace

bool SysCreate::ContainsDynamicField(const CStringA& s) const {
    const std::string_view text = s.view();
    const auto contains = [&](std::string_view field) { return text.find(field) != std::string_view::npos; };
    return std::any_of(std::begin(kFields), std::end(kFields), contains) || HasPair(text, '#', '#') ||
           HasPair(text, '{', '}');
}
