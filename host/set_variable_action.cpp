// The set-variable action. Tests: run_test.cpp.
#include "host/set_variable_action.h"

#include "host/action_text.h"

namespace brindle::host {

void SetVariableAction::OwnAttributes(AttributeTable& table) {
    table.push_back(Required(TextAttribute("Variable", m_variable)));
    table.push_back(FormattedAttribute("Value", m_value));
    table.push_back(ChoiceAttribute("Scope", m_scope, {"NEAREST", "OBJECT", "SITE"}));
}

std::vector<std::string> SetVariableAction::Conflicts() const {
    if (m_variable.IsEmpty()) return {"\"Variable\" is empty: nothing is set"};
    return {};
}

void SetVariableAction::Perform(HostContext& context, const CCommandEvent* event) {
    constexpr VariableTarget kTargets[] = {VariableTarget::kNearest, VariableTarget::kObject,
                                           VariableTarget::kSite};
    context.SetVariable(*this, kTargets[m_scope], m_variable,
                        FormatActionText(context, *this, m_value, event));
}

}  // namespace brindle::host
