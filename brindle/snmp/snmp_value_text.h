// Values of SNMP as the texts that CSnmpVariable holds, by their tags. Thread: any.
#pragma once

#include <string>
#include <string_view>

#include "brindle/platform/snmp_manager.h"

namespace brindle {

// How the values of a tag are written.
enum class SnmpForm {
    kOctets,      // bytes as characters
    kIdentifier,  // dotted numbers
    kUnsigned32,  // decimal; read with base 0
    kCounter64,   // decimal of the 64 bits as a signed number; read decimal or, with "0x", hexadecimal
    kInteger,     // decimal of the 32 bits as a signed number; read with base 0
};
SnmpForm SnmpFormOf(int tag) noexcept;

// The text of a value. Octets end at their first zero byte; an identifier that cannot be printed is empty.
std::string SnmpValueText(SnmpManager& manager, const SnmpValue& value);

// The value that a text of that tag means. Texts of numbers never fail: what follows the number is ignored,
// no number is 0, too large ones of 32 bits saturate and of 64 bits wrap. False for a text that is no
// identifier, `value` then unchanged.
bool ReadSnmpValue(SnmpManager& manager, int tag, std::string_view text, SnmpValue& value);

}  // namespace brindle
