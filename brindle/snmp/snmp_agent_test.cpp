// The two functions against a real agent, against agents that answer what no agent should, and against
// nobody.
#include <gtest/gtest.h>

#include <chrono>

#include "brindle/snmp/snmp.h"
#include "testing/scripted_agent.h"
#include "testing/snmp_calls.h"
#include "testing/snmpd_process.h"

namespace brindle {
namespace {

using testing::Ber;
using testing::BerArcs;
using testing::BerNumber;
using testing::ScriptedAgent;
using testing::SnmpAnswerPacket;
using testing::SnmpCalls;
using testing::SnmpdProcess;
using testing::SnmpdVariable;
using testing::SnmpRequestPacket;
using testing::SnmpResult;
using testing::SnmpVariableAt;
using namespace std::string_literals;

constexpr const char* kName = "1.3.6.1.2.1.1.5.0";

class SnmpAgent : public ::testing::Test {
  public:
    static void SetUpTestSuite() { s_agent = std::make_unique<SnmpdProcess>("Studio North"); }
    static void TearDownTestSuite() { s_agent.reset(); }

  protected:
    void SetUp() override { ASSERT_TRUE(s_agent->IsRunning()); }
    static std::string Agent() { return s_agent->Address(); }

    SnmpCalls m_calls;

  private:
    static std::unique_ptr<SnmpdProcess> s_agent;
};
std::unique_ptr<SnmpdProcess> SnmpAgent::s_agent;

TEST_F(SnmpAgent, TellsItsName) {
    const SnmpResult got = m_calls.GetNow(SnmpVariableAt(Agent(), kName));
    EXPECT_EQ(got.result, 1U) << got.failure.text;
    EXPECT_EQ(got.variable.type, 4);
    EXPECT_EQ(got.variable.value, "Studio North");
    EXPECT_EQ(got.variable.oid, ".1.3.6.1.2.1.1.5.0");
}

TEST_F(SnmpAgent, TellsEveryTypeItHolds) {
    for (const SnmpdVariable& variable : testing::kSnmpdVariables) {
        SCOPED_TRACE(variable.configured);
        const SnmpResult got = m_calls.GetNow(SnmpVariableAt(Agent(), variable.oid));
        EXPECT_EQ(got.result, 1U) << got.failure.text;
        EXPECT_EQ(got.variable.type, variable.type);
        EXPECT_EQ(got.variable.value, variable.value);
    }
}

TEST_F(SnmpAgent, TellsAddressesCountersAndFloatsOfItsMachine) {
    // Its loopback interface: address, octets in 64 bits; its load as a floating-point number in an Opaque.
    const SnmpResult address = m_calls.GetNow(SnmpVariableAt(Agent(), "4.20.1.1.127.0.0.1"));
    EXPECT_EQ(address.result, 1U) << address.failure.text;
    EXPECT_EQ(address.variable.type, 64);
    EXPECT_EQ(address.variable.value, "\x7F") << "the text ends at the first zero byte";
    EXPECT_EQ(address.octets.str(), "\x7F\0\0\x01"s);
    const SnmpResult counter = m_calls.GetNow(SnmpVariableAt(Agent(), "31.1.1.1.6.1"));
    EXPECT_EQ(counter.result, 1U) << counter.failure.text;
    EXPECT_EQ(counter.variable.type, 70);
    EXPECT_FALSE(counter.variable.value.IsEmpty());
    const SnmpResult load = m_calls.GetNow(SnmpVariableAt(Agent(), "1.3.6.1.4.1.2021.10.1.6.1"));
    EXPECT_EQ(load.result, 1U) << load.failure.text;
    EXPECT_EQ(load.variable.type, 68);
    ASSERT_EQ(load.octets.GetLength(), 7);
    EXPECT_EQ(load.octets.Left(3), "\x9F\x78\x04");
}

TEST_F(SnmpAgent, TakesAValueAndGivesItBack) {
    for (const SnmpdVariable& variable : testing::kSnmpdVariables) {
        SCOPED_TRACE(variable.configured);
        const char* other = variable.type == 6 ? "1.3.6.1.2.1" : "0x11";
        const char* read = variable.type == 6 ? ".1.3.6.1.2.1" : variable.type == 4 ? "0x11" : "17";
        for (const auto& [text, expected] : {std::pair{other, read}, {variable.value, variable.value}}) {
            CSnmpVariable sent = SnmpVariableAt(Agent(), variable.oid, "private");
            sent.type = static_cast<std::int16_t>(variable.type);
            sent.value = text;
            const SnmpResult set = m_calls.SetNow(sent);
            EXPECT_EQ(set.result, 1U);
            EXPECT_TRUE(set.failure.ok()) << set.failure.text;
            EXPECT_EQ(m_calls.GetNow(sent).variable.value, expected);
        }
    }
}

TEST_F(SnmpAgent, RefusesAndTheSetStillSucceeds) {
    CSnmpVariable sent = SnmpVariableAt(Agent(), testing::kSnmpdFixed.oid, "private");
    sent.type = 2;
    sent.value = "8";
    const SnmpResult set = m_calls.SetNow(sent);
    EXPECT_EQ(set.result, 1U);
    EXPECT_EQ(set.failure.kind, SnmpFailureKind::kAgentError);
    EXPECT_EQ(m_calls.GetNow(sent).variable.value, "7");
}

TEST_F(SnmpAgent, HasNoSuchVariable) {
    for (const char* oid : {"1.3.6.1.4.1.8072.9999.99", "1.3.6.1.2.1.1.5.1", "1.3.6.1.6.3.99999"}) {
        SCOPED_TRACE(oid);
        CSnmpVariable sent = SnmpVariableAt(Agent(), oid);
        sent.type = 4;
        sent.value = "before";
        const SnmpResult got = m_calls.GetNow(sent);
        EXPECT_EQ(got.result, 0U);
        EXPECT_EQ(got.failure.kind, SnmpFailureKind::kException);
        EXPECT_EQ(got.variable.type, 4);
        EXPECT_EQ(got.variable.value, "before");
        EXPECT_EQ(got.variable.oid, oid);
    }
}

TEST_F(SnmpAgent, DoesNotKnowTheCommunity) {
    const SnmpResult got = m_calls.GetNow(SnmpVariableAt(Agent(), kName, "wrong"), 60, 1);
    EXPECT_EQ(got.result, 0U);
    EXPECT_EQ(got.failure.kind, SnmpFailureKind::kTimeout);
}

TEST_F(SnmpAgent, IsFoundByName) {
    const std::string port = Agent().substr(Agent().find(':'));
    EXPECT_EQ(m_calls.GetNow(SnmpVariableAt("localhost" + port, kName)).variable.value, "Studio North");
}

TEST_F(SnmpAgent, SpeaksVersion1) {
    KySnmpSetVersion(SnmpVersion::k1);
    const SnmpResult got = m_calls.GetNow(SnmpVariableAt(Agent(), kName));
    const SnmpResult missing = m_calls.GetNow(SnmpVariableAt(Agent(), "1.5.1"));
    KySnmpSetVersion(SnmpVersion::k2c);
    EXPECT_EQ(got.variable.value, "Studio North");
    EXPECT_EQ(missing.failure.kind, SnmpFailureKind::kAgentError);
    EXPECT_EQ(missing.failure.detail, 2);
}

TEST_F(SnmpAgent, Answers64AtOnce) {
    for (int round = 0; round < 5; ++round) {
        for (int i = 0; i < 64; ++i) {
            const SnmpdVariable& variable = testing::kSnmpdVariables[i % 6];
            ASSERT_TRUE(m_calls.Get(SnmpVariableAt(Agent(), variable.oid)));
        }
        const std::vector<SnmpResult> results = m_calls.Take(64);
        ASSERT_EQ(results.size(), 64U);
        for (const SnmpResult& got : results) {
            ASSERT_EQ(got.result, 1U) << got.failure.text;
            const auto* expected =
                std::find_if(std::begin(testing::kSnmpdVariables), std::end(testing::kSnmpdVariables),
                             [&](const SnmpdVariable& v) { return got.variable.oid == v.oid; });
            ASSERT_NE(expected, std::end(testing::kSnmpdVariables));
            EXPECT_EQ(got.variable.value, expected->value);
        }
    }
}

// --- agents that answer what they like ---

TEST(SnmpAnswers, AreConvertedByTheirTag) {
    struct Row {
        const char* label;
        int tag;
        std::string content;
        int type;
        std::string value;
        std::string octets;
    };
    const Row rows[] = {
        {"INTEGER", 2, "\x7F", 2, "127", ""},
        {"its sign", 2, "\xFF", 2, "-1", ""},
        {"the smallest", 2, "\x80\0\0\0"s, 2, "-2147483648", ""},
        {"BIT STRING", 3, "\x04\xF0", 3, "\x04\xF0", "\x04\xF0"},
        {"OCTET STRING with a zero byte", 4, "ab\0c"s, 4, "ab", "ab\0c"s},
        {"an empty one", 4, "", 4, "", ""},
        {"NULL", 5, "", 5, "0", ""},
        {"OBJECT IDENTIFIER", 6, BerArcs({1, 3, 6, 4294967295U}), 6, ".1.3.6.4294967295", ""},
        {"zero-zero", 6, "\0"s, 6, ".0.0", ""},
        {"IpAddress", 64, "\x0A\0\0\x01"s, 64, "\x0A", "\x0A\0\0\x01"s},
        {"Counter32 over all its bits", 65, "\0\xFF\xFF\xFF\xFF"s, 65, "4294967295", ""},
        {"Gauge32", 66, "\x01\0"s, 66, "256", ""},
        {"TimeTicks", 67, "\x05", 67, "5", ""},
        {"UInteger32", 71, "\0\x80\0\0\0"s, 71, "2147483648", ""},
        {"Counter64", 70, "\x01\0\0\0\0"s, 70, "4294967296", ""},
        {"from 2^63 on", 70, "\0\x80\0\0\0\0\0\0\0"s, 70, "-9223372036854775808", ""},
        {"over all its bits", 70, "\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, 70, "-1", ""},
        {"Opaque", 68, "\x04\x03xyz", 68, "\x04\x03xyz", "\x04\x03xyz"},
        {"a float in it", 68, "\x9F\x78\x04\x3F\x80\0\0"s, 68, "\x9F\x78\x04\x3F\x80",
         "\x9F\x78\x04\x3F\x80\0\0"s},
        {"a double", 68, "\x9F\x79\x08\xBF\xF0\0\0\0\0\0\x01"s, 68, "\x9F\x79\x08\xBF\xF0",
         "\x9F\x79\x08\xBF\xF0\0\0\0\0\0\x01"s},
        {"a signed 64-bit number", 68, "\x9F\x7A\x02\xFF\x7F"s, 68, "\x9F\x7A\x02\xFF\x7F",
         "\x9F\x7A\x02\xFF\x7F"s},
        {"its smallest", 68, "\x9F\x7A\x08\x80\0\0\0\0\0\0\0"s, 68, "\x9F\x7A\x08\x80",
         "\x9F\x7A\x08\x80\0\0\0\0\0\0\0"s},
        {"minus one", 68, "\x9F\x7A\x01\xFF"s, 68, "\x9F\x7A\x01\xFF", "\x9F\x7A\x01\xFF"s},
        {"an unsigned one", 68, "\x9F\x7B\x02\x01\x02"s, 68, "\x9F\x7B\x02\x01\x02", "\x9F\x7B\x02\x01\x02"s},
        {"its largest", 68, "\x9F\x7B\x09\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, 68, "\x9F\x7B\x09",
         "\x9F\x7B\x09\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s},
        {"a counter", 68, "\x9F\x76\x03\x01\x02\x03"s, 68, "\x9F\x76\x03\x01\x02\x03",
         "\x9F\x76\x03\x01\x02\x03"s},
        {"65,000 octets", 4, std::string(65000, 'x'), 4, std::string(65000, 'x'), std::string(65000, 'x')},
    };
    SnmpCalls calls;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const ScriptedAgent agent([&row](const SnmpRequestPacket& request) {
            return ScriptedAgent::Packets{SnmpAnswerPacket(request).Value(row.tag, row.content).Bytes()};
        });
        const SnmpResult got = calls.GetNow(SnmpVariableAt(agent.Address(), kName));
        EXPECT_EQ(got.result, 1U) << got.failure.text;
        EXPECT_EQ(got.variable.type, row.type);
        EXPECT_EQ(got.variable.value.str(), row.value);
        EXPECT_EQ(got.octets.str(), row.octets);
        EXPECT_EQ(got.variable.oid, ".1.3.6.1.2.1.1.5.0");
    }
}

TEST(SnmpAnswers, TheIdentifierIsTheAgents) {
    const ScriptedAgent agent([](const SnmpRequestPacket& request) {
        SnmpAnswerPacket answer(request);
        answer.name = BerArcs({1, 3, 6, 9});
        return ScriptedAgent::Packets{answer.Value(2, "\x05").Bytes()};
    });
    SnmpCalls calls;
    EXPECT_EQ(calls.GetNow(SnmpVariableAt(agent.Address(), kName)).variable.oid, ".1.3.6.9");
}

// What each request looks like on the wire.
TEST(SnmpRequests, CarryTheValueExactly) {
    struct Row {
        const char* label;
        int type;
        std::string value;
        std::string content;
    };
    const Row rows[] = {
        {"INTEGER", 2, "-2147483648", "\x80\0\0\0"s},
        {"INTEGER", 2, "127", "\x7F"},
        {"INTEGER", 2, "128", "\0\x80"s},
        {"BIT STRING", 3, "\x04\xF0", "\x04\xF0"},
        {"OCTET STRING", 4, "a\0\xFF"s, "a\0\xFF"s},
        {"an empty one", 4, "", ""},
        {"NULL", 5, "17", ""},
        {"OBJECT IDENTIFIER", 6, "1.3.4294967295", BerArcs({1, 3, 4294967295U})},
        {"IpAddress", 64, "\x0A\0\0\x01"s, "\x0A\0\0\x01"s},
        {"Counter32", 65, "0x20", " "},
        {"Counter32", 65, "4294967295", "\0\xFF\xFF\xFF\xFF"s},
        {"Gauge32", 66, "1", "\x01"},
        {"TimeTicks", 67, "2", "\x02"},
        {"Opaque", 68, "\x9F\x78\x04\x3F\x80\0\0"s, "\x9F\x78\x04\x3F\x80\0\0"s},
        {"Counter64", 70, "0x10", "\x10"},
        {"Counter64", 70, "10", "\x0A"},
        {"Counter64, negative as it prints", 70, "-1", "\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s},
        {"Counter64", 70, "-9223372036854775808", "\0\x80\0\0\0\0\0\0\0"s},
        {"UInteger32", 71, "2147483648", "\0\x80\0\0\0"s},
    };
    const ScriptedAgent agent([](const SnmpRequestPacket& request) {
        return ScriptedAgent::Packets{SnmpAnswerPacket(request).Bytes()};
    });
    SnmpCalls calls;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CSnmpVariable variable = SnmpVariableAt(agent.Address(), "1.3.6.1.4.1.9.1", "key");
        variable.type = static_cast<std::int16_t>(row.type);
        variable.value = CStringA(row.value);
        const SnmpResult set = calls.SetNow(variable);
        EXPECT_EQ(set.result, 1U) << set.failure.text;
        const SnmpRequestPacket sent = agent.Requests().back();
        EXPECT_EQ(sent.pdu, 0xA3);
        EXPECT_EQ(sent.version, 1);
        EXPECT_EQ(sent.community, "key");
        EXPECT_EQ(sent.type, row.type);
        EXPECT_EQ(sent.value, row.content);
        EXPECT_EQ(sent.name, BerArcs({1, 3, 6, 1, 4, 1, 9, 1}));
    }
    calls.GetNow(SnmpVariableAt(agent.Address(), "1.5.0", ""));
    const SnmpRequestPacket get = agent.Requests().back();
    EXPECT_EQ(get.pdu, 0xA0);
    EXPECT_EQ(get.type, 5);
    EXPECT_EQ(get.community, "");
    EXPECT_EQ(get.name, BerArcs({1, 3, 6, 1, 2, 1, 1, 5, 0}));
}

TEST(SnmpRequests, ASequenceIsNotSent) {
    const ScriptedAgent agent;
    SnmpCalls calls;
    CSnmpVariable variable = SnmpVariableAt(agent.Address(), kName);
    variable.type = 48;
    variable.value = "x";
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    const SnmpResult set = calls.SetNow(variable);
    EXPECT_EQ(::testing::internal::GetCapturedStderr() + ::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(set.result, 0U);
    EXPECT_EQ(set.failure.kind, SnmpFailureKind::kBadValue);
    EXPECT_TRUE(agent.Requests().empty());
}

TEST(SnmpRequests, TooLongOnesFailWithoutAWord) {
    const ScriptedAgent agent;
    SnmpCalls calls;
    CSnmpVariable variable = SnmpVariableAt(agent.Address(), kName);
    variable.type = 4;
    for (const int length : {70'000, 1'000'000}) {
        SCOPED_TRACE(length);
        variable.value = CStringA('x', length);
        const SnmpResult set = calls.SetNow(variable, 50, 0);
        EXPECT_EQ(set.result, 0U);
        EXPECT_NE(set.failure.kind, SnmpFailureKind::kNone);
    }
    CSnmpVariable secret = SnmpVariableAt(agent.Address(), kName, std::string(100'000, 'c'));
    EXPECT_EQ(calls.GetNow(secret, 50, 0).result, 0U);
    EXPECT_TRUE(agent.Requests().empty());
}

std::string Prefix(const SnmpRequestPacket& request, std::size_t length) {
    return SnmpAnswerPacket(request).Value(4, "Transmitter").Bytes().substr(0, length);
}

TEST(SnmpHostileAgents, CostATimeOut) {
    struct Row {
        const char* label;
        ScriptedAgent::Script script;
    };
    const auto answer = [](const SnmpRequestPacket& request) {
        return SnmpAnswerPacket(request).Value(4, "x");
    };
    const Row rows[] = {
        {"nothing", [](const SnmpRequestPacket&) { return ScriptedAgent::Packets(); }},
        {"every prefix of an answer",
         [](const SnmpRequestPacket& request) {
             ScriptedAgent::Packets packets;
             const std::size_t whole = Prefix(request, std::string::npos).size();
             for (std::size_t length = 0; length < whole; ++length)
                 packets.push_back(Prefix(request, length));
             return packets;
         }},
        {"another request's id",
         [answer](const SnmpRequestPacket& request) {
             SnmpAnswerPacket wrong = answer(request);
             wrong.id.back() = static_cast<char>(wrong.id.back() ^ 1);
             return ScriptedAgent::Packets{wrong.Bytes()};
         }},
        {"a request for an answer",
         [answer](const SnmpRequestPacket& request) {
             SnmpAnswerPacket wrong = answer(request);
             wrong.pdu = 0xA0;
             return ScriptedAgent::Packets{wrong.Bytes()};
         }},
        {"another protocol version",
         [answer](const SnmpRequestPacket& request) {
             SnmpAnswerPacket wrong = answer(request);
             wrong.version = 17;
             return ScriptedAgent::Packets{wrong.Bytes()};
         }},
        {"a length far too large",
         [answer](const SnmpRequestPacket& request) {
             SnmpAnswerPacket wrong = answer(request);
             wrong.value = "\x04\x84\xFF\xFF\xFF\xFFx";
             return ScriptedAgent::Packets{wrong.Bytes()};
         }},
        {"a value of no length",
         [answer](const SnmpRequestPacket& request) {
             SnmpAnswerPacket wrong = answer(request);
             wrong.value = "\x02";
             return ScriptedAgent::Packets{wrong.Bytes()};
         }},
        {"a number of a hundred octets",
         [answer](const SnmpRequestPacket& request) {
             return ScriptedAgent::Packets{answer(request).Value(2, std::string(100, '\x7F')).Bytes()};
         }},
        {"a Counter64 of twelve octets",
         [answer](const SnmpRequestPacket& request) {
             return ScriptedAgent::Packets{answer(request).Value(70, std::string(12, '\x7F')).Bytes()};
         }},
        {"65,000 octets of noise",
         [](const SnmpRequestPacket&) {
             return ScriptedAgent::Packets{std::string(65000, '\x30'), std::string(65000, '\xFF')};
         }},
        {"a value of a type nobody knows",
         [answer](const SnmpRequestPacket& request) {
             return ScriptedAgent::Packets{answer(request).Value(9, "1.5").Bytes()};
         }},
        {"a SEQUENCE",
         [answer](const SnmpRequestPacket& request) {
             return ScriptedAgent::Packets{answer(request).Value(48, "\x04\x01x").Bytes()};
         }},
    };
    SnmpCalls calls;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const ScriptedAgent agent(row.script);
        CSnmpVariable variable = SnmpVariableAt(agent.Address(), kName);
        variable.type = 77;
        const SnmpResult got = calls.GetNow(variable, 80, 1);
        EXPECT_EQ(got.result, 0U);
        EXPECT_EQ(got.failure.kind, SnmpFailureKind::kTimeout) << got.failure.text;
        EXPECT_EQ(got.variable.type, 77);
        EXPECT_EQ(agent.Requests().size(), 2U) << "one retry";
    }
}

TEST(SnmpHostileAgents, WithoutAValueAreBadAnswers) {
    struct Row {
        const char* label;
        std::string value;
        bool binding;
    };
    const Row rows[] = {{"no binding at all", "", false}, {"an NSAP", Ber(69, "abc"), true}};
    SnmpCalls calls;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const ScriptedAgent agent([&row](const SnmpRequestPacket& request) {
            SnmpAnswerPacket answer(request);
            answer.value = row.value;
            if (row.binding) return ScriptedAgent::Packets{answer.Bytes()};
            const std::string pdu = Ber(2, request.id) + Ber(2, "\0"s) + Ber(2, "\0"s) + Ber(0x30, "");
            return ScriptedAgent::Packets{
                Ber(0x30, Ber(2, "\x01") + Ber(4, request.community) + Ber(0xA2, pdu))};
        });
        for (const bool set : {false, true}) {
            SCOPED_TRACE(set);
            CSnmpVariable variable = SnmpVariableAt(agent.Address(), kName);
            variable.type = 4;
            const SnmpResult got = set ? calls.SetNow(variable, 200, 0) : calls.GetNow(variable, 200, 0);
            EXPECT_EQ(got.result, 0U);
            EXPECT_EQ(got.failure.kind, SnmpFailureKind::kBadAnswer) << got.failure.text;
        }
    }
}

TEST(SnmpHostileAgents, MayAnswerTwiceAndLate) {
    // Wrong ones first, the right one three times, and the answer to the next request is still its own.
    int round = 0;
    const ScriptedAgent agent([&round](const SnmpRequestPacket& request) {
        SnmpAnswerPacket wrong(request);
        wrong.id = BerNumber(1);
        SnmpAnswerPacket right = SnmpAnswerPacket(request).Value(2, BerNumber(++round));
        return ScriptedAgent::Packets{wrong.Bytes(), "noise", right.Bytes(), right.Bytes(), right.Bytes()};
    });
    SnmpCalls calls;
    for (int i = 1; i <= 5; ++i)
        EXPECT_EQ(calls.GetNow(SnmpVariableAt(agent.Address(), kName)).variable.value,
                  std::to_string(i).c_str());
}

TEST(SnmpHostileAgents, MayAnswerWithSeveralBindingsOfWhichTheFirstCounts) {
    const ScriptedAgent agent([](const SnmpRequestPacket& request) {
        SnmpAnswerPacket answer(request);
        answer.moreBindings = Ber(0x30, Ber(6, BerArcs({1, 3, 9})) + Ber(4, "second"));
        return ScriptedAgent::Packets{answer.Value(4, "first").Bytes()};
    });
    SnmpCalls calls;
    EXPECT_EQ(calls.GetNow(SnmpVariableAt(agent.Address(), kName)).variable.value, "first");
}

TEST(SnmpHostileAgents, CannotPutTheTimeOutOff) {
    // Packets of another request without end, as fast as they go.
    const ScriptedAgent agent(
        [](const SnmpRequestPacket& request) {
            SnmpAnswerPacket wrong(request);
            wrong.id = BerNumber(1);
            return ScriptedAgent::Packets{wrong.Bytes()};
        },
        ScriptedAgent::Manner::kEndlessly);
    SnmpCalls calls;
    const SnmpResult got = calls.GetNow(SnmpVariableAt(agent.Address(), kName), 50, 1);
    EXPECT_EQ(got.result, 0U);
    EXPECT_EQ(got.failure.kind, SnmpFailureKind::kTimeout);
}

}  // namespace
}  // namespace brindle
