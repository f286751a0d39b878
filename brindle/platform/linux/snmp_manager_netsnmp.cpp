// SNMP on net-snmp's single-session interface. The library is used without its MIBs, configuration files,
// persistent state and log: starting it touches no file and prints nothing. Its process-wide counters are not
// guarded, so one lock stands round everything that uses them: start, open, making of a request, taking in of
// a packet that has come, time-outs, close. None of these waits, and the lock is never held while names are
// looked up, a request is sent or its answer awaited.
//
// net-snmp's own loop over a request's answers is not used: packets that never end would keep it from ever
// timing out. Tests: snmp_manager_test.cpp, snmp_agent_test.cpp, snmp_process_test.cpp.
#include <net-snmp/net-snmp-config.h>

#include <net-snmp/net-snmp-includes.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <net-snmp/library/large_fd_set.h>
#include <netdb.h>
#include <pthread.h>
#include <sys/select.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>

#include "brindle/framework/number_text.h"
#include "brindle/platform/linux/snmp_values_netsnmp.h"
#include "brindle/platform/snmp_manager.h"
#include "brindle/platform/snmp_text.h"

namespace brindle {
namespace {

// It is held for microseconds, so whoever finds it taken looks again a few times before sleeping.
class ShortLock {
  public:
    void lock() noexcept { ::pthread_mutex_lock(&m_mutex); }
    void unlock() noexcept { ::pthread_mutex_unlock(&m_mutex); }

  private:
    pthread_mutex_t m_mutex = PTHREAD_ADAPTIVE_MUTEX_INITIALIZER_NP;
};

constinit ShortLock g_library;
constinit bool g_started = false;  // under the lock

void StartLibrary() {
    if (g_started) return;
    g_started = true;
    ::netsnmp_register_loghandler(NETSNMP_LOGHANDLER_NONE, LOG_DEBUG);
    ::netsnmp_set_mib_directory("");
    for (const int off : {NETSNMP_DS_LIB_DONT_READ_CONFIGS, NETSNMP_DS_LIB_DONT_PERSIST_STATE,
                          NETSNMP_DS_LIB_DONT_LOAD_HOST_FILES})
        ::netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, off, 1);
}

// --- names ---

struct FreeAddresses {
    void operator()(addrinfo* list) const noexcept { ::freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

// The address in net-snmp's spelling, "udp:127.0.0.1:161"; empty when it has none.
std::string PeerName(const addrinfo& address) {
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    if (::getnameinfo(address.ai_addr, address.ai_addrlen, host, sizeof host, port, sizeof port,
                      NI_NUMERICHOST | NI_NUMERICSERV | NI_DGRAM) != 0)
        return {};
    return address.ai_family == AF_INET ? std::string("udp:") + host + ":" + port
                                        : std::string("udp6:[") + host + "]:" + port;
}

// Looks a name up; waits as long as that takes. Empty when nobody knows it.
std::string PeerOfName(const SnmpAgent& agent) {
    addrinfo wanted{};
    wanted.ai_family = agent.isIpv6 ? AF_INET6 : AF_UNSPEC;
    wanted.ai_socktype = SOCK_DGRAM;
    wanted.ai_flags = AI_NUMERICSERV | (agent.isIpv6 ? AI_NUMERICHOST : 0);
    addrinfo* list = nullptr;
    const int error = ::getaddrinfo(agent.host.c_str(), PrintUnsigned(agent.port).c_str(), &wanted, &list);
    const Addresses addresses(error == 0 ? list : nullptr);
    for (const addrinfo* address = addresses.get(); address; address = address->ai_next)
        if (address->ai_family == AF_INET) return PeerName(*address);
    return addresses ? PeerName(*addresses) : std::string();
}

// An address needs no look-up. Empty when the host is none.
std::string PeerOfAddress(const SnmpAgent& agent) {
    in6_addr unused{};
    const std::string port = PrintUnsigned(agent.port);
    if (!agent.isIpv6 && ::inet_pton(AF_INET, agent.host.c_str(), &unused) == 1)
        return "udp:" + agent.host + ":" + port;
    if (agent.isIpv6 && ::inet_pton(AF_INET6, agent.host.c_str(), &unused) == 1)
        return "udp6:[" + agent.host + "]:" + port;
    return {};
}

bool Resolve(const std::string& text, std::string& peer, SnmpFailure& failure) {
    const std::optional<SnmpAgent> agent = ReadSnmpAgent(text);
    if (!agent) {
        failure = {SnmpFailureKind::kBadAgent, 0,
                   "\"" + text + "\" is no host or address with an optional port"};
        return false;
    }
    peer = PeerOfAddress(*agent);
    if (peer.empty()) peer = PeerOfName(*agent);
    if (!peer.empty()) return true;
    failure = {agent->isIpv6 ? SnmpFailureKind::kBadAgent : SnmpFailureKind::kUnreachable, 0,
               "nobody knows the host \"" + agent->host + "\""};
    return false;
}

// --- one request ---

struct FreePdu {
    void operator()(netsnmp_pdu* pdu) const noexcept { ::snmp_free_pdu(pdu); }
};
using Pdu = std::unique_ptr<netsnmp_pdu, FreePdu>;

// What the answer to one request said.
struct Exchange {
    enum Outcome { kWaiting, kAnswered, kTimedOut, kBroken };
    Outcome outcome = kWaiting;
    bool understood = false;
    long status = 0;
    SnmpBinding binding;
};

// Reading never waits, not even for a packet that is dropped between being announced and being read; programs
// started meanwhile do not inherit the socket.
void SetManners(int socket) {
    ::fcntl(socket, F_SETFL, O_NONBLOCK);
    ::fcntl(socket, F_SETFD, FD_CLOEXEC);
}

// A session carries its exchange, as net-snmp may still speak of a request while it closes.
class NetSnmpSession final : public SnmpSession {
  public:
    explicit NetSnmpSession(SnmpTarget target) : m_target(std::move(target)) {}
    NetSnmpSession(const NetSnmpSession&) = delete;
    NetSnmpSession& operator=(const NetSnmpSession&) = delete;
    ~NetSnmpSession() {
        if (!m_handle) return;
        const std::lock_guard lock(g_library);
        ::snmp_sess_close(m_handle);
    }

    bool Open(std::string peer) {
        netsnmp_session wanted;
        const std::lock_guard lock(g_library);
        StartLibrary();
        ::snmp_sess_init(&wanted);
        wanted.version = m_target.version == SnmpVersion::k1 ? SNMP_VERSION_1 : SNMP_VERSION_2c;
        wanted.peername = peer.data();
        wanted.community = reinterpret_cast<u_char*>(m_target.community.data());
        wanted.community_len = m_target.community.size();
        wanted.timeout =
            static_cast<long>(std::clamp<std::int64_t>(m_target.timeout.count(), 1, INT32_MAX)) * 1000;
        wanted.retries = std::max(m_target.retries, 0);
        m_handle = ::snmp_sess_open(&wanted);  // copies what it was given
        if (m_handle) SetManners(::snmp_sess_transport(m_handle)->sock);
        return m_handle != nullptr;
    }

    void* Handle() const noexcept { return m_handle; }
    const SnmpTarget& Target() const noexcept { return m_target; }
    Exchange& LastExchange() noexcept { return m_exchange; }

  private:
    void* m_handle = nullptr;
    SnmpTarget m_target;
    Exchange m_exchange;
};

void ReadAnswer(const netsnmp_pdu& pdu, Exchange& exchange) {
    exchange.outcome = Exchange::kAnswered;
    exchange.status = pdu.errstat;
    if (pdu.command != SNMP_MSG_RESPONSE || !pdu.variables) return;
    exchange.binding.name = ReadName(*pdu.variables);
    exchange.understood = ReadVariable(*pdu.variables, exchange.binding.value);
}

// net-snmp calls it from within send, read and time-out. No exception may pass through the C code above it.
int OnEvent(int operation, netsnmp_session*, int, netsnmp_pdu* pdu, void* data) noexcept {
    Exchange& exchange = *static_cast<Exchange*>(data);
    switch (operation) {
        case NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE:
            try {
                ReadAnswer(*pdu, exchange);
            } catch (const std::bad_alloc&) {
                exchange.outcome = Exchange::kBroken;
            }
            break;
        case NETSNMP_CALLBACK_OP_TIMED_OUT:
            exchange.outcome = Exchange::kTimedOut;
            break;
        case NETSNMP_CALLBACK_OP_SEND_FAILED:
        case NETSNMP_CALLBACK_OP_DISCONNECT:
            exchange.outcome = Exchange::kBroken;
            break;
        default:
            break;
    }
    return 1;
}

// The sockets to wait for; net-snmp's own type, as its number may be above select's limit.
class Sockets {
  public:
    Sockets() { ::netsnmp_large_fd_set_init(&m_set, FD_SETSIZE); }
    Sockets(const Sockets&) = delete;
    Sockets& operator=(const Sockets&) = delete;
    ~Sockets() { ::netsnmp_large_fd_set_cleanup(&m_set); }

    enum class Seen { kPacket, kTimeIsOver, kNothingAsked };

    // Waits for the session's socket until something is to be read or resent.
    Seen Wait(void* session) {
        int count = 0;
        int block = 1;
        timeval left{};
        NETSNMP_LARGE_FD_ZERO(&m_set);
        ::snmp_sess_select_info2(session, &count, &m_set, &left, &block);
        if (block) return Seen::kNothingAsked;
        const bool ready = ::netsnmp_large_fd_set_select(count, &m_set, nullptr, nullptr, &left) > 0;
        return ready ? Seen::kPacket : Seen::kTimeIsOver;
    }
    void Read(void* session) { ::snmp_sess_read2(session, &m_set); }

  private:
    netsnmp_large_fd_set m_set{};
};

void AwaitAnswer(void* session, Exchange& exchange) {
    Sockets sockets;
    while (exchange.outcome == Exchange::kWaiting) {
        const Sockets::Seen seen = sockets.Wait(session);
        const std::lock_guard lock(g_library);
        if (seen == Sockets::Seen::kPacket) sockets.Read(session);
        if (seen == Sockets::Seen::kNothingAsked)
            exchange.outcome = Exchange::kBroken;  // the request was dropped
        // Also after a packet: packets that are no answer must not put the time-out off.
        if (exchange.outcome == Exchange::kWaiting) ::snmp_sess_timeout(session);
    }
}

SnmpFailure CheckRequest(SnmpOperation operation, const SnmpBinding& binding) {
    SnmpValue name;
    name.tag = snmp_tag::kObjectIdentifier;
    name.identifier = binding.name;
    if (!CheckSendable(name).ok())
        return {SnmpFailureKind::kBadIdentifier, 0, "the identifier cannot be sent"};
    return operation == SnmpOperation::kGet ? SnmpFailure() : CheckSendable(binding.value);
}

Pdu MakePdu(SnmpOperation operation, const SnmpBinding& binding) {
    const bool get = operation == SnmpOperation::kGet;
    const SnmpValue null;
    const std::lock_guard lock(g_library);
    Pdu pdu(::snmp_pdu_create(get ? SNMP_MSG_GET : SNMP_MSG_SET));
    if (pdu && !AddVariable(*pdu, binding.name, get ? null : binding.value)) pdu.reset();
    return pdu;
}

SnmpFailure SendFailure(void* handle) {
    int systemError = 0;
    int error = 0;
    char* text = nullptr;
    ::snmp_sess_error(handle, &systemError, &error, &text);
    const std::string why = text ? text : "unknown error";
    std::free(text);
    const bool unsent = error == SNMPERR_BAD_SENDTO || error == SNMPERR_BAD_ADDRESS;
    return {unsent ? SnmpFailureKind::kUnreachable : SnmpFailureKind::kBadValue, 0, "cannot be sent: " + why};
}

SnmpFailure Send(NetSnmpSession& session, SnmpOperation operation, const SnmpBinding& binding) {
    Pdu pdu = MakePdu(operation, binding);
    if (!pdu) return {SnmpFailureKind::kSystem, 0, "the request does not fit into memory"};
    session.LastExchange() = {};
    if (::snmp_sess_async_send(session.Handle(), pdu.get(), OnEvent, &session.LastExchange()) == 0)
        return SendFailure(session.Handle());
    (void)pdu.release();  // the session's from here on
    return {};
}

bool TakeAnswer(NetSnmpSession& session, SnmpBinding& binding, SnmpFailure& failure) {
    Exchange& exchange = session.LastExchange();
    if (exchange.outcome == Exchange::kTimedOut) {
        failure = NoAnswer(session.Target());
    } else if (exchange.outcome == Exchange::kBroken) {
        failure = {SnmpFailureKind::kSystem, 0, "the connection broke"};
    } else if (exchange.status != 0) {
        failure = AgentError(exchange.status);
    } else if (!exchange.understood) {
        failure = {SnmpFailureKind::kBadAnswer, 0, "the answer holds no value of a known type"};
    } else if (exchange.binding.value.tag >= snmp_tag::kNoSuchObject) {
        failure = ExceptionValue(exchange.binding.value.tag);
    }
    if (exchange.outcome != Exchange::kAnswered || failure.kind == SnmpFailureKind::kBadAnswer) return false;
    if (exchange.understood) binding = std::move(exchange.binding);
    return true;
}

// --- the service ---

class NetSnmpManager final : public SnmpManager {
  public:
    SnmpSession* Open(const SnmpTarget& target, SnmpFailure& failure) override {
        std::string peer;
        if (!Resolve(target.agent, peer, failure)) return nullptr;
        auto session = std::make_unique<NetSnmpSession>(target);
        if (session->Open(peer)) return session.release();
        failure = {SnmpFailureKind::kSystem, 0, "the system gives no socket for " + peer};
        return nullptr;
    }

    bool TextToOid(std::string_view text, SnmpOid& oid) override { return ReadSnmpOid(text, oid); }
    bool OidToText(const SnmpOid& oid, std::string& text) override { return PrintSnmpOid(oid, text); }

    bool Request(SnmpSession& session, SnmpOperation operation, SnmpBinding& binding,
                 SnmpFailure& failure) override {
        auto& net = static_cast<NetSnmpSession&>(session);
        failure = CheckRequest(operation, binding);
        if (failure.ok()) failure = Send(net, operation, binding);
        if (!failure.ok()) return false;
        AwaitAnswer(net.Handle(), net.LastExchange());
        return TakeAnswer(net, binding, failure);
    }

    void Close(SnmpSession* session) override { delete static_cast<NetSnmpSession*>(session); }
};

}  // namespace

SnmpManager& BackendSnmpManager() noexcept {
    static constinit NetSnmpManager manager;
    return manager;
}

}  // namespace brindle
