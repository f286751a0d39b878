// The texts of SNMP that every backend reads and writes alike: identifiers, agents, and the reasons of
// failures. Thread: any.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "brindle/platform/snmp_manager.h"

namespace brindle {

inline constexpr std::size_t kMostArcs = 128;

// SnmpManager::TextToOid and OidToText.
bool ReadSnmpOid(std::string_view text, SnmpOid& oid);
bool PrintSnmpOid(const SnmpOid& oid, std::string& text);

struct SnmpAgent {
    std::string host;  // a name or an address, without brackets
    std::uint16_t port = 161;
    bool isIpv6 = false;  // an address of IPv6
};

// An agent's text as SnmpTarget says; nothing when it is none.
std::optional<SnmpAgent> ReadSnmpAgent(std::string_view text);

// A value that can be sent; else a failure kBadValue.
SnmpFailure CheckSendable(const SnmpValue& value);

// The failure of an answer with an error status, and of an exception value.
SnmpFailure AgentError(long status);
SnmpFailure ExceptionValue(int tag);
// Of an agent that does not answer.
SnmpFailure NoAnswer(const SnmpTarget& target);

}  // namespace brindle
