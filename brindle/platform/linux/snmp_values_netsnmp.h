// Values between the service's form and net-snmp's. Tests: snmp_manager_netsnmp_test.cpp.
#pragma once

#include <net-snmp/net-snmp-config.h>

#include <net-snmp/net-snmp-includes.h>

#include "brindle/platform/snmp_manager.h"

namespace brindle {

// Adds the value, which CheckSendable has passed, to a request. False when memory is out.
bool AddVariable(netsnmp_pdu& pdu, const SnmpOid& name, const SnmpValue& value);

// The value of an answer. False, `value` unchanged, for a type the service does not know. Nothing is read
// past the variable's length.
bool ReadVariable(const netsnmp_variable_list& variable, SnmpValue& value);
SnmpOid ReadName(const netsnmp_variable_list& variable);

}  // namespace brindle
