#include "testing/snmp_packet.h"

#include <vector>

namespace brindle::testing {
namespace {

// Takes one element off the front.
bool Take(std::string_view& text, int& tag, std::string_view& content) {
    if (text.size() < 2) return false;
    tag = static_cast<unsigned char>(text[0]);
    std::size_t length = static_cast<unsigned char>(text[1]);
    std::size_t head = 2;
    if (length >= 0x80) {
        const std::size_t octets = length & 0x7F;
        if (octets > 4 || text.size() < head + octets) return false;
        length = 0;
        for (std::size_t i = 0; i < octets; ++i)
            length = length << 8 | static_cast<unsigned char>(text[head + i]);
        head += octets;
    }
    if (text.size() - head < length) return false;
    content = text.substr(head, length);
    text.remove_prefix(head + length);
    return true;
}

bool TakeAs(std::string_view& text, int wanted, std::string_view& content) {
    int tag = 0;
    return Take(text, tag, content) && tag == wanted;
}

}  // namespace

std::string Ber(int tag, std::string_view content) {
    std::string text(1, static_cast<char>(tag));
    const std::size_t length = content.size();
    if (length < 0x80) {
        text += static_cast<char>(length);
    } else if (length < 0x10000) {
        text += {'\x82', static_cast<char>(length >> 8), static_cast<char>(length)};
    } else {
        text += {'\x83', static_cast<char>(length >> 16), static_cast<char>(length >> 8),
                 static_cast<char>(length)};
    }
    return text.append(content);
}

std::string BerNumber(std::int64_t value) {
    std::string text;
    for (int shift = 56; shift >= 0; shift -= 8) text += static_cast<char>(value >> shift);
    const auto isSign = [&text] {
        const char rest = static_cast<char>(text[1] & '\x80');
        return (text[0] == '\0' && rest == 0) || (text[0] == '\xFF' && rest != 0);
    };
    while (text.size() > 1 && isSign()) text.erase(0, 1);
    return text;
}

std::string BerArcs(std::initializer_list<std::uint32_t> arcs) {
    std::vector<std::uint64_t> numbers(arcs.begin() + 1, arcs.end());
    numbers[0] += std::uint64_t{*arcs.begin()} * 40;
    std::string text;
    for (std::uint64_t number : numbers) {
        std::string digits(1, static_cast<char>(number & 0x7F));
        while (number >>= 7) digits.insert(0, 1, static_cast<char>((number & 0x7F) | 0x80));
        text += digits;
    }
    return text;
}

bool ReadSnmpPacket(std::string_view packet, SnmpRequestPacket& request) {
    std::string_view message, version, community, pdu, id, status, index, bindings, binding, name, value;
    if (!TakeAs(packet, 0x30, message) || !TakeAs(message, 2, version) || !TakeAs(message, 4, community))
        return false;
    const std::string_view whole = message;
    if (!Take(message, request.pdu, pdu) || whole.empty() || version.size() != 1) return false;
    if (!TakeAs(pdu, 2, id) || !TakeAs(pdu, 2, status) || !TakeAs(pdu, 2, index)) return false;
    if (!TakeAs(pdu, 0x30, bindings)) return false;
    const std::string_view all = bindings;
    if (!TakeAs(bindings, 0x30, binding)) return false;
    request.binding = all.substr(0, all.size() - bindings.size());
    if (!TakeAs(binding, 6, name) || !Take(binding, request.type, value)) return false;
    request.version = version[0];
    request.community = community;
    request.id = id;
    request.name = name;
    request.value = value;
    return true;
}

std::string SnmpAnswerPacket::Bytes() const {
    const std::string bindings = Ber(0x30, Ber(0x30, Ber(6, name) + value) + moreBindings);
    const std::string body =
        Ber(2, id) + Ber(2, BerNumber(errorStatus)) + Ber(2, BerNumber(errorIndex)) + bindings;
    return Ber(0x30, Ber(2, BerNumber(version)) + Ber(4, community) + Ber(pdu, body));
}

}  // namespace brindle::testing
