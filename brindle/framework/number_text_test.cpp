// Number texts: own rows, then the recorded answers of the real runtime.
#include "brindle/framework/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "testing/vectors.h"

namespace {

using namespace brindle;
using namespace std::string_literals;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumberText, Integers) {
    struct Row {
        const char* label;
        std::string text;
        std::int32_t value;
    };
    const Row rows[] = {
        {"empty", "", 0},
        {"digits", "12", 12},
        {"rest is ignored", "12abc", 12},
        {"white space first", " \t\n\v\f\r12", 12},
        {"sign", "-5", -5},
        {"plus", "+5", 5},
        {"two signs", "--5", 0},
        {"blank behind the sign", "- 5", 0},
        {"no digits", "abc", 0},
        {"no octal", "010", 10},
        {"no hexadecimal", "0x10", 0},
        {"largest", "2147483647", 2147483647},
        {"saturates", "2147483648", 2147483647},
        {"saturates far", "99999999999999999999999999", 2147483647},
        {"smallest", "-2147483648", std::numeric_limits<std::int32_t>::min()},
        {"saturates below", "-2147483649", std::numeric_limits<std::int32_t>::min()},
        {"ends at a zero byte", "1\0002"s, 1},
        {"a no-break space is none",
         "\xA0"
         "5",
         0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(ReadInt(row.text), row.value);
    }
}

TEST(NumberText, IntegersInABase) {
    struct Row {
        const char* label;
        const char* text;
        int base;
        std::int32_t value;
        std::uint32_t unsignedValue;
        std::size_t end;
    };
    const Row rows[] = {
        {"base 0 decimal", "12", 0, 12, 12, 2},
        {"base 0 hexadecimal", "0x1Fz", 0, 31, 31, 4},
        {"base 0 octal", "0178", 0, 15, 15, 3},
        {"base 0 empty hexadecimal", "0xz", 0, 0, 0, 1},
        {"base 16 with a prefix", "0X1f", 16, 31, 31, 4},
        {"base 16 without", "1f", 16, 31, 31, 2},
        {"base 2", "1012", 2, 5, 5, 3},
        {"base 36", "Zz", 36, 1295, 1295, 2},
        {"negative", "-1", 10, -1, 0xFFFFFFFF, 2},
        {"unsigned range", "4294967295", 10, 2147483647, 4294967295, 10},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(ReadLong(row.text, row.base).value, row.value);
        EXPECT_EQ(ReadLong(row.text, row.base).end, row.end);
        EXPECT_EQ(ReadUnsignedLong(row.text, row.base).value, row.unsignedValue);
        EXPECT_EQ(ReadUnsignedLong(row.text, row.base).end, row.end);
    }
}

TEST(NumberText, Doubles) {
    struct Row {
        const char* label;
        const char* text;
        double value;
        std::size_t end;
    };
    const Row rows[] = {
        {"empty", "", 0, 0},
        {"integer", "12", 12, 2},
        {"fraction", "-1.5", -1.5, 4},
        {"comma is no point", "1,5", 1, 1},
        {"point first", ".5x", 0.5, 2},
        {"point last", "5.", 5, 2},
        {"point alone", ".", 0, 0},
        {"sign alone", "-", 0, 0},
        {"sign and point", "-.", 0, 0},
        {"exponent", "1E3", 1000, 3},
        {"unfinished exponent", "1e+", 1, 1},
        {"exponent letter d", "1d3", 1000, 3},
        {"exponent letter D", "2.5D-1x", 0.25, 6},
        {"unfinished d", "1d", 1, 1},
        {"white space", " \t\r\n\v\f1", 1, 7},
        {"hexadecimal", "0x1.8p3", 12, 7},
        {"hexadecimal, negative", "-0X10", -16, 5},
        {"empty hexadecimal", "0xz", 0, 1},
        {"sign behind 0x", "0x-1", 0, 1},
        {"infinity", "inf", kInfinity, 3},
        {"infinity in full", "-InFiNiTyx", -kInfinity, 9},
        {"too large", "1e309", kInfinity, 5},
        {"too large and negative", "-1e99999999999", -kInfinity, 14},
        {"too small", "1e-400", 0, 6},
        {"far too small", "1e-99999999999", 0, 14},
        {"zero with a large exponent", "0e999999", 0, 8},
        {"small digits, large exponent", "0.0001e400", kInfinity, 10},
        {"subnormal", "1e-320", 1e-320, 6},
        {"hexadecimal too large", "0x1p99999", kInfinity, 9},
        {"hexadecimal too small", "0x1p-99999", 0, 10},
        {"shortest of 0.1 + 0.2", "0.30000000000000004", 0.1 + 0.2, 19},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const auto read = ReadDoublePrefix(row.text);
        EXPECT_EQ(read.value, row.value);
        EXPECT_EQ(read.end, row.end);
        EXPECT_EQ(ReadDouble(row.text), row.value);
    }
    for (const char* text : {"nan", "NaN", "-nan", "nan(abc_1)"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(std::isnan(ReadDouble(text)));
        EXPECT_EQ(ReadDoublePrefix(text).end, std::string(text).size());
    }
    EXPECT_EQ(ReadDoublePrefix("nan(a").end, 3u);
    EXPECT_TRUE(std::signbit(ReadDouble("-0.0")));
    EXPECT_TRUE(std::signbit(ReadDouble("-1e-400")));
    EXPECT_TRUE(ReadDoublePrefix("1e309").overflow);
    EXPECT_FALSE(ReadDoublePrefix("inf").overflow);
}

TEST(NumberText, LongTexts) {
    EXPECT_EQ(ReadDouble(std::string(400, '9')), kInfinity);
    EXPECT_EQ(ReadDouble("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(ReadDouble("0." + std::string(400, '0') + "1e401"), 1);
    EXPECT_EQ(ReadDouble("1" + std::string(400, '0') + "d-400"), 1);
    EXPECT_EQ(ReadInt(std::string(1000000, '0') + "7"), 7);
}

TEST(NumberText, ScanningHexadecimal) {
    struct Row {
        const char* label;
        std::string text;
        bool ok;
        std::uint32_t value;
        std::string rest;
        bool streamOk;
        std::uint32_t streamValue;
    };
    const Row rows[] = {
        {"digits", "1F:2", true, 0x1F, ":2", true, 0x1F},
        {"white space", " \t\n1f", true, 0x1F, "", true, 0x1F},
        {"prefix", "0x1Fg", true, 0x1F, "g", true, 0x1F},
        {"sign", "-1", true, 0xFFFFFFFF, "", true, 0xFFFFFFFF},
        {"plus", "+1", true, 1, "", true, 1},
        {"largest", "FFFFFFFF", true, 0xFFFFFFFF, "", true, 0xFFFFFFFF},
        {"too large", "100000000:", true, 0xFFFFFFFF, ":", false, 0xFFFFFFFF},
        {"too large and negative", "-100000000", true, 1, "", false, 0xFFFFFFFF},
        {"leading zeros", "000000000000F", true, 0xF, "", true, 0xF},
        {"nothing", "", false, 0, "", false, 0},
        {"no digit", "xyz", false, 0, "xyz", false, 0},
        {"sign alone", "-", false, 0, "-", false, 0},
        {"prefix alone", "0x", false, 0, "0x", false, 0},
        {"prefix without digits", " 0xg", false, 0, " 0xg", false, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string_view text = row.text;
        std::uint32_t value = 77;
        EXPECT_EQ(ScanHex(text, value), row.ok);
        EXPECT_EQ(value, row.ok ? row.value : 77u);
        EXPECT_EQ(text, row.rest);
        std::uint32_t streamed = 77;
        EXPECT_EQ(ReadStreamHex(row.text, streamed), row.streamOk);
        EXPECT_EQ(streamed, row.streamValue);
    }
}

TEST(NumberText, ScanningDecimal) {
    std::string_view text = " -12-3";
    std::int32_t value = 0;
    EXPECT_TRUE(ScanInt(text, value));
    EXPECT_EQ(value, -12);
    EXPECT_TRUE(ScanInt(text, value));
    EXPECT_EQ(value, -3);
    EXPECT_FALSE(ScanInt(text, value));
    EXPECT_EQ(value, -3);
}

TEST(NumberText, Printing) {
    EXPECT_EQ(PrintInt(-2147483648LL), "-2147483648");
    EXPECT_EQ(PrintInt(0), "0");
    EXPECT_EQ(PrintUnsigned(18446744073709551615ULL), "18446744073709551615");
    EXPECT_EQ(PrintHex(0xAB), "AB");
    EXPECT_EQ(PrintHex(0xAB, 4), "00AB");
    EXPECT_EQ(PrintHex(0x12345, 4), "12345");
    EXPECT_EQ(PrintHex(0, -1), "0");
    EXPECT_EQ(PrintDouble(2.5), "2.5");
    EXPECT_EQ(PrintDouble(1e6), "1e+06");
    EXPECT_EQ(PrintDouble(0.5, 'f', 2), "0.50");
    EXPECT_EQ(PrintDouble(0.1, 'g', 17), "0.10000000000000001");
    EXPECT_EQ(PrintDouble(1.0, 'f', 1000).size(), 1002u);
    EXPECT_EQ(PrintDouble(-1.7976931348623157e308, 'f', 0).size(), 310u);
}

double RecordedDouble(const nlohmann::json& value) {
    if (value.is_number()) return value.get<double>();
    const auto text = value.get<std::string>();
    if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
    return text == "-inf" ? -kInfinity : kInfinity;
}

template <class Value>
void ExpectRead(const NumberRead<Value>& actual, const nlohmann::json& recorded) {
    EXPECT_EQ(actual.value, recorded.at("value").get<Value>());
    EXPECT_EQ(actual.end, recorded.at("end").get<std::size_t>());
    EXPECT_EQ(actual.overflow, recorded.at("range").get<bool>());
}

// All cases of the newer runtime; those marked unsure are followed as well, since nothing says otherwise.
TEST(NumberText, RecordedAnswers) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "atoi.json");
    int compared = 0;
    for (const auto& row : vectors.at("cases")) {
        const std::string text = brindle::testing::BytesOf(row.at("text"));
        const auto& answers = row.at("ucrt");
        SCOPED_TRACE(text);
        EXPECT_EQ(ReadInt(text), answers.at("atoi").get<std::int32_t>());
        EXPECT_EQ(ReadInt(text), answers.at("atol").get<std::int32_t>());
        const double expected = RecordedDouble(answers.at("atof"));
        const double actual = ReadDouble(text);
        EXPECT_TRUE(actual == expected || (std::isnan(actual) && std::isnan(expected))) << actual;
        EXPECT_EQ(std::signbit(actual), std::signbit(expected));
        for (const int base : {0, 10, 16}) {
            SCOPED_TRACE(base);
            ExpectRead(ReadLong(text, base), answers.at("strtol" + std::to_string(base)));
            ExpectRead(ReadUnsignedLong(text, base), answers.at("strtoul" + std::to_string(base)));
        }
        ++compared;
    }
    EXPECT_GT(compared, 80);
}

}  // namespace
