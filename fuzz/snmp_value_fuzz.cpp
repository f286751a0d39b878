// Values of SNMP: a text of any tag read, printed and read back; and the variables of a message off the wire, through
// net-snmp's decoder, turned into values and texts and into a request again. The first byte is the tag.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "brindle/platform/linux/snmp_values_netsnmp.h"
#include "brindle/platform/snmp_text.h"
#include "brindle/snmp/snmp_value_text.h"

namespace {

void Check(bool good) {
    if (!good) std::abort();
}

void CheckSame(const brindle::SnmpValue& a, const brindle::SnmpValue& b) {
    Check(a.tag == b.tag && a.number == b.number && a.octets == b.octets && a.identifier == b.identifier);
}

void CheckText(int tag, std::string_view text) {
    brindle::SnmpManager& manager = brindle::BackendSnmpManager();
    brindle::SnmpValue value;
    if (!brindle::ReadSnmpValue(manager, tag, text, value)) return;
    const std::string printed = brindle::SnmpValueText(manager, value);
    Check(printed.find('\0') == std::string::npos);
    brindle::SnmpValue back;
    Check(brindle::ReadSnmpValue(manager, tag, printed, back));
    value.octets = value.octets.substr(0, value.octets.find('\0'));  // the text ends there
    CheckSame(value, back);
    (void)brindle::CheckSendable(value);
    (void)brindle::ReadSnmpAgent(text);
}

void CheckMessage(std::string_view bytes) {
    std::string copy(bytes);
    netsnmp_pdu* pdu = ::snmp_pdu_create(SNMP_MSG_SET);
    netsnmp_pdu* again = ::snmp_pdu_create(SNMP_MSG_SET);
    std::size_t length = copy.size();
    if (::snmp_pdu_parse(pdu, reinterpret_cast<u_char*>(copy.data()), &length) == 0) {
        for (const auto* variable = pdu->variables; variable; variable = variable->next_variable) {
            brindle::SnmpValue value;
            if (!brindle::ReadVariable(*variable, value)) continue;
            (void)brindle::SnmpValueText(brindle::BackendSnmpManager(), value);
            if (brindle::CheckSendable(value).ok())
                Check(AddVariable(*again, brindle::ReadName(*variable), value));
        }
        // What goes into a request comes out of it as it was.
        const auto* sent = again->variables;
        for (const auto* variable = pdu->variables; variable && sent; variable = variable->next_variable) {
            brindle::SnmpValue value;
            brindle::SnmpValue same;
            if (!brindle::ReadVariable(*variable, value) || !brindle::CheckSendable(value).ok()) continue;
            Check(brindle::ReadVariable(*sent, same));
            CheckSame(value, same);
            sent = sent->next_variable;
        }
    }
    ::snmp_free_pdu(pdu);
    ::snmp_free_pdu(again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    [[maybe_unused]] static const auto* silent =
        ::netsnmp_register_loghandler(NETSNMP_LOGHANDLER_NONE, LOG_DEBUG);
    if (size == 0) return 0;
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    CheckText(data[0], rest);
    CheckMessage(rest);
    return 0;
}
