#include "brindle/platform/fake/environment_fake.h"

#include "brindle/framework/letter_case.h"
#include "brindle/platform/system_text.h"

namespace brindle {

bool FakeEnvironment::Variable(std::string_view name, std::string& value) {
    const auto found = m_variables.find(std::string(name));
    if (found == m_variables.end()) return false;
    value = found->second;
    return true;
}

bool FakeEnvironment::VariableNoCase(std::string_view name, std::string& value) {
    if (Variable(name, value)) return true;
    std::string wanted;
    FromSystemText(name, wanted);
    for (const auto& [candidate, text] : m_variables) {
        std::string bytes;
        FromSystemText(candidate, bytes);
        if (candidate.empty() || !EqualNoCase(bytes, wanted)) continue;
        value = text;
        return true;
    }
    return false;
}

}  // namespace brindle
