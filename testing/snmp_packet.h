// SNMP messages byte by byte, for agents that tests write themselves: plain BER without any cleverness. What
// is built may be as wrong as a test wants it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brindle::testing {

// Tag, length, content.
std::string Ber(int tag, std::string_view content);
// The content of an INTEGER in the fewest octets, and of an OBJECT IDENTIFIER.
std::string BerNumber(std::int64_t value);
std::string BerArcs(std::initializer_list<std::uint32_t> arcs);

// A request as it came, its parts as the bytes of their contents.
struct SnmpRequestPacket {
    int version = 0;  // 0: SNMPv1, 1: SNMPv2c
    std::string community;
    int pdu = 0;  // 160: get, 163: set
    std::string id;
    std::string name;     // of the first binding
    int type = 0;         // its value's tag
    std::string value;    // its value's content
    std::string binding;  // the whole first binding
};
// False when the packet is no request with at least one binding.
bool ReadSnmpPacket(std::string_view packet, SnmpRequestPacket& request);

// What an answer says; by default the request's own id and name.
struct SnmpAnswerPacket {
    explicit SnmpAnswerPacket(const SnmpRequestPacket& request)
        : version(request.version), community(request.community), id(request.id), name(request.name) {}

    int version;
    std::string community;
    int pdu = 162;
    std::string id;
    std::int64_t errorStatus = 0;
    std::int64_t errorIndex = 0;
    std::string name;
    std::string value = std::string("\x05\x00", 2);  // tag, length and content
    std::string moreBindings;

    SnmpAnswerPacket& Value(int tag, std::string_view content) {
        value = Ber(tag, content);
        return *this;
    }
    std::string Bytes() const;
};

}  // namespace brindle::testing
