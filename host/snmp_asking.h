// SnmpAsking: what the SNMP actions have in common: whom they ask, for what, how long they wait.
#pragma once

#include <brindle/framework/string_a.h>

#include "host/attribute.h"
#include "host/snmp_requests.h"

class CCommandAction;
class CCommandEvent;

namespace brindle::host {

class HostContext;

// As FormatActionText, but a leading dot stays: identifiers are no paths.
CStringA FormatSnmpText(HostContext& context, const CCommandAction& action, const CStringA& text,
                        const CCommandEvent* event);

class SnmpAsking {
  public:
    // The attributes before and behind those of the action's own.
    void AppendTarget(AttributeTable& table);
    void AppendTiming(AttributeTable& table);

    // The request, its texts filled in. Without "Agent" it is the one that devices.ini gives the event's
    // device, else the object's; without "Community" that device's field of the name `communityField`, else
    // its "Community", else "public". Nothing, and the context is told, when there is no agent.
    std::optional<SnmpRequest> Request(HostContext& context, const CCommandAction& action,
                                       const CCommandEvent* event, const char* communityField) const;

  private:
    CStringA m_agent;
    CStringA m_community;
    CStringA m_object;
    int m_timeout = 1000;  // milliseconds
    int m_retries = 1;
};

}  // namespace brindle::host
