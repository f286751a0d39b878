// Variable references: random scopes and texts, compared with the slow, obvious implementation.
//
// Input: lines. The first is the text; "NAME=VALUE" adds a variable to the present scope; "---" opens the next
// enclosing scope.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/variables/variable_manager.h"
#include "testing/slow_resolve.h"

using brindle::testing::SlowResolve;
using brindle::testing::SlowScope;

namespace {

std::string_view TakeLine(std::string_view& input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view line = input.substr(0, end);
    input.remove_prefix(std::min(end + 1, input.size()));
    return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 2000) return 0;  // the slow one recurses, and values multiply from scope to scope
    std::string_view input(reinterpret_cast<const char*>(data), size);
    std::string text(TakeLine(input));
    std::vector<SlowScope> contents(1);
    while (!input.empty()) {
        const std::string_view line = TakeLine(input);
        const std::size_t equals = line.find('=');
        if (line == "---" && contents.size() < 3) {
            contents.emplace_back();
        } else if (equals != std::string_view::npos && equals > 0 && line.size() < 32) {
            contents.back()[std::string(line.substr(0, equals))] = std::string(line.substr(equals + 1));
        }
    }
    std::vector<VariableManager> scopes(contents.size());
    for (std::size_t i = 0; i < contents.size(); ++i) {
        for (const auto& [name, value] : contents[i]) scopes[i].addVariable(Variable(name, value));
        if (i > 0) scopes[i - 1].setParent(&scopes[i]);
    }
    CStringA fast = text;
    const bool fastResult = scopes[0].resolve(fast);
    const bool slowResult = SlowResolve::Run(text, contents);
    if (fastResult != slowResult || fast.str() != text) std::abort();
    return 0;
}
