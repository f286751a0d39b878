// The SNMP manager's contract, over net-snmp with a real agent and over the fake one.
#include "brindle/platform/snmp_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "brindle/framework/number_text.h"
#include "brindle/platform/fake/snmp_manager_fake.h"
#include "brindle/platform/service.h"
#include "brindle/platform/snmp_text.h"
#include "testing/scripted_agent.h"
#include "testing/snmpd_process.h"

namespace brindle {
namespace {

using testing::kSnmpdFixed;
using testing::kSnmpdVariables;
using testing::ScriptedAgent;
using testing::SnmpdProcess;
using testing::SnmpdVariable;

constexpr const char* kNameOid = "1.3.6.1.2.1.1.5.0";

SnmpOid Oid(std::string_view text) {
    SnmpOid oid;
    EXPECT_TRUE(ReadSnmpOid(text, oid)) << text;
    return oid;
}

SnmpValue ValueOf(const SnmpdVariable& variable) {
    SnmpValue value;
    value.tag = variable.type;
    if (variable.type == snmp_tag::kOctetString)
        value.octets = variable.value;
    else if (variable.type == snmp_tag::kObjectIdentifier)
        value.identifier = Oid(variable.value);
    else if (variable.type == snmp_tag::kInteger)
        value.number = static_cast<std::uint32_t>(ReadInt(variable.value));
    else
        value.number = ReadUnsignedLong(variable.value, 10).value;
    return value;
}

// Both services with the same agent behind them: snmpd, and its likeness in memory.
class SnmpManagerContract : public ::testing::TestWithParam<bool> {
  public:
    static void SetUpTestSuite() { s_agent = std::make_unique<SnmpdProcess>("contract-agent"); }
    static void TearDownTestSuite() { s_agent.reset(); }

  protected:
    void SetUp() override {
        ASSERT_TRUE(s_agent->IsRunning());
        m_fake.AddAgent(Agent(), "public", "private");
        for (const SnmpdVariable& variable : kSnmpdVariables)
            m_fake.Put(Agent(), variable.oid, ValueOf(variable), FakeSnmpManager::Access::kWrite);
        m_fake.Put(Agent(), kSnmpdFixed.oid, ValueOf(kSnmpdFixed), FakeSnmpManager::Access::kRead);
        SnmpValue name;
        name.tag = snmp_tag::kOctetString;
        name.octets = "contract-agent";
        m_fake.Put(Agent(), kNameOid, name, FakeSnmpManager::Access::kRead);
    }

    bool IsReal() const { return GetParam(); }
    SnmpManager& service() { return IsReal() ? BackendSnmpManager() : static_cast<SnmpManager&>(m_fake); }
    static std::string Agent() { return s_agent->Address(); }
    static SnmpTarget Target(const std::string& community = "public") {
        SnmpTarget target;
        target.agent = Agent();
        target.community = community;
        target.timeout = std::chrono::milliseconds(5000);
        return target;
    }

    // One request on a session of its own.
    bool Request(const SnmpTarget& target, SnmpOperation operation, SnmpBinding& binding,
                 SnmpFailure& failure) {
        SnmpSession* session = service().Open(target, failure);
        EXPECT_NE(session, nullptr) << failure.text;
        const bool answered = session && service().Request(*session, operation, binding, failure);
        service().Close(session);
        return answered;
    }
    bool Get(const SnmpTarget& target, SnmpBinding& binding, SnmpFailure& failure) {
        return Request(target, SnmpOperation::kGet, binding, failure);
    }

  private:
    static std::unique_ptr<SnmpdProcess> s_agent;
    FakeSnmpManager m_fake;
};
std::unique_ptr<SnmpdProcess> SnmpManagerContract::s_agent;

INSTANTIATE_TEST_SUITE_P(Managers, SnmpManagerContract, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "NetSnmp" : "Fake"; });

TEST_P(SnmpManagerContract, OpensHostsAndAddressesOnly) {
    struct Row {
        const char* label;
        const char* agent;
        SnmpFailureKind expected;
    };
    const Row rows[] = {
        {"an address", "127.0.0.1", SnmpFailureKind::kNone},
        {"with a port", "127.0.0.1:1", SnmpFailureKind::kNone},
        {"IPv6", "::1", SnmpFailureKind::kNone},
        {"IPv6 with a port", "[::1]:65535", SnmpFailureKind::kNone},
        {"nothing", "", SnmpFailureKind::kBadAgent},
        {"a port alone", ":161", SnmpFailureKind::kBadAgent},
        {"port 0", "127.0.0.1:0", SnmpFailureKind::kBadAgent},
        {"port too large", "127.0.0.1:65536", SnmpFailureKind::kBadAgent},
        {"a transport", "udp:127.0.0.1", SnmpFailureKind::kBadAgent},
        {"a transport with a port", "tcp:127.0.0.1:161", SnmpFailureKind::kBadAgent},
        {"a socket file", "unix:/tmp/agent", SnmpFailureKind::kBadAgent},
        {"a path", "/tmp/agent", SnmpFailureKind::kBadAgent},
        {"a blank", "127.0.0.1 ", SnmpFailureKind::kBadAgent},
        {"no label of a name is that long",
         "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa",
         SnmpFailureKind::kUnreachable},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        SnmpTarget target;
        target.agent = row.agent;
        SnmpFailure failure;
        SnmpSession* session = service().Open(target, failure);
        EXPECT_EQ(session != nullptr, row.expected == SnmpFailureKind::kNone);
        EXPECT_EQ(failure.kind, row.expected) << failure.text;
        EXPECT_EQ(failure.text.IsEmpty(), failure.ok());
        service().Close(session);
    }
    service().Close(nullptr);
}

TEST_P(SnmpManagerContract, ReadsEveryTypeTheAgentHolds) {
    for (const SnmpdVariable& variable : kSnmpdVariables) {
        SCOPED_TRACE(variable.configured);
        SnmpBinding binding{Oid(variable.oid), {}};
        SnmpFailure failure;
        ASSERT_TRUE(Get(Target(), binding, failure)) << failure.text;
        EXPECT_TRUE(failure.ok());
        const SnmpValue expected = ValueOf(variable);
        EXPECT_EQ(binding.name, Oid(variable.oid));
        EXPECT_EQ(binding.value.tag, expected.tag);
        EXPECT_EQ(static_cast<std::uint32_t>(binding.value.number),
                  static_cast<std::uint32_t>(expected.number));
        EXPECT_EQ(binding.value.octets, expected.octets);
        EXPECT_EQ(binding.value.identifier, expected.identifier);
    }
}

TEST_P(SnmpManagerContract, WritesAndReadsBackEveryType) {
    for (const SnmpdVariable& variable : kSnmpdVariables) {
        SCOPED_TRACE(variable.configured);
        const SnmpValue before = ValueOf(variable);
        SnmpValue other = before;
        if (other.tag == snmp_tag::kOctetString)
            other.octets += std::string("\0again", 6);
        else if (other.tag == snmp_tag::kObjectIdentifier)
            other.identifier.push_back(4294967295U);
        else
            other.number = 4242;
        for (const SnmpValue& value : {other, before}) {
            SnmpBinding binding{Oid(variable.oid), value};
            SnmpFailure failure;
            ASSERT_TRUE(Request(Target("private"), SnmpOperation::kSet, binding, failure)) << failure.text;
            EXPECT_TRUE(failure.ok()) << failure.text;
            SnmpBinding read{Oid(variable.oid), {}};
            ASSERT_TRUE(Get(Target(), read, failure)) << failure.text;
            EXPECT_EQ(static_cast<std::uint32_t>(read.value.number),
                      static_cast<std::uint32_t>(value.number));
            EXPECT_EQ(read.value.octets, value.octets);
            EXPECT_EQ(read.value.identifier, value.identifier);
        }
    }
}

TEST_P(SnmpManagerContract, AnswersOneRequestAfterTheOtherOnOneSession) {
    SnmpFailure failure;
    SnmpSession* session = service().Open(Target(), failure);
    ASSERT_NE(session, nullptr);
    for (int i = 0; i < 3; ++i) {
        SnmpBinding binding{Oid(kNameOid), {}};
        EXPECT_TRUE(service().Request(*session, SnmpOperation::kGet, binding, failure));
        EXPECT_EQ(binding.value.octets, "contract-agent");
        SnmpBinding missing{Oid("1.3.6.1.4.1.8072.9999.99"), {}};
        EXPECT_TRUE(service().Request(*session, SnmpOperation::kGet, missing, failure));
        EXPECT_EQ(failure.kind, SnmpFailureKind::kException);
    }
    service().Close(session);
}

TEST_P(SnmpManagerContract, SaysWhatTheAgentRefused) {
    struct Row {
        const char* label;
        SnmpVersion version;
        SnmpOperation operation;
        const char* community;
        const char* oid;
        SnmpFailureKind kind;
        int detail;
    };
    const auto get = SnmpOperation::kGet;
    const auto set = SnmpOperation::kSet;
    const Row rows[] = {
        {"an unknown variable", SnmpVersion::k2c, get, "public", "1.3.6.1.4.1.8072.9999.99",
         SnmpFailureKind::kException, snmp_tag::kNoSuchObject},
        {"in version 1", SnmpVersion::k1, get, "public", "1.3.6.1.4.1.8072.9999.99",
         SnmpFailureKind::kAgentError, 2},
        {"a write without the right to", SnmpVersion::k2c, set, "public", kSnmpdVariables[0].oid,
         SnmpFailureKind::kAgentError, 6},
        {"in version 1", SnmpVersion::k1, set, "public", kSnmpdVariables[0].oid, SnmpFailureKind::kAgentError,
         2},
        {"a write of a fixed variable", SnmpVersion::k2c, set, "private", kSnmpdFixed.oid,
         SnmpFailureKind::kAgentError, 17},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        SnmpTarget target = Target(row.community);
        target.version = row.version;
        SnmpBinding binding{Oid(row.oid), {}};
        binding.value.tag = snmp_tag::kInteger;
        SnmpFailure failure;
        EXPECT_TRUE(Request(target, row.operation, binding, failure));
        EXPECT_EQ(failure.kind, row.kind) << failure.text;
        EXPECT_EQ(failure.detail, row.detail);
        EXPECT_FALSE(failure.text.IsEmpty());
    }
}

TEST_P(SnmpManagerContract, SendsNothingThatCannotBeSent) {
    struct Row {
        const char* label;
        int tag;
        std::string octets;
        SnmpOid identifier;
    };
    const Row rows[] = {{"SEQUENCE", snmp_tag::kSequence, "x", {}},
                        {"a type nobody knows", 1, "x", {}},
                        {"an exception", snmp_tag::kNoSuchObject, "", {}},
                        {"below a byte", -1, "", {}},
                        {"above a byte", 260, "", {}},
                        {"three octets", snmp_tag::kIpAddress, "abc", {}},
                        {"no unused bits", snmp_tag::kBitString, "", {}},
                        {"eight unused bits", snmp_tag::kBitString, "\x08", {}},
                        {"no identifier", snmp_tag::kObjectIdentifier, "", {}},
                        {"one arc", snmp_tag::kObjectIdentifier, "", {1}},
                        {"no such first arc", snmp_tag::kObjectIdentifier, "", {3, 1}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        SnmpBinding binding{Oid(kSnmpdVariables[0].oid), {row.tag, 0, row.octets, row.identifier}};
        SnmpFailure failure;
        EXPECT_FALSE(Request(Target("private"), SnmpOperation::kSet, binding, failure));
        EXPECT_EQ(failure.kind, SnmpFailureKind::kBadValue) << failure.text;
        EXPECT_EQ(binding.value.tag, row.tag);
    }
    SnmpBinding nameless;
    SnmpFailure failure;
    EXPECT_FALSE(Get(Target(), nameless, failure));
    EXPECT_EQ(failure.kind, SnmpFailureKind::kBadIdentifier);
}

TEST_P(SnmpManagerContract, TimesOutWhereNobodyAnswers) {
    const ScriptedAgent silent;  // for the fake one: an address without an agent
    struct Row {
        const char* label;
        std::string agent;
        const char* community;
    };
    const Row rows[] = {{"nobody there", silent.Address(), "public"},
                        {"a community it does not know", Agent(), "wrong"},
                        {"no community", Agent(), ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        SnmpTarget target = Target(row.community);
        target.agent = row.agent;
        target.timeout = std::chrono::milliseconds(60);
        target.retries = 1;
        SnmpBinding binding{Oid(kNameOid), {}};
        SnmpFailure failure;
        EXPECT_FALSE(Get(target, binding, failure));
        EXPECT_EQ(failure.kind, SnmpFailureKind::kTimeout);
        EXPECT_EQ(failure.text, "no answer within 60 ms, 2 attempts");
        EXPECT_EQ(binding.name, Oid(kNameOid));
        EXPECT_EQ(binding.value.tag, snmp_tag::kNull);
    }
}

TEST(SnmpManager, IsTheBackendsUntilAnotherIsInstalled) {
    EXPECT_EQ(&CurrentSnmpManager(), &BackendSnmpManager());
    FakeSnmpManager fake;
    {
        const ScopedService<SnmpManager> installed(&SetSnmpManager, fake);
        EXPECT_EQ(&CurrentSnmpManager(), &fake);
    }
    EXPECT_EQ(&CurrentSnmpManager(), &BackendSnmpManager());
}

}  // namespace
}  // namespace brindle
