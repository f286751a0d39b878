#include "brindle/expressions/prepared_rule.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "brindle/address/address_ov.h"

namespace {

using brindle::PreparedRule;
using Literal = CCalculator::Literal;

class Source final : public CSolverData {
  public:
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override {
        if (header == "LEVEL") value = "12";
        if (header == "STATUS") value = "OK 1";
        if (header == "LONG") value = std::string(100, 'x');
        if (header == "HERE" && address && *address == CAddressOv(1u, 2u, 3u)) value = "yes";
        return !value.IsEmpty();
    }
};

TEST(PreparedRule, FaultsHaveTheirPlace) {
    struct Row {
        const char* rule;
        const char* conversion;  // "": converts
        const char* structure;
        unsigned column;
    };
    const Row rows[] = {
        {"LEVEL > 10", "", "", 0},
        {"", "the rule is empty", "the rule is empty", 1},
        {"(1", "\"(\" without \")\"", "\"(\" without \")\"", 1},
        {"a + (b", "\"(\" without \")\"", "\"(\" without \")\"", 5},
        {"a + b)", "\")\" without \"(\"", "\")\" without \"(\"", 6},
        {"-5", "", "an operand is missing", 1},
        {"a == b", "", "an operand is missing", 3},
        {"a & b |", "", "an operand is missing", 7},
        {"   ", "the rule has no operand", "the rule has no operand", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        const PreparedRule rule{CStringA(row.rule)};
        EXPECT_EQ(rule.Conversion().text, row.conversion);
        EXPECT_EQ(rule.Structure().text, row.structure);
        EXPECT_EQ(rule.Structure().line, rule.Structure().ok() ? 0u : 1u);
        EXPECT_EQ(rule.Structure().column, row.column);
        EXPECT_EQ(rule.Conversion().ok(), *row.conversion == '\0');
        Literal result("untouched");
        EXPECT_EQ(rule.Solve(Source(), result), rule.Structure().ok());
        if (!rule.Structure().ok()) {
            EXPECT_EQ(result.AsString(), "untouched");
        }
    }
}

TEST(PreparedRule, SolvesAgainAndAgain) {
    const PreparedRule rule("(LEVEL > 10) & STATUS = \"OK%\"");
    for (int i = 0; i < 3; ++i) {
        Literal result;
        ASSERT_TRUE(rule.Solve(Source(), result));
        EXPECT_EQ(result.AsString(), "TRUE");
    }
}

TEST(PreparedRule, MovesWithItsText) {
    PreparedRule rule("LEVEL + 1");  // short enough to live inside the string object
    PreparedRule moved = std::move(rule);
    rule = PreparedRule("01:2:3,HERE + \"!\"");
    Literal result;
    EXPECT_TRUE(moved.Solve(Source(), result));
    EXPECT_EQ(result.AsString(), "13");
    EXPECT_TRUE(rule.Solve(Source(), result));
    EXPECT_EQ(result.AsString(), "yes!");
    EXPECT_FALSE(PreparedRule().Solve(Source(), result));
}

TEST(PreparedRule, Upper) {
    const PreparedRule rule("status = \"ok%\"", true);
    EXPECT_STREQ(rule.ReversePolish(), "STATUS OK% =");
    Literal result;
    ASSERT_TRUE(rule.Solve(Source(), result));
    EXPECT_EQ(result.AsString(), "TRUE");
}

TEST(PreparedRule, Names) {
    const PreparedRule rule("0001:02:03,LEVEL > 10 & \"text\" = STATUS | LEVEL");
    ASSERT_EQ(rule.NameCount(), 3u);
    EXPECT_STREQ(rule.Name(0), "LEVEL");
    ASSERT_TRUE(rule.NameAddress(0));
    EXPECT_EQ(*rule.NameAddress(0), CAddressOv(1u, 2u, 3u));
    EXPECT_STREQ(rule.Name(1), "STATUS");
    EXPECT_FALSE(rule.NameAddress(1));
    EXPECT_STREQ(rule.Name(2), "LEVEL");
    EXPECT_EQ(PreparedRule("(LEVEL").NameCount(), 0u);
}

TEST(PreparedRule, ReversePolishKeepsWhatWasConverted) {
    EXPECT_STREQ(PreparedRule("(1").ReversePolish(), "1");
    EXPECT_STREQ(PreparedRule("-5").ReversePolish(), "5 -");
    EXPECT_STREQ(PreparedRule().ReversePolish(), "");
}

class Notes final : public brindle::RuleObserver {
  public:
    void OnValue(const CStringA& reference, const CStringA* text, const Literal& value) override {
        notes +=
            reference.str() + (text ? "=" + text->str() : std::string("?")) + ":" + value.AsString() + ";";
    }
    void OnOperator(const CCalculator::Operator& applied, const Literal* left, const Literal& right,
                    const Literal& result) override {
        notes += (left ? left->AsString() : "") + applied.AsString() + right.AsString() + "->" +
                 result.AsString() + ";";
    }
    void OnFunction(const CCalculator::Function& function, const Literal& result) override {
        notes += function.AsString() + "->" + result.AsString() + ";";
    }
    std::string notes;
};

TEST(PreparedRule, ObserverSeesEveryStep) {
    struct Row {
        const char* rule;
        const char* expected;
    };
    const Row rows[] = {
        {"(LEVEL > 10) & STATUS = \"OK%\"",
         "LEVEL=12:12;12>10->TRUE;STATUS=OK 1:OK 1;OK 1=OK%->TRUE;TRUE&TRUE->TRUE;"},
        {"!UNKNOWN", "UNKNOWN?:UNKNOWN;!UNKNOWN->;"},
        {"TIMESPAN(0,0,1,0) + 1", "TIMESPAN(0,0,1,0)->60;60+1->601;"},
        {"\"a\" + \"b\" + \"c\"", "a+b->ab;ab+c->abc;"},
        {"!(STATUS + 1)", "STATUS=OK 1:OK 1;OK 1+1->OK 11;!OK 11->;"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        const PreparedRule rule{CStringA(row.rule)};
        Notes observer;
        Literal result;
        EXPECT_TRUE(rule.Solve(Source(), result, &observer));
        EXPECT_EQ(observer.notes, row.expected);
        Literal unobserved;
        EXPECT_TRUE(rule.Solve(Source(), unobserved));
        EXPECT_EQ(unobserved.AsString(), result.AsString());
    }
}

TEST(PreparedRule, ObserverSeesWhatFindsNoRoom) {
    std::string text = "0";
    for (int i = 1; i < 101; ++i) text += "(" + std::to_string(i) + ")";
    const PreparedRule rule{CStringA(text + "(TIMESPAN(0,0,1,0))(LEVEL)")};
    Notes observer;
    Literal result;
    EXPECT_TRUE(rule.Solve(Source(), result, &observer));
    EXPECT_EQ(observer.notes, "TIMESPAN(0,0,1,0)->60;LEVEL=12:12;");
    EXPECT_EQ(result.AsString(), "100");
}

TEST(PreparedRule, ServesSeveralThreads) {
    const PreparedRule rule("LONG + LEVEL = \"x(x)*\\d\\d\" & STATUS = \"OK%\"");
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&rule, &wrong] {
            for (int n = 0; n < 200; ++n) {
                Literal result;
                if (!rule.Solve(Source(), result) || result.AsString() != "TRUE") ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
