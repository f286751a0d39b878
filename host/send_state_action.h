// SendStateAction: reports a state as if a device had: the event is queued behind the one being handled and
// then goes to every object. Open parts of the address come from the event, else from the object.
#pragma once

#include "host/address_pattern.h"
#include "host/host_action.h"

namespace brindle::host {

class SendStateAction final : public HostAction<SendStateAction> {
  public:
    static constexpr const char* kTypeName = "SendStateAction";
    static constexpr const char* kTypeText = "Send State";

    // The system as a whole has no address that could complete an open one.
    bool SupportsHostType(CCommandTrigger::eHostType host) const override;

  private:
    void OwnAttributes(AttributeTable& table) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;

    AddressPattern m_address;
    int m_state = 0;
    CStringA m_header;
    CStringA m_cause;
    CStringA m_text;
    CStringA m_user;
    bool m_masked = false;
};

}  // namespace brindle::host
