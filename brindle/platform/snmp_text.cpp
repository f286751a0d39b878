// Identifiers, agents and reasons. Tests: snmp_text_test.cpp.
#include "brindle/platform/snmp_text.h"

#include <algorithm>
#include <iterator>

#include "brindle/framework/number_text.h"

namespace brindle {
namespace {

constexpr std::uint32_t kMib2[] = {1, 3, 6, 1, 2, 1};

bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

// Decimal digits up to `most`, all of the text.
std::optional<std::uint32_t> ReadDecimal(std::string_view text, std::uint32_t most) {
    if (text.empty() || text.size() > 20) return {};
    std::uint64_t value = 0;
    for (const char c : text) {
        if (!IsDigit(c)) return {};
        value = value * 10 + static_cast<std::uint64_t>(c - '0');
        if (value > most) return {};
    }
    return static_cast<std::uint32_t>(value);
}

bool ReadArcs(std::string_view text, SnmpOid& arcs) {
    for (;;) {
        const std::size_t dot = text.find('.');
        const auto arc = ReadDecimal(text.substr(0, dot), UINT32_MAX);
        if (!arc || arcs.size() == kMostArcs) return false;
        arcs.push_back(*arc);
        if (dot == std::string_view::npos) return true;
        text.remove_prefix(dot + 1);
    }
}

// The protocol packs the first two arcs into one number, 40 times the first plus the second.
bool IsEncodable(const SnmpOid& arcs) noexcept {
    if (arcs.size() < 2 || arcs.size() > kMostArcs || arcs[0] > 2) return false;
    return arcs[0] == 2 ? arcs[1] <= UINT32_MAX - 80 : arcs[1] < 40;
}

bool IsHostCharacter(char c) noexcept {
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '.' || c == '_';
}

bool IsIpv6Character(char c) noexcept {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F') || c == ':' || c == '.';
}

// Digits, colons, and behind a "%" the network interface.
bool LooksLikeIpv6(std::string_view text) {
    const std::string_view address = text.substr(0, text.find('%'));
    const std::string_view zone = text.substr(address.size());
    return std::count(address.begin(), address.end(), ':') >= 2 &&
           std::all_of(address.begin(), address.end(), IsIpv6Character) &&
           (zone.empty() || (zone.size() > 1 && std::all_of(zone.begin() + 1, zone.end(), IsHostCharacter)));
}

bool SetPort(std::string_view text, SnmpAgent& agent) {
    const auto port = ReadDecimal(text, UINT16_MAX);
    if (!port || *port == 0) return false;
    agent.port = static_cast<std::uint16_t>(*port);
    return true;
}

std::optional<SnmpAgent> Ipv6Agent(std::string_view address, std::string_view port) {
    SnmpAgent agent;
    agent.host = address;
    agent.isIpv6 = true;
    if (!LooksLikeIpv6(address)) return {};
    if (!port.empty() && (port[0] != ':' || !SetPort(port.substr(1), agent))) return {};
    return agent;
}

struct Named {
    int number;
    const char* name;
};

std::string NameOf(int number, const Named* begin, const Named* end) {
    const Named* found = std::find_if(begin, end, [number](const Named& n) { return n.number == number; });
    return found == end ? std::string() : found->name;
}

SnmpFailure BadValue(std::string text) {
    return {SnmpFailureKind::kBadValue, 0, std::move(text)};
}

}  // namespace

bool ReadSnmpOid(std::string_view text, SnmpOid& oid) {
    SnmpOid arcs;
    const bool dot = text.starts_with('.');
    if (!ReadArcs(text.substr(dot ? 1 : 0), arcs)) return false;
    const bool absolute = dot || (arcs.size() >= 2 && arcs[0] == 1 && (arcs[1] == 2 || arcs[1] == 3));
    if (!absolute) arcs.insert(arcs.begin(), std::begin(kMib2), std::end(kMib2));
    if (!IsEncodable(arcs)) return false;
    oid = std::move(arcs);
    return true;
}

bool PrintSnmpOid(const SnmpOid& oid, std::string& text) {
    if (oid.empty() || oid.size() > kMostArcs) return false;
    std::string dotted;
    for (const std::uint32_t arc : oid) {
        dotted += '.';
        dotted += PrintUnsigned(arc);
    }
    text = std::move(dotted);
    return true;
}

std::optional<SnmpAgent> ReadSnmpAgent(std::string_view text) {
    if (text.starts_with('[')) {
        const std::size_t close = text.find(']');
        if (close == std::string_view::npos) return {};
        return Ipv6Agent(text.substr(1, close - 1), text.substr(close + 1));
    }
    if (std::count(text.begin(), text.end(), ':') > 1) return Ipv6Agent(text, {});
    SnmpAgent agent;
    const std::size_t colon = text.find(':');
    agent.host = text.substr(0, colon);
    if (agent.host.empty() || agent.host.front() == '-') return {};
    if (!std::all_of(agent.host.begin(), agent.host.end(), IsHostCharacter)) return {};
    if (colon != std::string_view::npos && !SetPort(text.substr(colon + 1), agent)) return {};
    return agent;
}

SnmpFailure CheckSendable(const SnmpValue& value) {
    using namespace snmp_tag;
    switch (value.tag) {
        case kInteger:
        case kOctetString:
        case kNull:
        case kCounter32:
        case kGauge32:
        case kTimeTicks:
        case kOpaque:
        case kCounter64:
        case kUInteger32:
            return {};
        case kBitString:
            if (!value.octets.empty() && static_cast<unsigned char>(value.octets[0]) < 8) return {};
            return BadValue("a BIT STRING begins with its number of unused bits, 0 to 7");
        case kIpAddress:
            if (value.octets.size() == 4) return {};
            return BadValue("an IpAddress has four octets, not " + PrintUnsigned(value.octets.size()));
        case kObjectIdentifier:
            if (IsEncodable(value.identifier)) return {};
            return BadValue("the value is no identifier");
        default:
            return BadValue("a value of type " + PrintInt(value.tag) + " cannot be sent");
    }
}

SnmpFailure AgentError(long status) {
    constexpr Named kNames[] = {{1, "tooBig"},
                                {2, "noSuchName"},
                                {3, "badValue"},
                                {4, "readOnly"},
                                {5, "genErr"},
                                {6, "noAccess"},
                                {7, "wrongType"},
                                {8, "wrongLength"},
                                {9, "wrongEncoding"},
                                {10, "wrongValue"},
                                {11, "noCreation"},
                                {12, "inconsistentValue"},
                                {13, "resourceUnavailable"},
                                {14, "commitFailed"},
                                {15, "undoFailed"},
                                {16, "authorizationError"},
                                {17, "notWritable"},
                                {18, "inconsistentName"}};
    const int number = static_cast<int>(std::clamp<long>(status, INT32_MIN, INT32_MAX));
    const std::string name = NameOf(number, std::begin(kNames), std::end(kNames));
    return {SnmpFailureKind::kAgentError, number,
            "the agent refused: " + (name.empty() ? "error " : name + ", error ") + PrintInt(number)};
}

SnmpFailure ExceptionValue(int tag) {
    constexpr Named kNames[] = {{snmp_tag::kNoSuchObject, "no such object"},
                                {snmp_tag::kNoSuchInstance, "no such instance"},
                                {snmp_tag::kEndOfMibView, "end of MIB view"}};
    return {SnmpFailureKind::kException, tag,
            "the agent has no value there: " + NameOf(tag, std::begin(kNames), std::end(kNames))};
}

SnmpFailure NoAnswer(const SnmpTarget& target) {
    const std::int64_t attempts = std::int64_t{std::max(target.retries, 0)} + 1;
    return {SnmpFailureKind::kTimeout, 0,
            "no answer within " + PrintInt(std::max<std::int64_t>(target.timeout.count(), 1)) + " ms" +
                (attempts == 1 ? std::string() : ", " + PrintInt(attempts) + " attempts")};
}

}  // namespace brindle
