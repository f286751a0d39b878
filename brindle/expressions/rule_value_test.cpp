#include "brindle/expressions/rule_value.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <set>
#include <string>

namespace {

using brindle::CalcAsType;
using brindle::RuleValue;
using brindle::ValueType;
using Literal = CCalculator::Literal;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

const char* const kTypeNames[] = {"Bool", "Double", "String", "Int", "DateTime", "Address", "TimeSpan"};

TEST(RuleValue, PromotionTableOfBinaryOperators) {
    // Rows: left; columns: right.
    const char* const expected[7][7] = {
        {"Bool", "Double", "String", "Int", "String", "Int", "Int"},                 // Bool
        {"Double", "Double", "String", "Double", "String", "Double", "Double"},      // Double
        {"String", "String", "String", "String", "String", "String", "String"},      // String
        {"Int", "Double", "String", "Int", "String", "Int", "Int"},                  // Int
        {"String", "String", "String", "String", "DateTime", "String", "DateTime"},  // DateTime
        {"String", "Double", "String", "Int", "String", "Address", "Double"},        // Address
        {"String", "Double", "String", "String", "String", "String", "Double"},      // TimeSpan
    };
    for (int left = 0; left < 7; ++left) {
        for (int right = 0; right < 7; ++right) {
            SCOPED_TRACE(std::string(kTypeNames[left]) + " with " + kTypeNames[right]);
            const ValueType type = CalcAsType(static_cast<ValueType>(left), static_cast<ValueType>(right));
            EXPECT_STREQ(kTypeNames[type], expected[left][right]);
        }
    }
}

TEST(RuleValue, PromotionIsNotSymmetric_Deliberate) {
    EXPECT_EQ(CalcAsType(Literal::Bool, Literal::Address), Literal::Int);
    EXPECT_EQ(CalcAsType(Literal::Address, Literal::Bool), Literal::String);
    EXPECT_EQ(CalcAsType(Literal::Int, Literal::TimeSpan), Literal::Int);
    EXPECT_EQ(CalcAsType(Literal::TimeSpan, Literal::Int), Literal::String);
    EXPECT_EQ(CalcAsType(Literal::DateTime, Literal::TimeSpan), Literal::DateTime);
    EXPECT_EQ(CalcAsType(Literal::TimeSpan, Literal::DateTime), Literal::String);
}

TEST(RuleValue, UnknownTypesPromoteToText) {
    EXPECT_EQ(CalcAsType(static_cast<ValueType>(7), Literal::Int), Literal::String);
    EXPECT_EQ(CalcAsType(Literal::Int, static_cast<ValueType>(-1)), Literal::String);
}

RuleValue Date(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return RuleValue::OfDate(COleDateTime(year, month, day, hour, minute, second));
}

TEST(RuleValue, Conversions) {
    struct Row {
        const char* label;
        RuleValue value;
        bool asBool;
        int asInt;
        double asDouble;
        const char* asString;
    };
    const auto text = [](const char* s) { return RuleValue::OfText(s); };
    const auto address = [](const char* s) { return RuleValue::OfText(s, Literal::Address); };
    const auto number = [](double d) { return RuleValue::OfDouble(d); };
    const auto span = [](double d) { return RuleValue::OfDouble(d, Literal::TimeSpan); };
    const Row rows[] = {
        {"true", RuleValue::OfBool(true), true, 1, 1.0, "TRUE"},
        {"false", RuleValue::OfBool(false), false, 0, 0.0, "FALSE"},
        {"0.0", number(0), false, 0, 0, "0"},
        {"2.5", number(2.5), true, 2, 2.5, "2.5"},
        {"-2.9 truncates toward zero", number(-2.9), true, -2, -2.9, "-2.9"},
        {"0.5 is false", number(0.5), false, 0, 0.5, "0.5"},
        {"six digits", number(1234567), true, 1234567, 1234567, "1.23457e+06"},
        {"a million", number(1e6), true, 1000000, 1e6, "1e+06"},
        {"largest int", number(2147483647.9), true, INT_MAX, 2147483647.9, "2.14748e+09"},
        {"smallest int", number(-2147483648.9), true, INT_MIN, -2147483648.9, "-2.14748e+09"},
        {"huge", number(1e300), true, INT_MIN, 1e300, "1e+300"},
        {"just too large", number(2147483648.0), true, INT_MIN, 2147483648.0, "2.14748e+09"},
        {"infinite", number(kInfinity), true, INT_MIN, kInfinity, "inf"},
        {"minus infinite", number(-kInfinity), true, INT_MIN, -kInfinity, "-inf"},
        {"empty text is true", text(""), true, 0, 0, ""},
        {"text 0", text("0"), false, 0, 0, "0"},
        {"text 0.0", text("0.0"), false, 0, 0, "0.0"},
        {"text 0.00 is true", text("0.00"), true, 0, 0, "0.00"},
        {"text false", text("false"), false, 0, 0, "false"},
        {"text False", text("fAlSE"), false, 0, 0, "fAlSE"},
        {"text yes", text("yes"), true, 0, 0, "yes"},
        {"text with number", text(" 12.75x"), true, 12, 12.75, " 12.75x"},
        {"text 1e400", text("1e400"), true, INT_MIN, kInfinity, "1e400"},
        {"0", RuleValue::OfInt(0), false, 0, 0, "0"},
        {"-7", RuleValue::OfInt(-7), true, -7, -7, "-7"},
        {"INT_MIN", RuleValue::OfInt(INT_MIN), true, INT_MIN, -2147483648.0, "-2147483648"},
        {"date zero", Date(1899, 12, 30), false, 0, 0, "1899-12-30T00:00:00"},
        {"date", Date(2023, 1, 2, 12), true, 44928, 44928.5, "2023-01-02T12:00:00"},
        {"date before zero", Date(1899, 12, 29, 6), true, -1, -1.25, "1899-12-29T06:00:00"},
        {"first date", Date(100, 1, 1), true, -657434, -657434, "0100-01-01T00:00:00"},
        {"last date", Date(9999, 12, 31, 23, 59, 59), true, 2958465, 2958465 + 86399 / 86400.0,
         "9999-12-31T23:59:59"},
        {"invalid date", Date(99, 1, 1), false, 0, 0, "-0001--01--01T-01:-01:-01"},
        {"address", address("0001:02:03"), true, 0x10203, 0x10203, "0001:02:03"},
        {"zero address", address("0000:00:00"), false, 0, 0, "0000:00:00"},
        {"address beyond int", address("FFFF:FF:FF"), true, -1, -1, "FFFF:FF:FF"},
        {"deferred address keeps its parts", address("?:1FF:0002"), true, 0x1FF02, 0x1FF02, "?:1FF:0002"},
        {"address that is none", address("x"), false, 0, 0, "x"},
        {"span", span(5400), true, 5400, 5400, "5400"},
        {"half a second", span(0.5), false, 0, 0.5, "0.5"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.value.AsBool(), row.asBool);
        EXPECT_EQ(row.value.AsInt(), row.asInt);
        EXPECT_EQ(row.value.AsDouble(), row.asDouble);
        EXPECT_EQ(row.value.AsString(), row.asString);
        Literal literal;
        row.value.StoreTo(literal);  // the public form says the same
        EXPECT_EQ(literal.GetType(), row.value.type);
        EXPECT_EQ(literal.AsBool(), row.asBool);
        EXPECT_EQ(literal.AsInt(), row.asInt);
        EXPECT_EQ(literal.AsDouble(), row.asDouble);
        EXPECT_EQ(literal.AsString(), row.asString);
        const RuleValue again = RuleValue::Of(literal);
        EXPECT_EQ(again.type, row.value.type);
        EXPECT_EQ(again.AsString(), row.asString);
    }
}

TEST(RuleValue, NotANumberBecomesTheSmallestInt) {
    const RuleValue value = RuleValue::OfDouble(std::nan(""));
    EXPECT_EQ(value.AsInt(), INT_MIN);
    EXPECT_TRUE(value.AsBool());
    EXPECT_EQ(value.AsString(), "nan");
}

TEST(RuleValue, DoubleBelowOneIsFalse_Deliberate) {
    EXPECT_FALSE(RuleValue::OfDouble(0.99).AsBool());
    EXPECT_TRUE(RuleValue::OfText("0.99").AsBool());
}

TEST(RuleValue, DateOfAnotherTypeIsZero) {
    EXPECT_EQ(RuleValue::OfInt(5).Date(), COleDateTime());
}

TEST(RuleValue, PoolHandsReleasedStringsOutAgain) {
    brindle::TextPool pool;
    CStringA* const first = pool.Take();
    first->str().assign(1000000, 'x');
    pool.Release(first);
    EXPECT_LT(first->str().capacity(), 100000u);  // a large one gave its memory back
    EXPECT_EQ(pool.Take(), first);
    EXPECT_TRUE(first->IsEmpty());
    EXPECT_NE(pool.Take(), first);
}

TEST(RuleValue, PoolGrowsAndReusesWhatItGrewBy) {
    brindle::TextPool pool;
    std::set<CStringA*> taken;
    for (int i = 0; i < 20; ++i) taken.insert(pool.Take());
    EXPECT_EQ(taken.size(), 20u);
    for (CStringA* text : taken) {
        *text = "used";
        pool.Release(text);
    }
    for (int i = 0; i < 20; ++i) {
        CStringA* const text = pool.Take();
        EXPECT_EQ(taken.erase(text), 1u);
        EXPECT_TRUE(text->IsEmpty());
    }
}

}  // namespace
