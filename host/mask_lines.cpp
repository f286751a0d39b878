// See mask_lines.h. Tests: system_creation_test.cpp.
#include "host/mask_lines.h"

#include <algorithm>

namespace brindle::host {

std::vector<std::string_view> MaskLines(const CStringA& text) {
    std::vector<std::string_view> lines;
    std::string_view rest = text.view();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        if (end > 0) lines.push_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return lines;
}

std::string MaskList(const CStringA& text) {
    std::string list;
    for (const std::string_view line : MaskLines(text)) {
        if (!list.empty()) list += ", ";
        list += line;
    }
    return list;
}

}  // namespace brindle::host
