// The get-SNMP action. Tests: system_creation_test.cpp, snmp_run_test.cpp.
#include "host/get_snmp_action.h"

namespace brindle::host {

void GetSnmpAction::OwnAttributes(AttributeTable& table) {
    m_asking.AppendTarget(table);
    table.push_back(TextAttribute("Label", m_label));
    table.push_back(TextAttribute("Variable", m_variable));
    table.push_back(ChoiceAttribute("Scope", m_scope, {"NEAREST", "OBJECT", "SITE"}));
    m_asking.AppendTiming(table);
}

void GetSnmpAction::Perform(HostContext& context, const CCommandEvent* event) {
    constexpr VariableTarget kTargets[] = {VariableTarget::kNearest, VariableTarget::kObject,
                                           VariableTarget::kSite};
    if (const auto request = m_asking.Request(context, *this, event, "Community"))
        context.AskSnmp(*this, *request, kTargets[m_scope], m_variable);
}

}  // namespace brindle::host
