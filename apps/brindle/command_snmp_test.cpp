#include <memory>

#include "apps/brindle/tool_test_rows.h"
#include "testing/scripted_agent.h"
#include "testing/snmpd_process.h"

namespace brindle::testing {
namespace {

using ::testing::HasSubstr;
using namespace std::string_literals;

class ToolSnmp : public ::testing::Test {
  public:
    static void SetUpTestSuite() { s_agent = std::make_unique<SnmpdProcess>("Studio North"); }
    static void TearDownTestSuite() { s_agent.reset(); }

  protected:
    void SetUp() override { ASSERT_TRUE(s_agent->IsRunning()); }
    static std::string Agent() { return s_agent->Address(); }

  private:
    static std::unique_ptr<SnmpdProcess> s_agent;
};
std::unique_ptr<SnmpdProcess> ToolSnmp::s_agent;

TEST_F(ToolSnmp, GetPrintsTypeAndValue) {
    const std::string base = "1.3.6.1.4.1.8072.9999.";
    const std::vector<ToolRow> rows = {
        {"the agent's name",
         {"snmp", "get", Agent(), "1.3.6.1.2.1.1.5.0"},
         ".1.3.6.1.2.1.1.5.0 = OCTET STRING: Studio North\n",
         "",
         0},
        {"relative",
         {"snmp", "get", Agent(), "1.5.0"},
         ".1.3.6.1.2.1.1.5.0 = OCTET STRING: Studio North\n",
         "",
         0},
        {"version 1",
         {"snmp", "get", Agent(), "1.5.0", "--v1"},
         ".1.3.6.1.2.1.1.5.0 = OCTET STRING: Studio North\n",
         "",
         0},
        {"INTEGER", {"snmp", "get", Agent(), base + "1"}, "." + base + "1 = INTEGER: -42\n", "", 0},
        {"Counter32",
         {"snmp", "get", Agent(), base + "2"},
         "." + base + "2 = Counter32: 4294967295\n",
         "",
         0},
        {"Gauge32", {"snmp", "get", Agent(), base + "3"}, "." + base + "3 = Gauge32: 4000000000\n", "", 0},
        {"TimeTicks", {"snmp", "get", Agent(), base + "4"}, "." + base + "4 = TimeTicks: 77\n", "", 0},
        {"identifier",
         {"snmp", "get", Agent(), base + "6"},
         "." + base + "6 = OBJECT IDENTIFIER: .1.3.6.1.4.1.9\n",
         "",
         0},
        {"an address in hexadecimal, zero bytes too",
         {"snmp", "get", Agent(), "4.20.1.1.127.0.0.1"},
         ".1.3.6.1.2.1.4.20.1.1.127.0.0.1 = IpAddress: 7F 00 00 01\n",
         "",
         0},
        {"JSON",
         {"snmp", "get", Agent(), "1.5.0", "--json"},
         R"({"oid":".1.3.6.1.2.1.1.5.0","type":4,"name":"OCTET STRING","value":"Studio North",)"
         R"("hex":"53 74 75 64 69 6F 20 4E 6F 72 74 68"})"
         "\n",
         "",
         0},
        {"JSON of a number",
         {"snmp", "get", Agent(), base + "1", "--json"},
         "{\"oid\":\"." + base + "1\",\"type\":2,\"name\":\"INTEGER\",\"value\":\"-42\"}\n",
         "",
         0},
        {"no such variable",
         {"snmp", "get", Agent(), base + "99"},
         "",
         "brindle: 1.3.6.1.4.1.8072.9999.99: the agent has no value there: no such object",
         1},
        {"no such variable in version 1",
         {"snmp", "get", Agent(), "1.99.0", "--v1"},
         "",
         "brindle: 1.99.0: the agent refused: noSuchName, error 2",
         1},
        {"another community",
         {"snmp", "get", Agent(), "1.5.0", "--community", "wrong", "--timeout", "50", "--retries", "1"},
         "",
         "brindle: 1.5.0: no answer within 50 ms, 2 attempts",
         1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST_F(ToolSnmp, GetAsksForSeveralAtOnce) {
    const ToolResult result =
        RunTool({{"snmp", "get", Agent(), "1.5.0", "1.99.0", "1.3.6.1.4.1.8072.9999.1"}, "", {}});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, HasSubstr(".1.3.6.1.2.1.1.5.0 = OCTET STRING: Studio North\n"));
    EXPECT_THAT(result.out, HasSubstr(".1.3.6.1.4.1.8072.9999.1 = INTEGER: -42\n"));
    EXPECT_EQ(result.err, "brindle: 1.99.0: the agent has no value there: no such object\n");
}

TEST_F(ToolSnmp, SetWritesAndReadsBack) {
    const std::string base = "1.3.6.1.4.1.8072.9999.";
    const auto set = [&](const std::string& oid, std::vector<std::string> more) {
        std::vector<std::string> arguments = {"snmp", "set", Agent(), oid};
        arguments.insert(arguments.end(), more.begin(), more.end());
        arguments.insert(arguments.end(), {"--community", "private"});
        return arguments;
    };
    const std::vector<ToolRow> rows = {
        {"by number", set(base + "1", {"2", "17"}), "." + base + "1 = INTEGER: 17\n", "", 0},
        {"by name, negative", set(base + "1", {"INTEGER", "-42"}), "." + base + "1 = INTEGER: -42\n", "", 0},
        {"hexadecimal", set(base + "2", {"counter32", "0x20"}), "." + base + "2 = Counter32: 32\n", "", 0},
        {"all its bits", set(base + "3", {"Gauge32", "-1"}), "." + base + "3 = Gauge32: 4294967295\n", "", 0},
        {"a text", set(base + "5", {"STRING", "On air"}), "." + base + "5 = OCTET STRING: On air\n", "", 0},
        {"octets", set(base + "5", {"OCTET STRING", "00 ff0A", "--hex"}),
         "." + base + "5 = OCTET STRING: 00 FF 0A\n", "", 0},
        {"line ends stay on one line", set(base + "5", {"4", "61 0D 0A 62", "--hex"}),
         "." + base + "5 = OCTET STRING: a\\x0D\\x0Ab\n", "", 0},
        {"escape sequences do not reach a terminal", set(base + "5", {"4", "1B 5B 31 6D", "--hex"}),
         "." + base + "5 = OCTET STRING: 1B 5B 31 6D\n", "", 0},
        {"nothing", set(base + "5", {"4", ""}), "." + base + "5 = OCTET STRING: \n", "", 0},
        {"a letter of the code page", set(base + "5", {"4", "K\xC3\xB6ln"}),
         "." + base + "5 = OCTET STRING: K\xC3\xB6ln\n", "", 0},
        {"an identifier", set(base + "6", {"OID", "1.5.0"}),
         "." + base + "6 = OBJECT IDENTIFIER: .1.3.6.1.2.1.1.5.0\n", "", 0},
        {"a fixed variable", set(base + "7", {"2", "8"}), "", "the agent refused: notWritable, error 17", 1},
        {"another type", set(base + "1", {"4", "x"}), "", "the agent refused: wrongType, error 7", 1},
        {"SEQUENCE", set(base + "1", {"SEQUENCE", "x"}), "", "a value of type 48 cannot be sent", 1},
        {"no type", set(base + "1", {"word", "x"}), "", "brindle: TYPE: \"word\" is no type", 2},
        {"a type out of range", set(base + "1", {"256", "x"}), "", "brindle: TYPE: \"256\" is no type", 2},
        {"half an octet", set(base + "5", {"4", "0", "--hex"}), "",
         "VALUE: \"0\" is not in hexadecimal octets", 2},
        {"a number has no octets", set(base + "1", {"2", "00", "--hex"}), "", "--hex: INTEGER has no octets",
         2},
        {"without the right to", {"snmp", "set", Agent(), base + "1", "2", "1"}, "", "noAccess, error 6", 1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

TEST(ToolSnmpUsage, IsChecked) {
    const std::string oid = "1.5.0";
    const std::vector<ToolRow> rows = {
        {"no identifier", {"snmp", "get", "127.0.0.1"}, "", "OID", 2},
        {"no time",
         {"snmp", "get", "127.0.0.1", oid, "--timeout", "0"},
         "",
         "--timeout: \"0\" is below 1",
         2},
        {"negative",
         {"snmp", "get", "127.0.0.1", oid, "--retries", "-1"},
         "",
         "--retries: \"-1\" is negative",
         2},
        {"a name for an identifier",
         {"snmp", "get", "127.0.0.1", "sysName.0"},
         "",
         "brindle: sysName.0: \"sysName.0\" is no identifier in dotted numbers",
         1},
        {"no agent",
         {"snmp", "get", "udp:127.0.0.1", oid},
         "",
         "brindle: 1.5.0: \"udp:127.0.0.1\" is no host or address with an optional port",
         1},
    };
    for (const ToolRow& row : rows) CheckRow(row);
}

// An agent that says yes and keeps its own.
TEST(ToolSnmpUsage, SetNoticesAnotherValue) {
    const ScriptedAgent agent([](const SnmpRequestPacket& request) {
        return ScriptedAgent::Packets{SnmpAnswerPacket(request).Value(2, "\x05").Bytes()};
    });
    CheckRow({"another value",
              {"snmp", "set", agent.Address(), "1.3.6.9", "2", "6"},
              ".1.3.6.9 = INTEGER: 5\n",
              "brindle: 1.3.6.9: the agent took the value but holds another one",
              1});
    CheckRow({"another type",
              {"snmp", "set", agent.Address(), "1.3.6.9", "65", "5"},
              ".1.3.6.9 = INTEGER: 5\n",
              "the agent took the value but holds another one",
              1});
    CheckRow({"the same",
              {"snmp", "set", agent.Address(), "1.3.6.9", "2", "0x5"},
              ".1.3.6.9 = INTEGER: 5\n",
              "",
              0});
    CheckRow({"absolute by its characters, and read from there",
              {"snmp", "set", agent.Address(), "1.25.9", "2", "5"},
              ".1.25.9 = INTEGER: 5\n",
              "",
              0});
}

// The studio with its agent: somebody turned the power down, the rule notices, the action writes to the panel.
TEST(ToolSnmpSite, TheStudioAsksItsAgent) {
    int port = 0;
    {
        const ScriptedAgent somewhere;  // its port is free again afterwards
        port = std::stoi(somewhere.Address().substr(somewhere.Address().find(':') + 1));
    }
    const ToolResult result = RunShell("folder=$(mktemp -d); port=" + std::to_string(port) + R"(
        cp -r examples/sites/studio/. "$folder"; sed -i "s/16161/$port/" "$folder/devices.ini"
        examples/sites/studio/agent $port & agent=$!
        ask() { brindle snmp get 127.0.0.1:$port $* --timeout 200; }
        for attempt in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do
            ask 1.5.0 >/dev/null 2>&1 && break; sleep 0.1
        done
        brindle snmp set 127.0.0.1:$port 1.3.6.1.4.1.8072.9999.1.1 INTEGER 420 --community private
        brindle run "$folder" --events /dev/null --for 3 | grep -o 'Power: [^,]*\|snmp poll.*A: .*'
        ask 1.3.6.1.4.1.8072.9999.3
        kill $agent; wait; rm -rf "$folder")");
    EXPECT_EQ(result.out,
              ".1.3.6.1.4.1.8072.9999.1.1 = INTEGER: 420\n"
              "snmp poll Transmitter A: Exciter = exciter 1, Power = 420\n"
              "Power: A 420 W (exciter 1)\n"
              ".1.3.6.1.4.1.8072.9999.3 = OCTET STRING: Power low, call duty desk\n");
}

}  // namespace
}  // namespace brindle::testing
