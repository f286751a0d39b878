// The send-state action. Tests: run_test.cpp.
#include "host/send_state_action.h"

#include <brindle/address/events.h>

#include "host/action_text.h"

namespace brindle::host {

bool SendStateAction::SupportsHostType(CCommandTrigger::eHostType host) const {
    return host != CCommandTrigger::eHostSystem || !m_address.IsOpen();
}

void SendStateAction::OwnAttributes(AttributeTable& table) {
    table.push_back(ParsedAttribute("Address", "an address, open parts as \"?\"", m_address));
    table.push_back(Required(
        NumberAttribute("State", m_state, std::numeric_limits<int>::min(), std::numeric_limits<int>::max())));
    table.push_back(FormattedAttribute("Header", m_header));
    table.push_back(FormattedAttribute("Cause", m_cause));
    table.push_back(FormattedAttribute("Text", m_text));
    table.push_back(FormattedAttribute("User", m_user));
    table.push_back(FlagAttribute("Masked", m_masked));
}

void SendStateAction::Perform(HostContext& context, const CCommandEvent* event) {
    const auto* state = dynamic_cast<const CStateEvent*>(event);
    CAddressOv defaults = state ? state->GetAddress() : CAddressOv();
    if (AddressText(defaults).empty()) defaults = context.ObjectAddress();
    if (m_address.IsOpen() && AddressText(defaults).empty()) {
        context.ReportFailure(*this, "neither the event nor the object completes the address");
        return;
    }
    const auto formatted = [&](const CStringA& text) {
        return FormatActionText(context, *this, text, event);
    };
    context.SendState(
        *this, new CStateChangedEvent(m_address.Completed(defaults), m_masked, m_state, formatted(m_header),
                                      formatted(m_cause), formatted(m_text), formatted(m_user), "", ""));
}

}  // namespace brindle::host
