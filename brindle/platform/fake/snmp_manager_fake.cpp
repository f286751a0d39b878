#include "brindle/platform/fake/snmp_manager_fake.h"

#include <memory>

#include "brindle/platform/snmp_text.h"

namespace brindle {
namespace {

std::string Place(const SnmpAgent& agent) {
    return agent.host + ":" + std::to_string(agent.port);
}

std::string PlaceOf(const std::string& agent) {
    const auto read = ReadSnmpAgent(agent);
    return read ? Place(*read) : std::string();
}

bool IsAddress(const SnmpAgent& agent) {
    return agent.isIpv6 || agent.host.find_first_not_of("0123456789.") == std::string::npos;
}

}  // namespace

void FakeSnmpManager::AddAgent(const std::string& agent, const std::string& readCommunity,
                               const std::string& writeCommunity) {
    const std::lock_guard lock(m_mutex);
    Agent& added = m_agents[PlaceOf(agent)];
    added.readCommunity = readCommunity;
    added.writeCommunity = writeCommunity;
}

void FakeSnmpManager::Put(const std::string& agent, const std::string& oid, const SnmpValue& value,
                          Access access) {
    SnmpOid name;
    const std::lock_guard lock(m_mutex);
    Agent* found = Find(agent);
    if (found && ReadSnmpOid(oid, name)) found->variables[name] = {value, access};
}

void FakeSnmpManager::SetSilent(const std::string& agent, bool silent) {
    const std::lock_guard lock(m_mutex);
    if (Agent* found = Find(agent)) found->silent = silent;
}

void FakeSnmpManager::SetNoSockets(bool noSockets) {
    const std::lock_guard lock(m_mutex);
    m_noSockets = noSockets;
}

std::vector<FakeSnmpManager::Sent> FakeSnmpManager::Requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

int FakeSnmpManager::OpenSessions() const {
    const std::lock_guard lock(m_mutex);
    return m_open;
}

FakeSnmpManager::Agent* FakeSnmpManager::Find(const std::string& agent) {
    const auto found = m_agents.find(PlaceOf(agent));
    return found == m_agents.end() ? nullptr : &found->second;
}

SnmpSession* FakeSnmpManager::Open(const SnmpTarget& target, SnmpFailure& failure) {
    const auto agent = ReadSnmpAgent(target.agent);
    const std::lock_guard lock(m_mutex);
    if (!agent) {
        failure = {SnmpFailureKind::kBadAgent, 0, "\"" + target.agent + "\" is no agent"};
    } else if (!IsAddress(*agent) && !m_agents.contains(Place(*agent))) {
        failure = {SnmpFailureKind::kUnreachable, 0, "nobody knows the host \"" + agent->host + "\""};
    } else if (m_noSockets) {
        failure = {SnmpFailureKind::kSystem, 0, "the system gives no socket"};
    } else {
        auto session = std::make_unique<Session>();
        session->target = target;
        ++m_open;
        return session.release();
    }
    return nullptr;
}

bool FakeSnmpManager::TextToOid(std::string_view text, SnmpOid& oid) {
    return ReadSnmpOid(text, oid);
}

bool FakeSnmpManager::OidToText(const SnmpOid& oid, std::string& text) {
    return PrintSnmpOid(oid, text);
}

SnmpFailure FakeSnmpManager::Answer(Agent& agent, const SnmpTarget& target, SnmpOperation operation,
                                    SnmpBinding& binding) {
    const auto found = agent.variables.find(binding.name);
    const bool exists = found != agent.variables.end();
    const bool first = target.version == SnmpVersion::k1;
    if (operation == SnmpOperation::kGet) {
        if (!exists && first) return AgentError(2);
        binding.value = exists ? found->second.value : SnmpValue{snmp_tag::kNoSuchObject, 0, {}, {}};
        return exists ? SnmpFailure() : ExceptionValue(binding.value.tag);
    }
    if (target.community != agent.writeCommunity) return AgentError(first ? 2 : 6);
    if (!exists || found->second.access == Access::kRead) return AgentError(first ? 2 : 17);
    if (found->second.value.tag != binding.value.tag) return AgentError(first ? 3 : 7);
    found->second.value = binding.value;
    return {};
}

bool FakeSnmpManager::Request(SnmpSession& session, SnmpOperation operation, SnmpBinding& binding,
                              SnmpFailure& failure) {
    const SnmpTarget& target = static_cast<Session&>(session).target;
    SnmpValue name{snmp_tag::kObjectIdentifier, 0, {}, binding.name};
    failure = {};
    if (!CheckSendable(name).ok()) failure.kind = SnmpFailureKind::kBadIdentifier;
    if (failure.ok() && operation == SnmpOperation::kSet) failure = CheckSendable(binding.value);
    if (!failure.ok()) return false;
    const std::lock_guard lock(m_mutex);
    m_requests.push_back({target, operation, binding});
    Agent* agent = Find(target.agent);
    const bool known =
        agent && !agent->silent &&
        (target.community == agent->readCommunity || target.community == agent->writeCommunity);
    failure = known ? Answer(*agent, target, operation, binding) : NoAnswer(target);
    return known;
}

void FakeSnmpManager::Close(SnmpSession* session) {
    if (!session) return;
    const std::lock_guard lock(m_mutex);
    --m_open;
    delete static_cast<Session*>(session);
}

}  // namespace brindle
