// The environment's slot, and the expansion of texts that refer to variables. Tests: environment_test.cpp.
#include "brindle/platform/environment.h"

#include "brindle/platform/service.h"
#include "brindle/platform/system_text.h"

namespace brindle {
namespace {
constinit ServiceSlot<Environment> g_environment;
}

Environment& CurrentEnvironment() noexcept {
    return g_environment.GetOr(BackendEnvironment());
}

Environment* SetEnvironment(Environment* service) noexcept {
    return g_environment.Set(service);
}

std::string ExpandEnvironment(std::string_view text, std::size_t limit) {
    std::string expanded;
    while (!text.empty() && expanded.size() < limit) {
        const std::size_t open = text.find('%');
        const std::size_t close = open == text.npos ? text.npos : text.find('%', open + 1);
        if (close == text.npos) break;
        expanded += text.substr(0, open);
        const std::string_view reference = text.substr(open, close + 1 - open);
        const std::string_view name = reference.substr(1, reference.size() - 2);
        std::string value;
        std::string bytes(reference);
        if (!name.empty() && CurrentEnvironment().VariableNoCase(ToSystemText(name), value))
            FromSystemText(value, bytes);
        expanded += bytes;
        text.remove_prefix(close + 1);
    }
    expanded += text;
    if (expanded.size() > limit) expanded.resize(limit);
    return expanded;
}

}  // namespace brindle
