// SetSnmpAction: writes an object of an SNMP agent.
#pragma once

#include "host/host_action.h"
#include "host/snmp_asking.h"

namespace brindle::host {

class SetSnmpAction final : public HostAction<SetSnmpAction> {
  public:
    static constexpr const char* kTypeName = "SetSNMPAction";
    static constexpr const char* kTypeText = "Set SNMP";

  private:
    void OwnAttributes(AttributeTable& table) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;

    SnmpAsking m_asking;
    int m_type = 0;  // index into the words of types
    CStringA m_value;
};

}  // namespace brindle::host
