// The get-SNMP action. Tests: system_creation_test.cpp.
#include "host/get_snmp_action.h"

namespace brindle::host {

void GetSnmpAction::OwnAttributes(AttributeTable& table) {
    table.push_back(FormattedAttribute("Agent", m_agent));
    table.push_back(FormattedAttribute("Community", m_community));
    table.push_back(Required(FormattedAttribute("Object", m_object)));
    table.push_back(TextAttribute("Label", m_label));
    table.push_back(TextAttribute("Variable", m_variable));
    table.push_back(ChoiceAttribute("Scope", m_scope, {"NEAREST", "OBJECT", "SITE"}));
    table.push_back(NumberAttribute("Timeout", m_timeout, 1, 600'000));
    table.push_back(NumberAttribute("Retries", m_retries, 0, 100));
}

void GetSnmpAction::Perform(HostContext& context, const CCommandEvent*) {
    context.ReportFailure(*this, "no SNMP service is there");
}

}  // namespace brindle::host
