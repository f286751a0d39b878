#include "testing/snmpd_process.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

namespace brindle::testing {
namespace {

constexpr const char* kProgram = "/usr/sbin/snmpd";

// A UDP port nobody has at present. Somebody may take it before the agent does; then another one is tried.
int FreePort() {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool bound = ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                       ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    ::close(socket);
    return bound ? ntohs(address.sin_port) : 0;
}

std::string Configuration(const std::string& name) {
    std::string text =
        "rocommunity public 127.0.0.1\nrwcommunity private 127.0.0.1\ndontLogTCPWrappersConnects yes\n";
    text += "sysName " + name + "\n";
    for (const SnmpdVariable& variable : kSnmpdVariables)
        text += std::string("override -rw ") + variable.oid + " " + variable.configured + "\n";
    return text + "override " + kSnmpdFixed.oid + " " + kSnmpdFixed.configured + "\n";
}

bool Contains(const std::string& file, const char* text) {
    std::ifstream stream(file);
    const std::string all{std::istreambuf_iterator<char>(stream), {}};
    return all.find(text) != std::string::npos;
}

// The child's own part, between fork and exec.
[[noreturn]] void BecomeAgent(const std::string& folder, const std::string& port, int parent) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(1);
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (const int stream : {0, 1, 2}) ::dup2(nowhere, stream);
    const std::string settings[] = {"SNMPCONFPATH=" + folder, "SNMP_PERSISTENT_DIR=" + folder + "/state",
                                    "MIBS=", "MIBDIRS=" + folder};
    const char* environment[] = {settings[0].c_str(), settings[1].c_str(), settings[2].c_str(),
                                 settings[3].c_str(), nullptr};
    const std::string configuration = folder + "/agent.conf";
    const std::string log = folder + "/log";
    const std::string address = "udp:127.0.0.1:" + port;
    const char* arguments[] = {kProgram,        "-f",   "-C", "-c", configuration.c_str(), "-Lf", log.c_str(),
                               address.c_str(), nullptr};
    ::execve(kProgram, const_cast<char**>(arguments), const_cast<char**>(environment));
    ::_exit(127);
}

}  // namespace

SnmpdProcess::SnmpdProcess(const std::string& name) {
    if (::access(kProgram, X_OK) != 0) {
        std::fprintf(stderr, "%s is missing; scripts/setup installs it\n", kProgram);
        return;
    }
    m_folder = (std::filesystem::temp_directory_path() / "brindle_snmpd_XXXXXX").string();
    if (!::mkdtemp(m_folder.data())) return;
    std::ofstream(m_folder + "/agent.conf") << Configuration(name);
    for (int attempt = 0; attempt < 5 && !Start(); ++attempt) {
    }
    if (m_process <= 0) std::fprintf(stderr, "%s does not start; see %s/log\n", kProgram, m_folder.c_str());
}

bool SnmpdProcess::Start() {
    std::filesystem::remove(m_folder + "/log");
    m_port = FreePort();
    const std::string port = std::to_string(m_port);
    const int parent = ::getpid();
    m_process = ::fork();
    if (m_process == 0) BecomeAgent(m_folder, port, parent);
    if (m_process > 0 && WaitUntilReady()) return true;
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }
    m_process = -1;
    return false;
}

// It says its version once its socket is open.
bool SnmpdProcess::WaitUntilReady() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < end) {
        if (Contains(m_folder + "/log", "NET-SNMP version")) return true;
        if (::waitpid(m_process, nullptr, WNOHANG) == m_process) {
            m_process = -1;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

void SnmpdProcess::Stop() {
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = -1;
    }
    std::error_code ignored;
    if (!m_folder.empty()) std::filesystem::remove_all(m_folder, ignored);
}

}  // namespace brindle::testing
