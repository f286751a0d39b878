// A real SNMP agent for tests and benchmarks: snmpd on a free port of the loopback address, with a folder of
// its own, stopped with this object (or with the process, should that die first). It reads no configuration
// but its own.
//
// Communities: "public" reads, "private" reads and writes. Below 1.3.6.1.4.1.8072.9999 stand variables that
// may be written, one of each type that snmpd can hold (kSnmpdVariables).
#pragma once

#include <string>

namespace brindle::testing {

struct SnmpdVariable {
    const char* oid;
    int type;
    const char* configured;  // as snmpd's configuration says it
    const char* value;       // as a get gives it
};
inline constexpr SnmpdVariable kSnmpdVariables[] = {
    {".1.3.6.1.4.1.8072.9999.1", 2, "integer -42", "-42"},
    {".1.3.6.1.4.1.8072.9999.2", 65, "counter 4294967295", "4294967295"},
    {".1.3.6.1.4.1.8072.9999.3", 66, "uinteger 4000000000", "4000000000"},
    {".1.3.6.1.4.1.8072.9999.4", 67, "timeticks 77", "77"},
    {".1.3.6.1.4.1.8072.9999.5", 4, "octet_str \"Studio North\"", "Studio North"},
    {".1.3.6.1.4.1.8072.9999.6", 6, "object_id .1.3.6.1.4.1.9", ".1.3.6.1.4.1.9"},
};
// Cannot be written.
inline constexpr SnmpdVariable kSnmpdFixed = {".1.3.6.1.4.1.8072.9999.7", 2, "integer 7", "7"};

class SnmpdProcess {
  public:
    // Starts the agent and waits until it answers; a failure is a test failure. `name` is what it calls
    // itself.
    explicit SnmpdProcess(const std::string& name = "studio-agent");
    SnmpdProcess(const SnmpdProcess&) = delete;
    SnmpdProcess& operator=(const SnmpdProcess&) = delete;
    ~SnmpdProcess() { Stop(); }

    bool IsRunning() const noexcept { return m_process > 0; }
    // "127.0.0.1:PORT"
    std::string Address() const { return "127.0.0.1:" + std::to_string(m_port); }
    void Stop();

  private:
    bool Start();
    bool WaitUntilReady();

    std::string m_folder;
    int m_port = 0;
    int m_process = -1;
};

}  // namespace brindle::testing
