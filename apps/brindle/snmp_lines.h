// Values of SNMP agents as the tool reads and prints them. Tests: command_snmp_test.cpp.
#pragma once

#include <brindle/snmp/snmp.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace brindle::tool {

// A tag as its number ("4") or its name ("OCTET STRING", "octetstring", "string"); nothing for anything else.
std::optional<int> SnmpTypeOf(const std::string& text);
// "OCTET STRING"; "type 9" for a tag without a name.
std::string SnmpTypeName(int type);
bool SnmpTypeHasOctets(int type);

// Octets as hexadecimal numbers, "0A 00 FF", and back: digits in pairs, blanks anywhere between pairs.
// Nothing for anything else.
std::string HexOctets(const std::string& octets);
std::optional<std::string> OctetsFromHex(const std::string& text);

// "OID = TYPE: VALUE". An octet string that is text is shown as text, any other octets in hexadecimal.
std::string SnmpLine(const CSnmpVariable& variable, const std::string& octets);
// The same as an object; octets both as text and in hexadecimal.
nlohmann::ordered_json SnmpJson(const CSnmpVariable& variable, const std::string& octets);

}  // namespace brindle::tool
