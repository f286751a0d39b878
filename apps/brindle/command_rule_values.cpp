// Values of a rule from the command line. Tests: command_rule_test.cpp.
#include "apps/brindle/command_rule_values.h"

#include "apps/brindle/cli_values.h"

namespace brindle::tool {

void RuleValues::Add(const std::string& text) {
    const Assignment assignment = ToAssignment(text, "--value");
    Given& given = m_values.emplace_back();
    given.name = assignment.name;
    given.value = assignment.value;
    given.source = text;
    const std::size_t comma = assignment.name.find(',');
    if (comma == std::string::npos) return;
    given.hasAddress = given.address.SetAddress(assignment.name.substr(0, comma).c_str()) != 0;
    if (given.hasAddress) given.name.erase(0, comma + 1);
}

const RuleValues::Given* RuleValues::Find(const CStringA& header, const CAddressOv* address) const {
    const Given* found = nullptr;
    for (const Given& given : m_values) {
        if (header != given.name) continue;
        if (given.hasAddress && (!address || given.address != *address)) continue;
        if (found && found->hasAddress && !given.hasAddress) continue;
        found = &given;
    }
    return found;
}

bool RuleValues::Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const {
    const Given* const given = Find(header, address);
    m_lastSource = given ? given->source : std::string();
    if (given) value = given->value;
    return given != nullptr;
}

}  // namespace brindle::tool
