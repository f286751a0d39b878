#include "brindle/expressions/rule_compute.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>
#include <vector>

#include "brindle/expressions/rule_classify.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"

namespace {

using brindle::RuleValue;
using brindle::TextPool;
using Literal = CCalculator::Literal;
using Operator = CCalculator::Operator;

// A value and its type in one text, as the rows write it: "Int 5", "String abc".
std::string Shown(const RuleValue& value) {
    static const char* const names[] = {"Bool", "Double", "String", "Int", "DateTime", "Address", "TimeSpan"};
    return std::string(names[value.type]) + " " + value.AsString();
}

RuleValue Parsed(const char* text) {
    if (std::string_view(text).starts_with("span "))
        return RuleValue::OfDouble(std::atoi(text + 5), Literal::TimeSpan);
    if (std::string_view(text).starts_with("text ")) return RuleValue::OfText(text + 5);
    return brindle::Classify(text);
}

RuleValue Computed(RuleValue left, const RuleValue& right, Operator::Type op, TextPool& pool) {
    brindle::Compute(left, right, op, pool);
    return left;
}

RuleValue Negated(RuleValue value) {
    TextPool pool;
    brindle::Negate(value, pool);
    return value;
}

struct Row {
    const char* left;
    Operator::Type op;
    const char* right;
    const char* expected;
};

template <std::size_t Count>
void ExpectRows(const Row (&rows)[Count]) {
    for (const Row& row : rows) {
        TextPool pool;
        SCOPED_TRACE(std::string(row.left) + " " + Operator(row.op).AsString() + " " + row.right);
        const RuleValue result = Computed(Parsed(row.left), Parsed(row.right), row.op, pool);
        EXPECT_EQ(Shown(result), row.expected);
        EXPECT_FALSE(result.replaceable);
    }
}

const char* const kDate = "2024-01-02T10:00:00";

TEST(RuleCompute, Sums) {
    const Row rows[] = {
        {"1.5", Operator::Plus, "2", "Double 3.5"},
        {"1", Operator::Plus, "2", "Int 3"},
        {"2147483647", Operator::Plus, "1", "Int -2147483648"},
        {"-2147483648", Operator::Plus, "-1", "Int 2147483647"},
        {"text ab", Operator::Plus, "1", "String ab1"},
        {"1", Operator::Plus, "text ab", "String 1ab"},
        {"text a", Operator::Plus, "2.50", "String a2.5"},
        {"text a", Operator::Plus, "true", "String aTRUE"},
        {"text a", Operator::Plus, kDate, "String a2024-01-02T10:00:00"},
        {"text a", Operator::Plus, "0001:02:03", "String a0001:02:03"},
        {"text a", Operator::Plus, "span 5", "String a5"},
        {"1", Operator::Plus, kDate, "String 12024-01-02T10:00:00"},
        {kDate, Operator::Plus, "span 3600", "DateTime 2024-01-02T11:00:00"},
        {kDate, Operator::Plus, "span -86400", "DateTime 2024-01-01T10:00:00"},
        {kDate, Operator::Plus, kDate, "String "},
        {"span 3600", Operator::Plus, kDate, "String 36002024-01-02T10:00:00"},
        {"span 5", Operator::Plus, "span 6", "Double 11"},
        {"span 5", Operator::Plus, "6", "String 56"},
        {"6", Operator::Plus, "span 5", "Int 11"},
        {"0001:02:03", Operator::Plus, "0001:01:01", "Address 0002:03:04"},
        {"0001:FF:03", Operator::Plus, "0000:01:00", "Address 0001:100:03"},
        {"FFFF:00:00", Operator::Plus, "0001:00:00", "Address 10000:00:00"},
        {"0001:02:03", Operator::Plus, "1", "Int 66052"},
        {"1", Operator::Plus, "0001:02:03", "Int 66052"},
        {"0001:02:03", Operator::Plus, "true", "String 0001:02:03TRUE"},
        {"true", Operator::Plus, "0001:02:03", "Int 66052"},
        {"0001:02:03", Operator::Plus, "1.5", "Double 66052.5"},
        {"0001:02:03", Operator::Plus, "span 1", "Double 66052"},
        {"true", Operator::Plus, "true", "String "},
        {"true", Operator::Plus, "1", "Int 2"},
        {"true", Operator::Plus, "1.5", "Double 2.5"},
    };
    ExpectRows(rows);
}

TEST(RuleCompute, Differences) {
    const Row rows[] = {
        {"1.5", Operator::Minus, "2", "Double -0.5"},
        {"1", Operator::Minus, "2", "Int -1"},
        {"-2147483648", Operator::Minus, "1", "Int 2147483647"},
        {"text ab", Operator::Minus, "1", "String "},
        {"5", Operator::Minus, "text 3", "String "},
        {kDate, Operator::Minus, "span 3600", "DateTime 2024-01-02T09:00:00"},
        {kDate, Operator::Minus, kDate, "String "},
        {kDate, Operator::Minus, "1", "String "},
        {"0001:02:03", Operator::Minus, "0001:01:01", "Address 0000:01:02"},
        {"0001:00:00", Operator::Minus, "0000:00:01", "Address 0001:00:FFFFFFFF"},
        {"true", Operator::Minus, "true", "String "},
        {"span 5", Operator::Minus, "span 6", "Double -1"},
    };
    ExpectRows(rows);
}

TEST(RuleCompute, ProductsAndQuotients) {
    const Row rows[] = {
        {"1.5", Operator::Multiply, "2", "Double 3"},
        {"3", Operator::Multiply, "-2", "Int -6"},
        {"65536", Operator::Multiply, "65536", "Int 0"},
        {"-2147483648", Operator::Multiply, "-1", "Int -2147483648"},
        {"2147483647", Operator::Multiply, "2147483647", "Int 1"},
        {"text 2", Operator::Multiply, "3", "String "},
        {"0001:02:03", Operator::Multiply, "0001:02:03", "String "},
        {kDate, Operator::Multiply, "span 2", "String "},
        {"true", Operator::Multiply, "true", "String "},
        {"10", Operator::Divide, "4", "Int 2"},
        {"-7", Operator::Divide, "2", "Int -3"},
        {"10.0", Operator::Divide, "4", "Double 2.5"},
        {"1", Operator::Divide, "0", "String "},
        {"1.0", Operator::Divide, "0", "String "},
        {"1.0", Operator::Divide, "-.0", "String "},
        {"-2147483648", Operator::Divide, "-1", "Int -2147483648"},
        {"1", Operator::Divide, "false", "String "},
        {"text 4", Operator::Divide, "2", "String "},
        {kDate, Operator::Divide, "span 2", "String "},
        {"0004:00:00", Operator::Divide, "0002:00:00", "String "},
    };
    ExpectRows(rows);
}

TEST(RuleCompute, PowersAreNeverComputed_Deliberate) {
    const Row rows[] = {
        {"2", Operator::Power, "3", "String "},
        {"2.0", Operator::Power, "3", "String "},
        {"text a", Operator::Power, "b", "String "},
        {kDate, Operator::Power, "span 1", "String "},
        {"true", Operator::Power, "true", "String "},
        {"0001:02:03", Operator::Power, "0001:02:03", "String "},
    };
    ExpectRows(rows);
}

TEST(RuleCompute, AndAndOrTakeIntegers_Deliberate) {
    const Row rows[] = {
        {"1", Operator::And, "2", "Bool TRUE"},
        {"1", Operator::And, "0", "Bool FALSE"},
        {"0.5", Operator::And, "1", "Bool FALSE"},
        {"0.5", Operator::Or, "0", "Bool FALSE"},
        {"text yes", Operator::And, "1", "Bool FALSE"},
        {"text yes", Operator::Or, "0", "Bool FALSE"},
        {"text 2nd", Operator::Or, "0", "Bool TRUE"},
        {"true", Operator::And, "true", "Bool TRUE"},
        {"true", Operator::And, "false", "Bool FALSE"},
        {"true", Operator::Or, "false", "Bool TRUE"},
        {"false", Operator::Or, "false", "Bool FALSE"},
        {kDate, Operator::And, "0001:02:03", "Bool TRUE"},
        {"0000:00:00", Operator::Or, "span 0", "Bool FALSE"},
        {"text 1e300", Operator::And, "1", "Bool TRUE"},
    };
    ExpectRows(rows);
}

TEST(RuleCompute, Comparisons) {
    const Row rows[] = {
        {"1.5", Operator::Less, "2", "Bool TRUE"},
        {"2.5", Operator::Less, "2", "Bool FALSE"},
        {"1", Operator::Less, "2", "Bool TRUE"},
        {"-1", Operator::Less, "1", "Bool TRUE"},
        {"2", Operator::Greater, "1", "Bool TRUE"},
        {"1", Operator::Greater, "1", "Bool FALSE"},
        {"text b", Operator::Greater, "text a", "Bool TRUE"},
        {"text a", Operator::Less, "text B", "Bool FALSE"},
        {"text \xE9", Operator::Greater, "text z", "Bool TRUE"},
        {"text 10", Operator::Less, "9", "Bool TRUE"},
        {"text a", Operator::Less, "text ab", "Bool TRUE"},
        {kDate, Operator::Less, "2024-01-02T10:00:01", "Bool TRUE"},
        {kDate, Operator::Greater, "2024-01-02T10:00:00", "Bool FALSE"},
        {"1899-12-29T18:00:00", Operator::Less, "1899-12-30T06:00:00", "Bool TRUE"},
        {"1899-12-29T06:00:00", Operator::Less, "1899-12-29T18:00:00", "Bool TRUE"},
        {kDate, Operator::Less, "5", "Bool TRUE"},
        {"0001:02:03", Operator::Less, "0001:02:04", "Bool TRUE"},
        {"0001:02:03", Operator::Less, "0001:02:03", "Bool FALSE"},
        {"0001:02:03", Operator::Greater, "0001:02:03", "Bool FALSE"},
        {"FFFF:00:00", Operator::Greater, "0001:00:00", "Bool TRUE"},
        {"0001:02:03", Operator::Greater, "66051", "Bool FALSE"},
        {"0001:02:03", Operator::Greater, "66050", "Bool TRUE"},
        {"false", Operator::Less, "true", "Bool TRUE"},
        {"true", Operator::Less, "true", "Bool FALSE"},
        {"span 5", Operator::Less, "span 6", "Bool TRUE"},
        {"span 10", Operator::Less, "9", "Bool TRUE"},
        {"1", Operator::LessEqual, "1", "Bool TRUE"},
        {"2", Operator::LessEqual, "1", "Bool FALSE"},
        {"1", Operator::GreaterEqual, "1", "Bool TRUE"},
        {"0", Operator::GreaterEqual, "1", "Bool FALSE"},
        {"text abc", Operator::LessEqual, "text a%", "Bool TRUE"},
        {"text b", Operator::LessEqual, "text a(", "Bool FALSE"},
        {"text a", Operator::LessEqual, "text b(", "Bool TRUE"},
        {"1.000001", Operator::LessEqual, "1.0", "Bool TRUE"},
    };
    ExpectRows(rows);
}

TEST(RuleCompute, Equality) {
    const Row rows[] = {
        {"true", Operator::Equal, "true", "Bool TRUE"},
        {"true", Operator::Equal, "false", "Bool FALSE"},
        {"0.3", Operator::Equal, "0.300001", "Bool TRUE"},
        {"0.3", Operator::Equal, "0.30002", "Bool FALSE"},
        {"1.0", Operator::Equal, "1", "Bool TRUE"},
        {"1", Operator::Equal, "true", "Bool TRUE"},
        {"5", Operator::Equal, "5", "Bool TRUE"},
        {"5", Operator::NotEqual, "5", "Bool FALSE"},
        {"5", Operator::NotEqual, "6", "Bool TRUE"},
        {kDate, Operator::Equal, kDate, "Bool TRUE"},
        {kDate, Operator::Equal, "2024-01-02T10:00:01", "Bool FALSE"},
        {"000A:02:03", Operator::Equal, "000A:02:03", "Bool TRUE"},
        {"000a:02:03", Operator::Equal, "000A:02:03", "Bool FALSE"},
        {"0001:02:03", Operator::Equal, "66051", "Bool TRUE"},
        {"text Camera 1", Operator::Equal, "text Cam%", "Bool TRUE"},
        {"text camera 1", Operator::Equal, "text Cam%", "Bool FALSE"},
        {"text Cam%", Operator::Equal, "text Camera 1", "Bool FALSE"},
        {"12", Operator::Equal, "text 1%", "Bool TRUE"},
        {"text 12", Operator::Equal, "12", "Bool TRUE"},
        {"text a", Operator::Equal, "text (", "String "},
        {"text a", Operator::NotEqual, "text (", "String "},
        {"text a", Operator::NotEqual, "text b", "Bool TRUE"},
        {"span 5", Operator::Equal, "span 5", "Bool TRUE"},
        {"span 5", Operator::Equal, "5", "Bool TRUE"},
        {"text ", Operator::Equal, "text ", "Bool TRUE"},
        {kDate, Operator::Equal, "text 2024%", "Bool TRUE"},
    };
    ExpectRows(rows);
}

TEST(RuleCompute, NotABinaryOperator) {
    TextPool pool;
    const RuleValue one = RuleValue::OfInt(1);
    for (const auto op : {Operator::None, Operator::Not, Operator::LeftParen})
        EXPECT_EQ(Shown(Computed(one, one, op, pool)), "String ");
}

TEST(RuleCompute, UnusualDoubles) {
    TextPool pool;
    const RuleValue infinite = RuleValue::OfDouble(HUGE_VAL);
    const RuleValue nan = RuleValue::OfDouble(std::nan(""));
    EXPECT_EQ(Shown(Computed(infinite, infinite, Operator::Equal, pool)),
              "Bool FALSE");  // their difference is none
    EXPECT_EQ(Shown(Computed(nan, nan, Operator::Equal, pool)), "Bool FALSE");
    EXPECT_EQ(Shown(Computed(nan, nan, Operator::Less, pool)), "Bool FALSE");
    EXPECT_EQ(Shown(Computed(nan, nan, Operator::And, pool)), "Bool TRUE");
    EXPECT_EQ(Shown(Negated(nan)), "Bool FALSE");
    const RuleValue date = brindle::Classify(kDate);
    EXPECT_EQ(
        Shown(Computed(date, RuleValue::OfDouble(std::nan(""), Literal::TimeSpan), Operator::Plus, pool)),
        "DateTime 2024-01-02T10:00:00");
}

TEST(RuleCompute, Negation) {
    struct NotRow {
        const char* operand;
        const char* expected;
    };
    const NotRow rows[] = {
        {"true", "Bool FALSE"}, {"false", "Bool TRUE"}, {"5", "Bool FALSE"},     {"0", "Bool TRUE"},
        {"0.5", "Bool FALSE"},  {"0.0", "Bool TRUE"},   {"span 0", "Bool TRUE"}, {"span 1", "Bool FALSE"},
        {"text 0", "String "},  {"text x", "String "},  {kDate, "String "},      {"0000:00:00", "String "},
    };
    for (const NotRow& row : rows) {
        SCOPED_TRACE(row.operand);
        EXPECT_EQ(Shown(Negated(Parsed(row.operand))), row.expected);
    }
}

TEST(RuleCompute, DatesMoveAlongTheLineOfTime) {
    struct DateRow {
        const char* date;
        double seconds;
        const char* forward;
        const char* back;
    };
    const DateRow rows[] = {
        {"1899-12-30T06:00:00", 86400, "1899-12-31T06:00:00", "1899-12-29T06:00:00"},
        {"1899-12-29T06:00:00", 3600, "1899-12-29T07:00:00", "1899-12-29T05:00:00"},
        {"1899-12-29T23:30:00", 3600, "1899-12-30T00:30:00", "1899-12-29T22:30:00"},
        {"2024-02-28T23:59:59", 1, "2024-02-29T00:00:00", "2024-02-28T23:59:58"},
        {"2024-01-02T10:00:00", 90061.9, "2024-01-03T11:01:01", "2024-01-01T08:58:59"},
    };
    for (const DateRow& row : rows) {
        TextPool pool;
        SCOPED_TRACE(row.date);
        const RuleValue date = brindle::Classify(row.date);
        const RuleValue span = RuleValue::OfDouble(row.seconds, Literal::TimeSpan);
        EXPECT_EQ(Computed(date, span, Operator::Plus, pool).AsString(), row.forward);
        EXPECT_EQ(Computed(date, span, Operator::Minus, pool).AsString(), row.back);
    }
}

TEST(RuleCompute, DateBeyondTheCalendarStaysValid_Deliberate) {
    TextPool pool;
    const RuleValue last = brindle::Classify("9999-12-31T23:59:59");
    const RuleValue moved =
        Computed(last, RuleValue::OfDouble(1e18, Literal::TimeSpan), Operator::Plus, pool);
    EXPECT_EQ(moved.status, COleDateTime::valid);
    EXPECT_EQ(moved.AsString(), "-0001--01--01T-01:-01:-01");
    EXPECT_EQ(moved.AsInt(), INT_MIN);
    EXPECT_EQ(Shown(Computed(last, moved, Operator::Less, pool)), "Bool TRUE");
}

TEST(RuleCompute, MovedDateIsValid_Deliberate) {
    TextPool pool;
    COleDateTime date(2024, 1, 2, 10, 0, 0);
    date.SetStatus(COleDateTime::invalid);
    const RuleValue span = RuleValue::OfDouble(60, Literal::TimeSpan);
    EXPECT_EQ(Shown(Computed(RuleValue::OfDate(date), span, Operator::Plus, pool)),
              "DateTime 2024-01-02T10:01:00");
    EXPECT_EQ(Shown(Computed(RuleValue::OfDate(date), span, Operator::Minus, pool)),
              "DateTime 2024-01-02T09:59:00");
}

TEST(RuleCompute, TextsGoBackToThePool) {
    TextPool pool;
    const auto owned = [&pool](const char* characters) {
        CStringA* const text = pool.Take();
        *text = characters;
        RuleValue value = RuleValue::OfText(text->view());
        value.owned = text;
        return value;
    };
    RuleValue sum = owned("a");
    CStringA* const first = sum.owned;
    const RuleValue right = owned("b");
    brindle::Compute(sum, right, Operator::Plus, pool);
    EXPECT_EQ(sum.owned, first);  // goes on with the left text
    EXPECT_EQ(Shown(sum), "String ab");
    EXPECT_EQ(pool.Take(), right.owned);
    pool.Release(right.owned);
    brindle::Compute(sum, owned("ab"), Operator::Equal, pool);
    EXPECT_EQ(sum.owned, nullptr);
    EXPECT_EQ(pool.Take(), first);
    RuleValue product = owned("2");
    const CStringA* const third = product.owned;
    brindle::Compute(product, RuleValue::OfInt(3), Operator::Multiply, pool);
    EXPECT_EQ(product.owned, nullptr);
    EXPECT_EQ(pool.Take(), third);
    RuleValue negated = owned("x");
    CStringA* const second = negated.owned;
    brindle::Negate(negated, pool);
    EXPECT_EQ(negated.owned, nullptr);
    EXPECT_EQ(pool.Take(), second);
}

TEST(RuleCompute, TextsOfAnEvaluationAreBounded) {
    TextPool pool;
    const std::string half(brindle::kMaxComputedText / 2, 'x');
    RuleValue sum = Computed(RuleValue::OfText(half), RuleValue::OfText(half), Operator::Plus, pool);
    EXPECT_EQ(sum.text.size(), brindle::kMaxComputedText);
    sum = Computed(sum, RuleValue::OfText("x"), Operator::Plus, pool);
    EXPECT_EQ(Shown(sum), "String ");
}

TEST(RuleFunction, Calls) {
    brindle::FakeClock clock;
    clock.SetUnixSeconds(1700000000);  // 2023-11-14 22:13:20 UTC
    clock.SetUtcOffset(3600);
    const brindle::ScopedService<brindle::Clock> scope(&brindle::SetClock, clock);
    struct CallRow {
        const char* call;
        const char* expected;
    };
    const CallRow rows[] = {
        {"DATE()", "DateTime 2023-11-14T23:13:20"},
        {"DATE(anything, \"at all\")", "DateTime 2023-11-14T23:13:20"},
        {"DATE", "DateTime 2023-11-14T23:13:20"},
        {"DATES", "DateTime 2023-11-14T23:13:20"},
        {"TIMESPAN(0,1,30,0)", "TimeSpan 5400"},
        {"TIMESPAN(1,2,3,4)", "TimeSpan 93784"},
        {"TIMESPAN(1,2,3)", "String "},
        {"TIMESPAN(1,2,3,4,5)", "String "},
        {"TIMESPAN()", "String "},
        {"TIMESPAN", "String "},
        {"TIMESPAN 1,2,3,4", "String "},
        {"TIMESPAN(,,,)", "TimeSpan 0"},
        {"TIMESPAN( 1 , x, 2y, -3)", "TimeSpan 86517"},
        {"TIMESPAN(0,0,0,-1)", "TimeSpan -1"},
        {"TIMESPAN(1,2,3,4", "TimeSpan 93784"},
        {"TIMESPAN((1,2,3,4)", "TimeSpan 7384"},
        {"TIMESPAN(1,2,3,4),5", "String "},
        {"TIMESPAN(0,0,0,99999999999)", "TimeSpan 2.14748e+09"},
        {"TIMESPAN(99999999999,0,0,0)", "TimeSpan 1.85543e+14"},
        {"timespan(1,2,3,4)", "String "},
        {" DATE()", "String "},
        {"", "String "},
    };
    for (const CallRow& row : rows) {
        SCOPED_TRACE(row.call);
        EXPECT_EQ(Shown(brindle::CallFunction(row.call)), row.expected);
        EXPECT_EQ(CCalculator::Function(row.call).ToLiteral().AsString(),
                  brindle::CallFunction(row.call).AsString());
    }
}

TEST(RuleFunction, DateWithoutAClockIsInvalid) {
    brindle::FakeClock clock;
    clock.FailLocalTime(true);
    const brindle::ScopedService<brindle::Clock> scope(&brindle::SetClock, clock);
    const RuleValue date = brindle::CallFunction("DATE()");
    EXPECT_EQ(date.type, Literal::DateTime);
    EXPECT_EQ(date.status, COleDateTime::invalid);
}

}  // namespace
