// The two functions over agents in memory: what they do with their variable, their call-back and their
// session.
#include "brindle/snmp/snmp.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include "brindle/platform/fake/snmp_manager_fake.h"
#include "brindle/platform/service.h"
#include "testing/snmp_calls.h"

namespace brindle {
namespace {

using testing::SnmpCalls;
using testing::SnmpResult;
using testing::SnmpVariableAt;

constexpr const char* kAgent = "tx1:1161";

class SnmpFunctions : public ::testing::Test {
  protected:
    SnmpFunctions() {
        m_manager.AddAgent(kAgent, "public", "private");
        Put(".1.3.6.1.2.1.1.5.0", {4, 0, "Transmitter A", {}}, FakeSnmpManager::Access::kRead);
        Put(".1.3.6.1.4.1.9.1", {2, 1, {}, {}}, FakeSnmpManager::Access::kWrite);
        Put(".1.3.6.1.2.1.1.25.1", {65, 5, {}, {}}, FakeSnmpManager::Access::kWrite);
    }
    ~SnmpFunctions() override { EXPECT_EQ(m_manager.OpenSessions(), 0); }

    void Put(const char* oid, const SnmpValue& value, FakeSnmpManager::Access access) {
        m_manager.Put(kAgent, oid, value, access);
    }
    std::string SentName(std::size_t index) {
        std::string text;
        m_manager.OidToText(m_manager.Requests().at(index).binding.name, text);
        return text;
    }

    FakeSnmpManager m_manager;
    ScopedService<SnmpManager> m_installed{&SetSnmpManager, m_manager};
    SnmpCalls m_calls;
};

CSnmpVariable WithHostFields() {
    CSnmpVariable variable = SnmpVariableAt(kAgent, "1.3.6.1.2.1.1.5.0");
    variable.hostSmall = -7;
    for (int i = 0; i < 5; ++i) variable.hostTexts[i] = CStringA(static_cast<char>('a' + i), 3);
    variable.hostNumbers[0] = INT32_MIN;
    variable.hostNumbers[1] = 12;
    variable.hostNames[0] = "first";
    variable.hostNames[1] = "second";
    variable.hostFlag = true;
    return variable;
}

TEST(SnmpVariable, BeginsEmptyWithTypeNull) {
    const CSnmpVariable variable;
    for (const CStringA& text : {variable.agent, variable.community, variable.oid, variable.value,
                                 variable.hostTexts[0], variable.hostTexts[4], variable.hostNames[1]})
        EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(variable.type, 5);
    EXPECT_EQ(variable.hostSmall, 0);
    EXPECT_EQ(variable.hostNumbers[1], 0);
    EXPECT_FALSE(variable.hostFlag);
    EXPECT_FALSE(variable.skipRequest);
}

TEST_F(SnmpFunctions, AGetFillsInIdentifierTypeAndValue) {
    const SnmpResult got = m_calls.GetNow(SnmpVariableAt(kAgent, "1.3.6.1.2.1.1.5.0"));
    EXPECT_EQ(got.result, 1U);
    EXPECT_EQ(got.variable.oid, ".1.3.6.1.2.1.1.5.0");
    EXPECT_EQ(got.variable.type, 4);
    EXPECT_EQ(got.variable.value, "Transmitter A");
    EXPECT_TRUE(got.failure.ok());
    EXPECT_EQ(got.octets, "Transmitter A");
    EXPECT_NE(got.thread, std::this_thread::get_id());
    EXPECT_EQ(got.userValue, reinterpret_cast<unsigned long>(&m_calls)) << "unchanged, all of it";
}

TEST_F(SnmpFunctions, HandTimeoutRetriesAndCommunityOn) {
    struct Row {
        const char* label;
        long timeout;
        int retries;
        std::int64_t expectedTimeout;
        int expectedRetries;
    };
    const Row rows[] = {{"as given", 1234, 3, 1234, 3},
                        {"none", 0, 0, 1, 0},
                        {"negative", -5, -5, 1, 0},
                        {"beyond 32 bits", 0x100000000L, 1, INT32_MAX, 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_calls.GetNow(SnmpVariableAt(kAgent, "1.5.0", "private"), row.timeout, row.retries);
        const SnmpTarget target = m_manager.Requests().back().target;
        EXPECT_EQ(target.agent, kAgent);
        EXPECT_EQ(target.community, "private");
        EXPECT_EQ(target.timeout.count(), row.expectedTimeout);
        EXPECT_EQ(target.retries, row.expectedRetries);
    }
}

TEST_F(SnmpFunctions, CarryTheHostsFields) {
    for (const bool set : {false, true}) {
        SCOPED_TRACE(set);
        const CSnmpVariable sent = WithHostFields();
        const CSnmpVariable got = (set ? m_calls.SetNow(sent) : m_calls.GetNow(sent)).variable;
        EXPECT_EQ(got.agent, sent.agent);
        EXPECT_EQ(got.community, sent.community);
        EXPECT_EQ(got.hostSmall, -7);
        for (int i = 0; i < 5; ++i) EXPECT_EQ(got.hostTexts[i], sent.hostTexts[i]) << i;
        EXPECT_EQ(got.hostNumbers[0], INT32_MIN);
        EXPECT_EQ(got.hostNumbers[1], 12);
        EXPECT_EQ(got.hostNames[0], "first");
        EXPECT_EQ(got.hostNames[1], "second");
        EXPECT_TRUE(got.hostFlag);
        EXPECT_FALSE(got.skipRequest);
    }
}

TEST_F(SnmpFunctions, FailedGetsLeaveTheCopyAsItWasSent) {
    struct Row {
        const char* label;
        const char* agent;
        const char* oid;
        SnmpFailureKind kind;
    };
    const Row rows[] = {
        {"no agent", "udp:tx1:161", "1.5.0", SnmpFailureKind::kBadAgent},
        {"an unknown name", "tx9", "1.5.0", SnmpFailureKind::kUnreachable},
        {"no identifier", kAgent, "sysName.0", SnmpFailureKind::kBadIdentifier},
        {"nothing", kAgent, "", SnmpFailureKind::kBadIdentifier},
        {"no such variable", kAgent, "1.99.0", SnmpFailureKind::kException},
        {"nobody there", "192.0.2.1", "1.5.0", SnmpFailureKind::kTimeout},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CSnmpVariable variable = SnmpVariableAt(row.agent, row.oid);
        variable.type = 77;
        variable.value = "as sent";
        const SnmpResult got = m_calls.GetNow(variable);
        EXPECT_EQ(got.result, 0U);
        EXPECT_EQ(got.variable.oid, row.oid);
        EXPECT_EQ(got.variable.type, 77);
        EXPECT_EQ(got.variable.value, "as sent");
        EXPECT_EQ(got.failure.kind, row.kind);
        EXPECT_FALSE(got.failure.text.IsEmpty());
        EXPECT_TRUE(got.octets.IsEmpty());
    }
}

TEST_F(SnmpFunctions, ASkippedGetOpensAndClosesAndReportsFailure) {
    CSnmpVariable variable = SnmpVariableAt(kAgent, "1.5.0");
    variable.skipRequest = true;
    const SnmpResult got = m_calls.GetNow(variable);
    EXPECT_EQ(got.result, 0U);
    EXPECT_EQ(got.failure.kind, SnmpFailureKind::kSkipped);
    EXPECT_TRUE(got.variable.skipRequest);
    EXPECT_EQ(got.variable.type, 5);
    EXPECT_TRUE(m_manager.Requests().empty());
    variable.agent = "tx9";
    EXPECT_EQ(m_calls.GetNow(variable).failure.kind, SnmpFailureKind::kUnreachable) << "it does open";
}

TEST_F(SnmpFunctions, ASetDoesNotLookAtTheSkipFlag) {
    CSnmpVariable variable = SnmpVariableAt(kAgent, "1.3.6.1.4.1.9.1", "private");
    variable.type = 2;
    variable.skipRequest = true;
    EXPECT_EQ(m_calls.SetNow(variable).result, 1U);
    EXPECT_EQ(m_manager.Requests().size(), 1U);
}

TEST_F(SnmpFunctions, ASetSendsTheValueOfItsType) {
    struct Row {
        const char* label;
        int type;
        const char* value;
        std::uint64_t number;
        const char* octets;
    };
    const Row rows[] = {{"Counter64, hexadecimal", 70, "0x10", 16, ""},
                        {"Counter64, decimal", 70, "10", 10, ""},
                        {"Counter32, hexadecimal", 65, "0x20", 32, ""},
                        {"INTEGER", 2, "-1", 0xFFFFFFFFU, ""},
                        {"OCTET STRING", 4, "On air", 0, "On air"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CSnmpVariable variable = SnmpVariableAt(kAgent, "1.3.6.1.4.1.9.1", "private");
        variable.type = static_cast<std::int16_t>(row.type);
        variable.value = row.value;
        EXPECT_EQ(m_calls.SetNow(variable).result, 1U);
        const FakeSnmpManager::Sent sent = m_manager.Requests().back();
        EXPECT_EQ(sent.operation, SnmpOperation::kSet);
        EXPECT_EQ(sent.binding.value.tag, row.type);
        EXPECT_EQ(sent.binding.value.number, row.number);
        EXPECT_EQ(sent.binding.value.octets, row.octets);
    }
}

TEST_F(SnmpFunctions, OnlyASetMakesIdentifiersAbsoluteByTheirFirstCharacters) {
    struct Row {
        const char* oid;
        const char* get;
        const char* set;
    };
    const Row rows[] = {{"1.3.6.1.4.1.9.1", ".1.3.6.1.4.1.9.1", ".1.3.6.1.4.1.9.1"},
                        {"1.25.1", ".1.3.6.1.2.1.1.25.1", ".1.25.1"},
                        {"1.31.1", ".1.3.6.1.2.1.1.31.1", ".1.31.1"},
                        {"1.5.0", ".1.3.6.1.2.1.1.5.0", ".1.3.6.1.2.1.1.5.0"},
                        {".1.2.3", ".1.2.3", ".1.2.3"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.oid);
        CSnmpVariable variable = SnmpVariableAt(kAgent, row.oid, "private");
        variable.type = 2;
        m_calls.GetNow(variable);
        EXPECT_EQ(SentName(m_manager.Requests().size() - 1), row.get);
        EXPECT_EQ(m_calls.SetNow(variable).variable.oid, row.oid) << "the copy keeps its text";
        EXPECT_EQ(SentName(m_manager.Requests().size() - 1), row.set);
    }
}

TEST_F(SnmpFunctions, ARefusedSetIsASuccessWithAReason) {
    CSnmpVariable variable = SnmpVariableAt(kAgent, "1.5.0", "private");
    variable.type = 4;
    variable.value = "other";
    const SnmpResult got = m_calls.SetNow(variable);
    EXPECT_EQ(got.result, 1U);
    EXPECT_EQ(got.failure.kind, SnmpFailureKind::kAgentError);
    EXPECT_EQ(got.failure.detail, 17);
    EXPECT_EQ(got.variable.value, "other");
}

TEST_F(SnmpFunctions, FailedSetsSayWhy) {
    struct Row {
        const char* label;
        const char* agent;
        const char* oid;
        int type;
        const char* value;
        SnmpFailureKind kind;
    };
    const Row rows[] = {
        {"no agent", "tx1:x", "1.5.0", 4, "", SnmpFailureKind::kBadAgent},
        {"no identifier", kAgent, "1.3.x", 4, "", SnmpFailureKind::kBadIdentifier},
        {"SEQUENCE cannot be sent", kAgent, "1.5.0", 48, "x", SnmpFailureKind::kBadValue},
        {"a type nobody knows", kAgent, "1.5.0", 9, "1", SnmpFailureKind::kBadValue},
        {"a negative type", kAgent, "1.5.0", -1, "1", SnmpFailureKind::kBadValue},
        {"a value that is no identifier", kAgent, "1.5.0", 6, "x", SnmpFailureKind::kBadValue},
        {"an address as a text", kAgent, "1.5.0", 64, "10.0.0.1", SnmpFailureKind::kBadValue},
        {"nobody there", "192.0.2.1", "1.5.0", 2, "1", SnmpFailureKind::kTimeout},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CSnmpVariable variable = SnmpVariableAt(row.agent, row.oid, "private");
        variable.type = static_cast<std::int16_t>(row.type);
        variable.value = row.value;
        const SnmpResult got = m_calls.SetNow(variable);
        EXPECT_EQ(got.result, 0U);
        EXPECT_EQ(got.failure.kind, row.kind) << got.failure.text;
        EXPECT_EQ(got.variable.value, row.value);
    }
}

TEST_F(SnmpFunctions, CopyTheVariableAtOnce) {
    CSnmpVariable variable = SnmpVariableAt(kAgent, "1.5.0");
    ASSERT_EQ(KySnmpGetValue(&variable, SnmpCalls::OnResult, m_calls.UserValue(), 100, 0), 1);
    variable = CSnmpVariable();
    const SnmpResult got = m_calls.TakeOne();
    EXPECT_EQ(got.variable.value, "Transmitter A");
}

TEST_F(SnmpFunctions, MayGoWithoutACallBack) {
    CSnmpVariable variable = SnmpVariableAt(kAgent, "1.3.6.1.4.1.9.1", "private");
    variable.type = 2;
    variable.value = "5";
    ASSERT_EQ(KySnmpSetValue(&variable, nullptr, 0, 100, 0), 1);
    ASSERT_EQ(KySnmpGetValue(&variable, nullptr, 0, 100, 0), 1);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (m_manager.Requests().size() < 2 || m_manager.OpenSessions() > 0) {
        ASSERT_LT(std::chrono::steady_clock::now(), end);
        std::this_thread::yield();
    }
}

TEST_F(SnmpFunctions, RefuseNoVariable) {
    EXPECT_EQ(KySnmpGetValue(nullptr, nullptr, 0, 100, 0), 0);
    EXPECT_EQ(KySnmpSetValue(nullptr, nullptr, 0, 100, 0), 0);
}

TEST_F(SnmpFunctions, TheReasonIsKnownInsideTheCallBackOnly) {
    CSnmpVariable variable = SnmpVariableAt(kAgent, "none");
    EXPECT_TRUE(KySnmpLastFailure(&variable).ok());
    EXPECT_TRUE(KySnmpLastFailure(nullptr).ok());
    EXPECT_TRUE(KySnmpLastOctets(nullptr).IsEmpty());
    struct Seen {
        SnmpFailureKind own = SnmpFailureKind::kNone;
        SnmpFailureKind other = SnmpFailureKind::kNone;
        SnmpFailureKind elsewhere = SnmpFailureKind::kNone;
        std::mutex mutex;
        std::condition_variable changed;
        bool done = false;
    } seen;
    const auto look = [](CSnmpVariable* copy, unsigned long userValue, unsigned int) {
        auto& result = *reinterpret_cast<Seen*>(userValue);
        const CSnmpVariable another;
        result.own = KySnmpLastFailure(copy).kind;
        result.other = KySnmpLastFailure(&another).kind;
        std::thread([&] { result.elsewhere = KySnmpLastFailure(copy).kind; }).join();
        const std::lock_guard lock(result.mutex);
        result.done = true;
        result.changed.notify_all();
    };
    ASSERT_EQ(KySnmpGetValue(&variable, look, reinterpret_cast<unsigned long>(&seen), 100, 0), 1);
    {
        std::unique_lock lock(seen.mutex);
        ASSERT_TRUE(seen.changed.wait_for(lock, std::chrono::minutes(1), [&] { return seen.done; }));
    }
    EXPECT_EQ(seen.own, SnmpFailureKind::kBadIdentifier);
    EXPECT_EQ(seen.other, SnmpFailureKind::kNone);
    EXPECT_EQ(seen.elsewhere, SnmpFailureKind::kNone);
}

TEST_F(SnmpFunctions, TellHowAValueReadsBack) {
    struct Row {
        int type;
        std::string value;
        const char* expected;
    };
    const Row rows[] = {{65, "0x20", "32"},
                        {66, "-1", "4294967295"},
                        {2, "010", "8"},
                        {2, "9999999999", "2147483647"},
                        {70, "0xFFFFFFFFFFFFFFFF", "-1"},
                        {6, "1.5.0", ".1.3.6.1.2.1.1.5.0"},
                        {6, "sysName", ""},
                        {4, "On air", "On air"},
                        {64, std::string("\x0A\0\0\x01", 4), "\x0A"},
                        {5, "17", "0"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(KySnmpPlainValue(row.type, CStringA(row.value)), row.expected);
    }
}

TEST_F(SnmpFunctions, SpeakTheVersionThatWasSet) {
    EXPECT_EQ(KySnmpSetVersion(SnmpVersion::k1), SnmpVersion::k2c);
    const SnmpResult got = m_calls.GetNow(SnmpVariableAt(kAgent, "1.99.0"));
    EXPECT_EQ(KySnmpSetVersion(SnmpVersion::k2c), SnmpVersion::k1);
    EXPECT_EQ(m_manager.Requests().back().target.version, SnmpVersion::k1);
    EXPECT_EQ(got.failure.kind, SnmpFailureKind::kAgentError);
    EXPECT_EQ(got.failure.detail, 2);
    m_calls.GetNow(SnmpVariableAt(kAgent, "1.5.0"));
    EXPECT_EQ(m_manager.Requests().back().target.version, SnmpVersion::k2c);
}

}  // namespace
}  // namespace brindle
