// An SNMP agent of a test's own: a UDP socket on the loopback address whose every packet goes through a
// script that says which packets, if any, come back. For answers no real agent gives.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "testing/snmp_packet.h"

namespace brindle::testing {

class ScriptedAgent {
  public:
    using Packets = std::vector<std::string>;
    using Script = std::function<Packets(const SnmpRequestPacket& request)>;

    // How often the packets of an answer are sent: once, or again and again until the next request or the
    // end.
    enum class Manner { kOnce, kEndlessly };

    // The script runs on the agent's thread.
    explicit ScriptedAgent(Script script, Manner manner = Manner::kOnce);
    // An agent that never answers.
    ScriptedAgent() : ScriptedAgent([](const SnmpRequestPacket&) { return Packets(); }) {}
    ScriptedAgent(const ScriptedAgent&) = delete;
    ScriptedAgent& operator=(const ScriptedAgent&) = delete;
    ~ScriptedAgent();

    // "127.0.0.1:PORT"
    std::string Address() const;
    // What came so far, in order.
    std::vector<SnmpRequestPacket> Requests() const;

  private:
    void Serve();
    Packets Answer(std::string_view packet);

    Script m_script;
    Manner m_manner;
    int m_socket = -1;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::vector<SnmpRequestPacket> m_requests;
    std::atomic<bool> m_over{false};
    std::thread m_thread;
};

}  // namespace brindle::testing
