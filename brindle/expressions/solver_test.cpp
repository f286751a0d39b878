#include "brindle/expressions/solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/address/address_ov.h"
#include "brindle/framework/letter_case.h"

namespace {

using Literal = CCalculator::Literal;
using Values = std::vector<CSolver::Value>;

CSolver::Value Make(const char* header, const char* value) {
    return {0, header, value, false};
}
CSolver::Value MakeAt(std::uint32_t address, const char* header, const char* value) {
    return {address, header, value, true};
}

float SolveOne(const char* rule, const char* header, const char* value, bool upper = false) {
    CStringArray headers;
    CStringArray values;
    headers.Add(header);
    values.Add(value);
    return CSolver().Solve(rule, headers, values, upper);
}

// What the rule gives, or "fails".
std::string Solved(const CStringA& rule, const Values& values, bool upper = false) {
    Literal result("untouched");
    if (CSolver().Solve(rule, values, upper, result)) return result.AsString();
    EXPECT_EQ(result.AsString(), "untouched");
    return "fails";
}

TEST(Solver, NumbersFromPairs) {
    EXPECT_EQ(SolveOne("LEVEL > 10", "LEVEL", "12"), 1.0F);
    EXPECT_EQ(SolveOne("LEVEL > 10", "LEVEL", "9"), 0.0F);
    EXPECT_EQ(SolveOne("LEVEL + 0.5", "LEVEL", "1.25"), 1.75F);
    EXPECT_EQ(SolveOne("(LEVEL", "LEVEL", "1"), -1.0F);
    EXPECT_EQ(SolveOne("-LEVEL", "LEVEL", "1"), -1.0F);
    CStringArray one;
    one.Add("LEVEL");
    EXPECT_EQ(CSolver().Solve("1", one, CStringArray(), false), -1.0F);
    EXPECT_EQ(CSolver().Solve("1", CStringArray(), one, false), -1.0F);
    EXPECT_EQ(CSolver().Solve("7", CStringArray(), CStringArray(), false), 7.0F);
}

TEST(Solver, FailureLooksLikeMinusOne_Deliberate) {
    EXPECT_EQ(SolveOne("LEVEL", "LEVEL", "-1"), SolveOne("(", "LEVEL", "-1"));
}

TEST(Solver, NarrowsToFloat) {
    const Values values = {Make("BIG", "9.9"), Make("NAN", "nan")};
    float result = 5;
    EXPECT_FALSE(CSolver().Solve("(BIG", values, false, result));
    EXPECT_EQ(result, 5.0F);
    EXPECT_TRUE(CSolver().Solve("BIG", values, false, result));
    EXPECT_FLOAT_EQ(result, 9.9F);
    EXPECT_TRUE(CSolver().Solve("NAN", values, false, result));  // a text that reads as no number
    EXPECT_TRUE(std::isnan(result));
    const std::string huge = std::string(60, '9') + ".0";
    const Values hugeValues = {Make("PLUS", huge.c_str()), Make("MINUS", ("-" + huge).c_str())};
    EXPECT_TRUE(CSolver().Solve("PLUS", hugeValues, false, result));
    EXPECT_EQ(result, std::numeric_limits<float>::infinity());
    EXPECT_TRUE(CSolver().Solve("MINUS", hugeValues, false, result));
    EXPECT_EQ(result, -std::numeric_limits<float>::infinity());
}

TEST(Solver, Substitution) {
    const Values values = {
        Make("LEVEL", "12"),
        Make("STATUS", "OK 1"),
        Make("EMPTY", ""),
        Make("ON", "TRUE"),
        Make("HALF", "0.5"),
        Make("WHERE", "0001:02:03"),
        Make("WHEN", "2024-01-02T10:00:00"),
        Make("OTHER", "LEVEL"),
        Make("LEVEL", "99"),
        Make("QUOTED", "\"12\""),
        Make("BLANK", " 12"),
        Make("two words", "2"),
        Make("12", "13"),
        Make("DATE", "5"),
    };
    struct Row {
        const char* rule;
        const char* expected;
    };
    const Row rows[] = {
        {"LEVEL > 10 & STATUS = \"OK%\"", "TRUE"},
        {"(LEVEL > 10) & STATUS = \"OK%\"", "TRUE"},
        {"LEVEL", "12"},
        {"LEVEL / 5", "2"},
        {"level", "level"},
        {"UNKNOWN", "UNKNOWN"},
        {"UNKNOWN = \"UNK%\"", "TRUE"},
        {"\"LEVEL\"", "LEVEL"},
        {"EMPTY", ""},
        {"EMPTY = \"\"", "TRUE"},
        {"!ON", "FALSE"},
        {"HALF + HALF", "1"},
        {"WHERE + 0001:01:01", "0002:03:04"},
        {"WHEN + TIMESPAN(0,1,0,0)", "2024-01-02T11:00:00"},
        {"OTHER", "LEVEL"},  // what a value says is not looked up again
        {"QUOTED", "\"12\""},
        {"BLANK + 1", " 121"},
        {"two words * 2", "4"},
        {"12", "12"},
        {"DATE", "5"},
        {"#LEVEL#", "12"},
        {"LEVEL = LEVEL", "TRUE"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        EXPECT_EQ(Solved(row.rule, values), row.expected);
    }
}

TEST(Solver, Addresses) {
    const Values here = {MakeAt(0x00010203, "LEVEL", "12")};
    const Values there = {MakeAt(0x00010204, "LEVEL", "12")};
    const Values anywhere = {Make("LEVEL", "12")};
    struct Row {
        const char* label;
        const char* rule;
        const Values* values;
        const char* expected;
    };
    const Row rows[] = {
        {"equal address", "0001:02:03,LEVEL > 10", &here, "TRUE"},
        {"short spelling", "1:2:3,LEVEL", &here, "12"},
        {"other address", "0001:02:03,LEVEL", &there, "0001:02:03,LEVEL"},
        {"value without an address", "0001:02:03,LEVEL", &anywhere, "12"},
        {"name without an address", "LEVEL", &there, "12"},
        {"blank behind the comma is part of the name", "0001:02:03, LEVEL", &here, "0001:02:03, LEVEL"},
        {"no address before the comma", "x,LEVEL", &anywhere, "x,LEVEL"},
        {"address without a name", "0001:02:03,", &here, "0001:02:03,"},
        {"deferred part", "?:02:03,LEVEL", &here, "?:02:03,LEVEL"},
        {"quoted", "\"0001:02:03,LEVEL\"", &here, "0001:02:03,LEVEL"},
        {"long spelling", "00000000000000000001:0000000002:0000000003,LEVEL", &here, "12"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Solved(row.rule, *row.values), row.expected);
    }
    const Values list = {MakeAt(1, "X", "a"), MakeAt(2, "X", "b"), Make("X", "c")};
    EXPECT_EQ(Solved("0000:00:02,X", list), "b");
    EXPECT_EQ(Solved("0000:00:03,X", list), "c");
    EXPECT_EQ(Solved("X", list), "a");
    EXPECT_EQ(Solved("X,Y", {Make("X,Y", "whole")}), "whole");
}

TEST(Solver, ReferenceOfTenCharactersIsAnAddress_Deliberate) {
    const Values values = {Make("NAME", "12")};
    EXPECT_EQ(Solved("1:2:3,NAME", values), "1:2:3,NAME");  // ten characters that an address may begin
    EXPECT_EQ(Solved("01:2:3,NAME", values), "12");
}

TEST(Solver, AddressPartsOutOfRangeAreAskedUncut) {
    class Source final : public CSolverData {
      public:
        bool Lookup(const CStringA&, const CAddressOv* address, CStringA& value) const override {
            CAddressOv wanted(0u, 0x1FFu, 2u);
            value = address && wanted == *address ? "uncut" : "cut";
            return true;
        }
    };
    Literal result;
    EXPECT_TRUE(CSolver().Solve("?:1FF:2,NAME", Source(), false, result));
    EXPECT_EQ(result.AsString(), "uncut");
}

TEST(Solver, UpperCase) {
    EXPECT_EQ(SolveOne("level > 10", "LEVEL", "12", true), 1.0F);
    EXPECT_EQ(SolveOne("level > 10", "level", "12", true), 1.0F);  // "LEVEL" > "10" as texts
    EXPECT_EQ(Solved("level", {Make("level", "12")}, true), "LEVEL");
    EXPECT_EQ(Solved("LEVEL", {Make("LEVEL", "ok 1")}, true), "OK 1");
    EXPECT_EQ(Solved("LEVEL = \"Ok%\"", {Make("LEVEL", "ok 1")}, true), "TRUE");
    EXPECT_EQ(Solved("LEVEL", {Make("LEVEL", "true")}, true), "TRUE");
    EXPECT_EQ(Solved("LEVEL", {Make("LEVEL", "\xE9t\xE9")}, true), "\xC9T\xC9");
    EXPECT_EQ(Solved("LEVEL", {Make("LEVEL", "mon jan 02 10:00:00 2023")}, true), "2023-01-02T10:00:00");
    EXPECT_EQ(Solved("date()", {}, true).size(), std::string("2023-01-02T10:00:00").size());
    EXPECT_EQ(Solved("\"quoted\"", {}, true), "QUOTED");
}

// Notes each question and answers some.
class NotingSource final : public CSolverData {
  public:
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override {
        EXPECT_TRUE(value.IsEmpty());
        CAddressOv copy;
        if (address) copy = *address;
        asked += (address ? copy.GetString().str() + "," : "") + header.str() + ";";
        value = "11";
        return header != CStringA("UNKNOWN");
    }
    mutable std::string asked;
};

TEST(Solver, AsksForEachOccurrenceInOrder) {
    struct Row {
        const char* rule;
        const char* asked;
        bool solved;
    };
    const Row rows[] = {
        {"A + B * 0001:02:03,C > A", "A;B;0001:02:03,C;A;", true},
        {"UNKNOWN + A", "UNKNOWN;A;", true},
        {"\"A\" + 12 + true + 0001:02:03", "", true},
        {"DATE() - A", "A;", true},
        {"(A", "", false},                 // does not convert: nothing is asked
        {"A + + B & C", "A;B;C;", false},  // converts but does not evaluate: everything is asked
        {"-A", "A;", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        const NotingSource source;
        Literal result("untouched");
        EXPECT_EQ(CSolver().Solve(row.rule, source, false, result), row.solved);
        EXPECT_EQ(source.asked, row.asked);
        if (!row.solved) {
            EXPECT_EQ(result.AsString(), "untouched");
        }
    }
}

TEST(Solver, AnswerOfAnUnknownNameIsNotUsed) {
    Literal result;
    EXPECT_TRUE(CSolver().Solve("UNKNOWN", NotingSource(), false, result));
    EXPECT_EQ(result.AsString(), "UNKNOWN");
    EXPECT_FALSE(result.IsReplaceable());
}

TEST(Solver, WhatTheSourceThrowsPassesThrough) {
    class Source final : public CSolverData {
      public:
        bool Lookup(const CStringA&, const CAddressOv*, CStringA&) const override {
            throw std::runtime_error("device gone");
        }
    };
    Literal result("untouched");
    EXPECT_THROW(CSolver().Solve("\"a\" + \"b\" + A", Source(), false, result), std::runtime_error);
    EXPECT_EQ(result.AsString(), "untouched");
}

std::string Addresses(const CStringA& rule, const std::vector<CAddressOv>& already = {}) {
    CList<CAddressOv> list;
    for (const CAddressOv& address : already) list.AddTail(address);
    CSolver().GetAddressesInRule(rule, list);
    std::string text;
    for (POSITION position = list.GetHeadPosition(); position;)
        text += list.GetNext(position).GetString().str() + ";";
    return text;
}

std::string Headers(const CStringA& rule, const std::vector<const char*>& already = {}) {
    CList<CStringA> list;
    for (const char* header : already) list.AddTail(header);
    CSolver().GetHeadersInRule(rule, list);
    std::string text;
    for (POSITION position = list.GetHeadPosition(); position;) text += list.GetNext(position).str() + ";";
    return text;
}

TEST(Solver, AddressesInRule) {
    EXPECT_EQ(Addresses("0001:02:03,A + B + 1:2:3,C > 0000:00:01,D"), "0001:02:03;0000:00:01;");
    EXPECT_EQ(Addresses("A + B"), "");
    EXPECT_EQ(Addresses("0001:02:03 + A"), "");  // an address is a value, not a reference
    EXPECT_EQ(Addresses("(0001:02:03,A"), "");
    EXPECT_EQ(Addresses("-0001:02:03,A"), "0001:02:03;");
    EXPECT_EQ(Addresses("0001:02:03,A + 4:5:6,B", {CAddressOv(1u, 2u, 3u)}), "0001:02:03;0004:05:06;");
    EXPECT_EQ(Addresses("00ab:0c:0d,x"), "00AB:0C:0D;");
    EXPECT_EQ(Addresses("?:2:3,x + ?:2:3,y"), "0000:02:03;");
}

TEST(Solver, HeadersInRule) {
    EXPECT_EQ(Headers("a + b + a"), "A;B;");
    EXPECT_EQ(Headers("0001:02:03,level > 10 & status = \"OK%\""), "LEVEL;STATUS;");
    EXPECT_EQ(Headers("a + b", {"B", "c"}), "B;c;A;");
    EXPECT_EQ(Headers("(a"), "");
    EXPECT_EQ(Headers("a + + b"), "A;B;");
    EXPECT_EQ(Headers("12 + \"x\" + true"), "");
    EXPECT_EQ(Headers("0001:02:03,"), ";");
}

TEST(Solver, ManyNamesAreCollectedInLinearTime) {
    std::string rule = "0:0:0,N";
    for (int i = 1; i < 60000; ++i) {
        CStringA name;
        name.Format("+%04X:%02X:%02X,N%d", i >> 8, i & 0xFF, 7, i);
        rule += name.str();
    }
    CList<CStringA> headers;
    CSolver().GetHeadersInRule(rule, headers);
    EXPECT_EQ(headers.GetCount(), 60000);
    CList<CAddressOv> addresses;
    CSolver().GetAddressesInRule(rule, addresses);
    EXPECT_EQ(addresses.GetCount(), 60000);
}

TEST(Solver, Validate) {
    struct Row {
        const char* rule;
        bool valid;
        const char* rpn;
    };
    const Row rows[] = {
        {"(1", false, "before"},          {"", false, "before"},
        {"1 + 2", true, "1 2 +"},         {"LEVEL > 10", true, "LEVEL 10 >"},
        {"level>10", true, "level 10 >"}, {"-5", false, "5 -"},
        {"a==b", false, "a = b ="},       {"\"a\" = \"(\"", true, "a ( ="},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        CStringA rpn = "before";
        EXPECT_EQ(CSolver().Validate(row.rule, rpn), row.valid);
        EXPECT_STREQ(rpn, row.rpn);
    }
}

TEST(Solver, ValuesThatFindNoRoomAreDropped_Deliberate) {
    std::string rule = "0";
    for (int i = 1; i < 102; ++i) rule += "(" + std::to_string(i) + ")";
    EXPECT_EQ(Solved(rule + "(NAME)(NAME)", {Make("NAME", "text")}), "100");
}

TEST(Solver, HugeValues) {
    const std::string text(10 << 20, 'x');
    const Values values = {{0, "HUGE", text, false}};
    EXPECT_EQ(Solved("HUGE = \"x%\" & HUGE != \"y%\" & HUGE = \"%x\"", values), "TRUE");
    EXPECT_EQ(Solved("HUGE + HUGE = HUGE", values), "FALSE");
    const std::string blanks(10 << 20, ' ');
    EXPECT_EQ(Solved("HUGE & 1", {{0, "HUGE", blanks, false}}), "FALSE");
}

}  // namespace
