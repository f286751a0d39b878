// Texts of identifiers and agents.
#include "brindle/platform/snmp_text.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

std::string Many(int arcs) {
    std::string text;
    for (int i = 0; i < arcs; ++i) text += ".1";
    return text;
}

TEST(SnmpOidText, ReadsAbsoluteAndRelativeOnes) {
    struct Row {
        const char* label;
        std::string text;
        const char* expected;  // null: none
    };
    const Row rows[] = {
        {"a leading dot", ".1.3.6.1.2.1.1.5.0", ".1.3.6.1.2.1.1.5.0"},
        {"1.3 first", "1.3.6.1.2.1.1.5.0", ".1.3.6.1.2.1.1.5.0"},
        {"1.2 first", "1.2.840", ".1.2.840"},
        {"1.3 alone", "1.3", ".1.3"},
        {"whole arcs count", "1.25.1", ".1.3.6.1.2.1.1.25.1"},
        {"whole arcs count", "1.31", ".1.3.6.1.2.1.1.31"},
        {"below mib-2", "1.5.0", ".1.3.6.1.2.1.1.5.0"},
        {"one arc below mib-2", "1", ".1.3.6.1.2.1.1"},
        {"another root needs the dot", "2.5", ".1.3.6.1.2.1.2.5"},
        {"another root with the dot", ".2.5", ".2.5"},
        {"zero", ".0.0", ".0.0"},
        {"leading zeros", ".01.003.6", ".1.3.6"},
        {"the largest arc", ".1.3.4294967295", ".1.3.4294967295"},
        {"one more", ".1.3.4294967296", nullptr},
        {"far more", ".1.3.99999999999999999999999999", nullptr},
        {"the largest second arc of 2", ".2.4294967215", ".2.4294967215"},
        {"one more", ".2.4294967216", nullptr},
        {"the largest second arc of 1", ".1.39", ".1.39"},
        {"one more", ".1.40", nullptr},
        {"no such root", ".3.1", nullptr},
        {"one arc", ".1", nullptr},
        {"nothing", "", nullptr},
        {"a dot", ".", nullptr},
        {"two dots", "..1.3", nullptr},
        {"an empty arc", "1.3..6", nullptr},
        {"a dot at the end", "1.3.6.", nullptr},
        {"a name", "sysName.0", nullptr},
        {"a name inside", "1.3.6.iso", nullptr},
        {"a sign", "1.3.-1", nullptr},
        {"a blank", "1.3.6 ", nullptr},
        {"a blank first", " 1.3.6", nullptr},
        {"a zero byte", std::string("1.3.6\0", 6), nullptr},
        {"hexadecimal", "1.3.0x6", nullptr},
        {"128 arcs", Many(128), "128"},
        {"129 arcs", Many(129), nullptr},
        {"122 below mib-2", "9" + Many(121), "128"},
        {"123 below mib-2", "9" + Many(122), nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        SCOPED_TRACE(row.text);
        SnmpOid oid{7};
        ASSERT_EQ(ReadSnmpOid(row.text, oid), row.expected != nullptr);
        std::string text = "before";
        ASSERT_TRUE(PrintSnmpOid(oid, text));
        if (!row.expected)
            EXPECT_EQ(text, ".7") << "a failure changes nothing";
        else if (std::string("128") == row.expected)
            EXPECT_EQ(oid.size(), 128U);
        else
            EXPECT_EQ(text, row.expected);
    }
}

TEST(SnmpOidText, ReadsNoPrefixOfAnArcAsAnother) {
    const std::string whole = ".1.3.6.1.4.1.8072.9999.4294967295";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string text = whole.substr(0, length);
        SCOPED_TRACE(text);
        SnmpOid oid;
        const bool good = length > 3 && text.back() != '.';
        EXPECT_EQ(ReadSnmpOid(text, oid), good);
        std::string printed;
        EXPECT_EQ(PrintSnmpOid(oid, printed), good);
        EXPECT_EQ(printed, good ? text : "");
    }
}

TEST(SnmpOidText, PrintsNoneOfNothingOrTooMany) {
    std::string text = "before";
    EXPECT_FALSE(PrintSnmpOid({}, text));
    EXPECT_FALSE(PrintSnmpOid(SnmpOid(129, 1), text));
    EXPECT_EQ(text, "before");
    EXPECT_TRUE(PrintSnmpOid({5}, text));
    EXPECT_EQ(text, ".5");
}

TEST(SnmpAgentText, IsAHostOrAddressWithAnOptionalPort) {
    struct Row {
        const char* text;
        const char* host;  // null: none
        int port;
        bool isIpv6;
    };
    const Row rows[] = {
        {"tx1", "tx1", 161, false},
        {"tx1.station.example:1161", "tx1.station.example", 1161, false},
        {"192.0.2.1", "192.0.2.1", 161, false},
        {"192.0.2.1:1", "192.0.2.1", 1, false},
        {"host_1:00161", "host_1", 161, false},
        {"::1", "::1", 161, true},
        {"2001:db8::1", "2001:db8::1", 161, true},
        {"[2001:db8::1]", "2001:db8::1", 161, true},
        {"[2001:db8::1]:65535", "2001:db8::1", 65535, true},
        {"fe80::1%eth0", "fe80::1%eth0", 161, true},
        {"", nullptr, 0, false},
        {":161", nullptr, 0, false},
        {"tx1:", nullptr, 0, false},
        {"tx1:0", nullptr, 0, false},
        {"tx1:65536", nullptr, 0, false},
        {"tx1:99999999999999999999999", nullptr, 0, false},
        {"tx1:snmp", nullptr, 0, false},
        {"tx1:+161", nullptr, 0, false},
        {"udp:tx1", nullptr, 0, false},
        {"udp:tx1:161", nullptr, 0, false},
        {"fe80::1%", nullptr, 0, false},
        {"fe80::1%eth 0", nullptr, 0, false},
        {"%eth0::", nullptr, 0, false},
        {"unix:/tmp/agent", nullptr, 0, false},
        {"[::1", nullptr, 0, false},
        {"[::1]x", nullptr, 0, false},
        {"[::1]:", nullptr, 0, false},
        {"[tx1]", nullptr, 0, false},
        {"[]", nullptr, 0, false},
        {"tx 1", nullptr, 0, false},
        {"tx1\n", nullptr, 0, false},
        {"-tx1", nullptr, 0, false},
        {"tx1/24", nullptr, 0, false},
        {"t\xE4x", nullptr, 0, false},
        {"localhost,127.0.0.1", nullptr, 0, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const auto agent = ReadSnmpAgent(row.text);
        ASSERT_EQ(agent.has_value(), row.host != nullptr);
        if (!agent) continue;
        EXPECT_EQ(agent->host, row.host);
        EXPECT_EQ(agent->port, row.port);
        EXPECT_EQ(agent->isIpv6, row.isIpv6);
    }
    EXPECT_FALSE(ReadSnmpAgent(std::string_view("tx1\0", 4)));
}

TEST(SnmpReasons, NameStatusAndException) {
    EXPECT_EQ(AgentError(17).text, "the agent refused: notWritable, error 17");
    EXPECT_EQ(AgentError(99).text, "the agent refused: error 99");
    EXPECT_EQ(AgentError(-1).detail, -1);
    EXPECT_EQ(AgentError(0x7FFFFFFFFFFL).detail, INT32_MAX);
    EXPECT_EQ(ExceptionValue(129).text, "the agent has no value there: no such instance");
    SnmpTarget target;
    EXPECT_EQ(NoAnswer(target).text, "no answer within 1000 ms");
}

}  // namespace
}  // namespace brindle
