// SnmpFailure: why an SNMP request did not do what it was asked. SnmpVersion: the protocol it is spoken in.
// Values; thread: any.
#pragma once

#include "brindle/framework/string_a.h"

namespace brindle {

enum class SnmpVersion { k1, k2c };

enum class SnmpFailureKind {
    kNone,
    kSkipped,        // the request was not meant to be sent
    kBadAgent,       // not a host or address with an optional port
    kUnreachable,    // a name nobody knows, or the system cannot send there
    kBadIdentifier,  // not an identifier in dotted numbers
    kBadValue,       // a type that cannot be sent, or a value that its type cannot hold
    kTimeout,        // no answer within the time, after all retries
    kAgentError,     // the agent answered with an error status (detail: its number)
    kException,      // the agent has no value there (detail: the tag of the exception value, 128 to 130)
    kBadAnswer,      // an answer that holds no value this library knows
    kSystem,         // no memory, no socket
};

struct SnmpFailure {
    SnmpFailureKind kind = SnmpFailureKind::kNone;
    int detail = 0;
    CStringA text;  // one line for people: what and why; empty when nothing failed

    bool ok() const noexcept { return kind == SnmpFailureKind::kNone; }
};

}  // namespace brindle
