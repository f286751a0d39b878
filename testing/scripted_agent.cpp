#include "testing/scripted_agent.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace brindle::testing {

ScriptedAgent::ScriptedAgent(Script script, Manner manner) : m_script(std::move(script)), m_manner(manner) {
    m_socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    EXPECT_GE(m_socket, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    socklen_t size = sizeof address;
    EXPECT_EQ(::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size), 0);
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { Serve(); });
}

ScriptedAgent::~ScriptedAgent() {
    m_over = true;
    m_thread.join();
    ::close(m_socket);
}

std::string ScriptedAgent::Address() const {
    return "127.0.0.1:" + std::to_string(m_port);
}

std::vector<SnmpRequestPacket> ScriptedAgent::Requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void ScriptedAgent::Serve() {
    std::string buffer(65536, '\0');
    sockaddr_in from{};
    socklen_t size = sizeof from;
    Packets packets;
    while (!m_over) {
        const bool goesOn = m_manner == Manner::kEndlessly && !packets.empty();
        pollfd waiting{m_socket, POLLIN, 0};
        if (::poll(&waiting, 1, goesOn ? 0 : 20) > 0) {
            const ssize_t count = ::recvfrom(m_socket, buffer.data(), buffer.size(), 0,
                                             reinterpret_cast<sockaddr*>(&from), &size);
            packets = count > 0 ? Answer({buffer.data(), static_cast<std::size_t>(count)}) : Packets();
        } else if (!goesOn) {
            continue;
        }
        for (const std::string& packet : packets)
            ::sendto(m_socket, packet.data(), packet.size(), 0, reinterpret_cast<sockaddr*>(&from), size);
    }
}

ScriptedAgent::Packets ScriptedAgent::Answer(std::string_view packet) {
    SnmpRequestPacket request;
    if (!ReadSnmpPacket(packet, request)) return {};
    {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
    }
    return m_script(request);
}

}  // namespace brindle::testing
