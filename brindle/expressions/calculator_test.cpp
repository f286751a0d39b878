#include "brindle/expressions/calculator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/expressions/prepared_rule.h"
#include "testing/golden.h"

namespace {

using Literal = CCalculator::Literal;
using Operator = CCalculator::Operator;
using Expression = CCalculator::Expression;

const char* const kTypeNames[] = {"Bool", "Double", "String", "Int", "DateTime", "Address", "TimeSpan"};

// "Int 5", or "fails".
std::string Evaluated(const std::string& rule) {
    const CCalculator calculator;
    Expression expression;
    Literal result;
    if (!calculator.ToReversePolish(rule, expression) || !calculator.Run(expression, result)) return "fails";
    return std::string(kTypeNames[result.GetType()]) + " " + result.AsString();
}

TEST(Calculator, EvaluatesTexts) {
    struct Row {
        const char* rule;
        const char* expected;
    };
    const Row rows[] = {
        {"10 / 4", "Int 2"},
        {"10.0 / 4", "Double 2.5"},
        {"1 / 0", "String "},
        {"1.0 / 0", "String "},
        {"2 ^ 3", "String "},
        {"\"ab\" + 1", "String ab1"},
        {"1 + \"ab\"", "String 1ab"},
        {"0.1 + 0.2 = 0.3", "Bool TRUE"},
        {"0.5 & 1", "Bool FALSE"},
        {"\"ABC\" = \"A%\"", "Bool TRUE"},
        {"\"xA\" = \"A%\"", "Bool FALSE"},
        {"DATE() - DATE()", "String "},
        {"0001:02:03 + 0001:01:01", "Address 0002:03:04"},
        {"!5", "Bool FALSE"},
        {"!0", "Bool TRUE"},
        {"!\"text\"", "String "},
        {"1 <= 1", "Bool TRUE"},
        {"\"b\" > \"a\"", "Bool TRUE"},
        {"1(2)", "Int 2"},
        {"1 2", "String 1 2"},
        {"a==b", "fails"},
        {"-5", "fails"},
        {"\"-5\" + 1", "Int -4"},
        {"a = !b", "fails"},
        {"+ +", "fails"},
        {"TIMESPAN(0,1,30,0) = 5400", "Bool TRUE"},
        {"5400 = TIMESPAN(0,1,30,0)", "Bool TRUE"},
        {"\"2024-01-02T10:00:00\" + TIMESPAN(0,1,30,0)", "DateTime 2024-01-02T11:30:00"},
        {"DATE() - TIMESPAN(1,0,0,0) < DATE()", "Bool TRUE"},
        {"1 + 2 = 3", "Bool TRUE"},
        {"\"a\" = 1 + 2", "Int 2"},
        {"Name", "String Name"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        EXPECT_EQ(Evaluated(row.rule), row.expected);
    }
}

TEST(Calculator, RunTakesWhatStandsOnTop) {
    Expression expression;
    expression.Add(new Literal(1));
    expression.Add(new Literal(2));
    Literal result;
    EXPECT_TRUE(CCalculator().Run(expression, result));
    EXPECT_EQ(result.AsInt(), 2);
}

TEST(Calculator, RunKeepsTheResultWhenItFails) {
    struct Row {
        const char* label;
        std::vector<Operator::Type> operators;
        int values;
    };
    const Row rows[] = {
        {"empty", {}, 0},
        {"operator without values", {Operator::Plus}, 0},
        {"negation without a value", {Operator::Not}, 0},
        {"one value too few", {Operator::Plus}, 1},
        {"none", {Operator::None}, 2},
        {"parenthesis", {Operator::LeftParen}, 2},
        {"unknown", {static_cast<Operator::Type>(99)}, 2},
        {"second operator", {Operator::Plus, Operator::Less}, 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Expression expression;
        for (int i = 0; i < row.values; ++i) expression.Add(new Literal(i));
        for (const auto type : row.operators) expression.Add(new Operator(type));
        Literal result("before");
        EXPECT_FALSE(CCalculator().Run(expression, result));
        EXPECT_EQ(result.AsString(), "before");
    }
}

TEST(Calculator, RunCopiesTheReplaceableFlag) {
    Expression name;
    ASSERT_TRUE(CCalculator().ToReversePolish("Name", name));
    Literal result;
    ASSERT_TRUE(CCalculator().Run(name, result));
    EXPECT_TRUE(result.IsReplaceable());
    Expression sum;
    ASSERT_TRUE(CCalculator().ToReversePolish("Name + 1", sum));
    ASSERT_TRUE(CCalculator().Run(sum, result));
    EXPECT_FALSE(result.IsReplaceable());
}

TEST(Calculator, ResultMayBeATokenOfTheExpression) {
    Expression expression;
    auto* const literal = new Literal("first");
    expression.Add(literal);
    expression.Add(new Literal(" and second"));
    expression.Add(new Operator(Operator::Plus));
    EXPECT_TRUE(CCalculator().Run(expression, *literal));
    EXPECT_EQ(literal->AsString(), "first and second");
}

TEST(Calculator, ValueStackHoldsOneMoreThanItsCapacity_Deliberate) {
    const auto run = [](int values, int sums) {
        Expression expression;
        for (int i = 0; i < values; ++i) expression.Add(new Literal(1));
        for (int i = 0; i < sums; ++i) expression.Add(new Operator(Operator::Plus));
        Literal result(-1);
        CCalculator().Run(expression, result);
        return result.AsInt();
    };
    EXPECT_EQ(run(101, 100), 101);
    EXPECT_EQ(run(102, 100), 101);  // the last value found no room
    EXPECT_EQ(run(102, 101), -1);
    Expression different;  // 0 to 101 and a sum: the 101 is dropped
    for (int i = 0; i < 102; ++i) different.Add(new Literal(i));
    different.Add(new Operator(Operator::Plus));
    Literal result;
    EXPECT_TRUE(CCalculator().Run(different, result));
    EXPECT_EQ(result.AsInt(), 99 + 100);
}

TEST(Calculator, LongRulesTakeLinearTime) {
    std::string text = "a";
    for (int i = 0; i < 300000; ++i) text += "+a";
    const std::string result = Evaluated(text);
    EXPECT_EQ(result.size(), std::string("String ").size() + 300001);
    std::string numbers = "1";
    for (int i = 0; i < 300000; ++i) numbers += "+1";
    EXPECT_EQ(Evaluated(numbers), "Int 300001");
}

TEST(Calculator, TenMegabyteTexts) {
    const std::string text(10 << 20, 'x');
    EXPECT_EQ(Evaluated("\"" + text + "\" = \"x%x\""), "Bool TRUE");
    EXPECT_EQ(Evaluated("\"" + text + "\" < \"y\""), "Bool TRUE");
    EXPECT_EQ(Evaluated("\"" + text + "\" & 1"), "Bool FALSE");
    EXPECT_EQ(Evaluated("\"" + text + "\" = \"(x|y|z)*\""), "String ");  // too much for the engine
    EXPECT_EQ(Evaluated("\"" + text + "\" + \"" + text + "\"").size(), (20u << 20) + 7);
}

// Rules as stations have them: how they read and what they give without any value.
TEST(Calculator, GoldenReversePolish) {
    const char* const rules[] = {
        "LEVEL > 10 & STATUS = \"OK%\"",
        "(LEVEL > 10) & STATUS = \"OK%\"",
        "(A + B) * 2 >= C | !D",
        "0001:02:03,LEVEL > 10 & 0001:02:04,STATUS != \"FAIL\"",
        "TEMP - 32 * 5 / 9",
        "(TEMP - 32) * 5 / 9 > 40.5",
        "DATE() - STARTED",
        "STARTED + TIMESPAN(0,8,0,0) < DATE()",
        "\"2024-01-02T10:00:00\" + TIMESPAN(1,2,3,4)",
        "NAME = \"Cam(era)? \\z\" | NAME = \"VTR%\"",
        "!(ONLINE & READY) | ALARM >= 2",
        "0001:02:03 + 0000:00:01 = 0001:02:04",
        "2 ^ 3 ^ 2 + 1",
        "1 + 2 = 3 & 4 < 5",
        "A = B + C = D",
        "-5 + 3",
        "MODE = \"AUTO\" & (LEVEL <= \"-3.5\" | LEVEL > 0.5)",
        "TRUE & FALSE | true",
        "(((A)))",
        "(A",
        "A)",
        "",
    };
    std::string text;
    for (const char* rule : rules) {
        const brindle::PreparedRule prepared{CStringA(rule)};
        text += std::string(rule) + "\n    " + prepared.ReversePolish().str() + "\n";
        const std::string result = Evaluated(rule);
        const bool hasClock = std::string_view(rule).find("DATE()") != std::string_view::npos;
        text += "    " + (hasClock ? result.substr(0, result.find(' ')) : result) + "\n";
        if (!prepared.Structure().ok())
            text += "    column " + std::to_string(prepared.Structure().column) + ": " +
                    prepared.Structure().text + "\n";
    }
    brindle::testing::ExpectGolden("rules.txt", text);
}

}  // namespace
