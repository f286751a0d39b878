// CSnmpVariable: one variable of an SNMP agent, as hosts hand it to KySnmpGetValue and KySnmpSetValue and get
// it back in the call-back. A plain value: copying copies every field. Thread: any, as any value.
#pragma once

#include <cstdint>

#include "brindle/framework/string_a.h"

struct CSnmpVariable {
    // A host name or an address, with an optional UDP port: "tx1", "192.0.2.1:1161", "[2001:db8::1]:161".
    CStringA agent;
    CStringA community;
    // Dotted numbers. With a leading dot, or when the first two arcs are 1.2 or 1.3, the whole identifier;
    // else what follows 1.3.6.1.2.1. After a get the identifier the agent answered with, with a leading dot.
    CStringA oid;
    CStringA value;         // as text; docs/snmp.md says how each type is written
    std::int16_t type = 5;  // ASN.1 tag of the value; 5 is NULL

    // The host's own; copied and not looked at.
    std::int16_t hostSmall = 0;
    CStringA hostTexts[5];
    std::int32_t hostNumbers[2] = {};
    CStringA hostNames[2];
    bool hostFlag = false;

    bool skipRequest = false;  // a get opens and closes its session, sends nothing and reports failure
};
