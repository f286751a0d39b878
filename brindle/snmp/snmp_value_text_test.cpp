// The table of tags, both ways.
#include "brindle/snmp/snmp_value_text.h"

#include <gtest/gtest.h>

#include "brindle/platform/fake/snmp_manager_fake.h"

namespace brindle {
namespace {

using namespace std::string_literals;

SnmpValue Number(int tag, std::uint64_t number) {
    return {tag, number, {}, {}};
}
SnmpValue Octets(int tag, std::string octets) {
    return {tag, 0, std::move(octets), {}};
}

TEST(SnmpValueText, WritesEveryTag) {
    struct Row {
        const char* label;
        SnmpValue value;
        std::string expected;
    };
    const Row rows[] = {
        {"BIT STRING", Octets(3, "\x07\x80"), "\x07\x80"},
        {"OCTET STRING", Octets(4, "Camera 1"), "Camera 1"},
        {"nothing", Octets(4, ""), ""},
        {"high bytes stay", Octets(4, "\xE4\xFF\x01"), "\xE4\xFF\x01"},
        {"a zero byte ends the text", Octets(4, "ab\0cd"s), "ab"},
        {"a zero byte first", Octets(4, "\0cd"s), ""},
        {"SEQUENCE", Octets(48, "raw"), "raw"},
        {"IpAddress is four characters", Octets(64, "\xC0\xA8\x01\x02"), "\xC0\xA8\x01\x02"},
        {"IpAddress with a zero byte", Octets(64, "\x0A\0\0\x01"s), "\x0A"},
        {"Opaque", Octets(68, "\x9F\x78\x04"), "\x9F\x78\x04"},
        {"OBJECT IDENTIFIER", {6, 0, {}, {1, 3, 6, 1}}, ".1.3.6.1"},
        {"one that cannot be printed", {6, 0, {}, {}}, ""},
        {"Counter32", Number(65, 4294967295U), "4294967295"},
        {"Gauge32", Number(66, 0), "0"},
        {"TimeTicks", Number(67, 8640000), "8640000"},
        {"UInteger32", Number(71, 2147483648U), "2147483648"},
        {"only 32 bits count", Number(65, 0x1FFFFFFFFU), "4294967295"},
        {"Counter64", Number(70, 10), "10"},
        {"its largest positive", Number(70, 0x7FFFFFFFFFFFFFFFU), "9223372036854775807"},
        {"from 2^63 on it is negative", Number(70, 0x8000000000000000U), "-9223372036854775808"},
        {"all bits", Number(70, 0xFFFFFFFFFFFFFFFFU), "-1"},
        {"INTEGER", Number(2, 42), "42"},
        {"its sign is in 32 bits", Number(2, 0xFFFFFFD6U), "-42"},
        {"the smallest", Number(2, 0x80000000U), "-2147483648"},
        {"sign-extended", Number(2, static_cast<std::uint64_t>(-1)), "-1"},
        {"NULL", Number(5, 0), "0"},
        {"a tag nobody knows", Number(1, 7), "7"},
    };
    FakeSnmpManager manager;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(SnmpValueText(manager, row.value), row.expected);
    }
}

TEST(SnmpValueText, ReadsEveryTag) {
    struct Row {
        const char* label;
        int tag;
        std::string text;
        SnmpValue expected;
    };
    const Row rows[] = {
        {"BIT STRING", 3, "\x01x", Octets(3, "\x01x")},
        {"OCTET STRING", 4, "a b", Octets(4, "a b")},
        {"zero bytes are sent", 4, "a\0b"s, Octets(4, "a\0b"s)},
        {"nothing", 4, "", Octets(4, "")},
        {"SEQUENCE", 48, "x", Octets(48, "x")},
        {"IpAddress is no dotted text", 64, "10.0.0.1", Octets(64, "10.0.0.1")},
        {"Opaque", 68, "\x9F", Octets(68, "\x9F")},
        {"OBJECT IDENTIFIER", 6, "1.3.6.1", {6, 0, {}, {1, 3, 6, 1}}},
        {"relative", 6, "1.5.0", {6, 0, {}, {1, 3, 6, 1, 2, 1, 1, 5, 0}}},
        {"its first characters do not count", 6, "1.25", {6, 0, {}, {1, 3, 6, 1, 2, 1, 1, 25}}},
        {"Counter32", 65, "10", Number(65, 10)},
        {"hexadecimal", 65, "0x20", Number(65, 32)},
        {"octal", 66, "010", Number(66, 8)},
        {"the largest", 67, "4294967295", Number(67, 4294967295U)},
        {"more saturates", 71, "4294967296", Number(71, 4294967295U)},
        {"a sign negates", 65, "-1", Number(65, 4294967295U)},
        {"white space", 65, " \t12 ", Number(65, 12)},
        {"what follows is ignored", 65, "12 W", Number(65, 12)},
        {"no number", 65, "W", Number(65, 0)},
        {"nothing", 65, "", Number(65, 0)},
        {"INTEGER", 2, "-42", Number(2, 0xFFFFFFD6U)},
        {"hexadecimal", 2, "0x10", Number(2, 16)},
        {"octal", 2, "-010", Number(2, 0xFFFFFFF8U)},
        {"too large saturates", 2, "9999999999", Number(2, 2147483647)},
        {"too small saturates", 2, "-9999999999", Number(2, 0x80000000U)},
        {"NULL has no number", 5, "17", Number(5, 0)},
        {"Counter64", 70, "10", Number(70, 10)},
        {"hexadecimal", 70, "0x10", Number(70, 16)},
        {"hexadecimal", 70, "0XfF", Number(70, 255)},
        {"no octal", 70, "010", Number(70, 10)},
        {"all bits", 70, "0xFFFFFFFFFFFFFFFF", Number(70, 0xFFFFFFFFFFFFFFFFU)},
        {"back from its own text", 70, "-9223372036854775808", Number(70, 0x8000000000000000U)},
        {"minus one", 70, "-1", Number(70, 0xFFFFFFFFFFFFFFFFU)},
        {"without a sign", 70, "18446744073709551615", Number(70, 0xFFFFFFFFFFFFFFFFU)},
        {"one more wraps", 70, "18446744073709551616", Number(70, 0)},
        {"a sign", 70, " +7x", Number(70, 7)},
        {"a prefix behind a blank is no prefix", 70, " 0x10", Number(70, 0)},
        {"a prefix alone", 70, "0x", Number(70, 0)},
        {"no digits", 70, "0xg", Number(70, 0)},
        {"no number", 70, "W", Number(70, 0)},
        {"a sign alone", 70, "-", Number(70, 0)},
        {"nothing", 70, "", Number(70, 0)},
    };
    FakeSnmpManager manager;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        SCOPED_TRACE(row.text);
        SnmpValue value;
        ASSERT_TRUE(ReadSnmpValue(manager, row.tag, row.text, value));
        EXPECT_EQ(value.tag, row.expected.tag);
        EXPECT_EQ(value.number, row.expected.number);
        EXPECT_EQ(value.octets, row.expected.octets);
        EXPECT_EQ(value.identifier, row.expected.identifier);
    }
    SnmpValue value = Number(2, 9);
    EXPECT_FALSE(ReadSnmpValue(manager, 6, "sysName", value));
    EXPECT_EQ(value.tag, 2) << "a failure changes nothing";
}

TEST(SnmpValueText, ReadsBackAllBitsItWrites) {
    FakeSnmpManager manager;
    for (const int tag : {2, 65, 66, 67, 70, 71}) {
        for (int bit = 0; bit < (tag == 70 ? 64 : 32); ++bit) {
            for (const std::uint64_t offset : {0, 1}) {
                SCOPED_TRACE(tag);
                SCOPED_TRACE(bit);
                SnmpValue value = Number(tag, (std::uint64_t{1} << bit) - offset);
                SnmpValue back;
                ASSERT_TRUE(ReadSnmpValue(manager, tag, SnmpValueText(manager, value), back));
                EXPECT_EQ(back.number, value.number);
            }
        }
    }
}

}  // namespace
}  // namespace brindle
