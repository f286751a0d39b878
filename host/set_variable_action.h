// SetVariableAction: gives a variable a value, in the scope of the object, of the site, or in the innermost
// one that has it.
#pragma once

#include "host/host_action.h"

namespace brindle::host {

class SetVariableAction final : public HostAction<SetVariableAction> {
  public:
    static constexpr const char* kTypeName = "SetVariableAction";
    static constexpr const char* kTypeText = "Set Variable";

    // The name as configured, for checks: the action defines it.
    const CStringA& VariableName() const noexcept { return m_variable; }
    std::vector<std::string> Conflicts() const override;

  private:
    void OwnAttributes(AttributeTable& table) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;

    CStringA m_variable;
    CStringA m_value;
    int m_scope = 0;
};

}  // namespace brindle::host
