// FakeSnmpManager: agents in memory. Nothing waits: an agent that does not answer times out at once.
//
// Hosts that are addresses can always be opened, names only when an agent was added under them. Thread: any,
// as the real one.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "brindle/platform/snmp_manager.h"

namespace brindle {

class FakeSnmpManager final : public SnmpManager {
  public:
    enum class Access { kRead, kWrite };

    // An agent at "host" or "host:port" whose variables `readCommunity` may read and `writeCommunity` read
    // and write.
    void AddAgent(const std::string& agent, const std::string& readCommunity,
                  const std::string& writeCommunity);
    // A variable of an added agent.
    void Put(const std::string& agent, const std::string& oid, const SnmpValue& value, Access access);
    // Faults: an agent that has stopped answering; a system without sockets.
    void SetSilent(const std::string& agent, bool silent);
    void SetNoSockets(bool noSockets);

    struct Sent {
        SnmpTarget target;
        SnmpOperation operation;
        SnmpBinding binding;
    };
    // Every request that reached an agent or was lost on its way, in order.
    std::vector<Sent> Requests() const;
    int OpenSessions() const;

    SnmpSession* Open(const SnmpTarget& target, SnmpFailure& failure) override;
    bool TextToOid(std::string_view text, SnmpOid& oid) override;
    bool OidToText(const SnmpOid& oid, std::string& text) override;
    bool Request(SnmpSession& session, SnmpOperation operation, SnmpBinding& binding,
                 SnmpFailure& failure) override;
    void Close(SnmpSession* session) override;

  private:
    struct Variable {
        SnmpValue value;
        Access access = Access::kRead;
    };
    struct Agent {
        std::string readCommunity;
        std::string writeCommunity;
        bool silent = false;
        std::map<SnmpOid, Variable> variables;
    };
    struct Session final : SnmpSession {
        SnmpTarget target;
    };

    Agent* Find(const std::string& agent);
    static SnmpFailure Answer(Agent& agent, const SnmpTarget& target, SnmpOperation operation,
                              SnmpBinding& binding);

    mutable std::mutex m_mutex;
    std::map<std::string, Agent> m_agents;  // by "host:port"
    std::vector<Sent> m_requests;
    bool m_noSockets = false;
    int m_open = 0;
};

}  // namespace brindle
