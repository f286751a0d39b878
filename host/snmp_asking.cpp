// The common part of the SNMP actions. Tests: snmp_run_test.cpp.
#include "host/snmp_asking.h"

#include <brindle/address/state_event.h>

#include "host/action_text.h"
#include "host/host_context.h"

namespace brindle::host {

namespace {

// A field of the event's device, else of the object's; empty when neither has it.
CStringA FieldOfDevice(const HostContext& context, const CCommandEvent* event, const char* name) {
    CStringA value;
    const auto* state = dynamic_cast<const CStateEvent*>(event);
    for (const CAddressOv& address : {state ? state->GetAddress() : CAddressOv(), context.ObjectAddress()})
        if (!address.IsDeferred() && context.DeviceField(address.GetDWord(), name, value) && !value.IsEmpty())
            break;
    return value;
}

}  // namespace

CStringA FormatSnmpText(HostContext& context, const CCommandAction& action, const CStringA& text,
                        const CCommandEvent* event) {
    // Behind another character a dot at the beginning is no folder.
    return FormatActionText(context, action, "=" + text, event).Mid(1);
}

void SnmpAsking::AppendTarget(AttributeTable& table) {
    table.push_back(FormattedAttribute("Agent", m_agent));
    table.push_back(FormattedAttribute("Community", m_community));
    table.push_back(Required(FormattedAttribute("Object", m_object)));
}

void SnmpAsking::AppendTiming(AttributeTable& table) {
    table.push_back(NumberAttribute("Timeout", m_timeout, 1, 600'000));
    table.push_back(NumberAttribute("Retries", m_retries, 0, 100));
}

std::optional<SnmpRequest> SnmpAsking::Request(HostContext& context, const CCommandAction& action,
                                               const CCommandEvent* event, const char* communityField) const {
    const auto formatted = [&](const CStringA& text) { return FormatSnmpText(context, action, text, event); };
    SnmpRequest request;
    request.variable.agent = formatted(m_agent);
    request.variable.community = formatted(m_community);
    request.variable.oid = formatted(m_object);
    request.timeout = m_timeout;
    request.retries = m_retries;
    if (request.variable.agent.IsEmpty()) request.variable.agent = FieldOfDevice(context, event, "Agent");
    for (const char* field : {communityField, "Community"})
        if (request.variable.community.IsEmpty())
            request.variable.community = FieldOfDevice(context, event, field);
    if (request.variable.community.IsEmpty()) request.variable.community = "public";
    if (!request.variable.agent.IsEmpty()) return request;
    context.ReportFailure(action, "neither the action nor the device has an SNMP agent");
    return {};
}

}  // namespace brindle::host
