#include "brindle/platform/fake/environment_fake.h"

namespace brindle {

bool FakeEnvironment::Variable(std::string_view name, std::string& value) {
    const auto found = m_variables.find(std::string(name));
    if (found == m_variables.end()) return false;
    value = found->second;
    return true;
}

}  // namespace brindle
