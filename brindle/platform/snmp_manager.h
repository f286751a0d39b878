// SnmpManager: reads and writes single variables of SNMP agents. A private service.
//
// A session belongs to the thread that uses it; sessions of different threads work side by side. Every
// operation may block as its comment says, and no lock is held meanwhile. Bad input and dead agents are
// failures, never a crash, a message or an endless wait.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/platform/snmp_failure.h"

namespace brindle {

using SnmpOid = std::vector<std::uint32_t>;  // arcs

// ASN.1 tags of values.
namespace snmp_tag {
inline constexpr int kInteger = 2;
inline constexpr int kBitString = 3;
inline constexpr int kOctetString = 4;
inline constexpr int kNull = 5;
inline constexpr int kObjectIdentifier = 6;
inline constexpr int kSequence = 48;
inline constexpr int kIpAddress = 64;
inline constexpr int kCounter32 = 65;
inline constexpr int kGauge32 = 66;
inline constexpr int kTimeTicks = 67;
inline constexpr int kOpaque = 68;
inline constexpr int kCounter64 = 70;
inline constexpr int kUInteger32 = 71;
inline constexpr int kNoSuchObject = 128;
inline constexpr int kNoSuchInstance = 129;
inline constexpr int kEndOfMibView = 130;
}  // namespace snmp_tag

// A value; which member holds it follows from the tag.
struct SnmpValue {
    int tag = snmp_tag::kNull;
    // INTEGER: its 32 bits, sign-extended or not; Counter32, Gauge32, TimeTicks, UInteger32: 32 bits;
    // Counter64: 64.
    std::uint64_t number = 0;
    std::string
        octets;  // BIT STRING (with its leading count of unused bits), OCTET STRING, IpAddress, Opaque
    SnmpOid identifier;  // OBJECT IDENTIFIER
};

struct SnmpBinding {
    SnmpOid name;
    SnmpValue value;
};

enum class SnmpOperation { kGet, kSet };

struct SnmpTarget {
    // A host name or an address with an optional UDP port: "host", "host:161", "192.0.2.1:161",
    // "2001:db8::1", "[2001:db8::1]:161". Nothing else.
    std::string agent;
    std::string community;
    std::chrono::milliseconds timeout{1000};  // of each attempt; at least 1 ms
    int retries = 0;                          // attempts after the first; below 0 is 0
    SnmpVersion version = SnmpVersion::k2c;
};

class SnmpSession {
  protected:
    ~SnmpSession() = default;  // never destroyed through this class
};

class SnmpManager {
  public:
    // A new session for Close to end. Looks names up, and waits as long as that takes; of several addresses
    // the first of IPv4 is taken, else the first. Nothing is sent. Null, and `failure` set, when the agent is
    // no host or address, the name is unknown or the system has no socket.
    virtual SnmpSession* Open(const SnmpTarget& target, SnmpFailure& failure) = 0;

    // Dotted decimal numbers as an identifier: absolute with a leading dot or when the first two arcs are 1.2
    // or 1.3, else below mib-2 (1.3.6.1.2.1). False, and `oid` unchanged, for anything else and for what the
    // protocol cannot carry: fewer than two arcs, more than 128, a first arc above 2, a second above 39 below
    // 0 and 1.
    virtual bool TextToOid(std::string_view text, SnmpOid& oid) = 0;
    // Numbers with a leading dot. False, and `text` unchanged, for no arcs or more than 128.
    virtual bool OidToText(const SnmpOid& oid, std::string& text) = 0;

    // Sends one request with one binding and waits for its answer, at most timeout x (retries + 1). True when
    // the agent answered; `binding` is then the first one of the answer (unchanged when a refusal carries
    // none), and `failure` holds kAgentError or kException when it refused. False when there is no answer, or
    // one without a value of a known type: `failure` says why, `binding` is unchanged. A get sends NULL
    // whatever the binding's value is. Tags that can be sent: all of snmp_tag but kSequence and the
    // exceptions; an IpAddress has four octets, a BIT STRING begins with an octet below 8. Others are
    // kBadValue and nothing is sent. Opaque values of an answer are kOpaque with their octets, whatever is in
    // them.
    virtual bool Request(SnmpSession& session, SnmpOperation operation, SnmpBinding& binding,
                         SnmpFailure& failure) = 0;

    // Ends the session; `session` is invalid afterwards. Null is ignored.
    virtual void Close(SnmpSession* session) = 0;

  protected:
    ~SnmpManager() = default;  // never destroyed through this interface
};

// What the linked backend provides.
SnmpManager& BackendSnmpManager() noexcept;

SnmpManager& CurrentSnmpManager() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
SnmpManager* SetSnmpManager(SnmpManager* service) noexcept;

}  // namespace brindle
