// GetSnmpAction: asks an SNMP agent for one object and puts its value into a variable. System creation
// multiplies it: docs/system-creation.md.
#pragma once

#include "host/host_action.h"
#include "host/snmp_asking.h"

namespace brindle::host {

class GetSnmpAction final : public HostAction<GetSnmpAction> {
  public:
    static constexpr const char* kTypeName = "GetSNMPAction";
    static constexpr const char* kTypeText = "Get SNMP";  // what system creation knows it by

    // The name as configured, for checks: the action defines it.
    const CStringA& VariableName() const noexcept { return m_variable; }

  private:
    void OwnAttributes(AttributeTable& table) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;
    // A result is called after the action and the label of its value.
    CStringA ImpliedUnit() const override { return Name(); }
    CStringA ImpliedHeader() const override { return m_label; }

    SnmpAsking m_asking;
    CStringA m_label;
    CStringA m_variable;
    int m_scope = 0;
};

}  // namespace brindle::host
