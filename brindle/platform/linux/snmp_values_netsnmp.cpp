// net-snmp keeps unsigned numbers and arcs in `unsigned long`, Counter64 in two halves, and unpacks
// floating-point numbers and 64-bit integers that travel inside an Opaque; those are packed again here, in
// the shortest form.
#include "brindle/platform/linux/snmp_values_netsnmp.h"

#include <algorithm>
#include <bit>

namespace brindle {
namespace {

constexpr char kOpaqueContext = '\x9F';  // the tag of what stands inside an Opaque goes on in the next octet

std::uint64_t Joined(const counter64& counter) noexcept {
    return (std::uint64_t{counter.high} & 0xFFFFFFFFU) << 32 | (std::uint64_t{counter.low} & 0xFFFFFFFFU);
}

std::string BigEndian(std::uint64_t bits, int octets) {
    std::string text;
    for (int shift = 8 * (octets - 1); shift >= 0; shift -= 8) text += static_cast<char>(bits >> shift);
    return text;
}

std::string Packed(unsigned char type, const std::string& content) {
    return std::string{kOpaqueContext, static_cast<char>(type), static_cast<char>(content.size())} + content;
}

// Two's complement in the fewest octets: the first nine bits are not all alike.
std::string PackedInteger(unsigned char type, std::uint64_t bits) {
    int octets = 8;
    const auto repeats = [bits](int count) {
        const std::uint64_t top = bits >> (8 * count - 9) & 0x1FF;
        return top == 0 || top == 0x1FF;
    };
    while (octets > 1 && repeats(octets)) --octets;
    return Packed(type, BigEndian(bits, octets));
}

// An unsigned number whose first bit is set gets an octet of zeros in front.
std::string PackedUnsigned(unsigned char type, std::uint64_t bits) {
    int octets = 1;
    while (octets < 8 && bits >> (8 * octets) != 0) ++octets;
    std::string content = BigEndian(bits, octets);
    if (content[0] & '\x80') content.insert(0, 1, '\0');
    return Packed(type, content);
}

bool HasSpecial(const netsnmp_variable_list& variable, std::size_t size) noexcept {
    return variable.val.string != nullptr && variable.val_len >= size;
}

// What net-snmp has unpacked, as the Opaque it came in.
bool RepackOpaque(const netsnmp_variable_list& variable, std::string& octets) {
    switch (variable.type) {
        case ASN_OPAQUE_FLOAT:
            if (!HasSpecial(variable, sizeof(float))) return false;
            octets =
                Packed(variable.type, BigEndian(std::bit_cast<std::uint32_t>(*variable.val.floatVal), 4));
            return true;
        case ASN_OPAQUE_DOUBLE:
            if (!HasSpecial(variable, sizeof(double))) return false;
            octets =
                Packed(variable.type, BigEndian(std::bit_cast<std::uint64_t>(*variable.val.doubleVal), 8));
            return true;
        case ASN_OPAQUE_COUNTER64:
        case ASN_OPAQUE_U64:
            if (!HasSpecial(variable, sizeof(counter64))) return false;
            octets = PackedUnsigned(variable.type, Joined(*variable.val.counter64));
            return true;
        case ASN_OPAQUE_I64:
            if (!HasSpecial(variable, sizeof(counter64))) return false;
            octets = PackedInteger(variable.type, Joined(*variable.val.counter64));
            return true;
        default:
            return false;
    }
}

std::string Octets(const netsnmp_variable_list& variable) {
    if (!variable.val.string) return {};
    return {reinterpret_cast<const char*>(variable.val.string), variable.val_len};
}

SnmpOid Arcs(const oid* arcs, std::size_t count) {
    SnmpOid result(arcs ? count : 0);
    std::transform(arcs, arcs + result.size(), result.begin(),
                   [](oid arc) { return static_cast<std::uint32_t>(arc); });
    return result;
}

bool Add(netsnmp_pdu& pdu, const std::vector<oid>& name, int tag, const void* value, std::size_t size) {
    return ::snmp_pdu_add_variable(&pdu, name.data(), name.size(), static_cast<u_char>(tag), value, size) !=
           nullptr;
}

}  // namespace

bool AddVariable(netsnmp_pdu& pdu, const SnmpOid& name, const SnmpValue& value) {
    using namespace snmp_tag;
    const std::vector<oid> arcs(name.begin(), name.end());
    switch (value.tag) {
        case kInteger: {
            const long number = static_cast<std::int32_t>(value.number);
            return Add(pdu, arcs, value.tag, &number, sizeof number);
        }
        case kCounter32:
        case kGauge32:
        case kTimeTicks:
        case kUInteger32: {
            const unsigned long number = static_cast<std::uint32_t>(value.number);
            return Add(pdu, arcs, value.tag, &number, sizeof number);
        }
        case kCounter64: {
            const counter64 halves{value.number >> 32, value.number & 0xFFFFFFFFU};
            return Add(pdu, arcs, value.tag, &halves, sizeof halves);
        }
        case kObjectIdentifier: {
            const std::vector<oid> target(value.identifier.begin(), value.identifier.end());
            return Add(pdu, arcs, value.tag, target.data(), target.size() * sizeof(oid));
        }
        case kNull:
            return Add(pdu, arcs, value.tag, nullptr, 0);
        default:
            return Add(pdu, arcs, value.tag, value.octets.data(), value.octets.size());
    }
}

bool ReadVariable(const netsnmp_variable_list& variable, SnmpValue& value) {
    using namespace snmp_tag;
    SnmpValue read;
    read.tag = variable.type;
    switch (variable.type) {
        case kInteger:
        case kCounter32:
        case kGauge32:
        case kTimeTicks:
        case kUInteger32:
            if (!HasSpecial(variable, sizeof(long))) return false;
            read.number = static_cast<std::uint32_t>(*variable.val.integer);
            break;
        case kCounter64:
            if (!HasSpecial(variable, sizeof(counter64))) return false;
            read.number = Joined(*variable.val.counter64);
            break;
        case kBitString:
        case kOctetString:
        case kIpAddress:
        case kOpaque:
            read.octets = Octets(variable);
            break;
        case kObjectIdentifier:
            read.identifier = Arcs(variable.val.objid, variable.val_len / sizeof(oid));
            break;
        case kNull:
        case kNoSuchObject:
        case kNoSuchInstance:
        case kEndOfMibView:
            break;
        default:
            if (!RepackOpaque(variable, read.octets)) return false;
            read.tag = kOpaque;
    }
    value = std::move(read);
    return true;
}

SnmpOid ReadName(const netsnmp_variable_list& variable) {
    return Arcs(variable.name, variable.name_length);
}

}  // namespace brindle
